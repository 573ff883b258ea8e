#pragma once

#include "InsideSet.h"
#include "Parallel.h"
#include "PointBlock.h"

#include <cstdint>

namespace qelvane::qelutiltools {

/// Fills the set with what decide(word, scratch) answers for each of its words, in any order.
///
/// parallel  null: one after the other
template <class DecideWord>
void MarkWords(const QelParallel_s* parallel, InsideSet& inside, const DecideWord& decide) {
  ForWords(parallel, InsideSet::WordCount(inside.NodeCount()),
           [&](std::int64_t first, std::int64_t last) {
             PointBlock scratch;
             for (std::int64_t word = first; word < last; ++word) {
               inside.SetWord(word, decide(word, scratch));
             }
           });
}

}  // namespace qelvane::qelutiltools
