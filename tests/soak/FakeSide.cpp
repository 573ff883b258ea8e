#include "FakeSide.h"

#include "FakeHost.h"
#include "HostCommand.h"

#include <algorithm>
#include <stdexcept>

extern "C" void InitQelAddOn113(void);

namespace soak {

using fakehost::FakeHost;
using fakehost::Host;
using fakehost::Mesh;

namespace {

Mesh MeshOf(const ZoneCopy& zone, const std::vector<FieldCopy>& fields) {
  Mesh mesh;
  mesh.type = zone.type;
  const std::size_t nodeCount = fields.front().values.size();
  for (std::size_t n = 0; n < nodeCount; ++n) {
    mesh.points.push_back({fields[0].values[n], fields[1].values[n], fields[2].values[n]});
  }
  if (zone.type == ZoneType_Ordered) mesh.ijk = zone.ijk;
  const auto corners = static_cast<std::size_t>(zone.ijk[2]);
  for (std::size_t first = 0; first < zone.nodes.size(); first += corners) {
    mesh.elements.push_back(zone.nodes.data() + first, corners);
  }
  for (const FaceCopy& face : zone.faces) mesh.faces.push_back({face.nodes, face.left, face.right});
  if (mesh.IsFaceBased()) mesh.faceBasedElementCount = zone.ijk[1];
  return mesh;
}

void AddZone(const ZoneCopy& copy, const std::vector<FieldCopy>& fields) {
  const auto type = [&](std::size_t axis) { return fakehost::StoredTypeOf(fields[axis].type); };
  const LgIndex_t number = Host().AddZone(MeshOf(copy, fields), {type(0), type(1), type(2)});
  Host().ZoneAt(number)->name = copy.name;
}

/// The first zone that has values says of what type they are.
const FieldCopy& FieldWithValues(const Copy& copy, std::size_t var) {
  for (const std::vector<FieldCopy>& fields : copy.fields) {
    if (!fields[var].isPassive) return fields[var];
  }
  throw std::runtime_error("no zone has " + copy.variables[var]);
}

void AddVariable(const Copy& copy, std::size_t var) {
  const FieldCopy& field = FieldWithValues(copy, var);
  const LgIndex_t number = Host().AddVariable(
      copy.variables[var], field.location, fakehost::StoredTypeOf(field.type),
      [&](LgIndex_t zone, LgIndex_t index) {
        const FieldCopy& here = copy.fields[static_cast<std::size_t>(zone - 1)][var];
        return here.isPassive ? 0.0 : here.values[static_cast<std::size_t>(index - 1)];
      });
  for (std::size_t zone = 0; zone < copy.fields.size(); ++zone) {
    const FieldCopy& here = copy.fields[zone][var];
    const auto zoneNumber = static_cast<LgIndex_t>(zone + 1);
    if (here.isPassive) Host().MakePassive(zoneNumber, number);
    if (here.sharedWith != 0) Host().Share(here.sharedWith, zoneNumber, number);
  }
}

FieldCopy FieldOf(LgIndex_t zone, LgIndex_t var) {
  const fakehost::Values& values = *Host().ValuesAt(zone, var);
  FieldCopy copy;
  copy.location = values.location;
  copy.isPassive = values.storage == nullptr;
  copy.values = Host().ValuesOf(zone, var);
  return copy;
}

using IsHidden = bool (FakeHost::*)(LgIndex_t zone, LgIndex_t item);

std::vector<bool> Hidden(LgIndex_t zone, LgIndex_t count, IsHidden isHidden) {
  std::vector<bool> hidden;
  for (LgIndex_t item = 1; item <= count; ++item) hidden.push_back((Host().*isHidden)(zone, item));
  return hidden;
}

/// A host with nothing in it, to which the add-on stays as it was loaded: a host that loads it anew
/// would know it once more each time.
void StartAnew() {
  const auto macroCallbacks = Host().macroCallbacks;
  const auto stateCallbacks = Host().stateCallbacks;
  Host().Reset();
  Host().keepsCalls = false;
  Host().isBatch = true;
  Host().macroCallbacks = macroCallbacks;
  Host().stateCallbacks = stateCallbacks;
}

}  // namespace

FakeSide::FakeSide() {
  StartAnew();
  InitQelAddOn113();
}

void FakeSide::Begin(const Copy& copy, const std::string& services,
                     const std::vector<LgIndex_t>& relevantZones) {
  const auto [offered, variant] = fakehost::ServicesNamed(services);
  Host().OfferExtensions(offered, variant);
  fakehost::Frame& frame = Host().AddFrame(copy.plotType);
  frame.view.origin = {copy.viewOrigin[0], copy.viewOrigin[1], copy.viewOrigin[2]};
  for (std::size_t zone = 0; zone < copy.zones.size(); ++zone) {
    AddZone(copy.zones[zone], copy.fields[zone]);
  }
  constexpr std::size_t kCoordinates = 3;
  for (std::size_t var = kCoordinates; var < copy.variables.size(); ++var) AddVariable(copy, var);
  m_zoneCount = copy.zones.size();
  MakeRelevant(relevantZones);
}

void FakeSide::MakeRelevant(const std::vector<LgIndex_t>& zones) const {
  for (std::size_t n = 1; n <= m_zoneCount; ++n) {
    const auto number = static_cast<LgIndex_t>(n);
    const bool isRelevant = std::find(zones.begin(), zones.end(), number) != zones.end();
    fakehost::Zone& zone = *Host().ZoneAt(number);
    zone.strand = number;
    zone.solutionTime = Host().solutionTime + (isRelevant ? 0.0 : 1.0);
  }
}

Outcome FakeSide::Play(const std::string& line, const std::vector<LgIndex_t>& relevantZones) {
  if (line.rfind("$!", 0) == 0) {
    const bool isDone = CarryOut(line);
    MakeRelevant(relevantZones);
    Host().RunIdleQueue();
    return Look(isDone, {});
  }
  const std::size_t blank = line.find(' ');
  const fakehost::PlayResult result =
      Host().Play(blank == std::string::npos ? std::string() : line.substr(blank + 1));
  Host().RunIdleQueue();
  return Look(result.isDone, result.error);
}

Outcome FakeSide::Look(bool isDone, const std::string& error) const {
  const fakehost::DataSet& data = *Host().ActiveData();
  Outcome outcome;
  outcome.isDone = isDone;
  outcome.error = error;
  outcome.variables = data.varNames;
  if (!Host().Misuse().empty()) outcome.misuse = Host().Misuse().front();
  const bool isBlanking = Host().ActiveFrame().blanking.include;
  for (std::size_t zone = 0; zone < data.zones.size(); ++zone) {
    outcome.zones.push_back(data.zones[zone].name);
    if (zone >= m_zoneCount) continue;
    const auto number = static_cast<LgIndex_t>(zone + 1);
    std::vector<FieldCopy>& fields = outcome.fields.emplace_back();
    for (std::size_t var = 1; var <= data.varNames.size(); ++var) {
      fields.push_back(FieldOf(number, static_cast<LgIndex_t>(var)));
    }
    if (!isBlanking) continue;
    const Mesh& mesh = data.zones[zone].mesh;
    outcome.hiddenCells.push_back(Hidden(number, mesh.CellCount(), &FakeHost::IsBlankedCell));
    outcome.hiddenNodes.push_back(Hidden(number, mesh.NodeCount(), &FakeHost::IsBlankedNode));
  }
  return outcome;
}

std::vector<std::string> FakeSide::End() {
  Host().Deliver(StateChange_NewLayout);
  Host().RunIdleQueue();
  std::vector<std::string> complaints = Host().Misuse();
  for (const std::string& leak : Host().Leaks()) complaints.push_back("left over: " + leak);
  if (Host().LockDepth() != 0) complaints.emplace_back("a lock was left open");
  if (Host().HasDamagedGaps()) complaints.emplace_back("something was written between values");
  // What was handed out is dropped now, so that what is in use can be compared.
  StartAnew();
  return complaints;
}

}  // namespace soak
