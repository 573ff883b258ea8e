#include "PlotScene.h"

#include <vtkCamera.h>
#include <vtkLookupTable.h>
#include <vtkNew.h>
#include <vtkPropCollection.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <set>
#include <utility>

#include "Axes.h"
#include "HighlightDrawing.h"
#include "Margin.h"
#include "Overlay.h"
#include "PlotCamera.h"
#include "Probe.h"
#include "ZoneDrawing.h"

namespace qelhost {
namespace {

/// A rounded share of a length in pixels.
int Share(double part, int pixels) {
  return std::max(1, static_cast<int>(std::lround(part * pixels)));
}

DataBox BoxOf(DataSet& data, LgIndex_t zoneNum) {
  DataBox box;
  for (std::size_t axis = 0; axis < box.min.size(); ++axis) {
    const Range range = data.ZoneRange(zoneNum, data.CoordinateVariable("XYZ"[axis]));
    if (!range.hasValues || !std::isfinite(range.min) || !std::isfinite(range.max)) return {};
    box.min[axis] = range.min;
    box.max[axis] = range.max;
  }
  return box;
}

/// Around the zones that are shown, by all of each, so that hiding cells does not move the rest.
DataBox ExtentOf(const Frame& frame) {
  DataBox extent;
  for (const LgIndex_t zoneNum : frame.ZonesAt(frame.solutionTime, false)) {
    const Zone& zone = *frame.Data()->FindZone(zoneNum);
    if (zone.active && zone.IsFromFile()) extent.Add(BoxOf(*frame.Data(), zoneNum));
  }
  return extent;
}

}  // namespace

class PlotScene::Parts {
 public:
  Parts() {
    m_plotRenderer->SetBackground(1.0, 1.0, 1.0);
    m_marginRenderer->SetBackground(1.0, 1.0, 1.0);
  }

  vtkRenderer* PlotRenderer() const { return m_plotRenderer; }
  vtkRenderer* MarginRenderer() const { return m_marginRenderer; }

  void Update(Frame& frame, const PlotLook& look, int width, int height) {
    const double textSize = TextSizeOf(look, height);
    const PixelBox box = PlotBox(frame, look, width, height, textSize);
    m_plotRenderer->SetViewport(static_cast<double>(box.x) / width,
                                static_cast<double>(box.y) / height,
                                static_cast<double>(box.x + box.width) / width,
                                static_cast<double>(box.y + box.height) / height);
    const bool isBoxed = look.showAxes && frame.plotType == PlotType_Cartesian3D;
    m_extent = ExtentOf(frame);
    camera.Place(frame.plotType, frame.view, m_extent, box,
                 isBoxed ? BoxAxisClearance(textSize) : 0);
    UpdateZones(frame, look, height);
    camera.Apply(m_plotRenderer->GetActiveCamera());
    UpdateMargin(frame, look, width, height, textSize);
    UpdateAxes(frame, look, textSize);
    UpdateHighlights(look.scale);
    overlay.Update(frame.geometries, camera, std::max(look.scale, 0.3 * height / 100.0),
                   look.scale);
    PutInOrder();
  }

  std::optional<ProbeHit> HitAt(double x, double y) const {
    const PixelBox& box = camera.Box();
    if (m_data == nullptr || !(x >= box.x && x < box.x + box.width) ||
        !(y >= box.y && y < box.y + box.height)) {
      return {};
    }
    const auto [gridX, gridY] = camera.GridAt(x, y);
    const ZoneDrawing* hitZone = nullptr;
    FaceHit best;
    for (const auto& [version, zone] : m_zones) {
      if (!zone->IsData() || !zone->IsSeen()) continue;
      const auto hit = FaceAt(zone->Surface(), camera.ToPlane(), gridX, gridY,
                              kLineReach * m_scale * camera.GridPerPixel());
      if (!hit.has_value() || (hitZone != nullptr && hit->depth < best.depth)) continue;
      hitZone = zone.get();
      best = *hit;
    }
    if (hitZone == nullptr) return {};
    const std::int32_t cell = hitZone->Surface().Faces().cells[static_cast<std::size_t>(best.face)];
    ProbeHit hit;
    hit.zone = hitZone->ZoneNum();
    hit.cell = cell + 1;
    hit.position = camera.FromPlane(gridX, gridY, best.depth);
    Zone& zone = *m_data->FindZone(hit.zone);
    hit.node = static_cast<LgIndex_t>(NearestNode(zone, cell, hit.position)) + 1;
    return hit;
  }

  void SetHighlight(std::vector<ZoneHighlight> highlights) {
    m_highlights.clear();
    for (ZoneHighlight& highlight : highlights) {
      m_highlights.push_back(
          std::make_unique<HighlightDrawing>(m_plotRenderer, std::move(highlight)));
    }
    UpdateHighlights(m_scale);
  }

  PlotCamera camera;
  bool isInteracting = false;

 private:
  static constexpr double kLineReach = 4.0;  ///< pixels
  /// Faces that are drawn fast enough to move.
  static constexpr std::int64_t kMostFaces = 300000;
  static constexpr double kCubePixels = 2.5;  ///< that corners of rough faces lie apart
  static constexpr double kMostCubes = 400.0;

  vtkNew<vtkRenderer> m_plotRenderer;
  vtkNew<vtkRenderer> m_marginRenderer;
  MarginDrawing m_margin{m_marginRenderer};
  Axes m_axes{m_marginRenderer, m_plotRenderer};
  OrientationMarker m_orientation{m_plotRenderer};

 public:
  Overlay overlay{m_plotRenderer};

 private:
  void UpdateZones(Frame& frame, const PlotLook& look, int height) {
    if (look.colourMap != m_colourMap || m_colours == nullptr) {
      m_colours = MakeColourTable(look.colourMap, 0.0, 1.0);
      m_colourMap = look.colourMap;
    }
    const bool isSolid = frame.plotType == PlotType_Cartesian3D;
    const DrawingLook drawing{look.variable, {look.min, look.max}, m_colours, isSolid, height,
                              look.scale};
    std::map<std::int64_t, std::unique_ptr<ZoneDrawing>> before = std::move(m_zones);
    m_zones.clear();
    m_data = frame.Data();
    m_scale = look.scale;
    if (m_data == nullptr) return;
    UpdateDetail(frame);
    m_faceCount = 0;
    for (const LgIndex_t zoneNum : frame.ZonesAt(frame.solutionTime, false)) {
      const Zone& zone = *frame.Data()->FindZone(zoneNum);
      if (!zone.active) continue;
      const auto known = before.find(zone.Version());
      std::unique_ptr<ZoneDrawing> drawn = known != before.end()
                                               ? std::move(known->second)
                                               : std::make_unique<ZoneDrawing>(m_plotRenderer);
      drawn->SetRough(m_detail);
      drawn->Update(frame, zoneNum, drawing);
      m_faceCount += drawn->Surface().Faces().Count();
      m_zones[zone.Version()] = std::move(drawn);
    }
  }

  /// Lines that coincide cover each other by the order in which they are drawn, which is to be that
  /// of the zones and their layers, whenever each was switched on. The collection is put in order
  /// itself: removing actors from the renderer would throw away what the graphics hold of them.
  void PutInOrder() {
    std::vector<vtkProp*> wanted;
    for (const auto& [version, zone] : m_zones) zone->AppendActors(wanted);
    for (const auto& highlight : m_highlights) highlight->AppendActors(wanted);
    m_axes.AppendActors(wanted);
    m_orientation.AppendActors(wanted);
    overlay.AppendActors(wanted);
    vtkPropCollection* const props = m_plotRenderer->GetViewProps();
    std::vector<vtkSmartPointer<vtkProp>> before;
    vtkCollectionSimpleIterator place;
    props->InitTraversal(place);
    while (vtkProp* const prop = props->GetNextProp(place)) before.emplace_back(prop);
    // Whatever others put into the renderer comes last.
    const std::set<vtkProp*> own(wanted.begin(), wanted.end());
    std::copy_if(before.begin(), before.end(), std::back_inserter(wanted),
                 [&own](vtkProp* prop) { return own.count(prop) == 0; });
    if (std::equal(wanted.begin(), wanted.end(), before.begin(), before.end())) return;
    props->RemoveAllItems();
    for (vtkProp* const prop : wanted) props->AddItem(prop);
  }

  /// While the view moves and there are too many faces for that: the detail to show them in.
  void UpdateDetail(const Frame& frame) {
    if (!isInteracting || m_faceCount <= kMostFaces) {
      m_detail.reset();
      return;
    }
    const double side = kCubePixels * camera.GridPerPixel();
    const PixelBox& box = camera.Box();
    const std::array<double, 2> low = camera.GridAt(box.x, box.y);
    const std::array<double, 2> high = camera.GridAt(box.x + box.width, box.y + box.height);
    const bool isFlat = frame.plotType != PlotType_Cartesian3D;
    const bool isGoodEnough =
        m_detail.has_value() && side > 0.5 * m_detail->side && side < 2.0 * m_detail->side &&
        (!isFlat || (low[0] >= m_detail->low[0] && low[1] >= m_detail->low[1] &&
                     high[0] <= m_detail->high[0] && high[1] <= m_detail->high[1]));
    if (isGoodEnough) return;
    RoughDetail detail;
    detail.side = side;
    if (isFlat) {
      // As much again on each side, to move there without making it anew.
      for (std::size_t axis = 0; axis < 2; ++axis) {
        detail.low[axis] = 2.0 * low[axis] - high[axis];
        detail.high[axis] = 2.0 * high[axis] - low[axis];
      }
    } else {
      // What turns into sight may be any of it, so there are not to be more than all take.
      const double longest =
          std::max({m_extent.max[0] - m_extent.min[0], m_extent.max[1] - m_extent.min[1],
                    m_extent.max[2] - m_extent.min[2]});
      detail.side = std::max(side, longest / kMostCubes);
    }
    m_detail = detail;
  }

  static double TextSizeOf(const PlotLook& look, int height) {
    constexpr double kLargestText = 15.0;
    return look.textSize > 0.0 ? look.textSize : std::min(height / 40.0, kLargestText * look.scale);
  }

  static PixelBox PlotBox(const Frame& frame, const PlotLook& look, int width, int height,
                          double textSize) {
    PixelBox box{0, 0, Share(kPlotWidth, width), Share(kPlotHeight, height)};
    const bool hasFlatAxes = look.showAxes && frame.plotType == PlotType_Cartesian2D;
    const int left = AxisMarginLeft(textSize);
    const int below = AxisMarginBelow(textSize);
    // A window too small for both shows the plot.
    if (!hasFlatAxes || 2 * left > box.width || 2 * below > box.height) return box;
    return {left, below, box.width - left, box.height - below};
  }

  void UpdateAxes(const Frame& frame, const PlotLook& look, double textSize) {
    const bool isSolid = frame.plotType == PlotType_Cartesian3D;
    const bool hasRoom = isSolid || camera.Box().x > 0;
    if (!look.showAxes || !hasRoom) {
      m_axes.Hide();
    } else if (isSolid) {
      m_axes.ShowSolid(camera, m_extent, textSize, look.scale);
    } else {
      m_axes.ShowFlat(camera, textSize, look.scale);
    }
    if (look.showOrientation && isSolid) {
      m_orientation.Show(camera, textSize, look.scale);
    } else {
      m_orientation.Hide();
    }
  }

  void UpdateHighlights(double scale) {
    for (const auto& highlight : m_highlights) {
      const auto zone = std::find_if(m_zones.begin(), m_zones.end(), [&](const auto& entry) {
        return entry.second->ZoneNum() == highlight->ZoneNum();
      });
      highlight->Update(zone == m_zones.end() ? nullptr : zone->second.get(), scale);
    }
  }

  void UpdateMargin(Frame& frame, const PlotLook& look, int width, int height, double textSize) {
    MarginContent content;
    content.caption = look.caption;
    const Variable* const variable =
        frame.Data() == nullptr ? nullptr : frame.Data()->FindVariable(look.variable);
    if (variable != nullptr) content.variable = variable->name;
    content.colourMap = look.colourMap;
    content.min = look.min;
    content.max = look.max;
    content.width = width;
    content.height = height;
    content.textSize = textSize;
    m_margin.Update(content);
  }

  std::string m_colourMap;
  vtkSmartPointer<vtkLookupTable> m_colours;
  std::map<std::int64_t, std::unique_ptr<ZoneDrawing>> m_zones;  ///< by the zone's version
  std::vector<std::unique_ptr<HighlightDrawing>> m_highlights;
  DataBox m_extent;
  DataSetPtr m_data;
  double m_scale = 1.0;
  std::optional<RoughDetail> m_detail;
  std::int64_t m_faceCount = 0;  ///< of all zones at the last update
};

PlotScene::PlotScene() : m_parts(std::make_unique<Parts>()) {}
PlotScene::~PlotScene() = default;

vtkRenderer* PlotScene::Margin() const { return m_parts->MarginRenderer(); }
vtkRenderer* PlotScene::Plot() const { return m_parts->PlotRenderer(); }

void PlotScene::Update(Frame& frame, const PlotLook& look, int width, int height) {
  m_parts->Update(frame, look, std::max(1, width), std::max(1, height));
}

std::optional<ProbeHit> PlotScene::HitAt(double x, double y) const { return m_parts->HitAt(x, y); }

std::array<double, 2> PlotScene::GridAt(double x, double y) const {
  return m_parts->camera.GridAt(x, y);
}
std::array<double, 2> PlotScene::PixelAt(double gridX, double gridY) const {
  return m_parts->camera.PixelAt(gridX, gridY);
}
double PlotScene::GridPerPixel() const { return m_parts->camera.GridPerPixel(); }

View PlotScene::Rotated(const View& view, double dx, double dy) const {
  return m_parts->camera.Rotated(view, dx, dy);
}
View PlotScene::Panned(const View& view, double dx, double dy) const {
  return m_parts->camera.Panned(view, dx, dy);
}
View PlotScene::ZoomedAt(const View& view, double x, double y, double factor) const {
  return m_parts->camera.ZoomedAt(view, x, y, factor);
}

void PlotScene::SetHighlight(std::vector<ZoneHighlight> highlights) {
  m_parts->SetHighlight(std::move(highlights));
}
void PlotScene::SetRubberBand(std::optional<Geometry> geometry) {
  m_parts->overlay.rubberBand = std::move(geometry);
}
void PlotScene::SetSelectedGeometry(QelGeomID_t id) { m_parts->overlay.selected = id; }
void PlotScene::SetInteracting(bool isInteracting) { m_parts->isInteracting = isInteracting; }

}  // namespace qelhost
