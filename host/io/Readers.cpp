#include "Readers.h"

#include <vtkCGNSReader.h>
#include <vtkCellData.h>
#include <vtkDataArraySelection.h>
#include <vtkDataObjectTree.h>
#include <vtkExodusIIReader.h>
#include <vtkGenericDataObjectReader.h>
#include <vtkGenericEnSightReader.h>
#include <vtkInformation.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkOBJReader.h>
#include <vtkOpenFOAMReader.h>
#include <vtkPartitionedDataSet.h>
#include <vtkPointData.h>
#include <vtkSTLReader.h>
#include <vtkStreamingDemandDrivenPipeline.h>
#include <vtkXMLDataElement.h>
#include <vtkXMLImageDataReader.h>
#include <vtkXMLPPolyDataReader.h>
#include <vtkXMLPStructuredGridReader.h>
#include <vtkXMLPUnstructuredGridReader.h>
#include <vtkXMLPolyDataReader.h>
#include <vtkXMLRectilinearGridReader.h>
#include <vtkXMLStructuredGridReader.h>
#include <vtkXMLUnstructuredGridReader.h>
#include <vtkXMLUtilities.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "FileError.h"
#include "Formats.h"
#include "LegacyCheck.h"
#include "MeshCheck.h"
#include "ReadWatch.h"
#include "VtkErrors.h"

namespace qelhost {
namespace {

void RequireFile(const std::string& path) {
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) throw FileError(path, "No such file or directory");
  if (std::filesystem::is_directory(status)) throw FileError(path, "Is a directory");
  std::ifstream in(path, std::ios::binary);
  if (!in) throw FileError(path, "Permission denied");
}

void RequireNoError(const std::string& path, const VtkErrorCapture& errors) {
  if (errors.HasError()) throw FileError(path, "damaged or unreadable: " + errors.FirstError());
}

FileSource& WithOneBlock(FileSource& source, vtkDataSet* block, const FileEncoding& encoding) {
  source.steps.resize(1);
  FileNode& root = source.steps[0].root;
  root.name = StemOf(source.path);
  root.block = block;
  root.encoding = encoding;
  return source;
}

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
    vtkAbstractArray* array = data->GetAbstractArray(name);
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

/// With a source the arrays at nodes and cells are left in the file; null when that cannot be.
vtkSmartPointer<vtkDataSet> RunXmlReader(const std::string& path, const XmlOverview& overview,
                                         XmlSource* source) {
  const std::string extension = ExtensionOf(path);
  for (const XmlKind& kind : kXmlKinds) {
    if (extension != kind.extension) continue;
    if (overview.type != kind.type) {
      throw FileError(path, "holds " + overview.type + " where " + kind.type + " belongs");
    }
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

// ---- readers that give blocks and time steps ----

std::string NameIn(vtkInformation* info, unsigned int child, unsigned int count) {
  const char* name = info == nullptr ? nullptr : info->Get(vtkCompositeDataSet::NAME());
  if (name != nullptr && *name != '\0') return name;
  return count == 1 ? std::string() : "Block " + std::to_string(child + 1);
}

FileNode NodeOf(vtkDataObject* data, const FileEncoding& encoding) {
  FileNode node;
  node.encoding = encoding;
  const auto add = [&](vtkDataObject* child, vtkInformation* info, unsigned int i,
                       unsigned int count) {
    node.children.push_back(NodeOf(child, encoding));
    node.children.back().name = NameIn(info, i, count);
  };
  if (auto* blocks = vtkMultiBlockDataSet::SafeDownCast(data)) {
    node.isGroup = true;
    const unsigned int count = blocks->GetNumberOfBlocks();
    for (unsigned int i = 0; i < count; ++i) {
      add(blocks->GetBlock(i), blocks->HasMetaData(i) ? blocks->GetMetaData(i) : nullptr, i, count);
    }
  } else if (auto* pieces = vtkPartitionedDataSet::SafeDownCast(data)) {
    node.isGroup = true;
    const unsigned int count = pieces->GetNumberOfPartitions();
    for (unsigned int i = 0; i < count; ++i) {
      add(pieces->GetPartitionAsDataObject(i),
          pieces->HasMetaData(i) ? pieces->GetMetaData(i) : nullptr, i, count);
    }
  } else {
    node.block = vtkDataSet::SafeDownCast(data);
  }
  return node;
}

/// Readers of VTK's hand on whatever connectivity a file has.
void CheckMeshes(const std::string& path, const FileNode& node) {
  if (node.block != nullptr) CheckMesh(path, node.block);
  for (const FileNode& child : node.children) CheckMeshes(path, child);
}

/// The output as it is now; the next time step leaves it alone.
vtkSmartPointer<vtkDataObject> Detached(vtkDataObject* output) {
  auto copy = vtkSmartPointer<vtkDataObject>::Take(output->NewInstance());
  auto* tree = vtkDataObjectTree::SafeDownCast(copy);
  if (tree != nullptr) {
    tree->RecursiveShallowCopy(output);
  } else {
    copy->ShallowCopy(output);
  }
  return copy;
}

void TakeSteps(const std::string& path, vtkAlgorithm* reader, FileSource& source) {
  VtkErrorCapture errors;
  reader->UpdateInformation();
  RequireNoError(path, errors);
  vtkInformation* info = reader->GetOutputInformation(0);
  std::vector<double> times;
  if (info->Has(vtkStreamingDemandDrivenPipeline::TIME_STEPS())) {
    const double* first = info->Get(vtkStreamingDemandDrivenPipeline::TIME_STEPS());
    times.assign(first, first + info->Length(vtkStreamingDemandDrivenPipeline::TIME_STEPS()));
  }
  source.hasTimes = !times.empty();
  const std::size_t stepCount = std::max<std::size_t>(times.size(), 1);
  for (std::size_t i = 0; i < stepCount; ++i) {
    const auto n = static_cast<std::int64_t>(i);
    const ReadPart part(n, n + 1, static_cast<std::int64_t>(stepCount));
    RunWatched(reader, [&] {
      if (times.empty()) {
        reader->Update();
      } else {
        reader->UpdateTimeStep(times[i]);
      }
    });
    RequireNoError(path, errors);
    vtkDataObject* output = reader->GetOutputDataObject(0);
    if (output == nullptr) throw FileError(path, "damaged or unreadable");
    FileStep step;
    step.time = times.empty() ? 0 : times[i];
    step.root = NodeOf(Detached(output), {});
    step.root.name = StemOf(path);
    CheckMeshes(path, step.root);
    source.steps.push_back(std::move(step));
  }
}

}  // namespace

/// The block of a file whose arrays are read as needed; null when VTK must read them.
vtkSmartPointer<vtkDataSet> ReadMeshOf(XmlSource& source, const XmlOverview& overview) {
  const std::string& path = source.file->Path();
  vtkSmartPointer<vtkDataSet> block = ReadUnstructuredMesh(source);
  if (block == nullptr) block = RunXmlReader(path, overview, &source);
  if (block == nullptr || block->GetNumberOfPoints() == 0) return nullptr;
  CheckMesh(path, block);
  return AttachArrays(source, block) ? block : nullptr;
}

void ReadXml(const std::string& path, FileSource& source) {
  RequireFile(path);
  const XmlOverview overview = ScanXmlFile(path);
  std::shared_ptr<XmlSource> xml = OpenXmlSource(path);
  vtkSmartPointer<vtkDataSet> block = xml == nullptr ? nullptr : ReadMeshOf(*xml, overview);
  if (block == nullptr) {
    xml = nullptr;
    block = RunXmlReader(path, overview, nullptr);
    CheckMesh(path, block);
  }
  WithOneBlock(source, block, overview.encoding);
  FileNode& root = source.steps[0].root;
  root.name = StemOf(path);
  root.xml = std::move(xml);
}

void ReadXmlPieces(const std::string& path, FileSource& source) {
  RequireFile(path);
  XmlOverview overview = ScanXmlFile(path);
  VtkErrorCapture errors;
  const auto root =
      vtkSmartPointer<vtkXMLDataElement>::Take(vtkXMLUtilities::ReadElementFromFile(path.c_str()));
  if (root == nullptr || root->GetNumberOfNestedElements() == 0) {
    throw FileError(path, "damaged or unreadable");
  }
  const auto folder = std::filesystem::path(path).parent_path();
  vtkXMLDataElement* grid = root->GetNestedElement(0);
  for (int i = 0; i < grid->GetNumberOfNestedElements(); ++i) {
    vtkXMLDataElement* piece = grid->GetNestedElement(i);
    const char* file = piece->GetAttribute("Source");
    if (std::string(piece->GetName()) != "Piece" || file == nullptr) continue;
    const std::string pieceFile = (folder / file).string();
    RequireFile(pieceFile);
    overview.encoding = ScanXmlFile(pieceFile).encoding;
  }
  overview.countsKnown = false;
  WithOneBlock(source, RunXmlReader(path, overview, nullptr), overview.encoding);
  CheckMesh(path, source.steps[0].root.block);
}

void ReadLegacy(const std::string& path, FileSource& source) {
  RequireFile(path);
  const FileEncoding encoding = ScanLegacyFile(path);
  CheckLegacyFile(path, encoding);
  vtkNew<vtkGenericDataObjectReader> reader;
  reader->SetFileName(path.c_str());
  reader->ReadAllScalarsOn();
  reader->ReadAllVectorsOn();
  reader->ReadAllNormalsOn();
  reader->ReadAllTensorsOn();
  reader->ReadAllColorScalarsOn();
  reader->ReadAllTCoordsOn();
  reader->ReadAllFieldsOn();
  VtkErrorCapture errors;
  UpdateWatched(reader);
  RequireNoError(path, errors);
  vtkDataObject* output = reader->GetOutputDataObject(0);
  if (output == nullptr || reader->GetErrorCode() != 0) {
    throw FileError(path, "damaged or unreadable");
  }
  source.steps.resize(1);
  source.steps[0].root = NodeOf(output, encoding);
  source.steps[0].root.name = StemOf(path);
  if (source.steps[0].root.block != nullptr) CheckMesh(path, source.steps[0].root.block);
}

void ReadExodus(const std::string& path, FileSource& source) {
  RequireFile(path);
  const StandardErrorSilence silence;
  vtkNew<vtkExodusIIReader> reader;
  if (reader->CanReadFile(path.c_str()) == 0) throw FileError(path, "not an Exodus file");
  VtkErrorCapture errors;
  reader->SetFileName(path.c_str());
  // The coordinates as the file has them, not as moved by a variable called displacement.
  reader->SetApplyDisplacements(0);
  reader->UpdateInformation();
  RequireNoError(path, errors);
  for (const auto kind :
       {vtkExodusIIReader::NODAL, vtkExodusIIReader::ELEM_BLOCK, vtkExodusIIReader::FACE_BLOCK,
        vtkExodusIIReader::EDGE_BLOCK, vtkExodusIIReader::GLOBAL}) {
    reader->SetAllArrayStatus(kind, 1);
  }
  TakeSteps(path, reader, source);
}

void ReadCgns(const std::string& path, FileSource& source) {
  RequireFile(path);
  const StandardErrorSilence silence;
  vtkNew<vtkCGNSReader> reader;
  if (reader->CanReadFile(path.c_str()) == 0) throw FileError(path, "not a CGNS file");
  VtkErrorCapture errors;
  reader->SetFileName(path.c_str());
  reader->UpdateInformation();
  RequireNoError(path, errors);
  reader->EnableAllBases();
  reader->EnableAllPointArrays();
  reader->EnableAllCellArrays();
  TakeSteps(path, reader, source);
}

void ReadEnSight(const std::string& path, FileSource& source) {
  RequireFile(path);
  const StandardErrorSilence silence;
  vtkNew<vtkGenericEnSightReader> reader;
  if (reader->CanReadFile(path.c_str()) == 0) throw FileError(path, "not an EnSight case");
  reader->SetCaseFileName(path.c_str());
  reader->ReadAllVariablesOn();
  TakeSteps(path, reader, source);
}

void ReadOpenFoam(const std::string& path, FileSource& source) {
  RequireFile(path);
  const auto folder = std::filesystem::path(path).parent_path();
  if (!std::filesystem::exists(folder / "system" / "controlDict")) {
    throw FileError(path, "no OpenFOAM case stands beside it (system/controlDict)");
  }
  vtkNew<vtkOpenFOAMReader> reader;
  reader->SetFileName(path.c_str());
  reader->SetDecomposePolyhedra(0);
  VtkErrorCapture errors;
  reader->UpdateInformation();
  RequireNoError(path, errors);
  reader->EnableAllPatchArrays();
  reader->EnableAllCellArrays();
  reader->EnableAllPointArrays();
  TakeSteps(path, reader, source);
}

void ReadStl(const std::string& path, FileSource& source) {
  RequireFile(path);
  vtkNew<vtkSTLReader> reader;
  VtkErrorCapture errors;
  reader->SetFileName(path.c_str());
  UpdateWatched(reader);
  RequireNoError(path, errors);
  if (reader->GetOutput()->GetNumberOfCells() == 0) throw FileError(path, "not an STL surface");
  CheckMesh(path, reader->GetOutput());
  WithOneBlock(source, reader->GetOutput(), {});
}

void ReadObj(const std::string& path, FileSource& source) {
  RequireFile(path);
  vtkNew<vtkOBJReader> reader;
  VtkErrorCapture errors;
  reader->SetFileName(path.c_str());
  UpdateWatched(reader);
  RequireNoError(path, errors);
  if (reader->GetOutput()->GetNumberOfCells() == 0) {
    throw FileError(path, "not a Wavefront surface");
  }
  CheckMesh(path, reader->GetOutput());
  WithOneBlock(source, reader->GetOutput(), {});
}

}  // namespace qelhost
