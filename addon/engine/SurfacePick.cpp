#include "SurfacePick.h"

#include "CMacroEngine.h"
#include "EntryPoint.h"
#include "GeometryChoice.h"
#include "HostCheck.h"
#include "HostLock.h"
#include "Selvane.h"
#include "SessionRegistry.h"

#include "qelvane/QelUtil.h"

namespace qelvane::qelutiltools {

namespace {

constexpr char kSeedNotOnSurface[] =
    "The seed point must be inside the pick geometry\n and on a boundary surface.\n\nNote that a "
    "face may be visible but not necessarily\n on a boundary surface.  This happens when "
    "neighboring\n cells are either blanked or in a different zone.";

/// Holds a flag up until the scope is left, also when an error passes.
class RaisedFlag {
 public:
  explicit RaisedFlag(bool& flag) : m_flag(flag) { m_flag = true; }
  ~RaisedFlag() { m_flag = false; }
  RaisedFlag(const RaisedFlag&) = delete;
  RaisedFlag& operator=(const RaisedFlag&) = delete;

 private:
  bool& m_flag;
};

bool IsSurfacePickKind(PickKind kind) {
  switch (kind) {
    case PickKind::None:
    case PickKind::Rectangle:
    case PickKind::Polygon:
    case PickKind::Circle:
      return true;
    default:
      return false;
  }
}

bool Fail(const char* reason) {
  MacroEngine.SetError("%s", reason);
  return false;
}

}  // namespace

void SelvaneSurfaceCallback(bool isNearestPoint) {
  EntryPoint("Failed to select a seed point. Please try again.", [isNearestPoint] {
    Selvane* const session = SessionRegistry::Instance().Find();
    if (session != nullptr) session->PickSurfaceByProbe(isNearestPoint);
  });
}

bool Selvane::StartSurfacePick() {
  const HostLock lock;
  const GeometryChoice choice = ChooseGeometry();
  if (choice.fault != GeometryFault::None) {
    ShowGeometryFault(choice.fault);
    return false;
  }
  HOST_CHECK(QelUtilProbeInstallCallback(SelvaneSurfaceCallback, "Ctrl + Click on the a seed cell inside the boundary"));
  return true;
}

void Selvane::PickSurfaceByProbe(bool isSeed) {
  const HostLock lock;
  if (!isSeed) {
    QelUtilDialogErrMsg("You must use Ctrl + Click to select a single seed point.");
    return;
  }
  // A click beside the plot is no seed; the user may try again.
  if (QelUtilProbeFieldGetZone() < 1) return;
  HOST_CHECK(QelUtilMouseSetMode(MouseButtonMode_Select));
  m_seed.node = QelUtilProbeGetPointIndex();
  m_seed.zone = QelUtilProbeFieldGetZone();
  if (ApplySurface(false)) RecordSurface();
}

bool Selvane::ApplySurface(bool undo) {
  const HostLock lock;
  const RaisedFlag surfaceOnly(m_isSurfaceOnly);
  if (!IsSurfacePickKind(m_pickKind)) return true;
  const GeometryChoice choice = undo ? ChooseUndoGeometry(m_undoGeometry) : ChooseGeometry();
  if (choice.fault != GeometryFault::None) {
    ShowGeometryFault(choice.fault);
    return false;
  }
  return ApplySurfaceInGeometry(choice.geometry, undo);
}

bool Selvane::ApplySurfaceInGeometry(QelGeomID_t geometry, bool undo) {
  const QelPlotType_e plotType = QelUtilFrameGetPlotType();
  const bool usePaperCoords = plotType == PlotType_Cartesian2D;
  if (!m_polyBoundary.SetFromGeometry(geometry, usePaperCoords)) return false;

  m_polyBoundary.RecordAsMacro();
  const bool isApplied = ApplyForPlotType(plotType);
  if (undo) {
    DiscardUndo();
  } else if (isApplied) {
    // A refused seed changed nothing: what was altered before can still be undone.
    m_undoGeometry = geometry;
  }
  if (!isApplied) QelUtilDialogErrMsg(kSeedNotOnSurface);
  return isApplied;
}

bool Selvane::ApplySurfaceFromMacro() {
  const HostLock lock;
  if (!QelUtilDataSetIsAvailable()) return Fail("No data set available in current frame");
  LgIndex_t numZones = 0;
  HOST_CHECK(QelUtilDataSetGetInfo(NULL, &numZones, NULL));
  if (m_seed.zone < 1 || m_seed.zone > numZones) {
    return Fail("Zone was not defined OR does not exist in current frame.");
  }
  if (m_seed.node == 0) return Fail("Seed point was not defined.");
  if (!m_polyBoundary.IsDefined()) {
    return Fail(
        "Pick boundary not properly defined for ALTER/BLANK SURFACE command.\nMust use a 2D "
        "geometry.");
  }
  const QelPlotType_e plotType = QelUtilFrameGetPlotType();
  if (plotType != PlotType_Cartesian3D && plotType != PlotType_Cartesian2D) {
    return Fail("Frame is not in Cartesian mode for ALTER/BLANK SURFACE command");
  }
  const RaisedFlag surfaceOnly(m_isSurfaceOnly);
  // A seed that is not on the surface changes nothing, and a journal goes on.
  ApplyForPlotType(plotType);
  return true;
}

}  // namespace qelvane::qelutiltools
