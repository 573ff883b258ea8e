// The add-on in a small world of the host in memory.
#pragma once

#include "FakeHost.h"
#include "Input.h"

#include <map>

extern "C" void InitQelAddOn113(void);

/// What the host shows of data by its services, if anything.
enum class Shows { AsTheInputSays, Nothing };

/// How the host keeps and shows values.
inline fakehost::SpanVariant SpansOf(unsigned bits) {
  fakehost::SpanVariant spans;
  spans.isInterleaved = (bits & 1U) != 0;
  spans.hasPoints = (bits & 2U) != 0;
  spans.isPartial = (bits & 4U) != 0;
  spans.isWide = (bits & 8U) != 0;
  spans.startsAtZero = (bits & 16U) != 0;
  spans.isBent = (bits & 32U) != 0;
  return spans;
}

/// Nodes that a zone does not have, or has at several corners, as a damaged file brings them.
inline void DamageNodes(fakehost::Mesh& mesh, unsigned seed) {
  constexpr LgIndex_t kNodes[] = {0, 1, 2, -1, 2147483647, 99};
  if (!mesh.HasNodeMap() || seed == 0) return;
  for (std::size_t element = seed % 3; element < mesh.elements.size(); element += seed) {
    mesh.elements.SetNode(element, element % mesh.elements.CornerCount(), kNodes[seed % 6]);
  }
}

/// Two zones that share a variable, made as the input says, and the add-on loaded. The variables
/// are "n" at nodes, "c" at cells and "s" at nodes of an integer type. One world in four is
/// large enough for what is done to 64 nodes at once.
///
/// services  offered besides
inline void MakeWorld(Input& input, Shows shows = Shows::AsTheInputSays,
                      const std::map<std::string, const void*>& services = {}) {
  using namespace fakehost;
  static constexpr QelZoneType_e kTypes[] = {
      ZoneType_Ordered, ZoneType_FETriangle, ZoneType_FEQuad,    ZoneType_FETetra,
      ZoneType_FEBrick, ZoneType_FELineSeg,  ZoneType_FEPolygon, ZoneType_FEPolyhedron};
  // Parallel is none of them: threads slow every input down and find nothing more here.
  static constexpr Service kServices[] = {Service::Bulk, Service::Progress, Service::PickQuery,
                                          Service::ShapeHandles, Service::History};
  static constexpr unsigned kBits[] = {1, 4, 8, 16, 32};
  FakeHost& host = Host();
  host.Reset();
  host.keepsCalls = false;
  host.extensions.insert(services.begin(), services.end());
  const unsigned offered = input.Take<std::uint8_t>();
  for (int n = 0; n < 5; ++n) {
    if (shows == Shows::Nothing && n < 2) continue;
    if ((offered & kBits[n]) != 0) host.OfferAlso(kServices[n]);
  }
  // What one bit is enough for is told by the lowest; the others say more.
  const unsigned plot = input.Take<std::uint8_t>();
  host.spans = SpansOf(plot >> 1);
  host.AddFrame((plot & 1U) != 0 ? PlotType_Cartesian2D : PlotType_Cartesian3D);
  const unsigned kind = input.Take<std::uint8_t>();
  const QelZoneType_e type = kTypes[kind % 8];
  const bool isSolid = type == ZoneType_FETetra || type == ZoneType_FEBrick ||
                       type == ZoneType_FEPolyhedron || (type == ZoneType_Ordered && input.Flag());
  const bool isLine = type == ZoneType_FELineSeg;
  const LgIndex_t cells = kind / 8 % 4 != 3 ? 2 : isLine ? 140 : isSolid ? 4 : 11;
  const unsigned recording = input.Take<std::uint8_t>();
  const unsigned batch = input.Take<std::uint8_t>();
  Mesh mesh = MakeLattice(type, cells, isLine ? 0 : cells, isSolid ? cells : 0);
  host.AddZone(mesh);
  DamageNodes(mesh, recording >> 1);
  static constexpr StoredType kPlaces[] = {StoredType::Float, StoredType::Int16, StoredType::Int32,
                                           StoredType::Int64};
  host.AddZone(mesh, kPlaces[batch / 2 % 4]);
  const auto value = [](LgIndex_t zone, LgIndex_t i) { return 10.0 * zone + i; };
  host.AddVariable("n", ValueLocation_Nodal, StoredType::Double, value);
  const LgIndex_t c = host.AddVariable("c", ValueLocation_CellCentered, StoredType::Float, value);
  static constexpr StoredType kSmall[] = {StoredType::Byte, StoredType::Int16, StoredType::Int32,
                                          StoredType::UInt16};
  host.AddVariable("s", ValueLocation_Nodal, kSmall[offered >> 6], value);
  host.Share(1, 2, c);
  host.isRecording = (recording & 1U) != 0;
  host.isBatch = (batch & 1U) != 0;
  InitQelAddOn113();
}

/// What holds between any two deeds of a user.
inline void DemandOrder() {
  fakehost::FakeHost& host = fakehost::Host();
  for (const std::string& what : host.Misuse()) std::fprintf(stderr, "misuse: %s\n", what.c_str());
  Demand(host.Misuse().empty(), "the interface is used as it is meant");
  Demand(host.LockDepth() == 0, "no lock is left open");
  Demand(host.dataLoadDepth == 0, "no data-load bracket is left open");
  Demand(host.waitMessages.empty(), "no wait message is left on show");
  Demand(!host.HasDamagedGaps(), "nothing is written between values");
}

/// Closes everything; nothing of the host's may be held then.
inline void EndWorld() {
  fakehost::FakeHost& host = fakehost::Host();
  host.Deliver(StateChange_NewLayout);
  host.RunIdleQueue();
  DemandOrder();
  for (const std::string& what : host.Leaks()) std::fprintf(stderr, "leak: %s\n", what.c_str());
  Demand(host.Leaks().empty(), "nothing is leaked");
  // What is kept longer than the run looks like a leak, and every look for one takes time.
  host.Reset();
}
