#pragma once

#include "FieldColumn.h"
#include "HostCheck.h"

#include "qelvane/Extensions.h"
#include "qelvane/QelUtil.h"
#include "qelvane/Types.h"

#include <cstdint>

namespace qelvane::qelutiltools {

/// A field's values, read where they lie when the host shows all of them.
///
/// bulk    null: through the accessor
/// throws  std::runtime_error for a field shorter than its zone: the accessor checks nothing
inline FieldColumn NodeColumn(const QelFieldData* field, QelFieldGet_pf get, std::int64_t nodeCount,
                              const QelBulkAccess_s* bulk) {
  HOST_CHECK(QelUtilDataValueGetCountByRef(field) >= nodeCount);
  FieldColumn column(field, get);
  QelFieldSpan_s span{};
  if (bulk != nullptr && bulk->fieldSpan(field, &span)) column.UseSpan(span, nodeCount);
  return column;
}

}  // namespace qelvane::qelutiltools
