// The add-on in a small world of the host in memory.
#pragma once

#include "FakeHost.h"
#include "Input.h"

extern "C" void InitQelAddOn113(void);

/// Two zones that share a variable, made as the input says, and the add-on loaded. The variables
/// are "n" at nodes, "c" at cells and "s" at nodes of a small integer type.
inline void MakeWorld(Input& input) {
  using namespace fakehost;
  static constexpr QelZoneType_e kTypes[] = {
      ZoneType_Ordered, ZoneType_FETriangle, ZoneType_FEQuad,    ZoneType_FETetra,
      ZoneType_FEBrick, ZoneType_FELineSeg,  ZoneType_FEPolygon, ZoneType_FEPolyhedron};
  static constexpr Service kServices[] = {Service::Bulk,         Service::Parallel,
                                          Service::Progress,     Service::PickQuery,
                                          Service::ShapeHandles, Service::History};
  FakeHost& host = Host();
  host.Reset();
  host.keepsCalls = false;
  const auto offered = input.Take<std::uint8_t>();
  for (int n = 0; n < 6; ++n) {
    // Threads slow every input down and find nothing more here.
    if ((offered >> n & 1) != 0 && kServices[n] != Service::Parallel) host.OfferAlso(kServices[n]);
  }
  host.AddFrame(input.Flag() ? PlotType_Cartesian2D : PlotType_Cartesian3D);
  const QelZoneType_e type = kTypes[input.Below(8)];
  const bool isSolid = type == ZoneType_FETetra || type == ZoneType_FEBrick ||
                       type == ZoneType_FEPolyhedron || (type == ZoneType_Ordered && input.Flag());
  const bool isLine = type == ZoneType_FELineSeg;
  host.AddZone(MakeLattice(type, 2, isLine ? 0 : 2, isSolid ? 2 : 0));
  host.AddZone(MakeLattice(type, 2, isLine ? 0 : 2, isSolid ? 2 : 0), StoredType::Float);
  const auto value = [](LgIndex_t zone, LgIndex_t i) { return 10.0 * zone + i; };
  host.AddVariable("n", ValueLocation_Nodal, StoredType::Double, value);
  const LgIndex_t c = host.AddVariable("c", ValueLocation_CellCentered, StoredType::Float, value);
  host.AddVariable("s", ValueLocation_Nodal, StoredType::Byte, value);
  host.Share(1, 2, c);
  host.isRecording = input.Flag();
  host.isBatch = input.Flag();
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
