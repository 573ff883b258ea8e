#include "WritePath.h"

#include "Bits.h"
#include "HostCheck.h"
#include "Parallel.h"
#include "Selvane.h"
#include "SpanWriter.h"
#include "TakenWords.h"
#include "Utilities.h"

#include "qelvane/QelUtil.h"

#include <algorithm>
#include <atomic>

namespace qelvane::qelutiltools {

namespace {

/// What a pick in blank mode writes.
constexpr ValueModifier kBlankModifier{ValueModifier::kAssign, 1.0};

void SetAllToZero(QelFieldData* field) {
  // Wider than the host's index: a zone may have as many values as that can count.
  const std::int64_t count = QelUtilDataValueGetCountByRef(field);
  for (std::int64_t index = 1; index <= count; ++index) {
    QelUtilDataValueSetByRef(field, static_cast<LgIndex_t>(index), 0.0);
  }
}

std::int64_t AlterInSpan(const SpanWriter& writer, const TakenItems& taken, std::int64_t valueCount,
                         const QelParallel_s* parallel) {
  std::atomic<std::int64_t> takenCount{0};
  ForWords(parallel, WordsFor(valueCount), [&](std::int64_t first, std::int64_t last) {
    takenCount +=
        VisitTakenWords(taken, valueCount, first, last,
                        [&](std::int64_t word, std::int64_t wordCount, const std::uint64_t* words) {
                          writer.Alter(word, wordCount, words);
                        });
  });
  return takenCount;
}

/// Calls visit(item) for every item whose bit is set.
template <class Visit>
void VisitItems(std::int64_t firstWord, std::int64_t wordCount, const std::uint64_t* words,
                const Visit& visit) {
  for (std::int64_t n = 0; n < wordCount; ++n) {
    const auto first = static_cast<LgIndex_t>((firstWord + n) * kBitsPerWord);
    VisitBits(words[n], [&](int bit) { visit(first + bit); });
  }
}

/// get may be null for =, which does not ask what the value was.
std::int64_t AlterThroughHost(QelFieldData* field, QelFieldGet_pf get, QelFieldSet_pf set,
                              const ValueModifier& modifier, const TakenItems& taken,
                              std::int64_t valueCount) {
  const auto alter = [=](LgIndex_t item) {
    const double current = get == nullptr ? 0.0 : get(field, item);
    set(field, item, ApplyModifier(modifier, current));
  };
  return VisitTakenWords(
      taken, valueCount, 0, WordsFor(valueCount),
      [&](std::int64_t word, std::int64_t wordCount, const std::uint64_t* words) {
        VisitItems(word, wordCount, words, alter);
      });
}

}  // namespace

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
                        const TakenItems& taken, const HostServices& services) {
  QelFieldSet_pf set = nullptr;
  HOST_CHECK(set = QelUtilDataValueRefGetSetFunc(writer.field));

  // The accessors check nothing, so a field shorter than its zone must not be run over.
  const std::int64_t valueCount =
      std::min<std::int64_t>(taken.count, QelUtilDataValueGetCountByRef(writer.field));
  QelFieldGet_pf get = nullptr;
  if (modifier.op != ValueModifier::kAssign) {
    HOST_CHECK(get = QelUtilDataValueRefGetGetFunc(writer.field));
  }
  QelFieldSpan_s span{};
  if (services.bulk != nullptr && services.bulk->fieldSpan(writer.field, &span)) {
    const SpanWriter spanWriter(span, modifier);
    if (spanWriter.CanWrite(valueCount)) {
      const QelParallel_s* const parallel = taken.callsHost ? nullptr : services.parallel;
      return AlterInSpan(spanWriter, taken, valueCount, parallel);
    }
  }
  return AlterThroughHost(writer.field, get, set, modifier, taken, valueCount);
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
  if (varNum < 1) return false;
  const LgIndex_t sharerCount = QelUtilDataValueGetShareCount(zoneNum, varNum);
  if (sharerCount == 1) return false;
  // A host that cannot tell refuses for a passive variable; others may be shared all the same, and
  // would be altered once for every zone.
  if (sharerCount < 1) return QelUtilDataValueBranchShared(zoneNum, varNum);
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
  m_writtenSeed = m_seed;
  ShowUndoAvailability();
}

}  // namespace qelvane::qelutiltools
