#include "ObjCheck.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string_view>

#include "FileError.h"

namespace qelhost {
namespace {

constexpr char kBlanksInLines[] = " \t\r";

/// The next word of a line, which is taken from it; "" at its end.
std::string_view TakeWord(std::string_view& line) {
  line.remove_prefix(std::min(line.find_first_not_of(kBlanksInLines), line.size()));
  const std::size_t end = std::min(line.find_first_of(kBlanksInLines), line.size());
  const std::string_view word = line.substr(0, end);
  line.remove_prefix(end);
  return word;
}

/// Takes the lines of a file in their order.
class ObjChecker {
 public:
  explicit ObjChecker(const std::string& path) : m_path(path) {}

  void Take(std::string_view line) {
    const std::string_view kind = TakeWord(line);
    for (std::size_t n = 0; n < kLists.size(); ++n) {
      if (kind == kLists[n]) ++m_counts[n];
    }
    if (kind != "f" && kind != "l" && kind != "p") return;
    for (std::string_view word = TakeWord(line); !word.empty(); word = TakeWord(line)) {
      TakeCorner(word, kind == "f");
    }
  }

  /// Nodes may stand behind the cells that they belong to.
  bool Finish() const {
    for (std::size_t n = 0; n < kLists.size(); ++n) {
      if (m_highest[n] > m_counts[n]) Damaged();
    }
    return m_isPlain;
  }

 private:
  static constexpr std::array<std::string_view, 3> kLists = {"v", "vt", "vn"};

  [[noreturn]] void Damaged() const {
    throw FileError(m_path, "damaged: its cells refer to nodes that do not exist");
  }

  /// "node/texture/normal"; all but the first may be left out, and backward numbers are negative.
  void TakeCorner(std::string_view word, bool isFace) {
    unsigned lists = 0;
    for (std::size_t n = 0; n < kLists.size(); ++n) {
      const std::size_t end = std::min(word.find('/'), word.size());
      if (end > 0) {
        TakeNumber(word.substr(0, end), n);
        lists |= 1U << n;
      }
      word.remove_prefix(std::min(end + 1, word.size()));
    }
    const bool isFirst = isFace && m_lists == 0;
    if (isFirst) m_lists = lists;
    m_isPlain = m_isPlain && word.empty() && (!isFace || lists == m_lists);
  }

  void TakeNumber(std::string_view text, std::size_t list) {
    std::int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    if (read.ec != std::errc() || read.ptr != end) {
      m_isPlain = false;
      return;
    }
    if (number == 0 || number < -m_counts[list]) Damaged();
    m_highest[list] = std::max(m_highest[list], number);
  }

  const std::string& m_path;
  std::array<std::int64_t, 3> m_counts{};
  std::array<std::int64_t, 3> m_highest{};
  unsigned m_lists = 0;  ///< that the faces so far name
  bool m_isPlain = true;
};

}  // namespace

bool CheckObjFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw FileError(path, std::strerror(errno));
  ObjChecker checker(path);
  std::string line, next;
  while (std::getline(in, line)) {
    while (!line.empty() && line.back() == '\\' && std::getline(in, next)) {
      line.back() = ' ';
      line += next;
    }
    checker.Take(line);
  }
  return checker.Finish();
}

}  // namespace qelhost
