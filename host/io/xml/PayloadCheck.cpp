#include "PayloadCheck.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "../FileError.h"
#include "StoredArray.h"

namespace qelhost {
namespace {

class PayloadChecker {
 public:
  PayloadChecker(const std::shared_ptr<const ByteFile>& file, const XmlLayout& layout,
                 const XmlArray& array)
      : m_file(file), m_layout(layout), m_array(array) {}

  void Check() const {
    if (!m_array.isTypeKnown) Fail("is of an unknown type");
    if (m_array.isText) return CheckText();
    if (IsBlank()) return RequireTuples(0);
    const auto format = PayloadFormat::Of(m_layout, m_array.isInline || m_layout.isAppendedText);
    if (!format) Fail("is compressed in an unknown way");
    if (StoredArray::HasNoBlocks(m_file, *format, m_array)) return RequireTuples(0);
    XmlArray alone = m_array;
    // Payloads may lie within one another, as far as VTK is concerned.
    if (!format->isText) alone.payloadLimit = m_layout.appendedEnd;
    const auto stored = StoredArray::Open(m_file, *format, alone, StoredArray::kAsStored, 1);
    if (stored == nullptr) Fail("is not as long as it says");
    stored->CheckText();
    if (IsOfStrings()) return CheckStrings(*stored);
    RequireTuples(stored->ValueCount() / ValueSize() / m_array.components);
  }

 private:
  [[noreturn]] void Fail(const std::string& what) const {
    throw FileError(m_file->Path(), "damaged: array \"" + m_array.name + "\" " + what);
  }

  bool IsOfStrings() const { return m_array.tag.Value("type") == "String"; }

  std::int64_t ValueSize() const {
    const std::string type = m_array.tag.Value("type");
    const std::size_t digits = type.find_first_of("0123456789");
    return digits == std::string::npos ? 1 : std::atoi(type.c_str() + digits) / 8;
  }

  void RequireTuples(std::int64_t count) const {
    if (m_array.tag.Value("type") == "Bit") return;
    if (count < m_array.tuples) Fail("is incomplete");
  }

  std::string Text(std::int64_t most) const {
    const std::int64_t count = std::min(m_array.payloadLimit - m_array.payloadBegin, most);
    std::string text(static_cast<std::size_t>(count), ' ');
    m_file->ReadAt(m_array.payloadBegin, text.data(), count);
    return text;
  }

  /// An inline array of no values may have no payload at all.
  bool IsBlank() const {
    constexpr std::int64_t kMostBlanks = 4096;
    return m_array.isInline && Text(kMostBlanks).find_first_not_of(" \t\r\n") == std::string::npos;
  }

  /// Decimal numbers. VTK takes them up to the first that is none, and what is missing for what
  /// lies in memory.
  void CheckText() const {
    std::istringstream words(Text(std::numeric_limits<std::int64_t>::max()));
    std::int64_t count = 0;
    std::int64_t zeros = 0;
    bool endsByZero = true;
    for (std::string word; words >> word; ++count) {
      char* end = nullptr;
      endsByZero = std::strtod(word.c_str(), &end) == 0;
      if (*end != '\0') Fail("holds \"" + word.substr(0, 20) + "\" where a number belongs");
      zeros += endsByZero ? 1 : 0;
    }
    if (!IsOfStrings()) return RequireTuples(count / m_array.components);
    RequireStrings(zeros, endsByZero);
  }

  void CheckStrings(const StoredArray& stored) const {
    std::vector<char> text(static_cast<std::size_t>(stored.ValueCount()));
    stored.ReadAll(text.data());
    RequireStrings(std::count(text.begin(), text.end(), 0), text.empty() || text.back() == 0);
  }

  /// Each ends by a zero.
  void RequireStrings(std::int64_t count, bool endsByZero) const {
    if (!endsByZero) Fail("ends within a string");
    if (m_array.tuples >= 0 && count != m_array.tuples * m_array.components) {
      Fail("has another number of strings");
    }
  }

  const std::shared_ptr<const ByteFile>& m_file;
  const XmlLayout& m_layout;
  const XmlArray& m_array;
};

}  // namespace

void CheckPayloads(const std::shared_ptr<const ByteFile>& file, const XmlLayout& layout) {
  for (const XmlArray& array : layout.arrays) PayloadChecker(file, layout, array).Check();
}

}  // namespace qelhost
