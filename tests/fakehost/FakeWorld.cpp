#include "FakeCall.h"
#include "FakeHost.h"

#include <algorithm>

namespace fakehost {

namespace {

std::int64_t CountFor(const Mesh& mesh, QelValueLocation_e location) {
  return location == ValueLocation_CellCentered ? mesh.CellCount() : mesh.NodeCount();
}

constexpr std::array<double Point::*, 3> kAxes = {&Point::x, &Point::y, &Point::z};

Values CoordinateValues(const Mesh& mesh, std::size_t axis, std::shared_ptr<Storage> storage) {
  Values values;
  values.typeWhenAllocated = storage->type;
  values.storage = std::move(storage);
  for (LgIndex_t node = 0; node < mesh.NodeCount(); ++node) {
    values.storage->Set(node, mesh.points[static_cast<std::size_t>(node)].*kAxes[axis]);
  }
  return values;
}

using Coordinates = std::shared_ptr<std::vector<unsigned char>>;

/// Room for all coordinates of a zone's nodes; null where they are not kept together.
Coordinates RoomForPoints(const SpanVariant& variant, const std::array<LgIndex_t, 3>& axisVars,
                          const std::array<StoredType, 3>& types, LgIndex_t nodeCount) {
  const bool isOneType = types[0] == types[1] && types[1] == types[2];
  const auto hasVar = [](LgIndex_t var) { return var >= 1; };
  if (!variant.hasPoints || !isOneType || !std::all_of(axisVars.begin(), axisVars.end(), hasVar)) {
    return nullptr;
  }
  return std::make_shared<std::vector<unsigned char>>(
      axisVars.size() * static_cast<std::size_t>(nodeCount) * SizeOf(types[0]));
}

}  // namespace

Frame& FakeHost::AddFrame(QelPlotType_e plotType) {
  Frame frame;
  frame.id = NewUniqueId();
  frame.plotType = plotType;
  frames.push_back(frame);
  activeFrame = frames.size() - 1;
  return frames.back();
}

void FakeHost::ActivateFrame(std::size_t index) { activeFrame = index; }

DataSet* FakeHost::ActiveData() { return HasFrame() ? ActiveFrame().dataSet.get() : nullptr; }

Zone* FakeHost::ZoneAt(LgIndex_t zone) {
  DataSet* const data = ActiveData();
  if (data == nullptr || zone < 1 || zone > static_cast<LgIndex_t>(data->zones.size())) {
    return nullptr;
  }
  return &data->zones[static_cast<std::size_t>(zone - 1)];
}

Values* FakeHost::ValuesAt(LgIndex_t zone, LgIndex_t var) {
  Zone* const found = ZoneAt(zone);
  if (found == nullptr || var < 1 || var > static_cast<LgIndex_t>(found->vars.size())) {
    return nullptr;
  }
  return &found->vars[static_cast<std::size_t>(var - 1)];
}

Zone* FakeHost::ZoneWithId(QelUniqueID_t id) {
  for (Frame& frame : frames) {
    if (frame.dataSet == nullptr) continue;
    for (Zone& zone : frame.dataSet->zones) {
      if (zone.id == id) return &zone;
    }
  }
  return nullptr;
}

LgIndex_t FakeHost::ZoneNamed(const std::string& name) {
  for (LgIndex_t zone = 1; ZoneAt(zone) != nullptr; ++zone) {
    if (ZoneAt(zone)->name == name) return zone;
  }
  return 0;
}

LgIndex_t FakeHost::AddZone(Mesh mesh, StoredType coordinateType) {
  return AddZone(std::move(mesh), {coordinateType, coordinateType, coordinateType});
}

LgIndex_t FakeHost::AddZone(Mesh mesh, const std::array<StoredType, 3>& coordinateTypes) {
  Frame& frame = ActiveFrame();
  if (frame.dataSet == nullptr) {
    frame.dataSet = std::make_shared<DataSet>();
    frame.dataSet->id = NewUniqueId();
    frame.dataSet->varNames = {"X", "Y", "Z"};
  }
  DataSet& data = *frame.dataSet;
  Zone zone;
  zone.id = NewUniqueId();
  zone.name = "zone " + std::to_string(data.zones.size() + 1);
  zone.vars.resize(data.varNames.size());
  const LgIndex_t nodeCount = mesh.NodeCount();
  const Coordinates room = RoomForPoints(spans, frame.axisVars, coordinateTypes, nodeCount);
  for (std::size_t axis = 0; axis < kAxes.size(); ++axis) {
    const LgIndex_t var = frame.axisVars[axis];
    if (var < 1 || var > static_cast<LgIndex_t>(zone.vars.size())) continue;
    const StoredType type = coordinateTypes[axis];
    auto storage =
        room == nullptr
            ? std::make_shared<Storage>(type, nodeCount, LayoutOf(spans, var))
            : std::make_shared<Storage>(type, nodeCount, static_cast<std::int64_t>(axis), room);
    zone.vars[static_cast<std::size_t>(var - 1)] = CoordinateValues(mesh, axis, storage);
  }
  zone.mesh = std::move(mesh);
  zone.mesh.elements.Keep({spans.isWide ? 8 : 4, spans.startsAtZero ? 0 : 1});
  data.zones.push_back(std::move(zone));
  return static_cast<LgIndex_t>(data.zones.size());
}

LgIndex_t FakeHost::AddVariable(const std::string& name, QelValueLocation_e location,
                                StoredType type,
                                const std::function<double(LgIndex_t, LgIndex_t)>& value) {
  DataSet& data = *ActiveData();
  data.varNames.push_back(name);
  const Layout layout = LayoutOf(spans, static_cast<LgIndex_t>(data.varNames.size()));
  for (std::size_t zone = 0; zone < data.zones.size(); ++zone) {
    Values values;
    values.location = location;
    values.typeWhenAllocated = type;
    values.storage =
        std::make_shared<Storage>(type, CountFor(data.zones[zone].mesh, location), layout);
    for (std::int64_t i = 0; i < values.storage->count; ++i) {
      values.storage->Set(i,
                          value(static_cast<LgIndex_t>(zone + 1), static_cast<LgIndex_t>(i + 1)));
    }
    data.zones[zone].vars.push_back(values);
  }
  return static_cast<LgIndex_t>(data.varNames.size());
}

void FakeHost::MakePassive(LgIndex_t zone, LgIndex_t var) { ValuesAt(zone, var)->storage.reset(); }

void FakeHost::Share(LgIndex_t owner, LgIndex_t sharer, LgIndex_t var) {
  ValuesAt(sharer, var)->storage = ValuesAt(owner, var)->storage;
}

std::vector<double> FakeHost::ValuesOf(LgIndex_t zone, LgIndex_t var) {
  const Values* const values = ValuesAt(zone, var);
  std::vector<double> result;
  if (values == nullptr || values->storage == nullptr) return result;
  for (std::int64_t i = 0; i < values->storage->count; ++i)
    result.push_back(values->storage->Get(i));
  return result;
}

QelGeomID_t FakeHost::AddGeometry(Geometry geometry) {
  geometry.id = NewUniqueId();
  ActiveFrame().geometries.push_back(geometry);
  return geometry.id;
}

void FakeHost::DeleteGeometry(QelGeomID_t id) {
  std::vector<Geometry>& all = ActiveFrame().geometries;
  all.erase(std::remove_if(all.begin(), all.end(), [id](const Geometry& g) { return g.id == id; }),
            all.end());
}

void FakeHost::SelectGeometry(QelGeomID_t id) {
  ActiveFrame().pickList.push_back({PickObject_Geom, id});
}

}  // namespace fakehost
