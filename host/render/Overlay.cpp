#include "Overlay.h"

#include <vtkCellArray.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "Actors.h"
#include "PlotScene.h"

namespace qelhost {
namespace {

using Line = std::vector<FlatPoint>;

/// Pixels of the plot's own corner, in which its flat actors are placed.
Line InPixels(const Line& line, const PlotCamera& camera) {
  Line pixels;
  for (const auto& [x, y] : line) {
    const std::array<double, 2> at = camera.PixelAt(x, y);
    pixels.push_back({at[0] - camera.Box().x, at[1] - camera.Box().y});
  }
  return pixels;
}

Line SquareAround(const FlatPoint& at, double half) {
  return {{at[0] - half, at[1] - half},
          {at[0] + half, at[1] - half},
          {at[0] + half, at[1] + half},
          {at[0] - half, at[1] + half}};
}

/// Cuts lines into strokes with gaps between them.
std::vector<Line> Dashed(const Line& line, double stroke, double gap) {
  constexpr std::size_t kMost = 4000;  // a line much larger than the window is drawn whole
  std::vector<Line> strokes;
  double along = 0.0;  // since the last stroke began
  for (std::size_t n = 0; n + 1 < line.size(); ++n) {
    const FlatPoint& from = line[n];
    const double dx = line[n + 1][0] - from[0];
    const double dy = line[n + 1][1] - from[1];
    const double length = std::hypot(dx, dy);
    if (length / (stroke + gap) > kMost) return {line};
    double at = 0.0;
    while (at < length) {
      const bool isStroke = along < stroke;
      const double step = std::min((isStroke ? stroke : stroke + gap) - along, length - at);
      const auto pointAt = [&](double place) {
        return FlatPoint{from[0] + dx * place / length, from[1] + dy * place / length};
      };
      if (isStroke) strokes.push_back({pointAt(at), pointAt(at + step)});
      at += step;
      along += step;
      if (along >= stroke + gap - 1e-9) along = 0.0;
    }
  }
  return strokes;
}

/// The places where a selected geometry is taken hold of: the corners of what bounds it, or its
/// own.
Line HandlesOf(const Geometry& geometry) {
  const Line outline = OutlineOf(geometry);
  if (geometry.type != GeomType_Circle && geometry.type != GeomType_Ellipse) {
    const bool isClosed = outline.size() > 2;
    return Line(outline.begin(), outline.end() - (isClosed ? 1 : 0));
  }
  const std::size_t quarter = (outline.size() - 1) / 4;
  return {outline[0], outline[quarter], outline[2 * quarter], outline[3 * quarter]};
}

}  // namespace

void FlatLayer::Show(FlatLines lines) {
  if (lines == m_shown) return;
  m_shown = std::move(lines);
  if (m_actor != nullptr) m_renderer->RemoveViewProp(m_actor);
  m_actor = nullptr;
  if (m_shown.lines.empty() && m_shown.areas.empty()) return;
  vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  const auto add = [&points](const std::vector<Line>& all) {
    vtkNew<vtkCellArray> cells;
    for (const Line& line : all) {
      cells->InsertNextCell(static_cast<int>(line.size()));
      for (const auto& [x, y] : line) cells->InsertCellPoint(points->InsertNextPoint(x, y, 0.0));
    }
    return vtkSmartPointer<vtkCellArray>(cells);
  };
  vtkNew<vtkPolyData> drawn;
  drawn->SetLines(add(m_shown.lines));
  drawn->SetPolys(add(m_shown.areas));
  drawn->SetPoints(points);
  m_actor = MakeFlatActor(drawn, m_shown.colour, m_shown.width);
  m_renderer->AddViewProp(m_actor);
}

void Overlay::Update(const GeometryList& geometries, const PlotCamera& camera, double lineWidth,
                     double scale) {
  const double kHandle = 4.0 * scale;  // half a side
  FlatLines plain{{}, {}, kGeometryColour, lineWidth};
  FlatLines chosen{{}, {}, kGeometryColour, lineWidth + scale};
  for (QelGeomID_t id = geometries.First(); id != 0; id = geometries.After(id)) {
    const Geometry& geometry = *geometries.Find(id);
    const Line outline = InPixels(OutlineOf(geometry), camera);
    if (outline.size() < 2) continue;
    (id == selected ? chosen : plain).lines.push_back(outline);
    if (id != selected) continue;
    for (const FlatPoint& handle : InPixels(HandlesOf(geometry), camera)) {
      chosen.areas.push_back(SquareAround(handle, kHandle));
    }
  }
  FlatLines band{{}, {}, kAccentColour, lineWidth + 0.5 * scale};
  if (rubberBand.has_value()) {
    Line outline = OutlineOf(*rubberBand);
    const bool isPolyline = rubberBand->type == GeomType_LineSegs;
    // A polygon that grows is not closed yet.
    if (isPolyline && outline.size() > 2) outline.pop_back();
    outline = InPixels(outline, camera);
    band.lines = Dashed(outline, 7.0 * scale, 4.0 * scale);
    if (isPolyline) {
      for (const FlatPoint& corner : outline) {
        band.areas.push_back(SquareAround(corner, 0.75 * kHandle));
      }
    }
  }
  m_geometries.Show(std::move(plain));
  m_selected.Show(std::move(chosen));
  m_band.Show(std::move(band));
}

}  // namespace qelhost
