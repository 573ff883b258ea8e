#include "Formats.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "DataSetFiles.h"
#include "IndexFiles.h"
#include "Readers.h"
#include "Writers.h"

namespace qelhost {

const std::vector<Format>& Formats() {
  static const std::vector<Format> kFormats = {
      {".vtu", ReadXml, WriteSingle, ".vtu", "VTK unstructured grid"},
      {".vtp", ReadXml, WriteSingle, ".vtp", "VTK surface (polydata)"},
      {".vts", ReadXml, WriteSingle, ".vts", "VTK structured grid"},
      {".vtr", ReadXml, WriteSingle, ".vtr", "VTK rectilinear grid"},
      {".vti", ReadXml, WriteSingle, ".vti", "VTK image"},
      {".vtm", ReadMultiBlock, WriteMultiBlock, ".vtm", "VTK multi-block data set"},
      {".pvd", ReadCollection, WriteCollection, ".pvd", "time series of VTK files"},
      {".vtk", ReadLegacy, WriteSingle, ".vtk", "legacy VTK file"},
      {".pvtu", ReadXmlPieces, nullptr, ".vtu", "VTK unstructured grid in pieces"},
      {".pvtp", ReadXmlPieces, nullptr, ".vtp", "VTK surface in pieces"},
      {".pvts", ReadXmlPieces, nullptr, ".vts", "VTK structured grid in pieces"},
      {".exo", ReadExodus, nullptr, ".vtm", "Exodus II"},
      {".e", ReadExodus, nullptr, ".vtm", "Exodus II"},
      {".cgns", ReadCgns, nullptr, ".vtm", "CGNS"},
      {".case", ReadEnSight, nullptr, ".vtm", "EnSight"},
      {".foam", ReadOpenFoam, nullptr, ".vtm", "OpenFOAM case"},
      {".stl", ReadStl, nullptr, ".vtp", "STL surface"},
      {".obj", ReadObj, nullptr, ".vtp", "Wavefront surface"},
  };
  return kFormats;
}

std::string ExtensionOf(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension;
}

std::string StemOf(const std::string& path) { return std::filesystem::path(path).stem().string(); }

const Format* FindFormat(const std::string& path) {
  const std::string extension = ExtensionOf(path);
  for (const Format& format : Formats()) {
    if (extension == format.extension) return &format;
  }
  return nullptr;
}

std::vector<FormatHelp> KnownFormats() {
  std::vector<FormatHelp> result;
  for (const Format& format : Formats()) {
    result.push_back({format.extension, format.help, format.write != nullptr, format.writtenAs});
  }
  return result;
}

}  // namespace qelhost
