// How a VTK file stores its numbers, learned from its own text, so that it can be written alike.
#pragma once

#include <cstdint>
#include <istream>
#include <string>

namespace qelhost {

enum class DataMode { Ascii, Binary, AppendedRaw, AppendedBase64 };

struct FileEncoding {
  bool known = false;  ///< false: no VTK file; the defaults below serve
  DataMode mode = DataMode::AppendedRaw;
  std::string compressor;  ///< VTK's class name; "" for none
  bool wideHeader = true;  ///< UInt64 against UInt32
  bool bigEndian = false;
  bool wideIds = true;      ///< Int64 connectivity
  std::string legacyTitle;  ///< a .vtk file's second line
  int legacyMajorVersion = 5;
};

/// What a complete XML file says of itself.
struct XmlOverview {
  std::string type;  ///< UnstructuredGrid, PolyData, vtkMultiBlockDataSet, ...
  FileEncoding encoding;
  std::int64_t points = 0;  ///< summed over the pieces; of unstructured kinds alone
  std::int64_t cells = 0;
  bool countsKnown = false;
  bool areCountsSound = true;
};

/// Scans the tags of an XML file up to its appended data, and its end. Throws FileError when it
/// cannot be opened, is no VTK XML file, or does not end as one.
XmlOverview ScanXmlFile(const std::string& path);

/// The first three lines of a legacy file. Throws FileError likewise.
FileEncoding ScanLegacyFile(const std::string& path);
/// The same of a file within a file.
FileEncoding ScanLegacyHead(const std::string& path, std::istream& in);

}  // namespace qelhost
