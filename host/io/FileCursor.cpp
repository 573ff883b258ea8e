#include "FileCursor.h"

#include <algorithm>
#include <array>

namespace qelhost {
namespace {

constexpr std::int64_t kBlockBytes = std::int64_t{1} << 18;

/// What std::isspace says in the C locale, without a call for each byte.
constexpr std::array<bool, 256> kIsBlank = [] {
  std::array<bool, 256> isBlank{};
  for (const char c : {' ', '\t', '\n', '\v', '\f', '\r'}) {
    isBlank[static_cast<unsigned char>(c)] = true;
  }
  return isBlank;
}();

bool IsBlank(char c) { return kIsBlank[static_cast<unsigned char>(c)]; }
bool IsOfWord(char c) { return !IsBlank(c); }
bool IsOfLine(char c) { return c != '\n'; }

}  // namespace

FileCursor::FileCursor(const ByteFile& file) : m_file(file) {
  m_block.resize(static_cast<std::size_t>(std::min(kBlockBytes, file.Size())));
}

void FileCursor::GoTo(std::int64_t place) {
  if (place >= m_first && place <= m_first + m_held) {
    m_at = place - m_first;
    return;
  }
  m_first = place;
  m_at = m_held = 0;
}

std::string FileCursor::Peek(std::int64_t most) const {
  std::string bytes(static_cast<std::size_t>(std::min(most, BytesLeft())), '\0');
  m_file.ReadAt(Place(), bytes.data(), static_cast<std::int64_t>(bytes.size()));
  return bytes;
}

unsigned char FileCursor::Take() {
  if (m_at == m_held) Fill();
  return static_cast<unsigned char>(m_block[static_cast<std::size_t>(m_at++)]);
}

std::string FileCursor::Line() {
  std::string line = KeepWhile(IsOfLine);
  PassLineEnd();
  return line;
}

bool FileCursor::PassLineIsBlank() {
  PassWhile([](char c) { return IsOfLine(c) && IsBlank(c); });
  const std::int64_t end = Place();
  PassWhile(IsOfLine);
  const bool isBlank = Place() == end;
  PassLineEnd();
  return isBlank;
}

std::string FileCursor::Word() {
  PassWhile(IsBlank);
  return KeepWhile(IsOfWord);
}

bool FileCursor::PassWord() {
  PassWhile(IsBlank);
  const std::int64_t start = Place();
  PassWhile(IsOfWord);
  return Place() > start;
}

/// The next block; false at the file's end.
bool FileCursor::Fill() {
  m_first += m_at;
  m_at = m_held = 0;
  const std::int64_t count =
      std::min(static_cast<std::int64_t>(m_block.size()), m_file.Size() - m_first);
  m_file.ReadAt(m_first, m_block.data(), count);
  m_held = count;
  return count > 0;
}

template <class Test>
void FileCursor::PassWhile(const Test& test) {
  do {
    const char* const begin = m_block.data();
    const char* const stop = std::find_if_not(begin + m_at, begin + m_held, test);
    m_at = stop - begin;
  } while (m_at == m_held && Fill());
}

template <class Test>
std::string FileCursor::KeepWhile(const Test& test) {
  std::string kept;
  do {
    const char* const begin = m_block.data();
    const char* const stop = std::find_if_not(begin + m_at, begin + m_held, test);
    const auto found = static_cast<std::size_t>(stop - begin - m_at);
    kept.append(begin + m_at, std::min(found, kLongestKept - kept.size()));
    m_at = stop - begin;
  } while (m_at == m_held && Fill());
  return kept;
}

void FileCursor::PassLineEnd() {
  if (!IsAtEnd()) Take();
}

}  // namespace qelhost
