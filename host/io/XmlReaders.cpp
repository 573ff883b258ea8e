#include "XmlReaders.h"

#include <vtkCellData.h>
#include <vtkDataArraySelection.h>
#include <vtkPointData.h>
#include <vtkXMLImageDataReader.h>
#include <vtkXMLPPolyDataReader.h>
#include <vtkXMLPStructuredGridReader.h>
#include <vtkXMLPUnstructuredGridReader.h>
#include <vtkXMLPolyDataReader.h>
#include <vtkXMLRectilinearGridReader.h>
#include <vtkXMLStructuredGridReader.h>
#include <vtkXMLUnstructuredGridReader.h>

#include <cstring>

#include "FileError.h"
#include "Formats.h"
#include "InputFile.h"
#include "MeshCheck.h"
#include "ReadWatch.h"
#include "ReaderParts.h"
#include "Readers.h"

namespace qelhost {
namespace {

struct XmlKind {
  const char* extension;
  const char* type;  ///< as the file's root names it
  vtkSmartPointer<vtkXMLReader> (*make)();
};

template <class Reader>
vtkSmartPointer<vtkXMLReader> Make() {
  return vtkSmartPointer<Reader>::New();
}

constexpr XmlKind kXmlKinds[] = {
    {".vtu", "UnstructuredGrid", Make<vtkXMLUnstructuredGridReader>},
    {".vtp", "PolyData", Make<vtkXMLPolyDataReader>},
    {".vts", "StructuredGrid", Make<vtkXMLStructuredGridReader>},
    {".vtr", "RectilinearGrid", Make<vtkXMLRectilinearGridReader>},
    {".vti", "ImageData", Make<vtkXMLImageDataReader>},
    {".pvtu", "PUnstructuredGrid", Make<vtkXMLPUnstructuredGridReader>},
    {".pvtp", "PPolyData", Make<vtkXMLPPolyDataReader>},
    {".pvts", "PStructuredGrid", Make<vtkXMLPStructuredGridReader>},
};

/// Every array that the file announces must have come, and as long as the mesh is.
void RequireArrays(const std::string& path, vtkXMLReader* reader, vtkDataSet* block) {
  const auto require = [&path](const char* name, vtkDataSetAttributes* data, vtkIdType items) {
    // VTK makes marks of the ghost levels of old files.
    const bool isOldMark = std::strcmp(name, kOldGhostName) == 0;
    vtkAbstractArray* array =
        data->GetAbstractArray(isOldMark ? vtkDataSetAttributes::GhostArrayName() : name);
    if (array == nullptr || array->GetNumberOfTuples() != items) {
      throw FileError(path, std::string("damaged: array \"") + name + "\" is incomplete");
    }
  };
  for (int i = 0; i < reader->GetNumberOfPointArrays(); ++i) {
    require(reader->GetPointArrayName(i), block->GetPointData(), block->GetNumberOfPoints());
  }
  for (int i = 0; i < reader->GetNumberOfCellArrays(); ++i) {
    require(reader->GetCellArrayName(i), block->GetCellData(), block->GetNumberOfCells());
  }
}

std::vector<std::string> ArrayNames(int count, const char* (vtkXMLReader::*name)(int),
                                    vtkXMLReader* reader) {
  std::vector<std::string> names;
  names.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) names.emplace_back((reader->*name)(i));
  return names;
}

/// Has the reader leave the arrays at nodes and cells in the file. False when it knows others than
/// the source.
bool LeaveArrays(vtkXMLReader* reader, const XmlSource& source) {
  reader->UpdateInformation();
  if (!HasArrays(
          source, XmlSection::PointData,
          ArrayNames(reader->GetNumberOfPointArrays(), &vtkXMLReader::GetPointArrayName, reader)) ||
      !HasArrays(
          source, XmlSection::CellData,
          ArrayNames(reader->GetNumberOfCellArrays(), &vtkXMLReader::GetCellArrayName, reader))) {
    return false;
  }
  reader->GetPointDataArraySelection()->DisableAllArrays();
  reader->GetCellDataArraySelection()->DisableAllArrays();
  return true;
}

/// The block of a file whose arrays are read as needed; null when VTK must read them.
vtkSmartPointer<vtkDataSet> ReadMeshOf(XmlSource& source, const XmlOverview& overview) {
  const std::string& path = source.file->Path();
  vtkSmartPointer<vtkDataSet> block = ReadUnstructuredMesh(source);
  if (block == nullptr) block = RunXmlReader(path, overview, &source);
  if (block == nullptr || block->GetNumberOfPoints() == 0) return nullptr;
  CheckMesh(path, block);
  return AttachArrays(source, block) ? block : nullptr;
}

}  // namespace

void RequireType(const std::string& path, const XmlOverview& overview, const std::string& type) {
  if (overview.type != type) {
    throw FileError(path, "holds " + overview.type + " where " + type + " belongs");
  }
}

vtkSmartPointer<vtkDataSet> RunXmlReader(const std::string& path, const XmlOverview& overview,
                                         XmlSource* source) {
  for (const XmlKind& kind : kXmlKinds) {
    if (overview.type != kind.type) continue;
    const vtkSmartPointer<vtkXMLReader> reader = kind.make();
    VtkErrorCapture errors;
    reader->SetFileName(path.c_str());
    if (source != nullptr && !LeaveArrays(reader, *source)) return nullptr;
    UpdateWatched(reader);
    vtkSmartPointer<vtkDataSet> block = reader->GetOutputAsDataSet();
    // A complete file of an empty block: VTK writes none of the sections that it then misses.
    const bool isEmpty = overview.countsKnown && overview.points == 0 && overview.cells == 0;
    if (isEmpty && block != nullptr && block->GetNumberOfPoints() == 0) return block;
    RequireNoError(path, errors);
    if (block == nullptr || reader->GetErrorCode() != 0)
      throw FileError(path, "damaged or unreadable");
    if (source == nullptr) RequireArrays(path, reader, block);
    if (overview.countsKnown && (block->GetNumberOfPoints() != overview.points ||
                                 block->GetNumberOfCells() != overview.cells)) {
      throw FileError(path, "damaged: nodes or cells are missing");
    }
    return block;
  }
  throw FileError(path, "unknown format");
}

void ReadXmlOf(const std::string& path, const std::string& type, FileSource& source) {
  RequireFile(path);
  const XmlOverview overview = ScanXmlFile(path);
  RequireType(path, overview, type);
  std::shared_ptr<XmlSource> xml = OpenXmlSource(path);
  vtkSmartPointer<vtkDataSet> block = xml == nullptr ? nullptr : ReadMeshOf(*xml, overview);
  if (block == nullptr) {
    xml = nullptr;
    block = RunXmlReader(path, overview, nullptr);
    CheckMesh(path, block);
  }
  TakeBlock(source, block, overview.encoding);
  source.steps[0].root.xml = std::move(xml);
}

std::string XmlTypeFor(const std::string& path) {
  const std::string extension = ExtensionOf(path);
  for (const XmlKind& kind : kXmlKinds) {
    if (extension == kind.extension) return kind.type;
  }
  throw FileError(path, "unknown format");
}

void ReadXml(const std::string& path, FileSource& source) {
  ReadXmlOf(path, XmlTypeFor(path), source);
}

}  // namespace qelhost
