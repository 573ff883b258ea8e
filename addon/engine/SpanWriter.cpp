#include "SpanWriter.h"

#include "Bits.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <type_traits>

namespace qelvane::qelutiltools {

namespace {

template <class T>
T Stored(double value) {
  if constexpr (std::is_floating_point_v<T>) {
    return static_cast<T>(value);
  } else {
    if (std::isnan(value)) return 0;
    // The limit of 64 bits is no double and rounds up to one that no longer fits.
    constexpr auto kLowest = static_cast<double>(std::numeric_limits<T>::min());
    constexpr auto kHighest = static_cast<double>(std::numeric_limits<T>::max());
    if (value <= kLowest) return std::numeric_limits<T>::min();
    if (value >= kHighest) return std::numeric_limits<T>::max();
    // Rounded here because the library's function costs as much as all the rest. What is cut off is
    // exact, so halves are seen.
    const auto whole = static_cast<std::int64_t>(value);
    const double rest = value - static_cast<double>(whole);
    return static_cast<T>(whole + (rest >= 0.5 ? 1 : 0) - (rest <= -0.5 ? 1 : 0));
  }
}

template <class T>
std::int64_t SizeOf() {
  return static_cast<std::int64_t>(sizeof(T));
}

template <class T, std::uint32_t kOperator>
void AlterOne(char* at, double operand) {
  T stored;
  std::memcpy(&stored, at, sizeof stored);
  const ValueModifier modifier{kOperator, operand};
  stored = Stored<T>(ApplyModifier(modifier, static_cast<double>(stored)));
  std::memcpy(at, &stored, sizeof stored);
}

/// Values side by side, or some bytes apart.
template <class T, std::uint32_t kOperator, bool kIsRun>
void AlterRun(char* first, std::int64_t stride, double operand, std::int64_t count) {
  const std::int64_t step = kIsRun ? SizeOf<T>() : stride;
  if constexpr (kOperator == ValueModifier::kAssign) {
    const T stored = Stored<T>(operand);
    for (std::int64_t n = 0; n < count; ++n) std::memcpy(first + n * step, &stored, sizeof stored);
    return;
  }
  for (std::int64_t n = 0; n < count; ++n) AlterOne<T, kOperator>(first + n * step, operand);
}

/// Whole words in one go, then runs of ones: most of what is taken lies side by side.
template <class T, std::uint32_t kOperator, bool kIsRun>
void AlterWordsAs(char* first, std::int64_t stride, double operand, std::int64_t wordCount,
                  const std::uint64_t* words) {
  const auto alter = AlterRun<T, kOperator, kIsRun>;
  for (std::int64_t word = 0; word < wordCount; ++word) {
    char* const values = first + word * kBitsPerWord * stride;
    std::uint64_t bits = words[word];
    if (bits == ~std::uint64_t{0}) {
      alter(values, stride, operand, kBitsPerWord);
      continue;
    }
    while (bits != 0) {
      const int start = __builtin_ctzll(bits);
      const int count = __builtin_ctzll(~(bits >> start));
      alter(values + start * stride, stride, operand, count);
      bits &= ~(LowestBits(count) << start);
    }
  }
}

}  // namespace

template <class T>
SpanWriter::AlterWords SpanWriter::WithOperator(std::uint32_t op, bool isRun) {
  constexpr AlterWords kLoops[][2] = {
      {AlterWordsAs<T, 0, false>, AlterWordsAs<T, 0, true>},
      {AlterWordsAs<T, 1, false>, AlterWordsAs<T, 1, true>},
      {AlterWordsAs<T, 2, false>, AlterWordsAs<T, 2, true>},
      {AlterWordsAs<T, 3, false>, AlterWordsAs<T, 3, true>},
      {AlterWordsAs<T, 4, false>, AlterWordsAs<T, 4, true>},
  };
  return op <= ValueModifier::kDivide ? kLoops[op][isRun ? 1 : 0] : nullptr;
}

SpanWriter::AlterWords SpanWriter::ChooseLoop(const QelFieldSpan_s& span, std::uint32_t op) {
  const auto choose = [&](auto zero) -> AlterWords {
    using T = decltype(zero);
    // Values that share bytes have to be changed one after the other.
    if (std::abs(span.stride) < SizeOf<T>()) return nullptr;
    return WithOperator<T>(op, span.stride == SizeOf<T>());
  };
  switch (span.type) {
    case FieldDataType_Float:
      return choose(float{});
    case FieldDataType_Double:
      return choose(double{});
    case FieldDataType_Int32:
      return choose(std::int32_t{});
    case FieldDataType_Int16:
      return choose(std::int16_t{});
    case FieldDataType_Byte:
      return choose(std::uint8_t{});
    case FieldDataType_Int64:
      return choose(std::int64_t{});
    default:
      return nullptr;
  }
}

SpanWriter::SpanWriter(const QelFieldSpan_s& span, const ValueModifier& modifier)
    : m_span(span), m_operand(modifier.value), m_alterWords(ChooseLoop(span, modifier.op)) {}

bool SpanWriter::CanWrite(std::int64_t valueCount) const {
  return m_alterWords != nullptr && m_span.first != nullptr && m_span.count >= valueCount;
}

void SpanWriter::Alter(std::int64_t firstWord, std::int64_t wordCount,
                       const std::uint64_t* words) const {
  char* const first = static_cast<char*>(m_span.first) + firstWord * kBitsPerWord * m_span.stride;
  m_alterWords(first, m_span.stride, m_operand, wordCount, words);
}

}  // namespace qelvane::qelutiltools
