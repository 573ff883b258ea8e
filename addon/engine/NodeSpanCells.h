#pragma once

#include "CornerRule.h"
#include "InsideSet.h"

#include "qelvane/Extensions.h"

#include <cstdint>

namespace qelvane::qelutiltools {

/// Decides cells by nodes that lie in memory, calling nobody: the words from firstWord on, each of
/// 64 cells, into `words`; bits past the last cell are 0.
///
/// span  of 4 or 8 bytes an index; a node that the zone does not have is not inside
void DecideSpanCells(const QelNodeSpan_s& span, const CornerRule& rule, const InsideSet& inside,
                     std::int64_t firstWord, std::int64_t wordCount, std::uint64_t* words);

}  // namespace qelvane::qelutiltools
