#include "Writers.h"

#include <vtkAppendFilter.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkErrorCode.h>
#include <vtkFieldData.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPointSet.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataWriter.h>
#include <vtkRectilinearGrid.h>
#include <vtkRectilinearGridWriter.h>
#include <vtkStructuredGrid.h>
#include <vtkStructuredGridWriter.h>
#include <vtkStructuredPointsWriter.h>
#include <vtkUnstructuredGrid.h>
#include <vtkUnstructuredGridWriter.h>
#include <vtkXMLImageDataWriter.h>
#include <vtkXMLPolyDataWriter.h>
#include <vtkXMLRectilinearGridWriter.h>
#include <vtkXMLStructuredGridWriter.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "CarefulWriter.h"
#include "FileError.h"
#include "Formats.h"
#include "Staging.h"
#include "VtkErrors.h"
#include "WritableBlock.h"
#include "WriteCancel.h"
#include "xml/PassThrough.h"

namespace qelhost {
namespace {

struct MeshKind {
  int dataObjectType;
  const char* extension;
  vtkSmartPointer<vtkXMLWriter> (*makeXml)();
  vtkSmartPointer<vtkDataWriter> (*makeLegacy)();
};

constexpr MeshKind kMeshKinds[] = {
    {VTK_UNSTRUCTURED_GRID, ".vtu", CarefulWriter<vtkXMLUnstructuredGridWriter>::Make,
     CarefulLegacyWriter<vtkUnstructuredGridWriter>::Make},
    {VTK_POLY_DATA, ".vtp", CarefulWriter<vtkXMLPolyDataWriter>::Make,
     CarefulLegacyWriter<vtkPolyDataWriter>::Make},
    {VTK_STRUCTURED_GRID, ".vts", CarefulWriter<vtkXMLStructuredGridWriter>::Make,
     CarefulLegacyWriter<vtkStructuredGridWriter>::Make},
    {VTK_RECTILINEAR_GRID, ".vtr", CarefulWriter<vtkXMLRectilinearGridWriter>::Make,
     CarefulLegacyWriter<vtkRectilinearGridWriter>::Make},
    {VTK_IMAGE_DATA, ".vti", CarefulWriter<vtkXMLImageDataWriter>::Make,
     CarefulLegacyWriter<vtkStructuredPointsWriter>::Make},
};

int KindOf(vtkDataSet* block) {
  const int type = block->GetDataObjectType();
  return type == VTK_STRUCTURED_POINTS || type == VTK_UNIFORM_GRID ? VTK_IMAGE_DATA : type;
}

const MeshKind* FindKind(vtkDataSet* block) {
  for (const MeshKind& kind : kMeshKinds) {
    if (kind.dataObjectType == KindOf(block)) return &kind;
  }
  return nullptr;
}

const MeshKind& RequireKind(vtkDataSet* block, const std::string& path) {
  const MeshKind* kind = FindKind(block);
  if (kind == nullptr) throw FileError(path, "a mesh of this kind cannot be written");
  return *kind;
}

void SetEncoding(vtkXMLWriter* writer, const FileEncoding& encoding, vtkDataSet* block) {
  writer->SetDataMode(encoding.mode == DataMode::Ascii    ? vtkXMLWriter::Ascii
                      : encoding.mode == DataMode::Binary ? vtkXMLWriter::Binary
                                                          : vtkXMLWriter::Appended);
  // Rather a binary file than one that cannot be read.
  if (encoding.mode == DataMode::Ascii && !FitsText(block)) writer->SetDataModeToBinary();
  // Also decides whether the file begins with an XML declaration, in every mode.
  writer->SetEncodeAppendedData(encoding.mode != DataMode::AppendedRaw);
  // A new writer compresses by zlib at zlib's own level; choosing zlib would choose another level.
  if (encoding.compressor == "vtkLZ4DataCompressor") {
    writer->SetCompressorType(vtkXMLWriter::LZ4);
  } else if (encoding.compressor == "vtkLZMADataCompressor") {
    writer->SetCompressorType(vtkXMLWriter::LZMA);
  } else if (encoding.compressor != "vtkZLibDataCompressor") {
    writer->SetCompressorType(vtkXMLWriter::NONE);
  }
  // A 32-bit header cannot tell the length of a longer array than that.
  constexpr unsigned long kMostKilobytes = 4ul << 20;
  const bool wide = encoding.wideHeader || block->GetActualMemorySize() >= kMostKilobytes;
  writer->SetHeaderType(wide ? vtkXMLWriter::UInt64 : vtkXMLWriter::UInt32);
  writer->SetByteOrder(encoding.bigEndian ? vtkXMLWriter::BigEndian : vtkXMLWriter::LittleEndian);
  // Of arrays of ids alone: those that a file had narrower were read as plain integers.
  writer->SetIdType(vtkXMLWriter::Int64);
}

/// The reason of a failed write: the system's, when the disk is full.
std::string ReasonOf(unsigned long errorCode, const VtkErrorCapture& errors) {
  if (errorCode == vtkErrorCode::OutOfDiskSpaceError) return std::strerror(ENOSPC);
  // What VTK says of a stream that failed is which of its objects it failed in.
  const bool isOfStream = errors.HasError() && errors.FirstError().rfind("Algorithm ", 0) == 0;
  if (isOfStream) return "the disk did not take all of it";
  if (errors.HasError()) return "cannot be written: " + errors.FirstError();
  return std::string("cannot be written: ") + vtkErrorCode::GetStringFromErrorCode(errorCode);
}

/// The system knows a better reason than the writer, unless the writer removed the file.
[[noreturn]] void ThrowWriteError(const std::string& path, unsigned long errorCode,
                                  const VtkErrorCapture& errors) {
  std::error_code none;
  if (std::filesystem::exists(path, none)) RequireRoomBehind(path);
  throw FileError(path, ReasonOf(errorCode, errors));
}

/// A grid of no cells, which the converter below makes of nothing less than a cell.
vtkSmartPointer<vtkDataSet> AsGridWithoutCells(vtkDataSet* block) {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->Allocate(1);
  vtkNew<vtkPoints> points;
  for (vtkIdType node = 0; node < block->GetNumberOfPoints(); ++node) {
    points->InsertNextPoint(block->GetPoint(node));
  }
  grid->SetPoints(points);
  grid->GetPointData()->ShallowCopy(block->GetPointData());
  grid->GetCellData()->ShallowCopy(block->GetCellData());
  grid->GetFieldData()->ShallowCopy(block->GetFieldData());
  return grid;
}

vtkSmartPointer<vtkDataSet> AsUnstructured(vtkDataSet* block) {
  if (block->GetNumberOfCells() == 0) return AsGridWithoutCells(block);
  vtkNew<vtkAppendFilter> converter;
  // Computed positions would be rounded otherwise.
  if (vtkPointSet::SafeDownCast(block) == nullptr) {
    converter->SetOutputPointsPrecision(vtkAlgorithm::DOUBLE_PRECISION);
  }
  converter->AddInputData(block);
  converter->Update();
  vtkSmartPointer<vtkDataSet> grid = converter->GetOutput();
  grid->GetFieldData()->ShallowCopy(block->GetFieldData());
  return grid;
}

void WriteXmlFile(vtkDataSet* block, const FileEncoding& encoding, const std::string& path) {
  const vtkSmartPointer<vtkXMLWriter> writer = RequireKind(block, path).makeXml();
  VtkErrorCapture errors;
  writer->SetFileName(path.c_str());
  const vtkSmartPointer<vtkDataSet> writable = WritableAsXml(block, path);
  writer->SetInputDataObject(writable);
  SetEncoding(writer, encoding, block);
  StopWhenCancelled(writer);
  const int ok = writer->Write();
  StopIfCancelled();
  if (ok == 0 || errors.HasError() || writer->GetErrorCode() != 0) {
    ThrowWriteError(path, writer->GetErrorCode(), errors);
  }
  ScanXmlFile(path);  // it ends where it should
}

template <class T>
bool SurvivesText(vtkDataArray* array, const char* format) {
  const auto* values = static_cast<const T*>(array->GetVoidPointer(0));
  for (vtkIdType i = 0; i < array->GetNumberOfValues(); ++i) {
    char text[64];
    std::snprintf(text, sizeof(text), format, static_cast<double>(values[i]));
    const T back = static_cast<T>(std::strtod(text, nullptr));
    if (back != values[i]) return false;
  }
  return true;
}

/// VTK prints 6 digits of a float and 11 of a double into a legacy text file.
bool SurvivesText(vtkDataArray* array) {
  if (array == nullptr) return true;
  if (array->GetDataType() == VTK_FLOAT) return SurvivesText<float>(array, "%g");
  if (array->GetDataType() == VTK_DOUBLE) return SurvivesText<double>(array, "%.11lg");
  return true;
}

/// Whether every number of a block comes back the same from a legacy text file.
bool SurvivesText(vtkDataSet* block) {
  const std::vector<vtkAbstractArray*> arrays = ArraysOf(block);
  return std::all_of(arrays.begin(), arrays.end(), [](vtkAbstractArray* array) {
    return SurvivesText(vtkDataArray::SafeDownCast(array));
  });
}

void WriteLegacyFile(vtkDataSet* block, const FileEncoding& encoding, const std::string& path) {
  const vtkSmartPointer<vtkDataWriter> writer = RequireKind(block, path).makeLegacy();
  VtkErrorCapture errors;
  writer->SetFileName(path.c_str());
  const vtkSmartPointer<vtkDataSet> writable = WritableAsLegacy(block);
  writer->SetInputData(writable);
  // Rather a binary file than rounded numbers.
  const bool text =
      encoding.known && encoding.mode == DataMode::Ascii && FitsText(block) && SurvivesText(block);
  writer->SetFileType(text ? VTK_ASCII : VTK_BINARY);
  writer->SetFileVersion(encoding.legacyMajorVersion < 5
                             ? vtkDataWriter::VTK_LEGACY_READER_VERSION_4_2
                             : vtkDataWriter::VTK_LEGACY_READER_VERSION_5_1);
  if (!encoding.legacyTitle.empty()) writer->SetHeader(encoding.legacyTitle.c_str());
  StopWhenCancelled(writer);
  const int ok = writer->Write();
  StopIfCancelled();
  if (ok == 0 || errors.HasError() || writer->GetErrorCode() != 0) {
    ThrowWriteError(path, writer->GetErrorCode(), errors);
  }
  RequireRoomBehind(path);
}

/// Writers store connectivity as wide as it lies in memory, where it may be narrower than in the
/// file.
vtkSmartPointer<vtkDataSet> WithIndicesOf(const FileEncoding& encoding, vtkDataSet* block) {
  auto* const grid = vtkUnstructuredGrid::SafeDownCast(block);
  if (grid == nullptr || grid->GetNumberOfCells() == 0) return block;
  if (grid->GetCells()->IsStorage64Bit() || !encoding.wideIds) return block;
  auto wide = vtkSmartPointer<vtkUnstructuredGrid>::New();
  wide->ShallowCopy(grid);
  vtkNew<vtkCellArray> cells;
  cells->Use64BitStorage();
  cells->DeepCopy(grid->GetCells());
  cells->ConvertTo64BitStorage();
  wide->SetCells(grid->GetCellTypesArray(), cells);
  return wide;
}

/// All blocks of a tree that hold a mesh.
void CollectBlocks(const FileNode& node, std::vector<const FileNode*>& blocks) {
  if (node.block != nullptr || !node.carriedFile.empty()) blocks.push_back(&node);
  for (const FileNode& child : node.children) CollectBlocks(child, blocks);
}

}  // namespace

std::string ExtensionFor(vtkDataSet* block) {
  const MeshKind* kind = FindKind(block);
  return kind == nullptr ? ".vtu" : kind->extension;
}

void WriteBlockFile(const FileNode& node, const TouchedArrays& touched, const std::string& path) {
  const std::string extension = ExtensionOf(path);
  if (node.xml != nullptr) {
    const bool isSameFormat = extension == ExtensionOf(node.xml->file->Path());
    if (isSameFormat && WritePassingThrough(*node.xml, node.block, touched, path)) return;
    LoadAll(*node.xml);
  }
  // What is told of their ranges beside them is of the values that they had.
  for (vtkAbstractArray* const array : ArraysOf(node.block)) {
    auto* const numbers = vtkDataArray::SafeDownCast(array);
    if (touched.count(numbers) > 0) numbers->Modified();
  }
  const vtkSmartPointer<vtkDataSet> block = WithIndicesOf(node.encoding, node.block);
  WriteBytes(path, "");  // says why a file cannot be made, where VTK's writers do not know
  if (extension == ".vtk") {
    WriteLegacyFile(block, node.encoding, path);
  } else if (extension == ".vtu" && KindOf(block) != VTK_UNSTRUCTURED_GRID) {
    WriteXmlFile(AsUnstructured(block), node.encoding, path);
  } else {
    WriteXmlFile(block, node.encoding, path);
  }
}

const FileNode& RequireSingle(const FileSource& source, const std::string& path) {
  if (source.steps.size() != 1) {
    throw FileError(path, "cannot hold " + std::to_string(source.steps.size()) +
                              " time steps; write a .pvd file");
  }
  std::vector<const FileNode*> blocks;
  CollectBlocks(source.steps[0].root, blocks);
  if (blocks.size() != 1 || blocks[0]->block == nullptr) {
    throw FileError(path,
                    "cannot hold " + std::to_string(blocks.size()) + " blocks; write a .vtm file");
  }
  vtkDataSet* block = blocks[0]->block;
  const std::string extension = ExtensionOf(path);
  if (extension != ".vtk" && extension != ".vtu" && extension != ExtensionFor(block)) {
    throw FileError(path, std::string("cannot hold this kind of mesh; write a ") +
                              ExtensionFor(block) + " file");
  }
  return *blocks[0];
}

void WriteSingle(const FileSource& source, const TouchedArrays& touched, const std::string& path) {
  const FileNode& node = RequireSingle(source, path);
  StagedTarget target(path);
  WriteBlockFile(node, touched, target.TemporaryPath());
  target.Commit();
}

}  // namespace qelhost
