// What is drawn over the plot, in pixels: geometries, the one being drawn, handles.
#pragma once

#include <vtkActor2D.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>

#include <array>
#include <optional>
#include <vector>

#include "ColourMaps.h"
#include "Geometry.h"
#include "PlotCamera.h"

namespace qelhost {

using FlatPoint = std::array<double, 2>;

/// Lines of one look, in pixels.
struct FlatLines {
  std::vector<std::vector<FlatPoint>> lines;
  std::vector<std::vector<FlatPoint>> areas;  ///< filled
  Colour colour{};
  double width = 1.0;

  bool operator==(const FlatLines& other) const {
    return lines == other.lines && areas == other.areas && colour == other.colour &&
           width == other.width;
  }
};

/// The actor for a set of lines, made anew only when they change.
class FlatLayer {
 public:
  explicit FlatLayer(vtkRenderer* renderer) : m_renderer(renderer) {}
  void Show(FlatLines lines);
  void AppendActors(std::vector<vtkProp*>& actors) const {
    if (m_actor != nullptr) actors.push_back(m_actor);
  }

 private:
  vtkRenderer* m_renderer;
  FlatLines m_shown;
  vtkSmartPointer<vtkActor2D> m_actor;
};

class Overlay {
 public:
  explicit Overlay(vtkRenderer* renderer)
      : m_geometries(renderer), m_selected(renderer), m_band(renderer) {}

  std::optional<Geometry> rubberBand;
  QelGeomID_t selected = 0;

  void Update(const GeometryList& geometries, const PlotCamera& camera, double lineWidth,
              double scale);
  void AppendActors(std::vector<vtkProp*>& actors) const {
    for (const FlatLayer* const layer : {&m_geometries, &m_selected, &m_band}) {
      layer->AppendActors(actors);
    }
  }

 private:
  FlatLayer m_geometries;
  FlatLayer m_selected;
  FlatLayer m_band;
};

}  // namespace qelhost
