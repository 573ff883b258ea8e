#include "ZoneDrawing.h"

#include <vtkCellArray.h>
#include <vtkMapper.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkProperty.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "Actors.h"
#include "Isolines.h"

namespace qelhost {
namespace {

constexpr double kSharpCosine = 0.766044443118978;  // 40 degrees
constexpr int kIsolineCount = 10;
constexpr double kGhostOpacity = 0.35;  ///< of zones that add-ons draw with
constexpr double kScatterSize = 4.0;

bool IsLayerShown(const Frame& frame, const FieldMap& map, Layer layer) {
  const auto place = static_cast<std::size_t>(layer);
  return frame.styles.layerActive[place] && map.layers[place].show;
}

const LayerStyle& StyleOf(const FieldMap& map, Layer layer) {
  return map.layers[static_cast<std::size_t>(layer)];
}

void SetColour(vtkActor* actor, const Colour& colour) {
  actor->GetProperty()->SetColor(colour[0], colour[1], colour[2]);
}

/// A line's thickness is given in percent of the frame.
float Pixels(const DrawingLook& look, double percent) {
  return static_cast<float>(std::max(look.scale, percent * look.height / 100.0));
}

std::array<double, 3> MiddleOf(DataSet& data, LgIndex_t zoneNum) {
  std::array<double, 3> middle{};
  for (std::size_t axis = 0; axis < middle.size(); ++axis) {
    const Range range = data.ZoneRange(zoneNum, data.CoordinateVariable("XYZ"[axis]));
    middle[axis] = range.hasValues ? 0.5 * range.min + 0.5 * range.max : 0.0;
    if (!std::isfinite(middle[axis])) middle[axis] = 0.0;
  }
  return middle;
}

}  // namespace

ValuesStamp ValuesStamp::Of(const DataSet& data, LgIndex_t zone, LgIndex_t variable) {
  const Field* const field = data.FindField(zone, variable);
  if (field == nullptr) return {nullptr, 0, 0};
  return {field->storage, data.ZoneWrites(zone, variable).writes, variable};
}

ZoneDrawing::~ZoneDrawing() {
  for (int part = 0; part < kPartCount; ++part) DropPart(static_cast<Part>(part));
}

void ZoneDrawing::Update(Frame& frame, LgIndex_t zoneNum, const DrawingLook& look) {
  m_zoneNum = zoneNum;
  m_data = frame.Data().get();
  Zone& zone = *m_data->FindZone(zoneNum);
  m_isData = zone.IsFromFile();
  const bool isNewSurface = UpdateFaces(frame, zone);
  m_look = look;
  if (UpdateColours(*m_data, look, isNewSurface)) {
    DropPart(kIsolines);
    DropPart(kScatter);
  }
  UpdateLayers(frame, frame.styles.MapOf(zoneNum));
}

bool ZoneDrawing::UpdateFaces(Frame& frame, Zone& zone) {
  DataSet& data = *m_data;
  const bool isOtherZone = m_version != zone.Version() || m_faces == nullptr;
  if (isOtherZone) {
    m_faces = MakeZoneFaces(zone);
    m_version = zone.Version();
  }
  std::array<ValuesStamp, 3> coordinates;
  for (std::size_t axis = 0; axis < coordinates.size(); ++axis) {
    coordinates[axis] = ValuesStamp::Of(data, m_zoneNum, data.CoordinateVariable("XYZ"[axis]));
  }
  const BlankedItems* const blanked = frame.Blanked(m_zoneNum);
  const bool isMaskSame = m_isMasked == (blanked != nullptr) &&
                          (blanked == nullptr || m_hidden.words == blanked->cells.words);
  if (!isOtherZone && isMaskSame && coordinates == m_coordinates) return false;
  m_isMasked = blanked != nullptr;
  m_hidden = blanked == nullptr ? ItemBits() : blanked->cells;
  m_coordinates = std::move(coordinates);
  for (int part = 0; part < kPartCount; ++part) DropPart(static_cast<Part>(part));
  m_edges.reset();
  m_surface = std::make_unique<ZoneSurface>(zone, m_faces->Shown(m_isMasked ? &m_hidden : nullptr),
                                            MiddleOf(data, m_zoneNum));
  ++m_surfaceVersion;
  return true;
}

bool ZoneDrawing::UpdateColours(DataSet& data, const DrawingLook& look, bool isNewSurface) {
  const LgIndex_t variable = m_isData ? look.variable : 0;
  ValuesStamp values = ValuesStamp::Of(data, m_zoneNum, variable);
  const bool isRangeSame = m_range.min == look.range.min && m_range.max == look.range.max;
  if (!isNewSurface && values == m_values && isRangeSame) return false;
  const QelFieldData* const field = variable > 0 ? data.Readable(m_zoneNum, variable) : nullptr;
  const QelValueLocation_e location =
      field == nullptr ? ValueLocation_Nodal : data.FindField(m_zoneNum, variable)->location;
  m_surface->Colour(field, location, look.range);
  m_values = std::move(values);
  m_range = look.range;
  return true;
}

const FaceEdges& ZoneDrawing::Edges() {
  if (m_edges == nullptr) {
    m_edges = std::make_unique<FaceEdges>(m_surface->Faces(), m_surface->PointCount());
  }
  return *m_edges;
}

void ZoneDrawing::UpdateLayers(const Frame& frame, const FieldMap& map) {
  const auto isShown = [&](Layer layer) {
    return !m_surface->IsEmpty() && IsLayerShown(frame, map, layer);
  };
  const bool isContour = m_isData && isShown(Layer::Contour);
  ShowPart(kSurface, isContour || isShown(Layer::Shade), &ZoneDrawing::MakeSurface);
  ShowPart(kMesh, isShown(Layer::Mesh), &ZoneDrawing::MakeMesh);
  ShowPart(kEdges, isShown(Layer::Edge), &ZoneDrawing::MakeEdges);
  ShowPart(kIsolines, isContour && IsColoured(), &ZoneDrawing::MakeIsolines);
  ShowPart(kScatter, m_isData && isShown(Layer::Scatter), &ZoneDrawing::MakeScatter);
  SetStyles(map);
}

void ZoneDrawing::SetStyles(const FieldMap& map) {
  const auto setLines = [&](Part part, Layer layer, bool isInk) {
    vtkActor* const actor = m_parts[part];
    if (actor == nullptr) return;
    const LayerStyle& style = StyleOf(map, layer);
    SetColour(actor, isInk ? kInk : IndexedColour(style.color));
    actor->GetProperty()->SetLineWidth(Pixels(m_look, style.lineThickness));
  };
  setLines(kMesh, Layer::Mesh, false);
  setLines(kEdges, Layer::Edge, m_isData);
  setLines(kIsolines, Layer::Contour, true);
  if (vtkActor* const surface = m_parts[kSurface]) {
    SetColour(surface, m_isData ? kGrey : IndexedColour(StyleOf(map, Layer::Shade).color));
    surface->GetProperty()->SetOpacity(m_isData ? 1.0 : kGhostOpacity);
    // A flat plot shows the colours themselves.
    surface->GetProperty()->SetLighting(m_look.isLit);
  }
  if (vtkActor* const scatter = m_parts[kScatter]) {
    SetColour(scatter, kInk);
    scatter->GetProperty()->SetPointSize(static_cast<float>(kScatterSize * m_look.scale));
  }
  for (const Part part : {kSurface, kScatter}) {
    if (m_parts[part] == nullptr) continue;
    m_parts[part]->GetMapper()->SetScalarVisibility(IsColoured());
    m_parts[part]->GetMapper()->SetLookupTable(m_look.colours);
  }
}

void ZoneDrawing::ShowPart(Part part, bool isShown, MakeActor make) {
  if (!isShown) {
    DropPart(part);
  } else if (m_parts[part] == nullptr) {
    m_parts[part] = (this->*make)();
    const auto& [x, y, z] = m_surface->Middle();
    m_parts[part]->SetPosition(x, y, z);
    m_renderer->AddActor(m_parts[part]);
  }
}

void ZoneDrawing::DropPart(Part part) {
  if (m_parts[part] == nullptr) return;
  m_renderer->RemoveActor(m_parts[part]);
  m_parts[part] = nullptr;
}

vtkSmartPointer<vtkActor> ZoneDrawing::MakeSurface() {
  return MakeFacesActor(m_surface->Surface());
}

vtkSmartPointer<vtkActor> ZoneDrawing::MakeMesh() {
  return MakeLinesActor(m_surface->Part(m_surface->Faces()));
}

vtkSmartPointer<vtkActor> ZoneDrawing::MakeEdges() {
  const EdgeList ends =
      SharpEdges(m_surface->Faces(), Edges(), m_surface->Coordinates(), kSharpCosine);
  return MakeLinesActor(m_surface->Lines(ends));
}

vtkSmartPointer<vtkActor> ZoneDrawing::MakeIsolines() {
  std::vector<float> levels;
  for (int n = 1; n <= kIsolineCount; ++n) {
    levels.push_back(static_cast<float>(n) / (kIsolineCount + 1));
  }
  return MakeLinesActor(IsolinesOf(*m_surface, PlacesAtPoints(), levels));
}

vtkSmartPointer<vtkActor> ZoneDrawing::MakeScatter() {
  const vtkSmartPointer<vtkPolyData> cloud = m_surface->PointCloud();
  const std::vector<float> places = PlacesAtPoints();
  if (!places.empty()) {
    vtkNew<vtkFloatArray> scalars;
    scalars->SetName(kColours);
    scalars->SetNumberOfValues(static_cast<vtkIdType>(places.size()));
    std::copy(places.begin(), places.end(), scalars->GetPointer(0));
    cloud->GetPointData()->SetScalars(scalars);
  }
  return MakePointsActor(cloud);
}

std::vector<float> ZoneDrawing::PlacesAtPoints() {
  if (!IsColoured()) return {};
  const QelFieldData* const field = m_data->ReadableAtNodes(m_zoneNum, m_look.variable);
  std::vector<float> places(static_cast<std::size_t>(m_surface->PointCount()));
  for (std::size_t point = 0; point < places.size(); ++point) {
    const std::int32_t node = m_surface->NodeOf(static_cast<std::int64_t>(point));
    places[point] = m_look.range.PlaceOf(field->get(field, node));
  }
  return places;
}

}  // namespace qelhost
