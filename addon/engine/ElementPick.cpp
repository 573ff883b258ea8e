#include "ElementPick.h"

#include "EntryPoint.h"
#include "HostCheck.h"
#include "HostLock.h"
#include "Selvane.h"
#include "SessionRegistry.h"

#include "qelvane/QelUtil.h"

namespace qelvane::qelutiltools {

namespace {

constexpr char kClickedNode[] =
    "You have chosen a cell centered variable\n  but have clicked on a node.\n\nWhen identifying a "
    "cell, do not hold down the\n  CTRL key during selection.";
constexpr char kClickedCell[] =
    "You have chosen a nodal variable\n  but have clicked on a cell.\n\nTo identify a node, hold "
    "down the\n  CTRL key during selection.";

}  // namespace

void SelvaneCellCallback(bool isNearestPoint) {
  EntryPoint("Failed to select a cell. Please try again.", [isNearestPoint] {
    Selvane* const session = SessionRegistry::Instance().Find();
    if (session != nullptr) session->PickElementByProbe(isNearestPoint);
  });
}

void Selvane::PickElementByProbe(bool nodeWanted) {
  const HostLock lock;
  if (m_pickKind != PickKind::Element) return;
  const LgIndex_t zone = QelUtilProbeFieldGetZone();
  if (zone < 1) return;
  std::optional<FieldWriter> writer = OpenForWriting(zone, OnNoReference::Throw);
  if (!writer) return;

  if (nodeWanted == writer->isCellCentred) {
    QelUtilDialogMessageBox(nodeWanted ? kClickedNode : kClickedCell, MessageBox_Warning);
    return;
  }
  const LgIndex_t element = nodeWanted ? QelUtilProbeGetPointIndex() : QelUtilProbeFieldGetCell();
  // What is recorded of an element that there is not could not be played.
  if (element < 1 || element > QelUtilDataValueGetCountByRef(writer->field)) return;

  // Not before it is sure that something is altered.
  writer = Unshared(*writer, OnNoReference::Throw);
  if (!writer) return;
  AlterElement(*writer, element);
  if (m_isBlankMode) {
    RecordBlankElement();
  } else {
    RecordAlterElement();
  }
}

bool Selvane::PickElement(LgIndex_t zone, LgIndex_t element) {
  const HostLock lock;
  LgIndex_t numZones = 0;
  HOST_CHECK(QelUtilDataSetGetInfo(NULL, &numZones, NULL));
  if (zone > numZones || !QelUtilDataSetIsAvailable()) return false;

  std::optional<FieldWriter> writer = OpenForWriting(zone, OnNoReference::Refuse);
  if (!writer || element > QelUtilDataValueGetCountByRef(writer->field)) return false;
  writer = Unshared(*writer, OnNoReference::Refuse);
  if (!writer) return false;

  m_pickKind = PickKind::Element;
  AlterElement(*writer, element);
  return true;
}

void Selvane::AlterElement(const FieldWriter& writer, LgIndex_t element) {
  // A number below the first is accepted, and there is nothing to alter.
  if (element >= 1) AlterValue(writer, m_lastApplied, element);
  m_pickedElement = element;
  m_pickedZone = writer.zone;
  FinishZone(writer, 1);
  ProgressReport(AskHostServices()).Changed(writer, 1);
}

}  // namespace qelvane::qelutiltools
