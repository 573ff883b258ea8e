#pragma once

#include "HostServices.h"
#include "TakenItems.h"
#include "ValueModifier.h"

#include "qelvane/Types.h"

#include <cstddef>
#include <cstdint>

namespace qelvane::qelutiltools {

/// What to do when the host gives no writable reference for values that are there.
enum class OnNoReference { Throw, Refuse };

/// The values of the target variable in one zone, open for an alteration. The host owns them.
struct FieldWriter {
  LgIndex_t zone = 0;
  LgIndex_t var = 0;
  bool isCellCentred = false;
  QelFieldData* field = nullptr;
};

/// Tells a host that shows operations how far this one is; nothing where the host does not ask for
/// it.
class ProgressReport {
 public:
  explicit ProgressReport(const HostServices& services) : m_progress(services.progress) {}
  void Changed(const FieldWriter& writer, std::int64_t writtenCount) const;
  void Done(std::size_t zoneCount, std::size_t ofZones) const;

 private:
  const QelProgress_s* m_progress;
};

/// Changes one value; element counts from 1. An element that the field does not have is left to
/// the host, which ignores it.
void AlterValue(const FieldWriter& writer, const ValueModifier& modifier, LgIndex_t element);

/// Changes the value of every taken item and returns how many that were. The services make it
/// faster and change nothing else.
std::int64_t AlterTaken(const FieldWriter& writer, const ValueModifier& modifier,
                        const TakenItems& taken, const HostServices& services);

}  // namespace qelvane::qelutiltools
