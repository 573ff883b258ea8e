#include "LegacyCheck.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <initializer_list>
#include <map>
#include <set>
#include <sstream>
#include <string_view>

#include "FileCursor.h"
#include "FileError.h"
#include "SourceEncoding.h"

namespace qelhost {
namespace {

constexpr std::uint32_t kPolyhedron = 42;

struct CutOff {};
/// What follows cannot be measured: the reader knows it or refuses it.
struct Unmeasured {};

std::string Lower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

/// Bits of a value in a binary file; 0 for a type of no fixed size.
int BitsOf(const std::string& type) {
  static const std::map<std::string, int> kBits = {{"bit", 1},           {"char", 8},
                                                   {"signed_char", 8},   {"unsigned_char", 8},
                                                   {"short", 16},        {"unsigned_short", 16},
                                                   {"int", 32},          {"unsigned_int", 32},
                                                   {"long", 64},         {"unsigned_long", 64},
                                                   {"float", 32},        {"double", 64},
                                                   {"vtkidtype", 32},    {"vtktypeint64", 64},
                                                   {"vtktypeuint64", 64}};
  const auto found = kBits.find(type);
  return found == kBits.end() ? 0 : found->second;
}

/// Goes through a file section by section. Throws CutOff where values are missing.
class LegacyWalk {
 public:
  /// depth: of a file within files.
  LegacyWalk(const std::string& path, FileCursor& file, int depth = 0)
      : m_path(path), m_file(file), m_depth(depth) {}

  void Run() {
    TakeHead();
    for (std::string word = Lower(m_file.Word()); !word.empty(); word = Lower(m_file.Word())) {
      if (word == "endchild" && m_depth > 0) break;
      const auto section = Sections().find(word);
      if (section == Sections().end()) throw Unmeasured{};
      m_seen.insert(word);
      section->second(*this);
    }
    if (m_kind == "unstructured_grid") Require({"points", "cells", "cell_types"});
    if (m_kind == "rectilinear_grid") {
      Require({"dimensions", "x_coordinates", "y_coordinates", "z_coordinates"});
    }
    if (m_kind == "polydata" || m_kind == "structured_grid") Require({"points"});
    // The reader follows their lists of faces wherever these lead.
    if (m_hasPolyhedra) throw Unmeasured{};
  }

 private:
  using Section = void (*)(LegacyWalk&);

  template <int Count>
  static void Words(LegacyWalk& walk) {
    for (int i = 0; i < Count; ++i) walk.Word();
  }
  /// "KEYWORD count type", PerItem values each.
  template <int PerItem>
  static void Counted(LegacyWalk& walk) {
    const std::int64_t count = walk.Number();
    walk.Values(Product(PerItem, count), Lower(walk.Word()));
  }
  /// "KEYWORD name type", PerItem values for each of the nodes or cells.
  template <int PerItem>
  static void Named(LegacyWalk& walk) {
    walk.Word();
    walk.Values(Product(PerItem, walk.m_items), Lower(walk.Word()));
  }

  static const std::map<std::string, Section>& Sections() {
    static const std::map<std::string, Section> kSections = {
        {"children", [](LegacyWalk& walk) { walk.Children(); }},
        {"dataset", [](LegacyWalk& walk) { walk.m_kind = Lower(walk.Word()); }},
        {"dimensions", Words<3>},
        {"extent", Words<6>},
        {"spacing", Words<3>},
        {"aspect_ratio", Words<3>},
        {"origin", Words<3>},
        {"points", Counted<3>},
        {"x_coordinates", Counted<1>},
        {"y_coordinates", Counted<1>},
        {"z_coordinates", Counted<1>},
        {"vertices", [](LegacyWalk& walk) { walk.Cells(); }},
        {"lines", [](LegacyWalk& walk) { walk.Cells(); }},
        {"polygons", [](LegacyWalk& walk) { walk.Cells(); }},
        {"triangle_strips", [](LegacyWalk& walk) { walk.Cells(); }},
        {"cells", [](LegacyWalk& walk) { walk.Cells(); }},
        {"cell_types", [](LegacyWalk& walk) { walk.CellTypes(); }},
        {"point_data", [](LegacyWalk& walk) { walk.m_items = walk.Number(); }},
        {"cell_data", [](LegacyWalk& walk) { walk.m_items = walk.Number(); }},
        {"scalars", [](LegacyWalk& walk) { walk.Scalars(); }},
        {"lookup_table", [](LegacyWalk& walk) { walk.LookupTable(); }},
        {"color_scalars", [](LegacyWalk& walk) { walk.ColorScalars(); }},
        {"vectors", Named<3>},
        {"normals", Named<3>},
        {"tensors", Named<9>},
        {"tensors6", Named<6>},
        {"global_ids", Named<1>},
        {"pedigree_ids", Named<1>},
        {"edge_flags", Named<1>},
        {"texture_coordinates", [](LegacyWalk& walk) { walk.TextureCoordinates(); }},
        {"field", [](LegacyWalk& walk) { walk.FieldArrays(); }},
        {"metadata", [](LegacyWalk& walk) { walk.Metadata(); }},
    };
    return kSections;
  }

  void TakeHead() {
    constexpr std::int64_t kLongest = 2048;
    std::istringstream head(m_file.Peek(kLongest));
    const FileEncoding encoding = ScanLegacyHead(m_path, head);
    m_text = encoding.mode == DataMode::Ascii;
    m_hasOffsets = encoding.legacyMajorVersion >= 5;
    for (int line = 0; line < 3; ++line) m_file.Line();
  }

  /// "CHILD type [name]", a whole file, "ENDCHILD" for each.
  void Children() {
    constexpr int kDeepest = 16;
    if (m_depth == kDeepest) throw Unmeasured{};
    for (std::int64_t left = Number(); left > 0; --left) {
      if (Lower(Word()) != "child") throw CutOff{};
      m_file.Line();
      const std::int64_t start = m_file.Place();
      if (Lower(m_file.Word()) == "endchild") continue;
      m_file.GoTo(start);
      LegacyWalk(m_path, m_file, m_depth + 1).Run();
    }
  }

  static std::int64_t Product(std::int64_t a, std::int64_t b) {
    std::int64_t product = 0;
    if (__builtin_mul_overflow(a, b, &product)) throw CutOff{};
    return product;
  }

  void Require(std::initializer_list<const char*> sections) const {
    for (const char* section : sections) {
      if (m_seen.count(section) == 0) throw CutOff{};
    }
  }
  void Cells() {
    const std::int64_t first = Number(), second = Number();
    if (!m_hasOffsets) {
      Values(second, "int");
      return;
    }
    if (Lower(Word()) != "offsets") throw CutOff{};
    Values(first, Lower(Word()));
    if (Lower(Word()) != "connectivity") throw CutOff{};
    Values(second, Lower(Word()));
  }
  void CellTypes() {
    const std::int64_t count = Number();
    if (m_text) {
      for (std::int64_t i = 0; i < count; ++i) m_hasPolyhedra |= Number() == kPolyhedron;
      return;
    }
    m_file.Line();
    if (Product(count, 4) > m_file.BytesLeft()) throw CutOff{};
    for (std::int64_t i = 0; i < count; ++i) {
      std::uint32_t type = 0;
      for (int byte = 0; byte < 4; ++byte) type = type << 8 | m_file.Take();
      m_hasPolyhedra |= type == kPolyhedron;
    }
  }
  void Scalars() {
    Word();
    const std::string type = Lower(Word());
    const std::string rest = m_file.Line();
    std::int64_t components = 1;
    const std::size_t digit = rest.find_first_of("123456789");
    if (digit != std::string::npos) {
      components = 0;  // and stays so when there are more than can be counted
      std::from_chars(rest.data() + digit, rest.data() + rest.size(), components);
      if (components == 0) throw CutOff{};
    }
    if (Lower(Word()) != "lookup_table") throw CutOff{};
    Word();
    Values(Product(components, m_items), type);
  }
  void LookupTable() {
    Word();
    Values(Product(4, Number()), "unsigned_char");
  }
  void ColorScalars() {
    Word();
    Values(Product(Number(), m_items), "unsigned_char");
  }
  void TextureCoordinates() {
    Word();
    const std::int64_t dimension = Number();
    Values(Product(dimension, m_items), Lower(Word()));
  }
  void FieldArrays() {
    Word();
    for (std::int64_t left = Number(); left > 0; --left) {
      std::string name = Word();
      if (Lower(name) == "metadata") {
        Metadata();
        name = Word();
      }
      if (name == "NULL_ARRAY") continue;
      const std::int64_t components = Number();
      const std::int64_t tuples = Number();
      Values(Product(components, tuples), Lower(Word()));
      CountArray(components);
    }
  }
  /// Each component becomes a variable, even where there are no values, and VTK looks each array up
  /// among all.
  void CountArray(std::int64_t components) {
    constexpr int kMostArrays = 1 << 14;
    constexpr std::int64_t kMostComponents = 1 << 20;
    m_components += components;
    const bool isTooMuch =
        ++m_arrays > kMostArrays || m_components > kMostComponents + m_file.Size();
    if (isTooMuch) throw FileError(m_path, "damaged: it has more arrays than its size allows");
  }
  void Metadata() {
    m_file.Line();
    while (!m_file.IsAtEnd()) {
      if (m_file.PassLineIsBlank()) return;
    }
  }

  void Values(std::int64_t count, const std::string& type) {
    if (count < 0) throw CutOff{};
    if (type == "string" || type == "utf8_string") {
      Strings(count);
      return;
    }
    if (type == "variant") throw Unmeasured{};
    const int bits = BitsOf(type);
    // VTK's reader goes on without an array.
    if (bits == 0) throw FileError(m_path, "damaged: it has values of an unknown type");
    if (m_text) {
      for (std::int64_t i = 0; i < count; ++i) {
        if (!m_file.PassWord()) throw CutOff{};
      }
    } else {
      m_file.Line();
      Skip(bits == 1 ? (count + 7) / 8 : Product(count, bits / 8));
    }
  }
  void Strings(std::int64_t count) {
    m_file.Line();
    for (std::int64_t i = 0; i < count; ++i) {
      if (m_text) {
        if (m_file.IsAtEnd()) throw CutOff{};
        m_file.Line();
      } else {
        SkipString();
      }
    }
  }
  /// A string's length stands before it, in 1, 2, 4 or 8 bytes by the first byte's upper two bits.
  void SkipString() {
    if (m_file.IsAtEnd()) throw CutOff{};
    const unsigned char head = m_file.Take();
    const int more = (1 << (3 - (head >> 6))) - 1;
    if (m_file.BytesLeft() < more) throw CutOff{};
    std::int64_t length = head & 0x3f;
    for (int i = 0; i < more; ++i) length = length << 8 | m_file.Take();
    Skip(length);
  }
  void Skip(std::int64_t bytes) {
    if (bytes < 0 || bytes > m_file.BytesLeft()) throw CutOff{};
    m_file.GoTo(m_file.Place() + bytes);
  }
  std::string Word() {
    std::string word = m_file.Word();
    if (word.empty()) throw CutOff{};
    return word;
  }
  std::int64_t Number() {
    const std::string word = Word();
    std::int64_t number = -1;
    const char* const end = word.data() + word.size();
    // VTK would take the first digits of "1e9".
    if (std::from_chars(word.data(), end, number).ptr != end) throw CutOff{};
    // More than any file holds, and small enough for the products above.
    constexpr std::int64_t kMost = std::int64_t{1} << 48;
    if (number < 0 || number > kMost) throw CutOff{};
    return number;
  }

  const std::string& m_path;
  FileCursor& m_file;
  int m_depth;
  std::string m_kind;
  std::set<std::string> m_seen;
  bool m_text = false;
  bool m_hasPolyhedra = false;
  bool m_hasOffsets = false;
  int m_arrays = 0;               ///< of all fields so far
  std::int64_t m_components = 0;  ///< of these
  std::int64_t m_items = 0;       ///< nodes or cells of the attributes in hand
};

}  // namespace

bool CheckLegacyFile(const ByteFile& file) {
  FileCursor start(file);
  try {
    LegacyWalk(file.Path(), start).Run();
    return true;
  } catch (const Unmeasured&) {
    return false;
  } catch (const CutOff&) {
    throw FileError(file.Path(), "damaged: the file is cut off, or its counts are wrong");
  }
}

}  // namespace qelhost
