#include "PayloadCheck.h"

#include <vtkDataArray.h>
#include <vtkIdTypeArray.h>
#include <vtkNew.h>
#include <vtkSmartPointer.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "../FileError.h"
#include "StoredArray.h"

namespace qelhost {
namespace {

/// In bytes.
struct PayloadSize {
  std::int64_t inFile = 0;
  std::int64_t inMemory = 0;
};

class PayloadChecker {
 public:
  PayloadChecker(const std::shared_ptr<const ByteFile>& file, const XmlLayout& layout,
                 const XmlArray& array)
      : m_file(file), m_layout(layout), m_array(array) {}

  PayloadSize Check() const {
    if (!m_array.isTypeKnown) Fail("is of an unknown type");
    if (m_array.isText) {
      CheckText();
      const std::int64_t size = m_array.payloadLimit - m_array.payloadBegin;
      return {size, size};
    }
    const auto stored = Open();
    if (stored == nullptr) {
      RequireTuples(0);
      return {};
    }
    stored->CheckText();
    if (IsOfStrings()) {
      CheckStrings(*stored);
    } else {
      RequireTuples(stored->ValueCount() / ValueSize() / m_array.components);
    }
    return {stored->Table().end - stored->Table().begin, stored->Table().byteCount};
  }

  /// The array's numbers, which are whole ones; it was checked before.
  std::vector<std::int64_t> WholeNumbers() const {
    if (m_array.vtkType == 0) Fail("holds no whole numbers");
    vtkNew<vtkIdTypeArray> numbers;
    if (m_array.isText) {
      std::istringstream words(Text(std::numeric_limits<std::int64_t>::max()));
      for (std::int64_t number = 0; words >> number;) numbers->InsertNextValue(number);
      if (!words.eof()) Fail("holds no whole numbers");
    } else if (const auto stored = Open()) {
      const auto values =
          vtkSmartPointer<vtkDataArray>::Take(vtkDataArray::CreateDataArray(m_array.vtkType));
      const std::int64_t count = stored->ValueCount() / values->GetDataTypeSize();
      if (count * values->GetDataTypeSize() != stored->ValueCount()) Fail("ends within a number");
      values->SetNumberOfValues(count);
      StoredWith(values->GetDataTypeSize())->ReadAll(static_cast<char*>(values->GetVoidPointer(0)));
      numbers->DeepCopy(values);
    }
    const auto* const first = numbers->GetPointer(0);
    return {first, first + numbers->GetNumberOfValues()};
  }

  [[noreturn]] void Fail(const std::string& what) const {
    throw FileError(m_file->Path(), "damaged: array \"" + m_array.name + "\" " + what);
  }

 private:
  /// Null for an array of no values.
  std::unique_ptr<StoredArray> Open() const {
    return IsBlank() || StoredArray::HasNoBlocks(m_file, Format(), m_array) ? nullptr
                                                                            : StoredWith(1);
  }

  PayloadFormat Format() const {
    const auto format = PayloadFormat::Of(m_layout, m_array.isInline || m_layout.isAppendedText);
    if (!format) Fail("is compressed in an unknown way");
    return *format;
  }

  /// As values of so many bytes.
  std::unique_ptr<StoredArray> StoredWith(int valueSize) const {
    const PayloadFormat format = Format();
    XmlArray alone = m_array;
    // Payloads may lie within one another, as far as VTK is concerned.
    if (!format.isText) alone.payloadLimit = m_layout.appendedEnd;
    auto stored = StoredArray::Open(m_file, format, alone, StoredArray::kAsStored, valueSize);
    if (stored == nullptr) Fail("is not as long as it says");
    return stored;
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

/// The polyhedra of one piece: for each its number of faces, for each face its size and nodes; and
/// for each cell where its faces end, or -1. VTK follows these numbers wherever they lead.
class PolyhedraChecker {
 public:
  void Take(const XmlArray& array) {
    if (array.name == "faces") m_faces[array.piece] = &array;
    if (array.name == "faceoffsets") m_ends[array.piece] = &array;
  }

  void Check(const std::shared_ptr<const ByteFile>& file, const XmlLayout& layout) const {
    for (const auto& [piece, array] : m_ends) {
      const auto faces = m_faces.find(piece);
      if (faces == m_faces.end()) continue;
      const PayloadChecker checker(file, layout, *faces->second);
      const auto ends = PayloadChecker(file, layout, *array).WholeNumbers();
      if (!AreStreams(checker.WholeNumbers(), ends)) checker.Fail("is not what its offsets say");
    }
  }

 private:
  static bool AreStreams(const std::vector<std::int64_t>& faces,
                         const std::vector<std::int64_t>& ends) {
    const auto size = static_cast<std::int64_t>(faces.size());
    std::int64_t at = 0;
    for (const std::int64_t end : ends) {
      if (end < 0) continue;
      if (end <= at || end > size) return false;
      for (std::int64_t left = faces[static_cast<std::size_t>(at++)]; left > 0; --left) {
        if (at >= end) return false;
        const std::int64_t corners = faces[static_cast<std::size_t>(at++)];
        if (corners < 0 || corners > end - at) return false;
        at += corners;
      }
      at = end;
    }
    return true;
  }

  std::map<int, const XmlArray*> m_faces;
  std::map<int, const XmlArray*> m_ends;
};

/// Arrays may share their numbers, and VTK makes room for each of them. Where none does, no file's
/// numbers go beyond the most that they can be compressed.
class SharedPayloads {
 public:
  SharedPayloads(std::int64_t fileSize, const std::string& compressor) {
    constexpr std::int64_t kAlways = 256 << 20;
    constexpr std::int64_t kMostTimes = 16;
    const BlockCodec* const codec = FindCodec(compressor);
    m_mostInFile = kAlways + kMostTimes * fileSize;
    m_mostInMemory = kAlways + (codec == nullptr ? kMostTimes : codec->mostGrowth) * fileSize;
  }

  /// False when it is too much.
  bool Add(const PayloadSize& size) {
    m_sum.inFile += size.inFile;
    m_sum.inMemory += size.inMemory;
    return m_sum.inFile <= m_mostInFile && m_sum.inMemory <= m_mostInMemory;
  }

 private:
  std::int64_t m_mostInFile = 0;
  std::int64_t m_mostInMemory = 0;
  PayloadSize m_sum;
};

}  // namespace

void CheckPayloads(const std::shared_ptr<const ByteFile>& file, const XmlLayout& layout) {
  SharedPayloads all(file->Size(), layout.compressor);
  PolyhedraChecker polyhedra;
  for (const XmlArray& array : layout.arrays) {
    const PayloadChecker checker(file, layout, array);
    if (!all.Add(checker.Check())) checker.Fail("shares its numbers with too many others");
    if (array.part == "Cells") polyhedra.Take(array);
  }
  polyhedra.Check(file, layout);
}

}  // namespace qelhost
