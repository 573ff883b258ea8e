#include "SourceEncoding.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <map>
#include <vector>

#include "FileError.h"

namespace qelhost {
namespace {

constexpr char kNotXml[] = "not a VTK XML file";

/// Hands out one tag after the other; text between tags is skipped unread.
class TagScanner {
 public:
  explicit TagScanner(std::istream& in) : m_in(in), m_buffer(1 << 20) {}

  /// The next tag without its angle brackets; false at the end of the file.
  bool Next(std::string& tag) {
    tag.clear();
    if (!SkipPast('<', nullptr)) return false;
    return SkipPast('>', &tag);
  }

 private:
  bool SkipPast(char wanted, std::string* text) {
    for (;;) {
      if (m_at == m_end && !Fill()) return false;
      const char* from = m_buffer.data() + m_at;
      const auto* found = static_cast<const char*>(std::memchr(from, wanted, m_end - m_at));
      const std::size_t length = found == nullptr ? m_end - m_at : found - from;
      if (text != nullptr) text->append(from, length);
      m_at += length;
      if (found != nullptr) {
        ++m_at;
        return true;
      }
      // No tag is that long: this is some other file.
      if (text != nullptr && text->size() > (1 << 16)) return false;
    }
  }
  bool Fill() {
    m_in.read(m_buffer.data(), static_cast<std::streamsize>(m_buffer.size()));
    m_at = 0;
    m_end = static_cast<std::size_t>(m_in.gcount());
    return m_end > 0;
  }

  std::istream& m_in;
  std::vector<char> m_buffer;
  std::size_t m_at = 0;
  std::size_t m_end = 0;
};

std::map<std::string, std::string> AttributesOf(const std::string& tag) {
  std::map<std::string, std::string> attributes;
  constexpr char kBlanks[] = " \t\r\n/";
  std::size_t at = tag.find_first_of(kBlanks);
  while (at != std::string::npos) {
    at = tag.find_first_not_of(kBlanks, at);
    const std::size_t equals = tag.find('=', at);
    if (at == std::string::npos || equals == std::string::npos) break;
    const std::size_t open = tag.find_first_of("\"'", equals);
    if (open == std::string::npos) break;
    const std::size_t close = tag.find(tag[open], open + 1);
    if (close == std::string::npos) break;
    std::string name = tag.substr(at, equals - at);
    name.erase(name.find_last_not_of(" \t\r\n") + 1);
    attributes[name] = tag.substr(open + 1, close - open - 1);
    at = close + 1;
  }
  return attributes;
}

std::string NameOf(const std::string& tag) { return tag.substr(0, tag.find_first_of(" \t\r\n/")); }

std::int64_t Number(const std::string& text) { return std::strtoll(text.c_str(), nullptr, 10); }

class Overview {
 public:
  /// False: no further tag is of interest.
  bool Take(const std::string& tag) {
    const std::string name = NameOf(tag);
    const auto attributes = AttributesOf(tag);
    const auto value = [&attributes](const char* key) {
      const auto found = attributes.find(key);
      return found == attributes.end() ? std::string() : found->second;
    };
    if (name == "VTKFile") {
      result.type = value("type");
      result.encoding.known = true;
      result.encoding.compressor = value("compressor");
      result.encoding.wideHeader = value("header_type") == "UInt64";
      result.encoding.bigEndian = value("byte_order") == "BigEndian";
    } else if (name == "Piece" && attributes.count("NumberOfPoints") > 0) {
      result.countsKnown = true;
      result.points += Number(value("NumberOfPoints"));
      for (const char* key :
           {"NumberOfCells", "NumberOfVerts", "NumberOfLines", "NumberOfStrips", "NumberOfPolys"}) {
        result.cells += Number(value(key));
      }
    } else if (name == "DataArray") {
      TakeArray(value("format"), value("Name"), value("type"));
    } else if (name == "AppendedData") {
      if (value("encoding") == "base64") m_appended = DataMode::AppendedBase64;
      return false;
    }
    return true;
  }

  void Finish() {
    if (m_format == "ascii") result.encoding.mode = DataMode::Ascii;
    if (m_format == "binary") result.encoding.mode = DataMode::Binary;
    if (m_format == "appended") result.encoding.mode = m_appended;
  }

  XmlOverview result;

 private:
  void TakeArray(const std::string& format, const std::string& name, const std::string& type) {
    if (m_format.empty()) m_format = format;
    if (name == "connectivity") result.encoding.wideIds = type != "Int32";
  }

  std::string m_format;
  DataMode m_appended = DataMode::AppendedRaw;
};

/// The end of a file, to tell whether it was written to its end.
bool EndsAsXml(std::istream& in) {
  in.clear();
  in.seekg(0, std::ios::end);
  const std::streamoff size = in.tellg();
  const std::streamoff wanted = std::min<std::streamoff>(size, 256);
  std::string tail(static_cast<std::size_t>(wanted), '\0');
  in.seekg(size - wanted);
  in.read(tail.data(), wanted);
  const std::size_t last = tail.find_last_not_of(" \t\r\n");
  constexpr char kEnd[] = "</VTKFile>";
  constexpr std::size_t kLength = sizeof(kEnd) - 1;
  return last != std::string::npos && last + 1 >= kLength &&
         tail.compare(last + 1 - kLength, kLength, kEnd) == 0;
}

}  // namespace

XmlOverview ScanXmlFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw FileError(path, std::strerror(errno));
  TagScanner tags(in);
  Overview overview;
  std::string tag;
  for (int count = 0; tags.Next(tag); ++count) {
    if (!overview.Take(tag)) break;
    if (count > 16 && overview.result.type.empty()) break;
  }
  if (overview.result.type.empty()) throw FileError(path, kNotXml);
  if (!EndsAsXml(in)) throw FileError(path, "damaged: the file is cut off");
  overview.Finish();
  return overview.result;
}

FileEncoding ScanLegacyFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw FileError(path, std::strerror(errno));
  const auto line = [&in] {
    // A line of a legacy head has at most 256 characters; a foreign file may have no line end.
    std::string text(512, '\0');
    in.getline(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(std::strlen(text.c_str()));
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())) != 0) {
      text.pop_back();
    }
    return text;
  };
  FileEncoding encoding;
  const std::string first = line();
  constexpr char kMark[] = "# vtk DataFile Version";
  if (first.compare(0, sizeof(kMark) - 1, kMark) != 0) {
    throw FileError(path, "not a legacy VTK file");
  }
  encoding.known = true;
  encoding.legacyMajorVersion = static_cast<int>(Number(first.substr(sizeof(kMark) - 1)));
  encoding.legacyTitle = line();
  std::string mode = line();
  std::transform(mode.begin(), mode.end(), mode.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  if (mode != "ASCII" && mode != "BINARY") {
    throw FileError(path, "damaged: neither ASCII nor BINARY stands in its third line");
  }
  encoding.mode = mode == "ASCII" ? DataMode::Ascii : DataMode::Binary;
  return encoding;
}

}  // namespace qelhost
