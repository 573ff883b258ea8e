#include "LegacyCheck.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstring>
#include <initializer_list>
#include <map>
#include <set>
#include <sstream>
#include <string_view>

#include "FileError.h"
#include "SourceEncoding.h"

namespace qelhost {
namespace {

/// A file's bytes, mapped.
class MappedFile {
 public:
  explicit MappedFile(const std::string& path) {
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status {};
    if (fd >= 0 && fstat(fd, &status) == 0 && status.st_size > 0) {
      m_size = static_cast<std::size_t>(status.st_size);
      m_data = mmap(nullptr, m_size, PROT_READ, MAP_PRIVATE, fd, 0);
    }
    if (fd >= 0) close(fd);
    if (m_data == MAP_FAILED) throw FileError(path, std::strerror(errno));
  }
  ~MappedFile() { munmap(m_data, m_size); }
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;
  std::string_view Bytes() const { return {static_cast<const char*>(m_data), m_size}; }

 private:
  void* m_data = MAP_FAILED;
  std::size_t m_size = 0;
};

struct CutOff {};
/// What follows cannot be measured: the reader knows it or refuses it.
struct Unmeasured {};

bool IsBlank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

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
  LegacyWalk(const std::string& path, std::string_view bytes, int depth = 0)
      : m_path(path), m_left(bytes), m_depth(depth) {}

  void Run() {
    TakeHead();
    for (std::string word = Lower(MaybeWord()); !word.empty(); word = Lower(MaybeWord())) {
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
  }

  std::string_view Left() const { return m_left; }

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
        {"cell_types", [](LegacyWalk& walk) { walk.Values(walk.Number(), "int"); }},
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
    constexpr std::size_t kLongest = 2048;
    std::istringstream head(std::string(m_left.substr(0, kLongest)));
    const FileEncoding encoding = ScanLegacyHead(m_path, head);
    m_text = encoding.mode == DataMode::Ascii;
    m_hasOffsets = encoding.legacyMajorVersion >= 5;
    for (int line = 0; line < 3; ++line) Line();
  }

  /// "CHILD type [name]", a whole file, "ENDCHILD" for each.
  void Children() {
    constexpr int kDeepest = 16;
    if (m_depth == kDeepest) throw Unmeasured{};
    for (std::int64_t left = Number(); left > 0; --left) {
      if (Lower(Word()) != "child") throw CutOff{};
      Line();
      const std::string_view file = m_left;
      if (Lower(MaybeWord()) == "endchild") continue;
      LegacyWalk child(m_path, file, m_depth + 1);
      child.Run();
      m_left = child.Left();
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
  void Scalars() {
    Word();
    const std::string type = Lower(Word());
    const std::string_view rest = Line();
    std::int64_t components = 1;
    const std::size_t digit = rest.find_first_of("123456789");
    if (digit != std::string_view::npos) {
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
      std::string name(Word());
      if (Lower(name) == "metadata") {
        Metadata();
        name = Word();
      }
      if (name == "NULL_ARRAY") continue;
      const std::int64_t components = Number();
      const std::int64_t tuples = Number();
      Values(Product(components, tuples), Lower(Word()));
    }
  }
  void Metadata() {
    Line();
    while (!m_left.empty()) {
      const std::string_view line = Line();
      if (std::all_of(line.begin(), line.end(), IsBlank)) return;
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
      for (std::int64_t i = 0; i < count; ++i) Word();
    } else {
      Line();
      Skip(bits == 1 ? (count + 7) / 8 : Product(count, bits / 8));
    }
  }
  void Strings(std::int64_t count) {
    Line();
    for (std::int64_t i = 0; i < count; ++i) {
      if (m_text) {
        if (m_left.empty()) throw CutOff{};
        Line();
      } else {
        SkipString();
      }
    }
  }
  /// A string's length stands before it, in 1, 2, 4 or 8 bytes by the first byte's upper two bits.
  void SkipString() {
    if (m_left.empty()) throw CutOff{};
    const auto head = static_cast<unsigned char>(m_left.front());
    const int bytes = 1 << (3 - (head >> 6));
    if (m_left.size() < static_cast<std::size_t>(bytes)) throw CutOff{};
    std::int64_t length = head & 0x3f;
    for (int i = 1; i < bytes; ++i) length = length << 8 | static_cast<unsigned char>(m_left[i]);
    Skip(bytes);
    Skip(length);
  }
  void Skip(std::int64_t bytes) {
    if (bytes < 0 || static_cast<std::size_t>(bytes) > m_left.size()) throw CutOff{};
    m_left.remove_prefix(static_cast<std::size_t>(bytes));
  }
  /// The rest of the line in hand; its end is taken too.
  std::string_view Line() {
    const std::size_t end = std::min(m_left.find('\n'), m_left.size());
    const std::string_view line = m_left.substr(0, end);
    m_left.remove_prefix(std::min(end + 1, m_left.size()));
    return line;
  }
  std::string_view MaybeWord() {
    std::size_t at = 0;
    while (at < m_left.size() && IsBlank(m_left[at])) ++at;
    const std::size_t start = at;
    while (at < m_left.size() && !IsBlank(m_left[at])) ++at;
    const std::string_view word = m_left.substr(start, at - start);
    m_left.remove_prefix(at);
    return word;
  }
  std::string_view Word() {
    const std::string_view word = MaybeWord();
    if (word.empty()) throw CutOff{};
    return word;
  }
  std::int64_t Number() {
    const std::string_view word = Word();
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
  std::string_view m_left;
  int m_depth;
  std::string m_kind;
  std::set<std::string> m_seen;
  bool m_text = false;
  bool m_hasOffsets = false;
  std::int64_t m_items = 0;  ///< nodes or cells of the attributes in hand
};

}  // namespace

bool CheckLegacyFile(const std::string& path) {
  const MappedFile file(path);
  try {
    LegacyWalk(path, file.Bytes()).Run();
    return true;
  } catch (const Unmeasured&) {
    return false;
  } catch (const CutOff&) {
    throw FileError(path, "damaged: the file is cut off, or its counts are wrong");
  }
}

}  // namespace qelhost
