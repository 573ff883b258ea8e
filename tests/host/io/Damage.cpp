#include "Damage.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <utility>

namespace filetesting {
namespace {

bool IsDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }

void CutOff(Random& random, std::string& bytes) { bytes.resize(Below(random, bytes.size())); }

void TurnBits(Random& random, std::string& bytes) {
  for (std::size_t n = 1 + Below(random, 8); n > 0; --n) {
    char& byte = bytes[Below(random, bytes.size())];
    byte = static_cast<char>(byte ^ 1 << Below(random, 8));
  }
}

void SwapBytes(Random& random, std::string& bytes) {
  const std::size_t length = 1 + Below(random, std::min<std::size_t>(bytes.size(), 16));
  const std::size_t last = bytes.size() - length;
  const std::size_t first = Below(random, last + 1), second = Below(random, last + 1);
  for (std::size_t n = 0; n < length; ++n) std::swap(bytes[first + n], bytes[second + n]);
}

/// A number anywhere in a text; a length of 0 when there is none behind a random place.
std::pair<std::size_t, std::size_t> OneNumber(Random& random, const std::string& bytes) {
  const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(Below(random, bytes.size()));
  const auto begin = std::find_if(from, bytes.end(), IsDigit);
  const auto end = std::find_if_not(begin, bytes.end(), IsDigit);
  return {begin - bytes.begin(), end - begin};
}

void ChangeDigit(Random& random, std::string& bytes) {
  const auto [at, length] = OneNumber(random, bytes);
  if (length > 0) bytes[at + Below(random, length)] = static_cast<char>('0' + Below(random, 10));
}

void ChangeNumber(Random& random, std::string& bytes) {
  static const char* const kNumbers[] = {"0",
                                         "-1",
                                         "1",
                                         "3",
                                         "100",
                                         "65536",
                                         "2147483647",
                                         "2147483648",
                                         "4294967295",
                                         "4294967297",
                                         "1e308",
                                         "-2147483648",
                                         "nan",
                                         "inf",
                                         "",
                                         "9000000000000000000",
                                         "99999999999999999999999"};
  const auto [at, length] = OneNumber(random, bytes);
  if (length > 0) bytes.replace(at, length, kNumbers[Below(random, std::size(kNumbers))]);
}

/// A line or, where there are tags, one of them.
void LoseOrRepeat(Random& random, std::string& bytes) {
  const bool isTag = Below(random, 2) == 0;
  const std::size_t begin = bytes.find(isTag ? '<' : '\n', Below(random, bytes.size()));
  if (begin == std::string::npos) return;
  const std::size_t end = std::min(bytes.find(isTag ? '>' : '\n', begin + 1), bytes.size());
  if (Below(random, 2) == 0) {
    bytes.erase(begin, end - begin);
  } else {
    bytes.insert(Below(random, bytes.size()), bytes.substr(begin, end - begin));
  }
}

/// A binary number, in either byte order.
void ChangeWord(Random& random, std::string& bytes) {
  constexpr std::uint64_t kWords[] = {
      0,          1,          2,          255,        0x7fffffff, 0x80000000, 0xffffffff,
      0x10000000, 1ull << 40, 1ull << 62, ~0ull >> 1, ~0ull,      1000000,    0x4000000040000000};
  const std::size_t width = std::size_t{2} << Below(random, 3);
  if (bytes.size() < width) return;
  std::uint64_t word = kWords[Below(random, std::size(kWords))];
  if (Below(random, 2) == 0) word = __builtin_bswap64(word) >> (64 - 8 * width);
  const std::size_t align = Below(random, 2) == 0 ? width : 1;
  const std::size_t at = Below(random, (bytes.size() - width) / align + 1) * align;
  std::memcpy(&bytes[at], &word, width);
}

void LoseOrRepeatBytes(Random& random, std::string& bytes) {
  const std::size_t at = Below(random, bytes.size());
  const std::size_t count = 1 + Below(random, 40);
  if (Below(random, 2) == 0) {
    bytes.erase(at, count);
  } else {
    bytes.insert(Below(random, bytes.size()), bytes.substr(at, count));
  }
}

}  // namespace

std::string Damaged(Random& random, std::string bytes) {
  static constexpr void (*kWays[])(Random&, std::string&) = {
      CutOff,       TurnBits,     TurnBits,   SwapBytes,  ChangeDigit,       ChangeDigit,
      ChangeNumber, ChangeNumber, ChangeWord, ChangeWord, LoseOrRepeatBytes, LoseOrRepeat};
  for (std::size_t n = 1 + Below(random, 6) / 4; n > 0 && !bytes.empty(); --n) {
    kWays[Below(random, std::size(kWays))](random, bytes);
  }
  return bytes;
}

}  // namespace filetesting
