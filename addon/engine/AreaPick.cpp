#include "CMacroEngine.h"
#include "CornerRule.h"
#include "GeometryChoice.h"
#include "HostCheck.h"
#include "HostLock.h"
#include "Selvane.h"
#include "TakenItems.h"

#include "qelvane/QelUtil.h"
#include "qelvane/toolbox/Set.h"

namespace qelvane::qelutiltools {

namespace {

/// One coordinate of a zone's nodes, read through the host's accessor.
class NodeCoordinate {
 public:
  NodeCoordinate(LgIndex_t zoneNum, LgIndex_t varNum) {
    if (QelUtilDataValueIsPassive(zoneNum, varNum)) return;
    HOST_CHECK(m_field = QelUtilDataValueGetReadableNLRef(zoneNum, varNum));
    HOST_CHECK(m_get = QelUtilDataValueRefGetGetFunc(m_field));
  }

  /// The node counts from 0; a passive coordinate is 0 everywhere.
  double At(std::int64_t node) const {
    return m_get == nullptr ? 0.0 : m_get(m_field, static_cast<LgIndex_t>(node));
  }

 private:
  const QelFieldData* m_field = nullptr;
  QelFieldGet_pf m_get = nullptr;
};

template <class IsInside>
void MarkNodes(InsideSet& inside, IsInside&& isInside) {
  const std::int64_t nodeCount = inside.NodeCount();
  for (std::int64_t word = 0; word < InsideSet::WordCount(nodeCount); ++word) {
    inside.SetWord(word, WordOf(word, nodeCount, isInside));
  }
}

/// Inside as seen in a 2D frame. A circle is round on paper, where its own numbers live.
void MarkPlanar(const CPolyBoundary& boundary, LgIndex_t zone, LgIndex_t xVar, LgIndex_t yVar,
                InsideSet& inside) {
  const NodeCoordinate xs(zone, xVar);
  const NodeCoordinate ys(zone, yVar);
  if (boundary.IsCircle()) {
    MarkNodes(inside, [&](std::int64_t node) {
      return boundary.IsInside(QelUtilConvertXPosition(CoordSys_Grid, CoordSys_Paper, xs.At(node)),
                               QelUtilConvertYPosition(CoordSys_Grid, CoordSys_Paper, ys.At(node)));
    });
  } else {
    MarkNodes(inside,
              [&](std::int64_t node) { return boundary.IsInside(xs.At(node), ys.At(node)); });
  }
}

/// Inside as seen in a 3D frame: each node is projected into the plane of the geometries.
void MarkProjected(const CPolyBoundary& boundary, LgIndex_t zone, LgIndex_t xVar, LgIndex_t yVar,
                   LgIndex_t zVar, InsideSet& inside) {
  const NodeCoordinate xs(zone, xVar);
  const NodeCoordinate ys(zone, yVar);
  const NodeCoordinate zs(zone, zVar);
  MarkNodes(inside, [&](std::int64_t node) {
    double gridX = 0.0;
    double gridY = 0.0;
    double gridZ = 0.0;
    QelUtilConvert3DPositionToGrid(xs.At(node), ys.At(node), zs.At(node), &gridX, &gridY, &gridZ);
    return boundary.IsInside(gridX, gridY);
  });
}

}  // namespace

bool Selvane::ApplyArea(bool undo) {
  const HostLock lock;
  const QelPlotType_e plotType = QelUtilFrameGetPlotType();
  if (m_pickKind == PickKind::Cube || m_pickKind == PickKind::Sphere ||
      m_pickKind == PickKind::Element) {
    return false;
  }
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
  switch (m_pickKind) {
    case PickKind::None:
    case PickKind::Element:
      return true;
    case PickKind::Cube:
    case PickKind::Sphere:
      MacroEngine.SetError("3D pick boundary not defined for ALTER/BLANK AREA command");
      return false;
    default:
      break;
  }
  if (!m_polyBoundary.IsDefined()) {
    MacroEngine.SetError("Pick boundary not properly defined for ALTER/BLANK AREA command");
    return false;
  }
  const QelPlotType_e plotType = QelUtilFrameGetPlotType();
  if (plotType != PlotType_Cartesian3D && plotType != PlotType_Cartesian2D) {
    MacroEngine.SetError("Frame is not in Cartesian mode for ALTER/BLANK AREA command");
    return false;
  }
  ApplyForPlotType(plotType);
  return true;
}

void Selvane::ApplyForPlotType(QelPlotType_e plotType) {
  const LgIndex_t xVar = QelUtilVarGetNumByAssignment('X');
  const LgIndex_t yVar = QelUtilVarGetNumByAssignment('Y');
  if (plotType == PlotType_Cartesian2D) {
    ApplyToZones([&](LgIndex_t zone, InsideSet& inside) {
      MarkPlanar(m_polyBoundary, zone, xVar, yVar, inside);
    });
  } else if (plotType == PlotType_Cartesian3D) {
    const LgIndex_t zVar = QelUtilVarGetNumByAssignment('Z');
    HOST_CHECK(QelUtilSetupTransformations());
    ApplyToZones([&](LgIndex_t zone, InsideSet& inside) {
      MarkProjected(m_polyBoundary, zone, xVar, yVar, zVar, inside);
    });
  }
}

void Selvane::ApplyToZones(const InsideFiller& fillInside) {
  const std::vector<LgIndex_t> zones = ZonesToChange();
  // All of them before the first write, so that no zone sees another's change.
  for (const LgIndex_t zone : zones) UnshareTarget(zone);

  const ProgressReport progress;
  std::size_t doneCount = 0;
  for (const LgIndex_t zone : zones) {
    ApplyToZone(zone, fillInside, progress);
    progress.Done(++doneCount, zones.size());
  }
}

std::vector<LgIndex_t> Selvane::ZonesToChange() const {
  if (m_isSurfaceOnly) return {m_seedZone};
  const double solutionTime = QelUtilSolutionTimeGetCurrent();
  QelSet* relevantZones = nullptr;
  HOST_CHECK(QelUtilZoneGetRelevant(solutionTime, FALSE, &relevantZones));
  const toolbox::Set ownedZones(relevantZones);

  std::vector<LgIndex_t> zones;
  for (const SetIndex_t member : ownedZones) {
    const auto zone = static_cast<LgIndex_t>(member);
    if (QelUtilZoneIsActive(zone)) zones.push_back(zone);
  }
  return zones;
}

void Selvane::ApplyToZone(LgIndex_t zone, const InsideFiller& fillInside,
                          const ProgressReport& progress) {
  const ZoneSize size = SizeOfZone(zone);
  if (size.nodeCount < 1 || size.cellCount < 1) return;
  const std::optional<FieldWriter> writer = OpenForWriting(zone, OnNoReference::Throw);
  if (!writer) return;

  InsideSet inside(size.nodeCount);
  fillInside(zone, inside);
  const bool skipBlanked = !m_isBlankMode && QelUtilBlankingIsActive();
  const TakenItems taken = writer->isCellCentred
                               ? TakenCells(zone, m_pickRule, inside, skipBlanked)
                               : TakenNodes(zone, m_pickRule, inside, skipBlanked);
  const std::int64_t writtenCount = AlterTaken(*writer, m_lastApplied, taken);
  FinishZone(*writer, writtenCount);
  progress.Changed(*writer, writtenCount);
}

}  // namespace qelvane::qelutiltools
