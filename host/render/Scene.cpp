#include "Scene.h"

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkCellArray.h>
#include <vtkFeatureEdges.h>
#include <vtkLookupTable.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkProperty2D.h>
#include <vtkScalarBarActor.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "Surfaces.h"

namespace qelhost {
namespace {

using Colour = std::array<double, 3>;

constexpr Colour kInk = {0.13, 0.15, 0.19};
constexpr Colour kGrey = {0.78, 0.8, 0.83};
constexpr Colour kGeometryColour = {0.85, 0.1, 0.55};

/// The contract's colour indices.
constexpr Colour kIndexed[] = {{0, 0, 0}, {1, 0, 0},     {0, 0.6, 0}, {0, 0, 1},     {0, 0.8, 0.8},
                               {1, 1, 0}, {0.6, 0, 0.8}, {1, 1, 1},   {1, 0.5, 0.05}};

Colour IndexedColour(LgIndex_t index) {
  const bool isKnown = index >= 0 && index < static_cast<LgIndex_t>(std::size(kIndexed));
  return isKnown ? kIndexed[index] : kInk;
}

/// Part of the picture that the plot has; the caption stands above it, the legend to its right.
constexpr double kPlotWidth = 0.83;
constexpr double kPlotHeight = 0.92;
constexpr double kFill = 0.94;  ///< of the plot's part, what the data fill at magnification 1

/// The extent of what is drawn, in the view plane.
struct Extent {
  std::array<double, 3> min{1e300, 1e300, 1e300};
  std::array<double, 3> max{-1e300, -1e300, -1e300};

  bool IsEmpty() const { return min[0] > max[0]; }
  void Add(const Projection& projection, const double* bounds) {
    for (int corner = 0; corner < 8; ++corner) {
      const auto at = projection.ToPlane(bounds[corner & 1], bounds[2 + ((corner >> 1) & 1)],
                                         bounds[4 + ((corner >> 2) & 1)]);
      for (std::size_t axis = 0; axis < at.size(); ++axis) {
        min[axis] = std::min(min[axis], at[axis]);
        max[axis] = std::max(max[axis], at[axis]);
      }
    }
  }
};

Projection ProjectionFor(const Frame& frame) {
  return frame.plotType == PlotType_Cartesian3D ? ProjectionOf(frame.view) : Projection();
}

/// A point of the view plane in data coordinates.
std::array<double, 3> FromPlane(const Projection& p, double x, double y, double z) {
  std::array<double, 3> at = p.origin;
  for (std::size_t axis = 0; axis < at.size(); ++axis) {
    at[axis] += p.rotation[axis] * x + p.rotation[3 + axis] * y + p.rotation[6 + axis] * z;
  }
  return at;
}

/// Colours that grow evenly lighter from low to high, also for eyes that see fewer colours:
/// anchors of "viridis" by S. van der Walt and N. Smith, 2015.
constexpr Colour kScale[] = {{0.267, 0.005, 0.329}, {0.279, 0.175, 0.483}, {0.230, 0.322, 0.546},
                             {0.173, 0.449, 0.558}, {0.128, 0.567, 0.551}, {0.158, 0.684, 0.502},
                             {0.369, 0.789, 0.383}, {0.678, 0.864, 0.190}, {0.993, 0.906, 0.144}};

vtkSmartPointer<vtkLookupTable> MakeColourTable(const PictureOptions& options) {
  constexpr int kColourCount = 256;
  constexpr int kSteps = static_cast<int>(std::size(kScale)) - 1;
  auto table = vtkSmartPointer<vtkLookupTable>::New();
  table->SetNumberOfTableValues(kColourCount);
  for (int n = 0; n < kColourCount; ++n) {
    const double at = static_cast<double>(n) * kSteps / (kColourCount - 1);
    const int step = std::min(static_cast<int>(at), kSteps - 1);
    const double part = at - step;
    const auto mix = [&](std::size_t c) {
      return (1.0 - part) * kScale[step][c] + part * kScale[step + 1][c];
    };
    table->SetTableValue(n, mix(0), mix(1), mix(2), 1.0);
  }
  table->SetNanColor(0.5, 0.5, 0.5, 1.0);
  table->SetRange(options.min, options.max > options.min ? options.max : options.min + 1.0);
  return table;
}

/// Builds the scene piece by piece.
class SceneMaker {
 public:
  SceneMaker(Frame& frame, const PictureOptions& options)
      : m_frame(frame), m_options(options), m_projection(ProjectionFor(frame)) {
    m_renderer->SetBackground(1.0, 1.0, 1.0);
    m_renderer->SetViewport(0.0, 0.0, kPlotWidth, kPlotHeight);
    m_margin->SetBackground(1.0, 1.0, 1.0);
  }

  Scene Make() {
    if (m_frame.Data() != nullptr) {
      for (const LgIndex_t zone : m_frame.ZonesAt(m_frame.solutionTime, false)) AddZone(zone);
    }
    PlaceCamera();
    AddGeometries();
    if (m_options.variable > 0) AddLegend();
    AddCaption();
    return {m_renderer, m_margin};
  }

 private:
  bool IsLayerShown(const FieldMap& map, Layer layer) const {
    const auto place = static_cast<std::size_t>(layer);
    return m_frame.styles.layerActive[place] && map.layers[place].show;
  }

  void AddZone(LgIndex_t zoneNum) {
    const Zone& zone = *m_frame.Data()->FindZone(zoneNum);
    if (!zone.active) return;
    const bool isData = zone.IsFromFile();
    const FieldMap& map = m_frame.styles.MapOf(zoneNum);
    const vtkSmartPointer<vtkPolyData> surface =
        SurfaceOf(m_frame, zoneNum, isData ? m_options.variable : 0);
    if (surface->GetNumberOfCells() == 0) return;
    // By all of the zone, so that hiding cells does not move the rest.
    if (isData) m_extent.Add(m_projection, zone.Block()->GetBounds());
    if (IsLayerShown(map, Layer::Shade)) AddSurface(surface, isData, StyleOf(map, Layer::Shade));
    if (IsLayerShown(map, Layer::Mesh)) AddMesh(surface, StyleOf(map, Layer::Mesh));
    if (IsLayerShown(map, Layer::Edge)) AddEdges(surface, isData, StyleOf(map, Layer::Edge));
  }

  static const LayerStyle& StyleOf(const FieldMap& map, Layer layer) {
    return map.layers[static_cast<std::size_t>(layer)];
  }

  void AddSurface(vtkPolyData* surface, bool isData, const LayerStyle& style) {
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputData(surface);
    const bool isColoured = isData && m_options.variable > 0;
    mapper->SetScalarVisibility(isColoured);
    if (isColoured) {
      mapper->SetLookupTable(m_colours);
      mapper->UseLookupTableScalarRangeOn();
      mapper->SetInterpolateScalarsBeforeMapping(true);
      mapper->SetScalarModeToDefault();
    }
    vtkNew<vtkActor> actor;
    actor->SetMapper(mapper);
    vtkProperty* const look = actor->GetProperty();
    const Colour plain = isData ? kGrey : IndexedColour(style.color);
    look->SetColor(plain[0], plain[1], plain[2]);
    if (!isData) look->SetOpacity(0.35);
    // Colours stand for numbers, so a light may shade them but little, and a flat plot not at all.
    look->SetLighting(m_frame.plotType == PlotType_Cartesian3D);
    look->SetAmbient(0.55);
    look->SetDiffuse(0.45);
    m_renderer->AddActor(actor);
  }

  void AddLines(vtkPolyData* lines, const Colour& colour, double width) {
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputData(lines);
    mapper->ScalarVisibilityOff();
    mapper->SetResolveCoincidentTopologyToPolygonOffset();
    mapper->SetRelativeCoincidentTopologyLineOffsetParameters(0.0, -4.0);
    vtkNew<vtkActor> actor;
    actor->SetMapper(mapper);
    actor->GetProperty()->SetRepresentationToWireframe();
    actor->GetProperty()->SetColor(colour[0], colour[1], colour[2]);
    actor->GetProperty()->SetLineWidth(static_cast<float>(width));
    actor->GetProperty()->SetLighting(false);
    m_renderer->AddActor(actor);
  }

  /// A line's thickness is given in percent of the frame.
  double Pixels(double percent) const { return std::max(1.0, percent * m_options.height / 100.0); }

  void AddMesh(vtkPolyData* surface, const LayerStyle& style) {
    AddLines(surface, IndexedColour(style.color), Pixels(style.lineThickness));
  }

  void AddEdges(vtkPolyData* surface, bool isData, const LayerStyle& style) {
    vtkNew<vtkFeatureEdges> edges;
    edges->SetInputData(surface);
    edges->SetFeatureAngle(40.0);
    edges->ColoringOff();
    edges->NonManifoldEdgesOff();
    edges->Update();
    AddLines(edges->GetOutput(), isData ? kInk : IndexedColour(style.color),
             Pixels(style.lineThickness));
  }

  void PlaceCamera() {
    vtkCamera* const camera = m_renderer->GetActiveCamera();
    camera->ParallelProjectionOn();
    if (m_extent.IsEmpty()) return;
    const auto& [low, high] = std::pair(m_extent.min, m_extent.max);
    const double width = high[0] - low[0];
    const double height = high[1] - low[1];
    const double depth = std::max(high[2] - low[2], 1e-9 * std::max({width, height, 1e-300}));
    const double aspect =
        kPlotWidth * m_options.width / (kPlotHeight * static_cast<double>(m_options.height));
    double half = 0.5 * std::max(height, width / aspect) / kFill;
    if (half <= 0.0) half = 1.0;
    half /= m_frame.view.magnification;
    const double x = 0.5 * (low[0] + high[0]) - m_frame.view.translation[0];
    const double y = 0.5 * (low[1] + high[1]) - m_frame.view.translation[1];
    const double reach = depth + half;
    const auto focus = FromPlane(m_projection, x, y, 0.5 * (low[2] + high[2]));
    const auto eye = FromPlane(m_projection, x, y, high[2] + reach);
    camera->SetFocalPoint(focus.data());
    camera->SetPosition(eye.data());
    camera->SetViewUp(&m_projection.rotation[3]);
    camera->SetParallelScale(half);
    m_renderer->ResetCameraClippingRange();
    // Geometries lie in front of everything.
    m_front = high[2] + 0.01 * reach;
    camera->SetClippingRange(0.01 * reach, 3.0 * reach + depth);
  }

  void AddGeometries() {
    for (QelGeomID_t id = m_frame.geometries.First(); id != 0; id = m_frame.geometries.After(id)) {
      AddGeometry(*m_frame.geometries.Find(id));
    }
  }

  static std::vector<std::array<double, 2>> OutlineOf(const Geometry& geometry) {
    const double x = geometry.anchor[0];
    const double y = geometry.anchor[1];
    const double width = geometry.size[0];
    switch (geometry.type) {
      case GeomType_Rectangle:
      case GeomType_Square: {
        const double height = geometry.type == GeomType_Square ? width : geometry.size[1];
        return {{x, y}, {x + width, y}, {x + width, y + height}, {x, y + height}, {x, y}};
      }
      case GeomType_Circle:
      case GeomType_Ellipse: {
        constexpr int kSides = 96;
        constexpr double kTurn = 6.283185307179586;
        const double height = geometry.type == GeomType_Circle ? width : geometry.size[1];
        std::vector<std::array<double, 2>> outline;
        for (int side = 0; side <= kSides; ++side) {
          const double angle = kTurn * side / kSides;
          outline.push_back({x + width * std::cos(angle), y + height * std::sin(angle)});
        }
        return outline;
      }
      default: {
        std::vector<std::array<double, 2>> outline;
        for (const auto& [px, py] : geometry.points) outline.push_back({x + px, y + py});
        if (outline.size() > 2) outline.push_back(outline.front());
        return outline;
      }
    }
  }

  void AddGeometry(const Geometry& geometry) {
    const std::vector<std::array<double, 2>> outline = OutlineOf(geometry);
    vtkNew<vtkPoints> points;
    vtkNew<vtkCellArray> lines;
    lines->InsertNextCell(static_cast<vtkIdType>(outline.size()));
    for (const auto& [x, y] : outline) {
      lines->InsertCellPoint(
          points->InsertNextPoint(FromPlane(m_projection, x, y, m_front).data()));
    }
    vtkNew<vtkPolyData> drawn;
    drawn->SetPoints(points);
    drawn->SetLines(lines);
    AddLines(drawn, kGeometryColour, Pixels(0.3));
  }

  static void Dress(vtkTextProperty* text, double size) {
    text->SetColor(kInk[0], kInk[1], kInk[2]);
    text->SetFontSize(static_cast<int>(size));
    text->SetFontFamilyToArial();
    text->ItalicOff();
    text->ShadowOff();
    text->BoldOff();
  }

  void AddLegend() {
    constexpr int kLabels = 5;
    vtkNew<vtkScalarBarActor> legend;
    legend->SetLookupTable(m_colours);
    legend->SetNumberOfLabels(kLabels);
    legend->SetLabelFormat("%-.4g");
    legend->SetUnconstrainedFontSize(true);
    legend->SetPosition(0.845, 0.14);
    legend->SetWidth(0.12);
    legend->SetHeight(0.66);
    legend->SetBarRatio(0.22);
    Dress(legend->GetLabelTextProperty(), m_options.height / 40.0);
    m_margin->AddActor2D(legend);
    AddText(m_frame.Data()->FindVariable(m_options.variable)->name, 0.85, 0.83,
            m_options.height / 32.0);
  }

  void AddCaption() {
    if (!m_options.caption.empty())
      AddText(m_options.caption, 0.03, 0.935, m_options.height / 28.0);
  }

  void AddText(const std::string& words, double x, double y, double size) {
    vtkNew<vtkTextActor> text;
    text->SetInput(words.c_str());
    Dress(text->GetTextProperty(), size);
    text->SetPosition(x * m_options.width, y * m_options.height);
    m_margin->AddActor2D(text);
  }

  Frame& m_frame;
  const PictureOptions& m_options;
  Projection m_projection;
  Extent m_extent;
  double m_front = 0.0;
  vtkSmartPointer<vtkLookupTable> m_colours = MakeColourTable(m_options);
  vtkSmartPointer<vtkRenderer> m_renderer = vtkSmartPointer<vtkRenderer>::New();
  vtkSmartPointer<vtkRenderer> m_margin = vtkSmartPointer<vtkRenderer>::New();
};

}  // namespace

Scene MakeScene(Frame& frame, const PictureOptions& options) {
  return SceneMaker(frame, options).Make();
}

}  // namespace qelhost
