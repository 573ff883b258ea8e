#pragma once

#include "TakenItems.h"
#include "ValueModifier.h"

#include "qelvane/Types.h"

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

/// Changes one value; element counts from 1. An element that the field does not have is left to
/// the host, which ignores it.
void AlterValue(const FieldWriter& writer, const ValueModifier& modifier, LgIndex_t element);

/// Changes the value of every taken item and returns how many that were.
std::int64_t AlterTaken(const FieldWriter& writer, const ValueModifier& modifier,
                        const TakenItems& taken);

}  // namespace qelvane::qelutiltools
