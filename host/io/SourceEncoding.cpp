#include "SourceEncoding.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <regex>

#include "FileError.h"
#include "xml/PieceCounts.h"
#include "xml/XmlTags.h"

namespace qelhost {
namespace {

constexpr char kNotXml[] = "not a VTK XML file";

class Overview {
 public:
  /// False: no further tag is of interest.
  bool Take(const XmlTag& tag) {
    const std::string& name = tag.name;
    const auto value = [&tag](const char* key) { return tag.Value(key); };
    if (name == "VTKFile") {
      result.type = value("type");
      result.encoding.known = true;
      result.encoding.compressor = value("compressor");
      result.encoding.wideHeader = value("header_type") == "UInt64";
      result.encoding.bigEndian = value("byte_order") == "BigEndian";
    } else if (name == "Piece" && tag.Find("NumberOfPoints") != nullptr) {
      TakePiece(PieceCounts::Of(tag));
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
  /// Each count is small enough for as many sums as a file has room for.
  void TakePiece(const PieceCounts& counts) {
    result.countsKnown = true;
    result.areCountsSound = result.areCountsSound && counts.areSound;
    if (!result.areCountsSound) return;
    result.points += counts.nodes;
    result.cells += counts.cells;
  }

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
  XmlTagScanner tags(in);
  Overview overview;
  XmlTag tag;
  for (int count = 0; tags.Next(tag); ++count) {
    if (!overview.Take(tag)) break;
    if (count > 16 && overview.result.type.empty()) break;
  }
  if (overview.result.type.empty()) throw FileError(path, kNotXml);
  if (!EndsAsXml(in)) throw FileError(path, "damaged: the file is cut off");
  if (!overview.result.areCountsSound) {
    throw FileError(path, "damaged: a piece counts what cannot be counted");
  }
  overview.Finish();
  return overview.result;
}

namespace {

/// "# vtk DataFile Version 5.1"; -1 for what is no such line. VTK takes any version that it cannot
/// read for its own.
int MajorVersionIn(const std::string& line) {
  static const std::regex kFirst(R"(# vtk DataFile Version\s+(\d{1,3})\.\d{1,3}\s*)");
  std::smatch found;
  return std::regex_match(line, found, kFirst) ? std::stoi(found[1]) : -1;
}

}  // namespace

FileEncoding ScanLegacyHead(const std::string& path, std::istream& in) {
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
  encoding.legacyMajorVersion = MajorVersionIn(line());
  if (encoding.legacyMajorVersion < 0) throw FileError(path, "not a legacy VTK file");
  encoding.known = true;
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

FileEncoding ScanLegacyFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw FileError(path, std::strerror(errno));
  return ScanLegacyHead(path, in);
}

}  // namespace qelhost
