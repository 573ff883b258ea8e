#include "PassThrough.h"

#include <vtkCellData.h>
#include <vtkPointData.h>
#include <vtkPointSet.h>
#include <vtkPoints.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "../FileError.h"
#include "../XmlText.h"
#include "EncodedArray.h"
#include "OutputPlan.h"

namespace qelhost {
namespace {

/// Bytes of the source file that give way to others. Those that begin at one place keep their
/// order.
struct Edit {
  std::int64_t begin = 0;
  std::int64_t end = 0;
  std::string text;
  EncodedPayload payload;  ///< behind the text

  std::int64_t Growth() const {
    return static_cast<std::int64_t>(text.size()) + SizeOf(payload) - (end - begin);
  }
};

/// An array that the block has and its file has not.
struct NewArray {
  XmlSection section;
  vtkDataArray* array;
};

const char* XmlTypeOf(int vtkType) {
  static const std::map<int, const char*> kTypes = {
      {VTK_FLOAT, "Float32"},    {VTK_DOUBLE, "Float64"},
      {VTK_SIGNED_CHAR, "Int8"}, {VTK_UNSIGNED_CHAR, "UInt8"},
      {VTK_SHORT, "Int16"},      {VTK_UNSIGNED_SHORT, "UInt16"},
      {VTK_INT, "Int32"},        {VTK_UNSIGNED_INT, "UInt32"},
      {VTK_LONG_LONG, "Int64"},  {VTK_UNSIGNED_LONG_LONG, "UInt64"},
  };
  const auto found = kTypes.find(vtkType);
  return found == kTypes.end() ? nullptr : found->second;
}

/// Whether the text is the number, with as many digits as it has or with all of them. What says the
/// same stays as it is.
bool IsSaying(const std::string& text, double number) {
  char* end = nullptr;
  const double said = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0') return false;
  if (said == number) return true;
  const std::string mantissa = text.substr(0, text.find_first_of("eE"));
  const std::size_t first = mantissa.find_first_of("123456789");
  if (first == std::string::npos) return false;
  const auto digits = std::count_if(mantissa.begin() + static_cast<std::ptrdiff_t>(first),
                                    mantissa.end(), [](char c) { return c >= '0' && c <= '9'; });
  // Fewer than a writer would leave say too little to be the same.
  constexpr std::ptrdiff_t kLeast = 6;
  if (digits < kLeast) return false;
  char rounded[64];
  std::snprintf(rounded, sizeof(rounded), "%.*g", static_cast<int>(digits), number);
  return std::strtod(rounded, nullptr) == said;
}

class PassThroughWriter {
 public:
  PassThroughWriter(const XmlSource& source, vtkDataSet* block)
      : m_source(source), m_block(block) {}

  /// False when VTK must write the block.
  bool Plan(const std::set<vtkDataArray*>& touched) {
    if (!FindNewArrays()) return false;
    for (std::size_t n = 0; n < m_source.arrays.size(); ++n) {
      auto* const array = vtkDataArray::SafeDownCast(m_source.arrays[n]);
      if (array == nullptr || touched.count(array) == 0) continue;
      if (!ReplaceArray(n, array)) return false;
    }
    for (const NewArray& array : m_new) {
      if (!InsertArray(array)) return false;
    }
    MoveOffsets();
    return true;
  }

  void Write(const std::string& path) {
    std::stable_sort(m_edits.begin(), m_edits.end(),
                     [](const Edit& a, const Edit& b) { return a.begin < b.begin; });
    OutputPlan plan(*m_source.file);
    std::int64_t done = 0;
    for (Edit& edit : m_edits) {
      plan.Copy(done, edit.begin);
      plan.Add(std::move(edit.text));
      for (const EncodedRun& run : edit.payload) AddRun(plan, run);
      done = edit.end;
    }
    plan.Copy(done, m_source.file->Size());
    m_source.file->RequireUnchanged();
    plan.Write(path);
    m_source.file->RequireUnchanged();
  }

 private:
  static void AddRun(OutputPlan& plan, const EncodedRun& run) {
    if (run.end > run.begin) {
      plan.Copy(run.begin, run.end);
    } else if (run.memory != nullptr) {
      plan.Refer(run.memory, run.memorySize);
    } else {
      plan.Refer(run.bytes.data(), static_cast<std::int64_t>(run.bytes.size()));
    }
  }

  bool IsKnown(vtkAbstractArray* array) const {
    return std::find(m_source.arrays.begin(), m_source.arrays.end(), array) !=
           m_source.arrays.end();
  }

  /// False when an array of the file has gone, or another has taken its name.
  bool FindNewArrays() {
    std::set<vtkAbstractArray*> present;
    for (const XmlSection section : {XmlSection::PointData, XmlSection::CellData}) {
      vtkDataSetAttributes* const attributes = Attributes(section);
      for (int i = 0; i < attributes->GetNumberOfArrays(); ++i) {
        vtkAbstractArray* const array = attributes->GetAbstractArray(i);
        present.insert(array);
        if (IsKnown(array)) continue;
        auto* const made = vtkDataArray::SafeDownCast(array);
        if (made == nullptr || made->GetName() == nullptr) return false;
        m_new.push_back({section, made});
      }
    }
    auto* const nodes = vtkPointSet::SafeDownCast(m_block);
    if (nodes != nullptr && !IsKnown(nodes->GetPoints()->GetData())) return false;
    for (std::size_t n = 0; n < m_source.arrays.size(); ++n) {
      const XmlSection section = m_source.layout.arrays[n].section;
      const bool isVariable = section == XmlSection::PointData || section == XmlSection::CellData;
      if (isVariable && present.count(m_source.arrays[n]) == 0) return false;
    }
    return true;
  }

  vtkDataSetAttributes* Attributes(XmlSection section) const {
    if (section == XmlSection::PointData) return m_block->GetPointData();
    return m_block->GetCellData();
  }

  bool ReplaceArray(std::size_t n, vtkDataArray* array) {
    const std::shared_ptr<const StoredArray>& stored = m_source.stored[n];
    const XmlArray& place = m_source.layout.arrays[n];
    if (stored == nullptr || array->GetNumberOfValues() != stored->ValueCount()) return false;
    if (!array->HasStandardMemoryLayout()) return false;
    Edit edit;
    edit.begin = stored->Table().begin;
    edit.end = stored->Table().end;
    edit.payload = Encode(array, stored->Format(), stored.get());
    m_edits.push_back(std::move(edit));
    if (place.keysBegin > 0) {
      const auto length = static_cast<std::size_t>(place.closing - place.keysBegin);
      m_edits.push_back({place.keysBegin, place.closing, std::string(length, ' '), {}});
    }
    ReplaceRange(place.tag, array);
    return true;
  }

  /// What a file says of an array's range, as VTK's writers have it: of vectors, of their length.
  void ReplaceRange(const XmlTag& tag, vtkDataArray* array) {
    array->Modified();
    double range[2] = {0, 0};
    array->GetRange(range, -1);
    const char* const keys[2] = {"RangeMin", "RangeMax"};
    for (int n = 0; n < 2; ++n) {
      const XmlAttribute* const attribute = tag.Find(keys[n]);
      if (attribute == nullptr || IsSaying(attribute->value, range[n])) continue;
      ReplaceValue(*attribute, ShortestNumber(range[n]));
    }
  }

  /// VTK leaves blanks behind a value that may change. They make room here too: as long as no byte
  /// behind it moves, whole pages of the file are copied.
  void ReplaceValue(const XmlAttribute& attribute, const std::string& value) {
    constexpr std::int64_t kMostBehind = 32;
    const std::int64_t count = std::min(kMostBehind, m_source.file->Size() - attribute.end);
    std::string behind(static_cast<std::size_t>(count), '\0');
    m_source.file->ReadAt(attribute.end, behind.data(), count);
    const std::size_t blanks = std::min(behind.find_first_not_of(' ', 1), behind.size()) - 1;
    const std::int64_t end = attribute.end + 1 + static_cast<std::int64_t>(blanks);
    std::string text = value + behind.front();  // its quote
    // One blank at least stays between two attributes.
    const std::size_t least = text.size() + std::min<std::size_t>(blanks, 1);
    text.resize(std::max(least, static_cast<std::size_t>(end - attribute.begin)), ' ');
    m_edits.push_back({attribute.begin, end, text, {}});
  }

  /// Behind the section's last array; its numbers behind all others.
  bool InsertArray(const NewArray& made) {
    const XmlLayout& layout = m_source.layout;
    const char* const type = XmlTypeOf(made.array->GetDataType());
    const auto place = EndOfSection(made.section);
    const bool isInline = layout.appendedBegin == 0;
    const auto format = PayloadFormat::Of(layout, isInline || layout.isAppendedText);
    const auto name = AttributeText(made.array->GetName());
    if (type == nullptr || !place || !format || !name) return false;
    if (!made.array->HasStandardMemoryLayout()) return false;
    if (made.array->GetNumberOfValues() == 0) return false;
    const std::int64_t bytes = made.array->GetNumberOfValues() * made.array->GetDataTypeSize();
    if (!format->wideHeader && bytes > std::numeric_limits<std::uint32_t>::max()) return false;
    std::string tag = "  <DataArray type=\"" + std::string(type) + "\" Name=\"" + *name + "\"";
    if (made.array->GetNumberOfComponents() > 1) {
      tag += " NumberOfComponents=\"" + std::to_string(made.array->GetNumberOfComponents()) + "\"";
    }
    Edit edit{*place, *place, tag, Encode(made.array, *format, nullptr)};
    if (isInline) {
      edit.text += " format=\"binary\">\n";
      m_edits.push_back(std::move(edit));
      m_edits.push_back({*place, *place, "\n        </DataArray>\n      ", {}});
      return true;
    }
    edit.text += " format=\"appended\" offset=\"" + std::to_string(NextOffset()) + "\"/>\n      ";
    Edit numbers{layout.appendedEnd, layout.appendedEnd, "", std::exchange(edit.payload, {})};
    m_edits.push_back(std::move(edit));
    m_edits.push_back(std::move(numbers));
    return true;
  }

  std::optional<std::int64_t> EndOfSection(XmlSection section) const {
    const char* const name = section == XmlSection::PointData ? "PointData" : "CellData";
    const XmlLayout& layout = m_source.layout;
    for (std::size_t n = 0; n < layout.sectionEnds.size(); ++n) {
      if (layout.attributeSections[n].name == name) return layout.sectionEnds[n];
    }
    return std::nullopt;
  }

  /// Of the next payload behind all that the target has so far.
  std::int64_t NextOffset() const {
    std::int64_t offset = m_source.layout.appendedEnd - m_source.layout.appendedBegin;
    for (const Edit& edit : m_edits) {
      if (edit.begin >= m_source.layout.appendedBegin) offset += edit.Growth();
    }
    return offset;
  }

  /// A payload that became longer or shorter moves those behind it.
  void MoveOffsets() {
    const XmlLayout& layout = m_source.layout;
    std::vector<std::pair<std::int64_t, std::int64_t>> growths;
    for (const Edit& edit : m_edits) {
      if (layout.appendedBegin == 0 || edit.begin < layout.appendedBegin) continue;
      if (edit.Growth() != 0) growths.emplace_back(edit.begin, edit.Growth());
    }
    for (const XmlArray& array : layout.arrays) {
      if (array.isInline) continue;
      std::int64_t offset = array.payloadBegin - layout.appendedBegin;
      const std::int64_t before = offset;
      for (const auto& [begin, growth] : growths) {
        if (begin < array.payloadBegin) offset += growth;
      }
      const XmlAttribute* const attribute = array.tag.Find("offset");
      if (offset == before) continue;
      ReplaceValue(*attribute, std::to_string(offset));
    }
  }

  const XmlSource& m_source;
  vtkDataSet* m_block;
  std::vector<NewArray> m_new;
  std::vector<Edit> m_edits;
};

}  // namespace

bool WritePassingThrough(const XmlSource& source, vtkDataSet* block,
                         const std::set<vtkDataArray*>& touched, const std::string& path) {
  try {
    PassThroughWriter writer(source, block);
    if (!writer.Plan(touched)) return false;
    writer.Write(path);
    return true;
  } catch (const FileError& error) {
    // Of the two files the source is to blame: whoever writes takes other errors for the target's.
    if (error.File() == source.file->Path()) throw ValuesError(error.what());
    throw;
  }
}

}  // namespace qelhost
