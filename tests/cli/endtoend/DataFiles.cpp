#include "DataFiles.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <sstream>
#include <stdexcept>

#include <vtkGenericDataObjectReader.h>
#include <vtkGenericDataObjectWriter.h>
#include <vtkNew.h>
#include <vtkXMLGenericDataObjectReader.h>
#include <vtkXMLImageDataWriter.h>
#include <vtkXMLMultiBlockDataWriter.h>
#include <vtkXMLPolyDataWriter.h>
#include <vtkXMLRectilinearGridWriter.h>
#include <vtkXMLStructuredGridWriter.h>
#include <vtkXMLUnstructuredGridWriter.h>

namespace clitest {

namespace {

std::string ExtensionOf(const std::string& path) {
  return std::filesystem::path(path).extension().string();
}

template <class Writer>
vtkSmartPointer<vtkXMLWriterBase> MakeWriter() {
  return vtkSmartPointer<Writer>::New();
}

vtkSmartPointer<vtkXMLWriterBase> XmlWriterFor(const std::string& extension) {
  static const std::map<std::string, std::function<vtkSmartPointer<vtkXMLWriterBase>()>> writers = {
      {".vtu", MakeWriter<vtkXMLUnstructuredGridWriter>},
      {".vtp", MakeWriter<vtkXMLPolyDataWriter>},
      {".vts", MakeWriter<vtkXMLStructuredGridWriter>},
      {".vtr", MakeWriter<vtkXMLRectilinearGridWriter>},
      {".vti", MakeWriter<vtkXMLImageDataWriter>},
      {".vtm", MakeWriter<vtkXMLMultiBlockDataWriter>}};
  return writers.at(extension)();
}

void ApplyLayout(vtkXMLWriterBase* writer, const Layout& layout) {
  const std::string compressor = layout.compressor;
  writer->SetCompressorType(compressor == "zlib"   ? vtkXMLWriterBase::ZLIB
                            : compressor == "lz4"  ? vtkXMLWriterBase::LZ4
                            : compressor == "lzma" ? vtkXMLWriterBase::LZMA
                                                   : vtkXMLWriterBase::NONE);
  writer->SetHeaderType(layout.is64Bit ? vtkXMLWriterBase::UInt64 : vtkXMLWriterBase::UInt32);
  if (layout.isBigEndian) writer->SetByteOrderToBigEndian();
  switch (layout.mode) {
    case Layout::Mode::kAscii:
      writer->SetDataModeToAscii();
      break;
    case Layout::Mode::kBinary:
      writer->SetDataModeToBinary();
      break;
    case Layout::Mode::kAppended:
      writer->SetDataModeToAppended();
      break;
    case Layout::Mode::kRawAppended:
      writer->SetDataModeToAppended();
      writer->SetEncodeAppendedData(false);
      break;
  }
}

void WriteLegacy(const std::string& path, vtkDataObject* data) {
  vtkNew<vtkGenericDataObjectWriter> writer;
  writer->SetFileName(path.c_str());
  writer->SetFileTypeToBinary();
  writer->SetInputData(data);
  if (writer->Write() != 1) throw std::runtime_error("cannot write " + path);
}

std::string TextOf(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

std::string AttributeIn(const std::string& element, const std::string& name) {
  std::smatch match;
  return std::regex_search(element, match, std::regex("\\b" + name + "=\"([^\"]*)\""))
             ? match[1].str()
             : std::string();
}

}  // namespace

void WriteData(const std::string& path, vtkDataObject* data, const Layout& layout) {
  if (ExtensionOf(path) == ".vtk") return WriteLegacy(path, data);
  const auto writer = XmlWriterFor(ExtensionOf(path));
  ApplyLayout(writer, layout);
  writer->SetFileName(path.c_str());
  writer->SetInputDataObject(0, data);
  if (writer->Write() != 1) throw std::runtime_error("cannot write " + path);
}

DataPtr ReadData(const std::string& path) {
  if (ExtensionOf(path) == ".vtk") {
    vtkNew<vtkGenericDataObjectReader> reader;
    reader->SetFileName(path.c_str());
    reader->ReadAllScalarsOn();
    reader->ReadAllVectorsOn();
    reader->ReadAllTensorsOn();
    reader->ReadAllFieldsOn();
    reader->Update();
    return reader->GetOutput();
  }
  vtkNew<vtkXMLGenericDataObjectReader> reader;
  reader->SetFileName(path.c_str());
  reader->Update();
  return reader->GetOutput();
}

void WritePvd(const std::string& path, const std::vector<PvdEntry>& entries) {
  std::ofstream file(path);
  file
      << "<?xml version=\"1.0\"?>\n<VTKFile type=\"Collection\" version=\"0.1\">\n  <Collection>\n";
  for (const PvdEntry& entry : entries) {
    file << "    <DataSet timestep=\"" << entry.time << "\" part=\"" << entry.part << "\" file=\""
         << entry.file << "\"/>\n";
  }
  file << "  </Collection>\n</VTKFile>\n";
}

std::vector<PvdEntry> ReadPvd(const std::string& path) {
  const std::string text = TextOf(path);
  std::vector<PvdEntry> entries;
  const std::regex element("<DataSet\\b[^>]*>");
  for (auto it = std::sregex_iterator(text.begin(), text.end(), element);
       it != std::sregex_iterator(); ++it) {
    const std::string found = it->str();
    entries.push_back(
        {AttributeIn(found, "timestep"), AttributeIn(found, "part"), AttributeIn(found, "file")});
  }
  return entries;
}

std::string XmlHeaderAttribute(const std::string& path, const std::string& name) {
  const std::string start = TextOf(path).substr(0, 1000);
  std::smatch match;
  if (!std::regex_search(start, match, std::regex("<VTKFile\\b[^>]*>"))) return {};
  return AttributeIn(match.str(), name);
}

}  // namespace clitest
