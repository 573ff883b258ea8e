#include "XmlLayout.h"

#include <vtkType.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fstream>
#include <map>
#include <set>

#include "../FileError.h"
#include "../XmlText.h"

namespace qelhost {
namespace {

/// VTK's own choice where several of its types have the size.
int VtkTypeOf(const XmlTag& tag) {
  static const std::map<std::string, int> kTypes = {
      {"Float32", VTK_FLOAT},    {"Float64", VTK_DOUBLE},
      {"Int8", VTK_SIGNED_CHAR}, {"UInt8", VTK_UNSIGNED_CHAR},
      {"Int16", VTK_SHORT},      {"UInt16", VTK_UNSIGNED_SHORT},
      {"Int32", VTK_INT},        {"UInt32", VTK_UNSIGNED_INT},
      {"Int64", VTK_LONG_LONG},  {"UInt64", VTK_UNSIGNED_LONG_LONG},
  };
  if (tag.Value("IdType") == "1") return VTK_ID_TYPE;
  const auto found = kTypes.find(tag.Value("type"));
  return found == kTypes.end() ? 0 : found->second;
}

/// A whole number that fills the text but for blanks around it; nothing else.
std::optional<std::int64_t> NumberIn(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return std::nullopt;
  const std::size_t last = text.find_last_not_of(" \t\r\n");
  std::int64_t number = 0;
  const char* const end = text.data() + last + 1;
  const auto read = std::from_chars(text.data() + first, end, number);
  if (read.ec != std::errc() || read.ptr != end || number < 0) return std::nullopt;
  return number;
}

/// Takes the tags of a file in their order.
class LayoutReader {
 public:
  explicit LayoutReader(std::istream& in) : m_in(in), m_scanner(in) {}

  bool Read() {
    XmlTag tag;
    while (m_scanner.Next(tag)) {
      if (!Take(tag)) return false;
      if (tag.name == "AppendedData") return TakeAppended(tag);
    }
    return m_pieces == 1 && !m_isInArray;
  }

  XmlLayout layout;

 private:
  bool Take(const XmlTag& tag) {
    if (m_isInArray && tag.name != "/DataArray") return TakeInside(tag);
    if (tag.name == "/DataArray") return EndArray(tag);
    if (tag.name == "DataArray" || tag.name == "Array") return BeginArray(tag);
    if (tag.name == "VTKFile") return TakeRoot(tag);
    if (tag.name == "Piece") return TakePiece(tag);
    return TakeSection(tag);
  }

  bool TakeRoot(const XmlTag& tag) {
    layout.type = tag.Value("type");
    layout.compressor = tag.Value("compressor");
    layout.wideHeader = tag.Value("header_type") == "UInt64";
    layout.bigEndian = tag.Value("byte_order") == "BigEndian";
    return true;
  }

  bool TakePiece(const XmlTag& tag) {
    layout.points = NumberIn(tag.Value("NumberOfPoints")).value_or(0);
    layout.cells = NumberIn(tag.Value("NumberOfCells")).value_or(0);
    return ++m_pieces == 1;
  }

  bool TakeSection(const XmlTag& tag) {
    const bool isEnd = !tag.name.empty() && tag.name.front() == '/';
    const std::string name = isEnd ? tag.name.substr(1) : tag.name;
    const bool isAttributes = name == "PointData" || name == "CellData";
    if (isEnd) {
      if (isAttributes) layout.sectionEnds.push_back(tag.begin);
      m_part.clear();
      m_section = XmlSection::Mesh;
      return layout.sectionEnds.size() <= layout.attributeSections.size();
    }
    if (tag.isClosed) return true;
    if (isAttributes) layout.attributeSections.push_back(tag);
    m_part = name;
    m_section = name == "PointData"   ? XmlSection::PointData
                : name == "CellData"  ? XmlSection::CellData
                : name == "FieldData" ? XmlSection::FieldData
                                      : XmlSection::Mesh;
    return true;
  }

  bool BeginArray(const XmlTag& tag) {
    XmlArray array;
    array.section = m_section;
    array.part = m_part;
    const std::optional<std::string> name = Unescaped(tag.Value("Name"));
    if (!name) return false;
    array.name = *name;
    array.vtkType = tag.name == "DataArray" ? VtkTypeOf(tag) : 0;
    const XmlAttribute* const components = tag.Find("NumberOfComponents");
    const auto count = components == nullptr ? 1 : NumberIn(components->value).value_or(0);
    if (count < 0 || count > 1 << 20) return false;
    // VTK's writer says 0 of arrays that it took for no vectors.
    array.components = std::max(static_cast<int>(count), 1);
    array.tag = tag;
    array.closing = tag.end;
    const std::string format = tag.Value("format");
    array.isInline = format != "appended";
    // What is no part of the user's variables is left to VTK in any form.
    const bool isVariable = m_section == XmlSection::PointData || m_section == XmlSection::CellData;
    if (isVariable && format != "appended" && format != "binary") return false;
    if (tag.Find("TimeStep") != nullptr) return false;
    if (!array.isInline && !TakeOffset(array)) return false;
    layout.arrays.push_back(std::move(array));
    m_isInArray = !tag.isClosed;
    return true;
  }

  /// The payload's place relative to the appended data, until that is known. Arrays that share a
  /// payload could not be altered by themselves.
  bool TakeOffset(XmlArray& array) {
    const std::optional<std::int64_t> offset = NumberIn(array.tag.Value("offset"));
    if (!offset || !m_offsets.insert(*offset).second) return false;
    array.payloadBegin = *offset;
    return true;
  }

  bool TakeInside(const XmlTag& tag) {
    static const std::set<std::string> kRangeKeys = {"L2_NORM_RANGE", "L2_NORM_FINITE_RANGE",
                                                     "COMPONENT_RANGE"};
    if (tag.name == "DataArray" || tag.name == "AppendedData") return false;
    XmlArray& array = layout.arrays.back();
    if (array.keysBegin == 0) array.keysBegin = tag.begin;
    if (tag.name == "InformationKey" && kRangeKeys.count(tag.Value("name")) == 0) {
      array.hasOtherKeys = true;
    }
    return true;
  }

  bool EndArray(const XmlTag& tag) {
    if (!m_isInArray) return false;
    XmlArray& array = layout.arrays.back();
    array.closing = tag.begin;
    if (array.isInline) {
      array.payloadBegin = array.tag.end;
      array.payloadLimit = array.keysBegin == 0 ? tag.begin : array.keysBegin;
    }
    m_isInArray = false;
    return true;
  }

  bool TakeAppended(const XmlTag& tag) {
    if (m_pieces != 1) return false;
    layout.isAppendedText = tag.Value("encoding") == "base64";
    m_in.clear();
    m_in.seekg(tag.end);
    char c = ' ';
    std::int64_t place = tag.end;
    while (m_in.get(c) && std::strchr(" \t\r\n", c) != nullptr) ++place;
    if (!m_in || c != '_') return false;
    layout.appendedBegin = place + 1;
    return FindAppendedEnd() && PlacePayloads();
  }

  /// The end tag is looked for from the file's end, because raw data may hold its letters.
  bool FindAppendedEnd() {
    constexpr std::streamoff kTail = 4096;
    m_in.clear();
    m_in.seekg(0, std::ios::end);
    const std::streamoff size = m_in.tellg();
    const std::streamoff first = std::max<std::streamoff>(layout.appendedBegin, size - kTail);
    std::string tail(static_cast<std::size_t>(size - first), '\0');
    m_in.seekg(first);
    m_in.read(tail.data(), static_cast<std::streamsize>(tail.size()));
    const std::size_t found = tail.rfind("</AppendedData>");
    if (!m_in || found == std::string::npos) return false;
    layout.appendedEnd = first + static_cast<std::int64_t>(found);
    return true;
  }

  bool PlacePayloads() {
    std::set<std::int64_t> starts;
    for (XmlArray& array : layout.arrays) {
      if (array.isInline) continue;
      if (array.payloadBegin > layout.appendedEnd - layout.appendedBegin) return false;
      array.payloadBegin += layout.appendedBegin;
      starts.insert(array.payloadBegin);
    }
    for (XmlArray& array : layout.arrays) {
      if (array.isInline) continue;
      const auto next = starts.upper_bound(array.payloadBegin);
      array.payloadLimit = next == starts.end() ? layout.appendedEnd : *next;
    }
    return true;
  }

  std::istream& m_in;
  XmlTagScanner m_scanner;
  XmlSection m_section = XmlSection::Mesh;
  std::string m_part;
  std::set<std::int64_t> m_offsets;
  int m_pieces = 0;
  bool m_isInArray = false;
};

}  // namespace

std::optional<XmlLayout> ReadXmlLayout(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw FileError(path, std::strerror(errno));
  LayoutReader reader(in);
  if (!reader.Read()) return std::nullopt;
  return std::move(reader.layout);
}

}  // namespace qelhost
