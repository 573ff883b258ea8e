#include "XmlLayout.h"

#include <vtkType.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <initializer_list>
#include <limits>
#include <map>
#include <set>

#include "../FileError.h"
#include "../XmlText.h"
#include "PieceCounts.h"

namespace qelhost {
namespace {

/// VTK's own choice where several of its types have the size.
const std::map<std::string, int>& NumberTypes() {
  static const std::map<std::string, int> kTypes = {
      {"Float32", VTK_FLOAT},    {"Float64", VTK_DOUBLE},
      {"Int8", VTK_SIGNED_CHAR}, {"UInt8", VTK_UNSIGNED_CHAR},
      {"Int16", VTK_SHORT},      {"UInt16", VTK_UNSIGNED_SHORT},
      {"Int32", VTK_INT},        {"UInt32", VTK_UNSIGNED_INT},
      {"Int64", VTK_LONG_LONG},  {"UInt64", VTK_UNSIGNED_LONG_LONG},
  };
  return kTypes;
}

int VtkTypeOf(const XmlTag& tag) {
  const auto found = NumberTypes().find(tag.Value("type"));
  if (found == NumberTypes().end()) return 0;
  const XmlAttribute* const isId = tag.Find("IdType");
  if (isId == nullptr || isId->value == "0") return found->second;
  return isId->value == "1" && found->second == VTK_LONG_LONG ? VTK_ID_TYPE : 0;
}

bool IsKnownType(const std::string& type) {
  return NumberTypes().count(type) > 0 || type == "String" || type == "Bit";
}

bool IsOneOf(const std::string& text, std::initializer_list<const char*> choice) {
  return std::any_of(choice.begin(), choice.end(),
                     [&text](const char* other) { return text == other; });
}

/// Takes the tags of a file in their order.
class LayoutReader {
 public:
  LayoutReader(const std::string& path, std::istream& in) : m_path(path), m_in(in), m_scanner(in) {}

  bool Read() {
    m_in.seekg(0, std::ios::end);
    m_fileSize = m_in.tellg();
    m_in.seekg(0);
    XmlTag tag;
    while (m_scanner.Next(tag)) {
      if (tag.name.empty()) return false;
      const char first = tag.name.front();
      if (first == '!' || first == '?') {
        if (!TakeRemark(tag)) return false;
        continue;
      }
      const bool isTaken = first == '/' ? TakeEnd(tag) : TakeBegin(tag);
      if (!isTaken) return false;
      if (layout.appendedBegin > 0) return Finish();
    }
    return m_open.empty() && Finish();
  }

  XmlLayout layout;

 private:
  [[noreturn]] void Damaged(const std::string& what) const {
    throw FileError(m_path, "damaged: " + what);
  }

  /// A layout is plain when all of its parts stand where VTK looks for them, each once.
  void RequirePlain(bool isPlain) { layout.isPlain = layout.isPlain && isPlain; }

  bool Finish() {
    // What no piece fills would be left as it lay in memory.
    const bool isFilled = m_pieces == 1 ? m_isFilledByOne : m_cells >= layout.whole.cells;
    if (layout.whole.hasExtent && layout.whole.nodes > 0 && !isFilled) {
      Damaged("its pieces do not fill its extent");
    }
    RequirePlain(m_pieces == 1 && m_pointArrays <= 1);
    return !layout.type.empty();
  }

  /// Comments, the declaration and what is meant for other programs. Other encodings, declarations
  /// of entities and text that is marked as such are VTK's business.
  bool TakeRemark(const XmlTag& tag) {
    if (m_isInArray) {
      XmlArray& array = layout.arrays.back();
      if (array.keysBegin == 0) array.keysBegin = tag.begin;
      array.hasOtherKeys = true;
    }
    if (tag.name != "?xml") return tag.name == "!--" || tag.name.front() == '?';
    const XmlAttribute* const encoding = tag.Find("encoding");
    // All of them leave the letters of markup where they are.
    return encoding == nullptr ||
           IsOneOf(encoding->value, {"UTF-8", "utf-8", "ISO-8859-1", "iso-8859-1", "US-ASCII",
                                     "us-ascii", "ASCII", "ascii"});
  }

  /// VTK looks each attribute up among all of its tag, and looks for one of each component. What
  /// that takes must stay in proportion to the file.
  void CountLooks(std::size_t wanted, const XmlTag& tag) {
    constexpr std::int64_t kAlways = 1 << 24;
    constexpr std::int64_t kForEachByte = 128;
    m_looks += static_cast<std::int64_t>(wanted * tag.attributes.size());
    if (m_looks > kAlways + kForEachByte * m_fileSize) {
      Damaged("its arrays have more attributes and components than its size allows");
    }
  }

  /// Those of an array of no values take room in memory, for which no file has paid.
  void CountComponents(const XmlArray& array) {
    constexpr std::size_t kOfNothing = 16;
    const std::size_t times = array.tuples == 0 ? kOfNothing : 1;
    CountLooks(static_cast<std::size_t>(array.components) * times, array.tag);
  }

  bool TakeBegin(const XmlTag& tag) {
    constexpr std::size_t kDeepest = 64;
    CountLooks(tag.attributes.size(), tag);
    if (!tag.isSound || m_open.size() > kDeepest) return false;
    if (m_open.empty() != (tag.name == "VTKFile")) return false;
    bool isGood = true;
    if (m_isInArray) {
      isGood = TakeInside(tag);
    } else if (tag.name == "DataArray" || tag.name == "Array") {
      BeginArray(tag);
    } else if (tag.name == "VTKFile") {
      isGood = TakeRoot(tag);
    } else if (m_open.size() == 1 && tag.name == "AppendedData") {
      TakeAppended(tag);
    } else {
      RequireNoHolder();
      TakeSection(tag);
    }
    if (!tag.isClosed) m_open.push_back(tag.name);
    return isGood;
  }

  bool TakeEnd(const XmlTag& tag) {
    if (m_open.empty() || tag.name.compare(1, std::string::npos, m_open.back()) != 0) return false;
    m_open.pop_back();
    if (tag.name == "/DataArray" || tag.name == "/Array") {
      EndArray(tag);
    } else if (IsVariables(tag.name.substr(1)) && m_open.size() == 3) {
      layout.sectionEnds.push_back(tag.begin);
    }
    return true;
  }

  bool TakeRoot(const XmlTag& tag) {
    const std::string headers = tag.Value("header_type");
    const std::string order = tag.Value("byte_order");
    layout.type = tag.Value("type");
    layout.compressor = tag.Value("compressor");
    layout.wideHeader = headers == "UInt64";
    layout.bigEndian = order == "BigEndian";
    return !tag.isClosed && IsOneOf(headers, {"", "UInt32", "UInt64"}) &&
           IsOneOf(order, {"", "LittleEndian", "BigEndian"});
  }

  /// VTK takes whatever stands in these for arrays.
  void RequireNoHolder() const {
    static const std::set<std::string> kHolders = {"FieldData", "PointData",  "CellData", "Points",
                                                   "Cells",     "Verts",      "Lines",    "Strips",
                                                   "Polys",     "Coordinates"};
    if (!m_open.empty() && kHolders.count(m_open.back()) > 0) {
      Damaged("something else stands where arrays belong");
    }
  }

  static bool IsVariables(const std::string& name) {
    return name == "PointData" || name == "CellData";
  }

  void TakeSection(const XmlTag& tag) {
    if (m_open.size() == 1) {
      RequirePlain(tag.name == layout.type && ++m_meshes == 1);
      layout.whole = PieceCounts::Of(tag);
    }
    if (tag.name == "Piece") {
      RequirePlain(m_open.size() == 2);
      m_counts = PieceCounts::Of(tag);
      if (!m_counts.areSound) Damaged("a piece counts what cannot be counted");
      layout.points = m_counts.Of("NumberOfPoints");
      layout.cells = m_counts.Of("NumberOfCells");
      m_isFilledByOne = m_isFilledByOne || m_counts.Contains(layout.whole);
      m_cells += std::max<std::int64_t>(m_counts.cells, 0);
      m_names.clear();
      m_arraysOfPart.clear();
      m_coordinates = 0;
      ++m_pieces;
    } else if (IsVariables(tag.name)) {
      RequirePlain(m_open.size() == 3 && m_variables.insert(tag.name).second);
      if (!tag.isClosed) layout.attributeSections.push_back(tag);
    }
  }

  void BeginArray(const XmlTag& tag) {
    XmlArray array;
    array.part = m_open.back();
    array.section = array.part == "PointData"   ? XmlSection::PointData
                    : array.part == "CellData"  ? XmlSection::CellData
                    : array.part == "FieldData" ? XmlSection::FieldData
                                                : XmlSection::Mesh;
    const std::optional<std::string> name = Unescaped(tag.Value("Name"));
    RequirePlain(name.has_value());
    array.name = name.value_or("");
    array.isTypeKnown = IsKnownType(tag.Value("type"));
    array.vtkType = tag.name == "DataArray" ? VtkTypeOf(tag) : 0;
    const XmlAttribute* const components = tag.Find("NumberOfComponents");
    const auto count = components == nullptr ? 1 : NumberIn(components->value).value_or(-1);
    if (count < 0 || count > 1 << 20) Damaged("an array counts what cannot be counted");
    // VTK's writer says 0 of arrays that it took for no vectors.
    array.components = std::max(static_cast<int>(count), 1);
    array.tag = tag;
    array.closing = tag.end;
    if (array.part == "Points") ++m_pointArrays;
    // VTK looks each up among all others.
    constexpr int kMostArrays = 1 << 14;
    if (++m_arraysOfPart[array.part] > kMostArrays) Damaged("it has more arrays than any mesh");
    array.tuples = TuplesOf(array);
    CountComponents(array);
    // VTK's reader would miss the second.
    const bool isNamed = IsVariables(array.part) || array.part == "Cells";
    if (isNamed && !m_names.insert({array.part, tag.Value("Name")}).second) {
      if (tag.Find("TimeStep") != nullptr) {
        throw FileError(m_path, "holds several time steps of one mesh; write a file for each step");
      }
      Damaged("two arrays have the name \"" + array.name + "\"");
    }
    RequirePlain(m_open.size() == (array.section == XmlSection::FieldData ? 3 : 4));
    array.piece = m_pieces;
    TakeFormat(array);
    if (array.isInline) RequireNoBracket(tag);
    layout.arrays.push_back(std::move(array));
    m_isInArray = !tag.isClosed;
  }

  /// VTK looks for the numbers behind the first angle bracket, be it within quotes.
  void RequireNoBracket(const XmlTag& tag) const {
    for (const XmlAttribute& attribute : tag.attributes) {
      if (attribute.value.find('>') != std::string::npos) {
        Damaged("an angle bracket stands within the tag of an array");
      }
    }
  }

  std::int64_t TuplesOf(const XmlArray& array) {
    if (array.part == "PointData" || array.part == "Points") return m_counts.nodes;
    if (array.part == "CellData") return m_counts.cells;
    if (array.part == "Coordinates")
      return m_coordinates < 3 ? m_counts.ticks[m_coordinates++] : -1;
    if (array.section == XmlSection::FieldData) {
      const XmlAttribute* const tuples = array.tag.Find("NumberOfTuples");
      if (tuples == nullptr) return -1;
      const std::optional<std::int64_t> count = NumberIn(tuples->value);
      if (!count || *count > PieceCounts::kMost) Damaged("an array counts what cannot be counted");
      return *count;
    }
    const std::int64_t count = m_counts.Of("NumberOf" + array.part);
    if (array.name == "types" || array.name == "offsets") return count;
    // How many nodes cells have stands elsewhere, but they have some.
    return array.name == "connectivity" ? std::min<std::int64_t>(count, 1) : -1;
  }

  /// VTK goes by the offset, where there is one.
  void TakeFormat(XmlArray& array) {
    const std::string format = array.tag.Value("format");
    array.isInline = array.tag.Find("offset") == nullptr;
    array.isText = array.isInline && format != "binary";
    RequirePlain(array.isInline == (format != "appended"));
    if (array.isText && !IsOneOf(format, {"", "ascii"})) Damaged("an array has no known format");
    // What is no part of the user's variables is left to VTK in any form.
    RequirePlain(!array.isText || !IsVariables(array.part));
    RequirePlain(array.tag.Find("TimeStep") == nullptr);
    if (!array.isInline) TakeOffset(array);
  }

  /// The payload's place relative to the appended data, until that is known. Arrays that share a
  /// payload could not be altered by themselves.
  void TakeOffset(XmlArray& array) {
    constexpr std::int64_t kNowhere = std::numeric_limits<std::int64_t>::max();
    array.payloadBegin = NumberIn(array.tag.Value("offset")).value_or(kNowhere);
    RequirePlain(m_offsets.insert(array.payloadBegin).second);
  }

  bool TakeInside(const XmlTag& tag) {
    static const std::set<std::string> kRangeKeys = {"L2_NORM_RANGE", "L2_NORM_FINITE_RANGE",
                                                     "COMPONENT_RANGE"};
    if (IsOneOf(tag.name, {"DataArray", "Array"})) Damaged("an array stands in another");
    XmlArray& array = layout.arrays.back();
    if (array.keysBegin == 0) array.keysBegin = tag.begin;
    const bool isKey = tag.name == "InformationKey" && kRangeKeys.count(tag.Value("name")) > 0;
    if (!isKey && tag.name != "Value") array.hasOtherKeys = true;
    return true;
  }

  void EndArray(const XmlTag& tag) {
    XmlArray& array = layout.arrays.back();
    array.closing = tag.begin;
    if (array.isInline) {
      array.payloadBegin = array.tag.end;
      array.payloadLimit = array.keysBegin == 0 ? tag.begin : array.keysBegin;
    }
    m_isInArray = false;
  }

  void TakeAppended(const XmlTag& tag) {
    const std::string encoding = tag.Value("encoding");
    if (!IsOneOf(encoding, {"raw", "base64"})) Damaged("its data have no known encoding");
    layout.isAppendedText = encoding != "raw";
    constexpr std::streamsize kMostBefore = 4096;
    std::string before(kMostBefore, '\0');
    m_in.clear();
    m_in.seekg(tag.end);
    m_in.read(before.data(), kMostBefore);
    before.resize(static_cast<std::size_t>(m_in.gcount()));
    const std::size_t mark = before.find_first_not_of(" \t\r\n");
    // VTK would begin to count anywhere.
    if (mark == std::string::npos || before[mark] != '_') Damaged("no mark begins its data");
    layout.appendedBegin = tag.end + static_cast<std::int64_t>(mark) + 1;
    if (!FindAppendedEnd()) Damaged("its data have no end");
    PlacePayloads();
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

  /// What lies behind them all lies at their end, where no payload is.
  void PlacePayloads() {
    const std::int64_t size = layout.appendedEnd - layout.appendedBegin;
    std::set<std::int64_t> starts;
    for (XmlArray& array : layout.arrays) {
      if (array.isInline) continue;
      array.payloadBegin = layout.appendedBegin + std::min(array.payloadBegin, size);
      starts.insert(array.payloadBegin);
    }
    for (XmlArray& array : layout.arrays) {
      if (array.isInline) continue;
      const auto next = starts.upper_bound(array.payloadBegin);
      array.payloadLimit = next == starts.end() ? layout.appendedEnd : *next;
    }
  }

  const std::string& m_path;
  std::istream& m_in;
  XmlTagScanner m_scanner;
  PieceCounts m_counts;      ///< of the piece in hand
  std::int64_t m_cells = 0;  ///< of the pieces so far
  bool m_isFilledByOne = false;
  std::set<std::pair<std::string, std::string>> m_names;  ///< of the piece's arrays, by part
  std::map<std::string, int> m_arraysOfPart;              ///< of the piece
  std::int64_t m_fileSize = 0;
  std::int64_t m_looks = 0;         ///< at attributes of tags, that VTK has to take
  std::size_t m_coordinates = 0;    ///< arrays of them so far
  std::vector<std::string> m_open;  ///< elements, the outermost first
  std::set<std::string> m_variables;
  std::set<std::int64_t> m_offsets;
  int m_meshes = 0;
  int m_pieces = 0;
  int m_pointArrays = 0;
  bool m_isInArray = false;
};

}  // namespace

std::optional<XmlLayout> ReadXmlLayout(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw FileError(path, std::strerror(errno));
  LayoutReader reader(path, in);
  if (!reader.Read()) return std::nullopt;
  return std::move(reader.layout);
}

}  // namespace qelhost
