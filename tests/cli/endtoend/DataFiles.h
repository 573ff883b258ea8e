// Data files as VTK itself writes and reads them.
#pragma once

#include <string>
#include <vector>

#include <vtkDataObject.h>
#include <vtkSmartPointer.h>

namespace clitest {

using DataPtr = vtkSmartPointer<vtkDataObject>;

/// How an XML file is laid out.
struct Layout {
  enum class Mode { kAscii, kBinary, kAppended, kRawAppended };
  Mode mode = Mode::kAppended;
  const char* compressor = "zlib";  ///< zlib, lz4, lzma or none
  bool is64Bit = true;
  bool isBigEndian = false;
};

/// Writes in the format of the extension; the layout is for XML formats.
void WriteData(const std::string& path, vtkDataObject* data, const Layout& layout = {});

/// Null when VTK reads nothing from it.
DataPtr ReadData(const std::string& path);

/// A step of a .pvd file; the file is relative to its folder.
struct PvdEntry {
  std::string time;
  std::string part;
  std::string file;
};
void WritePvd(const std::string& path, const std::vector<PvdEntry>& entries);
std::vector<PvdEntry> ReadPvd(const std::string& path);

/// The attribute of the file's VTKFile element; empty when it is not there.
std::string XmlHeaderAttribute(const std::string& path, const std::string& name);

}  // namespace clitest
