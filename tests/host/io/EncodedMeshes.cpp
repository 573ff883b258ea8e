#include "EncodedMeshes.h"

#include "LatticeCells.h"

#include <vtkCellArray.h>
#include <vtkIdTypeArray.h>
#include <vtkInformation.h>
#include <vtkLongLongArray.h>
#include <vtkShortArray.h>
#include <vtkSignedCharArray.h>
#include <vtkUnsignedIntArray.h>
#include <vtkUnsignedLongLongArray.h>
#include <vtkUnsignedShortArray.h>
#include <vtkXMLGenericDataObjectReader.h>
#include <vtkXMLImageDataWriter.h>
#include <vtkXMLPolyDataWriter.h>
#include <vtkXMLRectilinearGridWriter.h>
#include <vtkXMLStructuredGridWriter.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <cmath>
#include <cstring>

namespace filetesting {
namespace {

constexpr int kEdge = 12;  ///< cells: enough for several blocks of the least size
constexpr latticecells::Lattice kLattice = {kEdge + 1, kEdge + 1, kEdge + 1};

template <class Array>
void AddRamp(vtkDataSetAttributes* data, const char* name, int components, vtkIdType count) {
  vtkNew<Array> array;
  array->SetName(name);
  array->SetNumberOfComponents(components);
  array->SetNumberOfTuples(count);
  for (vtkIdType i = 0; i < count * components; ++i) {
    array->SetComponent(i / components, static_cast<int>(i % components),
                        std::fmod(static_cast<double>(i) * 37.25, 113.0));
  }
  data->AddArray(array);
}

/// Every numeric type that VTK's files know, at nodes and at cells.
void AddRamps(vtkDataSet* block) {
  int n = 0;
  for (vtkDataSetAttributes* data : {static_cast<vtkDataSetAttributes*>(block->GetPointData()),
                                     static_cast<vtkDataSetAttributes*>(block->GetCellData())}) {
    const vtkIdType count = n++ == 0 ? block->GetNumberOfPoints() : block->GetNumberOfCells();
    AddRamp<vtkFloatArray>(data, "float", 1, count);
    AddRamp<vtkDoubleArray>(data, "double", 1, count);
    AddRamp<vtkFloatArray>(data, "vector", 3, count);
    AddRamp<vtkSignedCharArray>(data, "int8", 1, count);
    AddRamp<vtkUnsignedCharArray>(data, "uint8", 1, count);
    AddRamp<vtkShortArray>(data, "int16", 2, count);
    AddRamp<vtkUnsignedShortArray>(data, "uint16", 1, count);
    AddRamp<vtkIntArray>(data, "int32", 1, count);
    AddRamp<vtkUnsignedIntArray>(data, "uint32", 1, count);
    AddRamp<vtkLongLongArray>(data, "int64", 1, count);
    AddRamp<vtkUnsignedLongLongArray>(data, "uint64", 1, count);
    AddRamp<vtkIdTypeArray>(data, "ids", 1, count);
    data->SetActiveScalars("double");
    data->SetActiveVectors("vector");
  }
  auto* const named = block->GetPointData()->GetArray("vector");
  named->SetComponentName(0, "east");
  named->SetComponentName(2, "up");
}

template <class Mesh>
vtkSmartPointer<vtkDataSet> Plain() {
  auto mesh = vtkSmartPointer<Mesh>::New();
  mesh->SetDimensions(kEdge, kEdge + 1, kEdge + 2);
  return mesh;
}

vtkSmartPointer<vtkPoints> CubeNodes() {
  auto points = vtkSmartPointer<vtkPoints>::New();
  for (int k = 0; k <= kEdge; ++k) {
    for (int j = 0; j <= kEdge; ++j) {
      for (int i = 0; i <= kEdge; ++i) points->InsertNextPoint(i / 3.0, j / 7.0, k * 1.5);
    }
  }
  return points;
}

vtkSmartPointer<vtkDataSet> Quads() {
  auto surface = vtkSmartPointer<vtkPolyData>::New();
  surface->SetPoints(CubeNodes());
  vtkNew<vtkCellArray> polygons;
  for (int j = 0; j < kEdge; ++j) {
    for (int i = 0; i < kEdge; ++i) {
      polygons->InsertNextCell(4, kLattice.Box(i, j, 0).data());
    }
  }
  surface->SetPolys(polygons);
  AddRamps(surface);
  return surface;
}

vtkSmartPointer<vtkDataSet> Curved() {
  auto grid = vtkSmartPointer<vtkStructuredGrid>::New();
  grid->SetDimensions(kEdge + 1, kEdge + 1, kEdge + 1);
  grid->SetPoints(CubeNodes());
  AddRamps(grid);
  return grid;
}

vtkSmartPointer<vtkDataSet> Uneven() {
  const auto mesh = Plain<vtkRectilinearGrid>();
  auto* const grid = vtkRectilinearGrid::SafeDownCast(mesh);
  vtkNew<vtkDoubleArray> ticks;
  for (int i = 0; i < kEdge + 2; ++i) ticks->InsertNextValue(i * i);
  const auto first = [&ticks](int count) {
    auto some = vtkSmartPointer<vtkDoubleArray>::New();
    for (int i = 0; i < count; ++i) some->InsertNextValue(ticks->GetValue(i));
    return some;
  };
  grid->SetXCoordinates(first(kEdge));
  grid->SetYCoordinates(first(kEdge + 1));
  grid->SetZCoordinates(ticks);
  AddRamps(grid);
  return mesh;
}

vtkSmartPointer<vtkDataSet> Regular() {
  const auto mesh = Plain<vtkImageData>();
  AddRamps(mesh);
  return mesh;
}

template <class Writer>
vtkSmartPointer<vtkXMLWriter> Make() {
  return vtkSmartPointer<Writer>::New();
}

/// Bit for bit, so that NaN equals itself.
void ExpectSameArray(vtkDataArray* a, vtkDataArray* b) {
  ASSERT_NE(a, nullptr);
  ASSERT_NE(b, nullptr);
  const std::string name = a->GetName() == nullptr ? "" : a->GetName();
  EXPECT_STREQ(a->GetName(), b->GetName());
  ASSERT_EQ(a->GetDataType(), b->GetDataType()) << name;
  ASSERT_EQ(a->GetNumberOfComponents(), b->GetNumberOfComponents()) << name;
  ASSERT_EQ(a->GetNumberOfTuples(), b->GetNumberOfTuples()) << name;
  for (int component = 0; component < a->GetNumberOfComponents(); ++component) {
    EXPECT_STREQ(a->GetComponentName(component), b->GetComponentName(component)) << name;
  }
  const auto size = static_cast<std::size_t>(a->GetNumberOfValues() * a->GetDataTypeSize());
  if (size > 0) {
    EXPECT_EQ(std::memcmp(a->GetVoidPointer(0), b->GetVoidPointer(0), size), 0) << name;
  }
}

void ExpectSameAttributes(vtkDataSetAttributes* a, vtkDataSetAttributes* b) {
  ASSERT_EQ(a->GetNumberOfArrays(), b->GetNumberOfArrays());
  for (int i = 0; i < a->GetNumberOfArrays(); ++i) {
    if (a->GetArray(i) != nullptr) ExpectSameArray(a->GetArray(i), b->GetArray(i));
  }
  for (int type = 0; type < vtkDataSetAttributes::NUM_ATTRIBUTES; ++type) {
    vtkAbstractArray* const active = a->GetAbstractAttribute(type);
    ASSERT_EQ(active == nullptr, b->GetAbstractAttribute(type) == nullptr) << type;
    if (active == nullptr) continue;
    EXPECT_STREQ(active->GetName(), b->GetAbstractAttribute(type)->GetName());
  }
}

void ExpectSameMesh(vtkDataSet* a, vtkDataSet* b) {
  ASSERT_EQ(a->GetNumberOfPoints(), b->GetNumberOfPoints());
  ASSERT_EQ(a->GetNumberOfCells(), b->GetNumberOfCells());
  for (vtkIdType node = 0; node < a->GetNumberOfPoints(); ++node) {
    double at[3], other[3];
    a->GetPoint(node, at);
    b->GetPoint(node, other);
    ASSERT_EQ(std::memcmp(at, other, sizeof(at)), 0) << node;
  }
  vtkNew<vtkIdList> nodes, others;
  for (vtkIdType cell = 0; cell < a->GetNumberOfCells(); ++cell) {
    ASSERT_EQ(a->GetCellType(cell), b->GetCellType(cell)) << cell;
    a->GetCellPoints(cell, nodes);
    b->GetCellPoints(cell, others);
    ASSERT_EQ(nodes->GetNumberOfIds(), others->GetNumberOfIds()) << cell;
    for (vtkIdType i = 0; i < nodes->GetNumberOfIds(); ++i) {
      ASSERT_EQ(nodes->GetId(i), others->GetId(i)) << cell;
    }
  }
}

}  // namespace

vtkSmartPointer<vtkDataSet> Bricks() {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(CubeNodes());
  kLattice.ForEachBox(
      [&](int i, int j, int k) { latticecells::InsertBrick(grid, kLattice.Box(i, j, k)); });
  AddRamps(grid);
  return grid;
}

const std::vector<Kind>& Kinds() {
  static const std::vector<Kind> kKinds = {
      {"vtu", Bricks, Make<vtkXMLUnstructuredGridWriter>},
      {"vtp", Quads, Make<vtkXMLPolyDataWriter>},
      {"vts", Curved, Make<vtkXMLStructuredGridWriter>},
      {"vtr", Uneven, Make<vtkXMLRectilinearGridWriter>},
      {"vti", Regular, Make<vtkXMLImageDataWriter>},
  };
  return kKinds;
}

const std::vector<Form>& Forms() {
  static const std::vector<Form> kForms = {{"Inline", vtkXMLWriter::Binary, 1},
                                           {"Raw", vtkXMLWriter::Appended, 0},
                                           {"Base64", vtkXMLWriter::Appended, 1}};
  return kForms;
}

std::vector<Encoding> EncodingsOf(const Form& form) {
  std::vector<Encoding> encodings;
  for (const int compressor :
       {vtkXMLWriter::NONE, vtkXMLWriter::ZLIB, vtkXMLWriter::LZ4, vtkXMLWriter::LZMA}) {
    for (const int header : {vtkXMLWriter::UInt32, vtkXMLWriter::UInt64}) {
      for (const int order : {vtkXMLWriter::LittleEndian, vtkXMLWriter::BigEndian}) {
        encodings.push_back({form.mode, form.isText, compressor, header, order});
      }
    }
  }
  return encodings;
}

std::string NameOf(const Encoding& encoding) {
  static const char* const kCompressors[] = {"Plain", "ZLib", "Lz4", "Lzma"};
  std::string name = kCompressors[encoding.compressor];
  name += encoding.header == vtkXMLWriter::UInt64 ? "64" : "32";
  return name + (encoding.byteOrder == vtkXMLWriter::BigEndian ? "Big" : "Little");
}

void SaveEncoded(const Kind& kind, const Encoding& encoding, vtkDataSet* mesh,
                 const std::string& path) {
  const auto writer = kind.writer();
  // Of the least size that VTK takes; LZMA takes its time over every block.
  const int blockSize = encoding.compressor == vtkXMLWriter::LZMA ? 16384 : 1024;
  writer->SetDataMode(encoding.mode);
  writer->SetEncodeAppendedData(encoding.isText);
  writer->SetCompressorType(encoding.compressor);
  writer->SetHeaderType(encoding.header);
  writer->SetByteOrder(encoding.byteOrder);
  writer->SetBlockSize(blockSize);
  writer->SetFileName(path.c_str());
  writer->SetInputDataObject(mesh);
  ASSERT_EQ(writer->Write(), 1);
}

vtkSmartPointer<vtkDataSet> ReadByVtk(const std::string& path) {
  vtkNew<vtkXMLGenericDataObjectReader> reader;
  reader->SetFileName(path.c_str());
  reader->Update();
  EXPECT_EQ(reader->GetErrorCode(), 0U);
  return vtkDataSet::SafeDownCast(reader->GetOutput());
}

void ExpectSame(vtkDataSet* a, vtkDataSet* b) {
  ASSERT_NE(a, nullptr);
  ASSERT_NE(b, nullptr);
  ExpectSameMesh(a, b);
  ExpectSameAttributes(a->GetPointData(), b->GetPointData());
  ExpectSameAttributes(a->GetCellData(), b->GetCellData());
  vtkFieldData* const fields = a->GetFieldData();
  ASSERT_EQ(fields->GetNumberOfArrays(), b->GetFieldData()->GetNumberOfArrays());
  for (int i = 0; i < fields->GetNumberOfArrays(); ++i) {
    if (fields->GetArray(i) != nullptr) {
      ExpectSameArray(fields->GetArray(i), b->GetFieldData()->GetArray(i));
    }
  }
}

}  // namespace filetesting
