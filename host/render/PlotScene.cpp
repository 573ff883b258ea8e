#include "PlotScene.h"

#include <vtkCamera.h>
#include <vtkLookupTable.h>
#include <vtkNew.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "Margin.h"
#include "Overlay.h"
#include "PlotCamera.h"
#include "ZoneDrawing.h"

namespace qelhost {
namespace {

/// A rounded share of a length in pixels.
int Share(double part, int pixels) { return std::max(1, static_cast<int>(part * pixels + 0.5)); }

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
    const PixelBox box{0, 0, Share(kPlotWidth, width), Share(kPlotHeight, height)};
    m_plotRenderer->SetViewport(0.0, 0.0, static_cast<double>(box.width) / width,
                                static_cast<double>(box.height) / height);
    UpdateZones(frame, look, height);
    camera.Place(frame.plotType, frame.view, m_extent, box);
    camera.Apply(m_plotRenderer->GetActiveCamera());
    UpdateMargin(frame, look, width, height);
    overlay.Update(frame.geometries, camera, std::max(look.scale, 0.3 * height / 100.0),
                   look.scale);
  }

  PlotCamera camera;

 private:
  vtkNew<vtkRenderer> m_plotRenderer;
  vtkNew<vtkRenderer> m_marginRenderer;
  MarginDrawing m_margin{m_marginRenderer};

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
    m_extent = {};
    if (frame.Data() == nullptr) return;
    for (const LgIndex_t zoneNum : frame.ZonesAt(frame.solutionTime, false)) {
      const Zone& zone = *frame.Data()->FindZone(zoneNum);
      if (!zone.active) continue;
      std::unique_ptr<ZoneDrawing>& drawn = m_zones[zone.Version()];
      const auto known = before.find(zone.Version());
      drawn = known != before.end() ? std::move(known->second)
                                    : std::make_unique<ZoneDrawing>(m_plotRenderer);
      drawn->Update(frame, zoneNum, drawing);
      // By all of the zone, so that hiding cells does not move the rest.
      if (zone.IsFromFile()) m_extent.Add(BoxOf(*frame.Data(), zoneNum));
    }
  }

  void UpdateMargin(Frame& frame, const PlotLook& look, int width, int height) {
    constexpr double kLargestText = 15.0;
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
    content.textSize =
        look.textSize > 0.0 ? look.textSize : std::min(height / 40.0, kLargestText * look.scale);
    m_margin.Update(content);
  }

  std::string m_colourMap;
  vtkSmartPointer<vtkLookupTable> m_colours;
  std::map<std::int64_t, std::unique_ptr<ZoneDrawing>> m_zones;  ///< by the zone's version
  DataBox m_extent;
};

PlotScene::PlotScene() : m_parts(std::make_unique<Parts>()) {}
PlotScene::~PlotScene() = default;

vtkRenderer* PlotScene::Margin() const { return m_parts->MarginRenderer(); }
vtkRenderer* PlotScene::Plot() const { return m_parts->PlotRenderer(); }

void PlotScene::Update(Frame& frame, const PlotLook& look, int width, int height) {
  m_parts->Update(frame, look, std::max(1, width), std::max(1, height));
}

std::optional<ProbeHit> PlotScene::HitAt(double /*x*/, double /*y*/) const { return {}; }

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

void PlotScene::SetHighlight(std::vector<ZoneHighlight> /*highlights*/) {}
void PlotScene::SetRubberBand(std::optional<Geometry> geometry) {
  m_parts->overlay.rubberBand = std::move(geometry);
}
void PlotScene::SetSelectedGeometry(QelGeomID_t id) { m_parts->overlay.selected = id; }
void PlotScene::SetInteracting(bool /*isInteracting*/) {}

}  // namespace qelhost
