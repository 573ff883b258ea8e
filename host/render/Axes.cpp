#include "Axes.h"

#include <vtkCellArray.h>
#include <vtkMapper.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkProperty.h>
#include <vtkTextProperty.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "Actors.h"

namespace qelhost {
namespace {

using Line = std::vector<FlatPoint>;
using Side = PlacedText::Side;

constexpr double kTickLength = 0.4;  ///< of the text's size
constexpr Colour kBoxColour = {0.55, 0.58, 0.62};

/// Ticks that leave room for their numbers.
int RoomForTicks(double pixels, double textSize, double textWidths) {
  return std::clamp(static_cast<int>(pixels / (textWidths * textSize)), 2, 10);
}

/// A step of 1, 2 or 5 times a power of ten.
double StepFor(double width, int about) {
  const double wanted = width / std::max(1, about);
  const double power = std::pow(10.0, std::floor(std::log10(wanted)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= wanted * (1.0 - 1e-9)) return factor * power;
  }
  return 10.0 * power;
}

/// An edge of the box: its axis, and on which side it lies along the other two.
struct BoxEdge {
  std::size_t axis;
  int low;  ///< the number of the corner that it starts from
};

BoxEdge EdgeOf(std::size_t axis, int n) {
  const std::size_t first = (axis + 1) % 3;
  const std::size_t second = (axis + 2) % 3;
  return {axis, ((n & 1) << first) | (((n >> 1) & 1) << second)};
}

/// The outward direction of an edge on the screen: away from the middle of the box, square to the
/// edge; and how far out it lies there.
struct EdgeOnScreen {
  FlatPoint from{};
  FlatPoint to{};
  FlatPoint outward{};
  double distance = 0.0;
};

EdgeOnScreen OnScreen(const PlotCamera& camera, const DataBox& data, const BoxEdge& edge) {
  EdgeOnScreen seen;
  seen.from = camera.PixelOf(data.Corner(edge.low));
  seen.to = camera.PixelOf(data.Corner(edge.low | (1 << edge.axis)));
  const FlatPoint a = camera.PixelOf(data.min);
  const FlatPoint b = camera.PixelOf(data.max);
  const FlatPoint middle = {0.5 * (a[0] + b[0]), 0.5 * (a[1] + b[1])};
  const double dx = seen.to[0] - seen.from[0];
  const double dy = seen.to[1] - seen.from[1];
  const double length = std::hypot(dx, dy);
  if (length < 1.0) return seen;
  seen.outward = {-dy / length, dx / length};
  seen.distance =
      (seen.from[0] - middle[0]) * seen.outward[0] + (seen.from[1] - middle[1]) * seen.outward[1];
  if (seen.distance < 0.0) {
    seen.distance = -seen.distance;
    seen.outward = {-seen.outward[0], -seen.outward[1]};
  }
  return seen;
}

/// Of the four edges along an axis the outermost one; of equal ones that further down or left.
EdgeOnScreen OutermostEdge(const PlotCamera& camera, const DataBox& data, std::size_t axis) {
  EdgeOnScreen best;
  double bestRank = -1e300;
  for (int n = 0; n < 4; ++n) {
    const EdgeOnScreen edge = OnScreen(camera, data, EdgeOf(axis, n));
    const double rank =
        edge.distance - 0.1 * (edge.outward[0] + edge.outward[1]) * (1.0 + edge.distance);
    if (rank <= bestRank) continue;
    bestRank = rank;
    best = edge;
  }
  return best;
}

Side SideTowards(double outward) {
  return outward > 0.4 ? Side::Left : outward < -0.4 ? Side::Right : Side::Middle;
}

}  // namespace

std::vector<double> TicksWithin(double low, double high, int about) {
  std::vector<double> ticks;
  if (!(high > low) || !std::isfinite(high - low)) return ticks;
  const double step = StepFor(high - low, about);
  constexpr double kRounding = 1e-9;
  const double first = std::ceil(low / step - kRounding);
  const double last = std::floor(high / step + kRounding);
  constexpr double kMost = 1000.0;
  // Steps below the precision of the numbers would never end.
  if (!(last - first < kMost) || first + 1.0 == first) return ticks;
  for (double n = first; n <= last; n += 1.0) ticks.push_back(n == 0.0 ? 0.0 : n * step);
  return ticks;
}

std::string TickText(double tick, double step) {
  char text[40];
  const double size = std::max(std::fabs(tick), step);
  if (size >= 1e5 || step < 1e-4) {
    const int digits = tick == 0.0
                           ? 0
                           : std::max(0, static_cast<int>(std::floor(std::log10(std::fabs(tick))) -
                                                          std::floor(std::log10(step) + 1e-9)));
    std::snprintf(text, sizeof text, "%.*e", std::min(digits, 12), tick);
    return text;
  }
  const int decimals = std::max(0, -static_cast<int>(std::floor(std::log10(step) + 1e-9)));
  std::snprintf(text, sizeof text, "%.*f", decimals, tick);
  return text;
}

void TextLayer::Show(const std::vector<PlacedText>& texts, double size) {
  if (size != m_size) {
    for (const Shown& shown : m_shown) m_renderer->RemoveViewProp(shown.actor);
    m_shown.clear();
    m_size = size;
  }
  while (m_shown.size() > texts.size()) {
    m_renderer->RemoveViewProp(m_shown.back().actor);
    m_shown.pop_back();
  }
  while (m_shown.size() < texts.size()) {
    m_shown.emplace_back();
    m_shown.back().actor = MakeText("", 0.0, 0.0, size);
    m_renderer->AddViewProp(m_shown.back().actor);
  }
  for (std::size_t n = 0; n < texts.size(); ++n) {
    Shown& shown = m_shown[n];
    if (shown.text == texts[n]) continue;
    shown.text = texts[n];
    shown.actor->SetInput(shown.text.words.c_str());
    shown.actor->SetPosition(std::round(shown.text.at[0]), std::round(shown.text.at[1]));
    vtkTextProperty* const look = shown.actor->GetTextProperty();
    look->SetJustification(static_cast<int>(shown.text.across));
    look->SetVerticalJustification(static_cast<int>(shown.text.up));
  }
}

int AxisMarginLeft(double textSize) { return static_cast<int>(5.5 * textSize); }
int AxisMarginBelow(double textSize) { return static_cast<int>(2.4 * textSize); }
int BoxAxisClearance(double textSize) { return static_cast<int>(4.0 * textSize); }

Axes::Axes(vtkRenderer* margin, vtkRenderer* plot)
    : m_plot(plot),
      m_flatLines(margin),
      m_flatTexts(margin),
      m_solidLines(plot),
      m_solidTexts(plot) {}

void Axes::ShowBox(const DataBox& data, double scale) {
  if (m_box != nullptr && data == m_boxed) return;
  HideBox();
  m_boxed = data;
  vtkNew<vtkPoints> points;
  vtkNew<vtkCellArray> lines;
  for (int corner = 0; corner < 8; ++corner) {
    const auto& [x, y, z] = data.Corner(corner);
    points->InsertNextPoint(x, y, z);
    for (int axis = 0; axis < 3; ++axis) {
      if ((corner & (1 << axis)) != 0) continue;
      const vtkIdType edge[2] = {corner, corner | (1 << axis)};
      lines->InsertNextCell(2, edge);
    }
  }
  vtkNew<vtkPolyData> box;
  box->SetPoints(points);
  box->SetLines(lines);
  m_box = MakeLinesActor(box);
  // Behind the edges of data that fill the box.
  constexpr double kForward = -4.0;
  m_box->GetMapper()->SetRelativeCoincidentTopologyLineOffsetParameters(0.0, kForward);
  m_box->GetProperty()->SetColor(kBoxColour[0], kBoxColour[1], kBoxColour[2]);
  m_box->GetProperty()->SetLineWidth(static_cast<float>(scale));
  m_plot->AddActor(m_box);
}

void Axes::HideBox() {
  if (m_box != nullptr) m_plot->RemoveActor(m_box);
  m_box = nullptr;
}

void Axes::Hide() {
  HideBox();
  m_flatLines.Show({});
  m_flatTexts.Show({}, 1.0);
  m_solidLines.Show({});
  m_solidTexts.Show({}, 1.0);
}

void Axes::ShowFlat(const PlotCamera& camera, double textSize, double scale) {
  m_solidLines.Show({});
  m_solidTexts.Show({}, 1.0);
  HideBox();
  const PixelBox& box = camera.Box();
  const double left = box.x - 1.0;
  const double bottom = box.y - 1.0;
  const double right = box.x + box.width;
  const double top = box.y + box.height;
  const double tickLength = kTickLength * textSize;
  FlatLines lines{{{{left, top}, {left, bottom}, {right, bottom}}}, {}, kInk, scale};
  std::vector<PlacedText> texts;
  const std::array<double, 2> low = camera.GridAt(box.x, box.y);
  const std::array<double, 2> high = camera.GridAt(right, top);
  // The axis's own name stands at its end, instead of a number.
  const double lastX = right - 1.5 * textSize;
  const double lastY = top - 1.8 * textSize;
  const auto add = [&](std::size_t axis, const std::vector<double>& ticks) {
    const double step = ticks.size() > 1 ? ticks[1] - ticks[0] : high[axis] - low[axis];
    for (const double tick : ticks) {
      const std::array<double, 2> at = camera.PixelAt(tick, tick);
      const FlatPoint words = axis == 0 ? FlatPoint{at[0], bottom - 1.5 * tickLength}
                                        : FlatPoint{left - 1.5 * tickLength, at[1]};
      if (axis == 0) {
        lines.lines.push_back({{at[0], bottom}, {at[0], bottom - tickLength}});
      } else {
        lines.lines.push_back({{left, at[1]}, {left - tickLength, at[1]}});
      }
      if (at[axis] > (axis == 0 ? lastX : lastY)) continue;
      texts.push_back({TickText(tick, step), words, axis == 0 ? Side::Middle : Side::Right,
                       axis == 0 ? Side::Right : Side::Middle});
    }
  };
  add(0, TicksWithin(low[0], high[0], RoomForTicks(box.width, textSize, 5.0)));
  add(1, TicksWithin(low[1], high[1], RoomForTicks(box.height, textSize, 3.0)));
  texts.push_back({"X", {right, bottom - 1.5 * tickLength}, Side::Right, Side::Right});
  texts.push_back({"Y", {left - 1.5 * tickLength, top}, Side::Right, Side::Right});
  m_flatLines.Show(std::move(lines));
  m_flatTexts.Show(texts, textSize);
}

void Axes::ShowSolid(const PlotCamera& camera, const DataBox& data, double textSize, double scale) {
  m_flatLines.Show({});
  m_flatTexts.Show({}, 1.0);
  if (data.IsEmpty()) {
    Hide();
    return;
  }
  ShowBox(data, scale);
  const auto inPlot = [&camera](FlatPoint at) {
    return FlatPoint{at[0] - camera.Box().x, at[1] - camera.Box().y};
  };
  FlatLines lines{{}, {}, kBoxColour, scale};
  std::vector<PlacedText> texts;
  const double tickLength = kTickLength * textSize;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const EdgeOnScreen edge = OutermostEdge(camera, data, axis);
    const double length = std::hypot(edge.to[0] - edge.from[0], edge.to[1] - edge.from[1]);
    if (length < 4.0 * textSize) continue;
    const double low = data.min[axis];
    const double width = data.max[axis] - low;
    const std::vector<double> ticks =
        TicksWithin(low, data.max[axis], RoomForTicks(length, textSize, 4.0));
    const double step = ticks.size() > 1 ? ticks[1] - ticks[0] : width;
    const auto outside = [&](double part, double away) {
      return inPlot({edge.from[0] + part * (edge.to[0] - edge.from[0]) + away * edge.outward[0],
                     edge.from[1] + part * (edge.to[1] - edge.from[1]) + away * edge.outward[1]});
    };
    const Side across = SideTowards(edge.outward[0]);
    const Side up = SideTowards(edge.outward[1]);
    for (const double tick : ticks) {
      const double part = (tick - low) / width;
      lines.lines.push_back({outside(part, 0.0), outside(part, tickLength)});
      texts.push_back({TickText(tick, step), outside(part, 1.5 * tickLength), across, up});
    }
    texts.push_back({std::string(1, "XYZ"[axis]), outside(0.5, 3.8 * textSize), across, up});
  }
  m_solidLines.Show(std::move(lines));
  m_solidTexts.Show(texts, textSize);
}

OrientationMarker::OrientationMarker(vtkRenderer* plot)
    : m_arrows{FlatLayer(plot), FlatLayer(plot), FlatLayer(plot)}, m_names(plot) {}

void OrientationMarker::Hide() {
  for (FlatLayer& arrow : m_arrows) arrow.Show({});
  m_names.Show({}, 1.0);
}

void OrientationMarker::Show(const PlotCamera& camera, double textSize, double scale) {
  static constexpr Colour kColours[3] = {
      {0.80, 0.16, 0.16}, {0.13, 0.55, 0.13}, {0.12, 0.33, 0.80}};
  const double length = 2.8 * textSize;
  const FlatPoint middle = {1.7 * length, 1.7 * length};
  std::vector<PlacedText> names;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const std::array<double, 9>& rotation = camera.ToPlane().rotation;
    const FlatPoint along = {rotation[axis], rotation[3 + axis]};
    const double seen = std::hypot(along[0], along[1]);
    const FlatPoint tip = {middle[0] + length * along[0], middle[1] + length * along[1]};
    FlatLines arrow{{{middle, tip}}, {}, kColours[axis], 2.0 * scale};
    if (seen > 0.05) {
      const FlatPoint unit = {along[0] / seen, along[1] / seen};
      const double head = 0.3 * length * std::max(seen, 0.4);
      const FlatPoint neck = {tip[0] - head * unit[0], tip[1] - head * unit[1]};
      const double half = 0.09 * length;
      arrow.areas.push_back({tip,
                             {neck[0] - half * unit[1], neck[1] + half * unit[0]},
                             {neck[0] + half * unit[1], neck[1] - half * unit[0]}});
    }
    m_arrows[axis].Show(std::move(arrow));
    const double away = length + 0.8 * textSize / std::max(seen, 0.3);
    names.push_back({std::string(1, "XYZ"[axis]),
                     {middle[0] + away * along[0], middle[1] + away * along[1]},
                     Side::Middle,
                     Side::Middle});
  }
  m_names.Show(names, textSize);
}

}  // namespace qelhost
