#include "Mutations.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <utility>

namespace filetesting {
namespace {

/// The part of the file that is markup.
std::size_t MarkupSize(const std::string& bytes) {
  const std::size_t appended = bytes.find("<AppendedData");
  const std::size_t end = appended == std::string::npos ? bytes.size() : bytes.find('_', appended);
  return std::min(end, bytes.size());
}

std::string OneOf(Random& random, const std::vector<std::string>& choice) {
  return choice[Below(random, choice.size())];
}

const std::vector<std::string> kValues = {"0",
                                          "1",
                                          "2",
                                          "3",
                                          "-1",
                                          "7",
                                          "8",
                                          "16",
                                          "216",
                                          "125",
                                          "12",
                                          "2147483647",
                                          "2147483648",
                                          "4294967295",
                                          "4294967296",
                                          "9223372036854775807",
                                          "18446744073709551615",
                                          "99999999999999999999",
                                          "",
                                          " ",
                                          "abc",
                                          "1e3",
                                          "0x10",
                                          "+3",
                                          "3 ",
                                          "3.5",
                                          "nan",
                                          "Int8",
                                          "UInt8",
                                          "Int16",
                                          "Int32",
                                          "UInt32",
                                          "Int64",
                                          "UInt64",
                                          "Float32",
                                          "Float64",
                                          "String",
                                          "Bit",
                                          "BigEndian",
                                          "LittleEndian",
                                          "vtkZLibDataCompressor",
                                          "vtkLZ4DataCompressor",
                                          "vtkLZMADataCompressor",
                                          "vtkOther",
                                          "raw",
                                          "base64",
                                          "appended",
                                          "binary",
                                          "ascii",
                                          "p",
                                          "U",
                                          "id",
                                          "flag",
                                          "connectivity",
                                          "offsets",
                                          "types",
                                          "Points",
                                          "vtkGhostType",
                                          "a&lt;b",
                                          "a>b",
                                          "&amp;",
                                          "&#65;",
                                          "&",
                                          "0 5 0 5 0 5",
                                          "0 2 0 1 0 1",
                                          "0 2147483646 0 0 0 0",
                                          "0 100000 0 100000 0 100000",
                                          "-1 -1 -1 -1 -1 -1"};

void ReplaceAttribute(Random& random, std::string& bytes) {
  std::vector<std::pair<std::size_t, std::size_t>> values;
  const std::size_t markup = MarkupSize(bytes);
  for (std::size_t at = bytes.find("=\""); at < markup; at = bytes.find("=\"", at)) {
    const std::size_t end = bytes.find('"', at + 2);
    if (end == std::string::npos) break;
    values.emplace_back(at + 2, end - at - 2);
    at = end;
  }
  if (values.empty()) return;
  const auto [begin, length] = values[Below(random, values.size())];
  const auto [otherBegin, otherLength] = values[Below(random, values.size())];
  const bool isOther = Below(random, 3) == 0;
  bytes.replace(begin, length,
                isOther ? bytes.substr(otherBegin, otherLength) : OneOf(random, kValues));
}

void ReplaceMarkup(Random& random, std::string& bytes) {
  const std::string letters = "<>/\"'=&! -_0123456789aAzZ\n\t";
  const std::size_t markup = MarkupSize(bytes);
  for (std::size_t n = 1 + Below(random, 3); n > 0; --n) {
    const bool isAny = Below(random, 4) == 0;
    bytes[Below(random, markup)] =
        isAny ? static_cast<char>(random()) : letters[Below(random, letters.size())];
  }
}

/// Something done to a line: VTK writes one for each tag.
void ChangeLine(Random& random, std::string& bytes) {
  const std::size_t begin = bytes.rfind('\n', Below(random, MarkupSize(bytes)));
  if (begin == std::string::npos) return;
  const std::size_t end = bytes.find('\n', begin + 1);
  if (end == std::string::npos) return;
  const std::string line = bytes.substr(begin, end - begin);
  const std::string other = bytes.substr(bytes.rfind('\n', Below(random, begin + 1)) + 1, 150);
  const std::string otherLine = "\n" + other.substr(0, other.find('\n'));
  const std::vector<std::string> becomes = {"",
                                            line + line,
                                            "\n<!-- " + line + " -->",
                                            "\n<!-- > " + line + " -->",
                                            otherLine,
                                            line + otherLine,
                                            "\n<Foo>" + line + "</Foo>",
                                            "\n<![CDATA[" + line + "]]>",
                                            "\n<!--" + line + line + "\n-->" + line,
                                            "\n<?a " + line + "?>" + line};
  bytes.replace(begin, end - begin, OneOf(random, becomes));
}

void ChangeHeader(Random& random, std::string& bytes, const Seed& seed) {
  constexpr std::uint64_t kWords[] = {0,          1,          2,          3,           7,
                                      0x7fffffff, 0x80000000, 0xffffffff, 0x100000000, 1ull << 40,
                                      1ull << 61, 1ull << 62, ~0ull >> 1, ~0ull,       1024};
  if (seed.headers.empty()) return;
  const std::size_t width = Below(random, 2) == 0 ? 4 : 8;
  const std::size_t header = seed.headers[Below(random, seed.headers.size())];
  const std::size_t at = header + Below(random, 6) * width;
  if (at + width > bytes.size()) return;
  std::uint64_t word = 0;
  std::memcpy(&word, &bytes[at], width);
  const std::size_t way = Below(random, 4);
  if (way == 0) word += Below(random, 9) - 4;
  if (way == 1) word = kWords[Below(random, std::size(kWords))];
  if (way == 2) word ^= 1ull << Below(random, width * 8);
  if (way == 3) word = __builtin_bswap64(word) >> (64 - 8 * width);
  std::memcpy(&bytes[at], &word, width);
}

void ChangeNumbers(Random& random, std::string& bytes, const Seed&) {
  const std::string letters = "ABCDEFGHabcdefgh0123+/= \n_";
  for (std::size_t n = 1 + Below(random, 4); n > 0; --n) {
    const bool isAny = Below(random, 2) == 0;
    bytes[Below(random, bytes.size())] =
        isAny ? static_cast<char>(random()) : letters[Below(random, letters.size())];
  }
}

void ChangeLength(Random& random, std::string& bytes) {
  const std::size_t at = Below(random, bytes.size());
  const std::size_t count = 1 + Below(random, 12);
  if (Below(random, 2) == 0) {
    bytes.erase(at, count);
  } else {
    bytes.insert(at, bytes.substr(Below(random, bytes.size()), count));
  }
}

}  // namespace

std::string Mutated(Random& random, const Seed& seed) {
  std::string bytes = seed.bytes;
  for (std::size_t n = 1 + Below(random, 8) / 6; n > 0; --n) {
    switch (Below(random, 7)) {
      case 0:
      case 1:
        ReplaceAttribute(random, bytes);
        break;
      case 2:
        ReplaceMarkup(random, bytes);
        break;
      case 3:
        ChangeLine(random, bytes);
        break;
      case 4:
        ChangeHeader(random, bytes, seed);
        break;
      case 5:
        ChangeNumbers(random, bytes, seed);
        break;
      default:
        ChangeLength(random, bytes);
    }
  }
  return bytes;
}

}  // namespace filetesting
