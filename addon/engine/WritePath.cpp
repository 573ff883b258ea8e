#include "WritePath.h"

#include "CornerRule.h"
#include "HostCheck.h"
#include "Selvane.h"
#include "Utilities.h"

#include "qelvane/QelUtil.h"

#include <algorithm>

namespace qelvane::qelutiltools {

namespace {

/// What a pick in blank mode writes.
constexpr ValueModifier kBlankModifier{ValueModifier::kAssign, 1.0};

void SetAllToZero(QelFieldData* field) {
  const LgIndex_t count = QelUtilDataValueGetCountByRef(field);
  for (LgIndex_t index = 1; index <= count; ++index) QelUtilDataValueSetByRef(field, index, 0.0);
}

}  // namespace

ProgressReport::ProgressReport() {
  if (QelUtilExtensionGet == nullptr) return;
  m_progress = static_cast<const QelProgress_s*>(QelUtilExtensionGet(QEL_EXTENSION_PROGRESS));
}

void ProgressReport::Changed(const FieldWriter& writer, std::int64_t writtenCount) const {
  if (m_progress == nullptr) return;
  m_progress->changed(writer.zone, writer.var, writtenCount);
}

void ProgressReport::Done(std::size_t zoneCount, std::size_t ofZones) const {
  if (m_progress == nullptr) return;
  m_progress->report(static_cast<double>(zoneCount) / static_cast<double>(ofZones));
}

void AlterValue(const FieldWriter& writer, const ValueModifier& modifier, LgIndex_t element) {
  const double current =
      modifier.op == ValueModifier::kAssign ? 0.0 : QelUtilDataValueGetByRef(writer.field, element);
  QelUtilDataValueSetByRef(writer.field, element, ApplyModifier(modifier, current));
}

std::int64_t AlterTaken(const FieldWriter& writer, const ValueModifier& modifier,
                        const TakenItems& taken) {
  QelFieldSet_pf set = nullptr;
  HOST_CHECK(set = QelUtilDataValueRefGetSetFunc(writer.field));

  // The accessors check nothing, so a field shorter than its zone must not be run over.
  const std::int64_t valueCount =
      std::min<std::int64_t>(taken.count, QelUtilDataValueGetCountByRef(writer.field));
  QelFieldData* const field = writer.field;
  if (modifier.op == ValueModifier::kAssign) {
    return VisitTaken(valueCount, taken.word, [=](std::int64_t item) {
      set(field, static_cast<LgIndex_t>(item), modifier.value);
    });
  }
  QelFieldGet_pf get = nullptr;
  HOST_CHECK(get = QelUtilDataValueRefGetGetFunc(writer.field));
  return VisitTaken(valueCount, taken.word, [=](std::int64_t item) {
    const auto offset = static_cast<LgIndex_t>(item);
    set(field, offset, ApplyModifier(modifier, get(field, offset)));
  });
}

std::optional<FieldWriter> Selvane::OpenForWriting(LgIndex_t zoneNum, OnNoReference onNoReference) {
  if (!QelUtilDataSetIsAvailable()) return std::nullopt;

  m_lastApplied = m_isBlankMode ? kBlankModifier : m_modifier;
  const LgIndex_t varNum = TargetVariable();
  if (varNum < 1) return std::nullopt;

  bool isJustAllocated = false;
  if (QelUtilDataValueIsPassive(zoneNum, varNum)) {
    if (!m_isBlankMode) return std::nullopt;
    HOST_CHECK(QelUtilDataValueAlloc(zoneNum, varNum));
    isJustAllocated = true;
  }

  const bool isCellCentred =
      QelUtilDataValueGetLocation(zoneNum, varNum) == ValueLocation_CellCentered;
  QelFieldData* fieldDataPtr = nullptr;
  if (onNoReference == OnNoReference::Refuse) {
    fieldDataPtr = QelUtilDataValueGetWritableNativeRef(zoneNum, varNum);
    if (fieldDataPtr == nullptr) return std::nullopt;
  } else {
    HOST_CHECK(fieldDataPtr = QelUtilDataValueGetWritableNativeRef(zoneNum, varNum));
  }
  if (isJustAllocated) SetAllToZero(fieldDataPtr);
  return FieldWriter{zoneNum, varNum, isCellCentred, fieldDataPtr};
}

/// Whether the zone had shared the values of the target, and has its own now.
bool Selvane::UnshareTarget(LgIndex_t zoneNum) const {
  const LgIndex_t varNum = TargetVariable();
  if (varNum < 1 || QelUtilDataValueGetShareCount(zoneNum, varNum) <= 1) return false;
  HOST_CHECK(QelUtilDataValueBranchShared(zoneNum, varNum));
  return true;
}

/// The same values, the zone's own; other zones keep theirs.
std::optional<FieldWriter> Selvane::Unshared(const FieldWriter& writer,
                                             OnNoReference onNoReference) {
  if (!UnshareTarget(writer.zone)) return writer;
  return OpenForWriting(writer.zone, onNoReference);
}

void Selvane::FinishZone(const FieldWriter& writer, std::int64_t writtenCount) {
  if (writtenCount < 1) return;
  NotifyVarsAltered(writer.zone, writer.var);
  m_isUndoAvailable = m_lastApplied.op != ValueModifier::kAssign;
  m_wasSurfaceOnly = m_isSurfaceOnly;
  ShowUndoAvailability();
}

}  // namespace qelvane::qelutiltools
