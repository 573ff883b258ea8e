#include "ZoneDrawing.h"

#include <vtkCellArray.h>
#include <vtkMapper.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkProperty.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numeric>
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

/// Never the same number twice.
std::int64_t NextSurfaceVersion() {
  static std::int64_t last = 0;
  return ++last;
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

bool ZoneDrawing::IsSeen() const {
  return std::any_of(m_parts.begin(), m_parts.end(),
                     [](const auto& actor) { return actor != nullptr; });
}

void ZoneDrawing::SetRough(const std::optional<RoughDetail>& detail) {
  m_isRough = detail.has_value();
  if (!m_isRough || *detail == m_detail) return;
  DropRough();
  m_detail = *detail;
}

void ZoneDrawing::Update(Frame& frame, LgIndex_t zoneNum, const DrawingLook& look) {
  m_zoneNum = zoneNum;
  m_data = frame.Data().get();
  Zone& zone = *m_data->FindZone(zoneNum);
  m_isData = zone.IsFromFile();
  const bool isNewSurface = UpdateFaces(frame, zone);
  m_look = look;
  if (UpdateColours(isNewSurface)) {
    DropPart(kIsolines);
    DropPart(kScatter);
  }
  if (m_isRough && m_rough == nullptr) {
    m_rough =
        std::make_unique<ZoneSurface>(zone, RoughFaces(*m_surface, m_detail), m_surface->Middle());
    m_roughVersion = NextSurfaceVersion();
    ColourSurface(*m_rough);
  }
  UpdateLayers(frame, frame.styles.MapOf(zoneNum));
}

bool ZoneDrawing::UpdateFaces(Frame& frame, Zone& zone) {
  const bool isOtherZone = m_version != zone.Version();
  std::array<ValuesStamp, 3> coordinates;
  for (std::size_t axis = 0; axis < coordinates.size(); ++axis) {
    coordinates[axis] =
        ValuesStamp::Of(*m_data, m_zoneNum, m_data->CoordinateVariable("XYZ"[axis]));
  }
  const BlankedItems* const blanked = frame.Blanked(m_zoneNum);
  const bool isMaskSame = m_isMasked == (blanked != nullptr) &&
                          (blanked == nullptr || m_hidden.words == blanked->cells.words);
  if (!isOtherZone && isMaskSame && coordinates == m_coordinates) return false;
  if (isOtherZone) m_faces = MakeZoneFaces(zone);
  // What can fail comes first: then everything is as before, and is tried again.
  auto surface = std::make_unique<ZoneSurface>(
      zone, m_faces->Shown(blanked == nullptr ? nullptr : &blanked->cells),
      MiddleOf(*m_data, m_zoneNum));
  for (int part = 0; part < kPartCount; ++part) DropPart(static_cast<Part>(part));
  DropRough();
  m_edges.reset();
  m_surface = std::move(surface);
  m_surfaceVersion = NextSurfaceVersion();
  m_version = zone.Version();
  m_isMasked = blanked != nullptr;
  m_hidden = blanked == nullptr ? ItemBits() : blanked->cells;
  m_coordinates = std::move(coordinates);
  return true;
}

bool ZoneDrawing::UpdateColours(bool isNewSurface) {
  const LgIndex_t variable = IsColoured() ? m_look.variable : 0;
  ValuesStamp values = ValuesStamp::Of(*m_data, m_zoneNum, variable);
  const bool isRangeSame = m_range.min == m_look.range.min && m_range.max == m_look.range.max;
  if (!isNewSurface && values == m_values && isRangeSame) return false;
  m_values = {};  // until they are there
  ColourSurface(*m_surface);
  if (m_rough != nullptr) ColourSurface(*m_rough);
  m_values = std::move(values);
  m_range = m_look.range;
  return true;
}

void ZoneDrawing::ColourSurface(ZoneSurface& surface) const {
  const QelFieldData* const field =
      IsColoured() ? m_data->Readable(m_zoneNum, m_look.variable) : nullptr;
  const QelValueLocation_e location = field == nullptr
                                          ? ValueLocation_Nodal
                                          : m_data->FindField(m_zoneNum, m_look.variable)->location;
  surface.Colour(field, location, m_look.range);
}

void ZoneDrawing::AppendActors(std::vector<vtkProp*>& actors) const {
  for (std::size_t part = 0; part < kPartCount; ++part) {
    for (vtkActor* const actor : {m_parts[part].Get(), m_roughParts[part].Get()}) {
      if (actor != nullptr) actors.push_back(actor);
    }
  }
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

void ZoneDrawing::SetLineStyle(vtkActor* actor, const LayerStyle& style, bool isInk) const {
  if (actor == nullptr) return;
  SetColour(actor, isInk ? kInk : IndexedColour(style.color));
  actor->GetProperty()->SetLineWidth(Pixels(m_look, style.lineThickness));
}

void ZoneDrawing::SetStyles(const FieldMap& map) {
  SetLineStyle(m_parts[kEdges], StyleOf(map, Layer::Edge), m_isData);
  SetLineStyle(m_parts[kIsolines], StyleOf(map, Layer::Contour), true);
  for (const auto* parts : {&m_parts, &m_roughParts}) {
    SetLineStyle((*parts)[kMesh], StyleOf(map, Layer::Mesh), false);
    if (vtkActor* const surface = (*parts)[kSurface]) {
      SetColour(surface, m_isData ? kGrey : IndexedColour(StyleOf(map, Layer::Shade).color));
      surface->GetProperty()->SetOpacity(m_isData ? 1.0 : kGhostOpacity);
      // A flat plot shows the colours themselves.
      surface->GetProperty()->SetLighting(m_look.isLit);
    }
    if (vtkActor* const scatter = (*parts)[kScatter]) {
      SetColour(scatter, kInk);
      scatter->GetProperty()->SetPointSize(static_cast<float>(kScatterSize * m_look.scale));
    }
    for (const Part part : {kSurface, kScatter}) {
      if ((*parts)[part] == nullptr) continue;
      (*parts)[part]->GetMapper()->SetScalarVisibility(IsColoured());
      (*parts)[part]->GetMapper()->SetLookupTable(m_look.colours);
    }
  }
}

void ZoneDrawing::ShowPart(Part part, bool isShown, MakeActor make) {
  if (!isShown) {
    DropPart(part);
    return;
  }
  Show(m_parts[part], *m_surface, make);
  const bool canBeRough =
      std::find(std::begin(kRoughParts), std::end(kRoughParts), part) != std::end(kRoughParts);
  const bool isRough = m_isRough && canBeRough;
  m_parts[part]->SetVisibility(!isRough);
  if (isRough) Show(m_roughParts[part], *m_rough, make);
  if (m_roughParts[part] != nullptr) m_roughParts[part]->SetVisibility(isRough);
}

void ZoneDrawing::Show(vtkSmartPointer<vtkActor>& actor, const ZoneSurface& surface,
                       MakeActor make) {
  if (actor != nullptr) return;
  actor = (this->*make)(surface);
  const auto& [x, y, z] = surface.Middle();
  actor->SetPosition(x, y, z);
  m_renderer->AddActor(actor);
}

void ZoneDrawing::Drop(vtkSmartPointer<vtkActor>& actor) {
  if (actor == nullptr) return;
  m_renderer->RemoveActor(actor);
  actor = nullptr;
}

void ZoneDrawing::DropPart(Part part) {
  Drop(m_parts[part]);
  Drop(m_roughParts[part]);
}

void ZoneDrawing::DropRough() {
  for (auto& actor : m_roughParts) Drop(actor);
  m_rough.reset();
}

vtkSmartPointer<vtkActor> ZoneDrawing::MakeSurface(const ZoneSurface& surface) {
  return MakeFacesActor(surface.Surface());
}

vtkSmartPointer<vtkActor> ZoneDrawing::MakeMesh(const ZoneSurface& surface) {
  return MakeLinesActor(surface.Part(surface.Faces()));
}

vtkSmartPointer<vtkActor> ZoneDrawing::MakeEdges(const ZoneSurface& surface) {
  return MakeLinesActor(
      surface.Lines(SharpEdges(surface.Faces(), Edges(), surface.Coordinates(), kSharpCosine)));
}

vtkSmartPointer<vtkActor> ZoneDrawing::MakeIsolines(const ZoneSurface& surface) {
  std::vector<float> levels;
  for (int n = 1; n <= kIsolineCount; ++n) {
    levels.push_back(static_cast<float>(n) / (kIsolineCount + 1));
  }
  return MakeLinesActor(IsolinesOf(surface, PlacesAtPoints(surface), levels));
}

vtkSmartPointer<vtkActor> ZoneDrawing::MakeScatter(const ZoneSurface& surface) {
  std::vector<std::int32_t> all(static_cast<std::size_t>(surface.PointCount()));
  std::iota(all.begin(), all.end(), 0);
  const vtkSmartPointer<vtkPolyData> cloud = surface.PointCloud(all);
  const std::vector<float> places = PlacesAtPoints(surface);
  if (!places.empty()) {
    vtkNew<vtkFloatArray> scalars;
    scalars->SetName(kColours);
    scalars->SetNumberOfValues(static_cast<vtkIdType>(places.size()));
    std::copy(places.begin(), places.end(), scalars->GetPointer(0));
    cloud->GetPointData()->SetScalars(scalars);
  }
  return MakePointsActor(cloud);
}

std::vector<float> ZoneDrawing::PlacesAtPoints(const ZoneSurface& surface) const {
  if (!IsColoured()) return {};
  const QelFieldData* const field = m_data->ReadableAtNodes(m_zoneNum, m_look.variable);
  std::vector<float> places(static_cast<std::size_t>(surface.PointCount()));
  for (std::size_t point = 0; point < places.size(); ++point) {
    const std::int32_t node = surface.NodeOf(static_cast<std::int64_t>(point));
    places[point] = m_look.range.PlaceOf(field->get(field, node));
  }
  return places;
}

}  // namespace qelhost
