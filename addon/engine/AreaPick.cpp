#include "AreaMarking.h"
#include "CMacroEngine.h"
#include "GeometryChoice.h"
#include "HostCheck.h"
#include "HostLock.h"
#include "Selvane.h"
#include "SurfaceSearch.h"
#include "TakenItems.h"

#include "qelvane/QelUtil.h"

namespace qelvane::qelutiltools {

namespace {

/// Shows the user that work is going on, until the scope is left.
class WaitMessage {
 public:
  explicit WaitMessage(const char* message) : m_message(message) {
    QelUtilPleaseWait(m_message, TRUE);
  }
  ~WaitMessage() { QelUtilPleaseWait(m_message, FALSE); }
  WaitMessage(const WaitMessage&) = delete;
  WaitMessage& operator=(const WaitMessage&) = delete;

 private:
  const char* m_message;
};

/// Tells the host that many values are about to be asked for.
class DataLoad {
 public:
  DataLoad() { QelUtilDataLoadBegin(); }
  ~DataLoad() { QelUtilDataLoadEnd(); }
  DataLoad(const DataLoad&) = delete;
  DataLoad& operator=(const DataLoad&) = delete;
};

}  // namespace

bool Selvane::ApplyArea(bool undo) {
  const HostLock lock;
  const QelPlotType_e plotType = QelUtilFrameGetPlotType();
  if (CPickBoundary3d* const boundary = Boundary3d()) return ApplyInBoundary3d(*boundary);
  if (m_pickKind == PickKind::Element) return false;

  const GeometryChoice choice = undo ? ChooseUndoGeometry(m_undoGeometry) : ChooseGeometry();
  if (choice.fault != GeometryFault::None) {
    ShowGeometryFault(choice.fault);
    return false;
  }
  const bool usePaperCoords = plotType == PlotType_Cartesian2D;
  if (!m_polyBoundary.SetFromGeometry(choice.geometry, usePaperCoords)) return false;

  ApplyForPlotType(plotType);
  m_polyBoundary.RecordAsMacro();
  if (undo) {
    DiscardUndo();
  } else {
    m_undoGeometry = choice.geometry;
  }
  return true;
}

bool Selvane::ApplyAreaFromMacro() {
  const HostLock lock;
  if (const CPickBoundary3d* const boundary = Boundary3d()) {
    if (Apply3d(*boundary)) return true;
    MacroEngine.SetError("3D pick boundary not defined for ALTER/BLANK AREA command");
    return false;
  }
  if (m_pickKind == PickKind::None || m_pickKind == PickKind::Element) return true;
  if (!m_polyBoundary.IsDefined()) {
    MacroEngine.SetError("Pick boundary not properly defined for ALTER/BLANK AREA command");
    return false;
  }
  if (!ApplyForPlotType(QelUtilFrameGetPlotType())) {
    MacroEngine.SetError("Frame is not in Cartesian mode for ALTER/BLANK AREA command");
    return false;
  }
  return true;
}

CPickBoundary3d* Selvane::Boundary3d() {
  switch (m_pickKind) {
    case PickKind::Cube:
      return &m_cube;
    case PickKind::Sphere:
      return &m_sphere;
    default:
      return nullptr;
  }
}

bool Selvane::ApplyInBoundary3d(CPickBoundary3d& boundary) {
  boundary.Update();
  if (!Apply3d(boundary)) return false;
  boundary.RecordAsMacro();
  return true;
}

bool Selvane::Apply3d(const CPickBoundary3d& boundary) {
  if (!boundary.IsGeometryValid() || QelUtilFrameGetPlotType() != PlotType_Cartesian3D) {
    return false;
  }
  const HostLock lock;
  const WaitMessage wait("Applying changes...");
  const DataLoad load;
  return ApplyToZones(FillerOf(boundary));
}

/// Applies the polygon boundary as the plot shows it. False for a plot that is not Cartesian, and
/// for a surface pick whose seed is not on the surface.
bool Selvane::ApplyForPlotType(QelPlotType_e plotType) {
  const std::optional<InsideFiller> fillInside = FillerOf(m_polyBoundary, plotType);
  return fillInside && ApplyToZones(*fillInside);
}

bool Selvane::ApplyToZones(const InsideFiller& fillInside) {
  const std::vector<LgIndex_t> zones = ZonesToChange();
  // All of them before the first write, so that no zone sees another's change.
  UnshareTargets(zones);

  const HostServices services = AskHostServices();
  const ProgressReport progress(services);
  bool areApplied = true;
  std::size_t doneCount = 0;
  for (const LgIndex_t zone : zones) {
    areApplied = ApplyToZone(zone, fillInside, services) && areApplied;
    progress.Done(++doneCount, zones.size());
  }
  return areApplied;
}

toolbox::Set Selvane::RelevantZones() {
  const double solutionTime = QelUtilSolutionTimeGetCurrent();
  QelSet* relevantZones = nullptr;
  HOST_CHECK(QelUtilZoneGetRelevant(solutionTime, FALSE, &relevantZones));
  return toolbox::Set(relevantZones);
}

std::vector<LgIndex_t> Selvane::ZonesToChange() {
  if (m_isSurfaceOnly) return {m_seed.zone};
  const CPickBoundary3d* const boundary = Boundary3d();
  const toolbox::Set relevantZones = RelevantZones();
  const LgIndex_t boundaryZone = boundary == nullptr ? 0 : boundary->GetZoneNum();

  std::vector<LgIndex_t> zones;
  for (const SetIndex_t member : relevantZones) {
    const auto zone = static_cast<LgIndex_t>(member);
    if (zone != boundaryZone && QelUtilZoneIsActive(zone)) zones.push_back(zone);
  }
  return zones;
}

void Selvane::UnshareTargets(const std::vector<LgIndex_t>& zones) const {
  for (const LgIndex_t zone : zones) UnshareTarget(zone);
}

/// False when a surface pick's seed is not on the zone's surface; nothing is changed then.
bool Selvane::ApplyToZone(LgIndex_t zone, const InsideFiller& fillInside,
                          const HostServices& services) {
  const ZoneSize size = SizeOfZone(zone);
  if (size.nodeCount < 1 || size.cellCount < 1) return !m_isSurfaceOnly;
  const std::optional<FieldWriter> writer = OpenForWriting(zone, OnNoReference::Throw);
  if (!writer) return true;

  return DecideInZone({zone, writer->isCellCentred, size.nodeCount}, fillInside, services,
                      [&](const TakenItems& taken) {
                        const std::int64_t writtenCount =
                            AlterTaken(*writer, m_lastApplied, taken, services);
                        FinishZone(*writer, writtenCount);
                        ProgressReport(services).Changed(*writer, writtenCount);
                      });
}

/// Decides what the pick takes and hands it over while it is valid. False, without doing so, when a
/// surface pick's seed is not on the zone's surface.
bool Selvane::DecideInZone(const ZoneTarget& target, const InsideFiller& fillInside,
                           const HostServices& services,
                           const std::function<void(const TakenItems& taken)>& use) const {
  const LgIndex_t zone = target.zone;
  InsideSet inside(target.nodeCount);
  fillInside(zone, services, inside);
  if (m_isSurfaceOnly && !SearchSurface(zone, m_seed.node, inside)) return false;

  const bool skipBlanked = !m_isBlankMode && QelUtilBlankingIsActive();
  use(target.isCellCentred ? TakenCells(zone, m_pickRule, inside, skipBlanked, services)
                           : TakenNodes(zone, m_pickRule, inside, skipBlanked, services));
  return true;
}

}  // namespace qelvane::qelutiltools
