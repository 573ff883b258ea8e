#pragma once

#include "ValueModifier.h"

#include "qelvane/Extensions.h"

#include <cstdint>

namespace qelvane::qelutiltools {

/// Changes stored values where they lie, calling nobody, as the host's accessors would: integers
/// are rounded, halves away from zero, and clamped, and what is no number becomes 0 in them.
class SpanWriter {
 public:
  SpanWriter(const QelFieldSpan_s& span, const ValueModifier& modifier);

  /// False for a type without a code, fewer values than are to be changed, and values that overlap:
  /// those are for the accessors.
  bool CanWrite(std::int64_t valueCount) const;

  /// Changes the values whose bits are set, the lowest bit of words[0] being value
  /// 64 * firstWord. No bit may be set past the last value.
  void Alter(std::int64_t firstWord, std::int64_t wordCount, const std::uint64_t* words) const;

 private:
  using AlterWords = void (*)(char* first, std::int64_t stride, double operand,
                              std::int64_t wordCount, const std::uint64_t* words);
  template <class T>
  static AlterWords WithOperator(std::uint32_t op, bool isRun);
  static AlterWords ChooseLoop(const QelFieldSpan_s& span, std::uint32_t op);

  QelFieldSpan_s m_span;
  double m_operand;
  AlterWords m_alterWords;  ///< null when there is none for the type
};

}  // namespace qelvane::qelutiltools
