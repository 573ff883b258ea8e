#include "Meshes.h"

#include "LatticeCells.h"

#include <vtkCell.h>
#include <vtkCellData.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkGenericDataObjectWriter.h>
#include <vtkImageData.h>
#include <vtkIntArray.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkRectilinearGrid.h>
#include <vtkStringArray.h>
#include <vtkStructuredGrid.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLDataSetWriter.h>
#include <vtkXMLGenericDataObjectReader.h>
#include <vtkXMLMultiBlockDataWriter.h>

#include <cstring>
#include <stdexcept>

namespace clitests {

namespace {

using latticecells::Corners;

constexpr int kNodes[3] = {5, 4, 4};  // along X, Y, Z
constexpr latticecells::Lattice kLattice = {kNodes[0], kNodes[1], kNodes[2]};

template <class Array>
void AddArray(vtkFieldData* target, const char* name, vtkIdType count, int components,
              double first) {
  vtkNew<Array> array;
  array->SetName(name);
  array->SetNumberOfComponents(components);
  array->SetNumberOfTuples(count);
  for (vtkIdType i = 0; i < count * components; ++i) {
    array->SetValue(i, static_cast<typename Array::ValueType>(first + 0.25 * i));
  }
  target->AddArray(array);
}

void AddAttributes(vtkDataSet* mesh) {
  AddArray<vtkDoubleArray>(mesh->GetPointData(), "p", mesh->GetNumberOfPoints(), 1, 1);
  AddArray<vtkFloatArray>(mesh->GetPointData(), "U", mesh->GetNumberOfPoints(), 3, -4);
  AddArray<vtkDoubleArray>(mesh->GetPointData(), "both", mesh->GetNumberOfPoints(), 1, 3);
  AddArray<vtkFloatArray>(mesh->GetCellData(), "c", mesh->GetNumberOfCells(), 1, 2);
  AddArray<vtkIntArray>(mesh->GetCellData(), "id", mesh->GetNumberOfCells(), 1, 100);
  AddArray<vtkFloatArray>(mesh->GetCellData(), "both", mesh->GetNumberOfCells(), 1, 5);
  vtkNew<vtkStringArray> note;
  note->SetName("note");
  note->InsertNextValue("made for a test");
  mesh->GetFieldData()->AddArray(note);
}

vtkSmartPointer<vtkDataSet> Boxes(bool isMixed) {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(kLattice.UnitPoints());
  int box = 0;
  kLattice.ForEachBox([&](int i, int j, int k) {
    const Corners c = kLattice.Box(i, j, k);
    const bool isSplit = isMixed && box++ % 2 == 1;
    if (isSplit) {
      latticecells::InsertWedges(grid, c);
    } else {
      latticecells::InsertBrick(grid, c);
    }
    if (isMixed) grid->InsertNextCell(isSplit ? VTK_LINE : VTK_QUAD, isSplit ? 2 : 4, c.data());
  });
  return grid;
}

vtkSmartPointer<vtkDataSet> Image() {
  auto image = vtkSmartPointer<vtkImageData>::New();
  image->SetDimensions(kNodes[0], kNodes[1], kNodes[2]);
  return image;
}

vtkSmartPointer<vtkDataSet> Rectilinear() {
  auto grid = vtkSmartPointer<vtkRectilinearGrid>::New();
  grid->SetDimensions(kNodes[0], kNodes[1], kNodes[2]);
  vtkSmartPointer<vtkDoubleArray> axes[3];
  for (int axis = 0; axis < 3; ++axis) {
    axes[axis] = vtkSmartPointer<vtkDoubleArray>::New();
    for (int i = 0; i < kNodes[axis]; ++i) axes[axis]->InsertNextValue(i);
  }
  grid->SetXCoordinates(axes[0]);
  grid->SetYCoordinates(axes[1]);
  grid->SetZCoordinates(axes[2]);
  return grid;
}

vtkSmartPointer<vtkDataSet> Structured() {
  auto grid = vtkSmartPointer<vtkStructuredGrid>::New();
  grid->SetDimensions(kNodes[0], kNodes[1], kNodes[2]);
  grid->SetPoints(kLattice.UnitPoints());
  return grid;
}

vtkSmartPointer<vtkDataSet> MakePlain(MeshKind kind) {
  switch (kind) {
    case MeshKind::kImage:
      return Image();
    case MeshKind::kRectilinear:
      return Rectilinear();
    case MeshKind::kStructured:
      return Structured();
    case MeshKind::kBricks:
      return Boxes(false);
    case MeshKind::kMixed:
      return Boxes(true);
    case MeshKind::kBlocks:
      break;
  }
  throw std::logic_error("no plain mesh");
}

std::string ArrayDifference(vtkAbstractArray* a, vtkAbstractArray* b) {
  const std::string name = a->GetName() == nullptr ? "(unnamed)" : a->GetName();
  if (b == nullptr) return name + " is missing; ";
  if (name != (b->GetName() == nullptr ? "(unnamed)" : b->GetName())) return name + " is renamed; ";
  if (a->GetDataType() != b->GetDataType() ||
      a->GetNumberOfComponents() != b->GetNumberOfComponents() ||
      a->GetNumberOfTuples() != b->GetNumberOfTuples()) {
    return name + " has another type or size; ";
  }
  for (vtkIdType i = 0; i < a->GetNumberOfValues(); ++i) {
    const std::size_t size = a->GetDataTypeSize();
    const bool isText = a->GetDataType() == VTK_STRING;
    const bool isSame =
        isText ? a->GetVariantValue(i).ToString() == b->GetVariantValue(i).ToString()
               : std::memcmp(static_cast<char*>(a->GetVoidPointer(0)) + i * size,
                             static_cast<char*>(b->GetVoidPointer(0)) + i * size, size) == 0;
    if (isSame) continue;
    return name + "[" + std::to_string(i) + "] should be " + a->GetVariantValue(i).ToString() +
           ", is " + b->GetVariantValue(i).ToString() + "; ";
  }
  return {};
}

std::string FieldDifference(vtkFieldData* a, vtkFieldData* b) {
  if (a->GetNumberOfArrays() != b->GetNumberOfArrays()) return "arrays came or went; ";
  std::string difference;
  for (int i = 0; i < a->GetNumberOfArrays(); ++i) {
    difference += ArrayDifference(a->GetAbstractArray(i), b->GetAbstractArray(i));
  }
  return difference;
}

std::string CellDifference(vtkDataSet* a, vtkDataSet* b) {
  if (a->GetNumberOfCells() != b->GetNumberOfCells()) return "another number of cells; ";
  for (vtkIdType cell = 0; cell < a->GetNumberOfCells(); ++cell) {
    vtkIdList* before = a->GetCell(cell)->GetPointIds();
    vtkIdList* after = b->GetCell(cell)->GetPointIds();
    bool isSame = a->GetCellType(cell) == b->GetCellType(cell) &&
                  before->GetNumberOfIds() == after->GetNumberOfIds();
    for (vtkIdType i = 0; isSame && i < before->GetNumberOfIds(); ++i) {
      isSame = before->GetId(i) == after->GetId(i);
    }
    if (!isSame) return "cell " + std::to_string(cell) + " is another; ";
  }
  return {};
}

std::string PointDifference(vtkDataSet* a, vtkDataSet* b) {
  if (a->GetNumberOfPoints() != b->GetNumberOfPoints()) return "another number of points; ";
  for (vtkIdType point = 0; point < a->GetNumberOfPoints(); ++point) {
    double before[3];
    double after[3];
    a->GetPoint(point, before);
    b->GetPoint(point, after);
    if (std::memcmp(before, after, sizeof before) != 0) {
      return "point " + std::to_string(point) + " has moved; ";
    }
  }
  return {};
}

template <class Writer>
bool WriteWith(vtkDataObject* mesh, const std::string& path) {
  vtkNew<Writer> writer;
  writer->SetFileName(path.c_str());
  writer->SetInputDataObject(mesh);
  return writer->Write() == 1;
}

}  // namespace

vtkSmartPointer<vtkDataObject> MakeMesh(MeshKind kind) {
  if (kind != MeshKind::kBlocks) {
    vtkSmartPointer<vtkDataSet> mesh = MakePlain(kind);
    AddAttributes(mesh);
    return mesh;
  }
  auto blocks = vtkSmartPointer<vtkMultiBlockDataSet>::New();
  blocks->SetBlock(0, MakeMesh(MeshKind::kBricks));
  blocks->SetBlock(1, MakeMesh(MeshKind::kStructured));
  return blocks;
}

void WriteMesh(vtkDataObject* mesh, const std::string& path) {
  const bool isLegacy = path.size() > 4 && path.substr(path.size() - 4) == ".vtk";
  bool isDone = false;
  if (isLegacy) {
    isDone = WriteWith<vtkGenericDataObjectWriter>(mesh, path);
  } else if (mesh->IsA("vtkMultiBlockDataSet") != 0) {
    isDone = WriteWith<vtkXMLMultiBlockDataWriter>(mesh, path);
  } else {
    isDone = WriteWith<vtkXMLDataSetWriter>(mesh, path);
  }
  if (!isDone) throw std::runtime_error(path + " cannot be written");
}

vtkSmartPointer<vtkDataObject> ReadMesh(const std::string& path) {
  vtkNew<vtkXMLGenericDataObjectReader> reader;
  reader->SetFileName(path.c_str());
  reader->Update();
  vtkSmartPointer<vtkDataObject> mesh = reader->GetOutput();
  if (mesh == nullptr) throw std::runtime_error(path + " cannot be read");
  return mesh;
}

std::vector<vtkDataSet*> Leaves(vtkDataObject* mesh) {
  if (auto* leaf = vtkDataSet::SafeDownCast(mesh)) return {leaf};
  std::vector<vtkDataSet*> leaves;
  if (auto* blocks = vtkMultiBlockDataSet::SafeDownCast(mesh)) {
    for (unsigned i = 0; i < blocks->GetNumberOfBlocks(); ++i) {
      for (vtkDataSet* leaf : Leaves(blocks->GetBlock(i))) leaves.push_back(leaf);
    }
  }
  return leaves;
}

void ChangeAtNodes(vtkDataSet* mesh, const char* array, const Inside& inside,
                   const Change& change) {
  vtkDataArray* values = mesh->GetPointData()->GetArray(array);
  for (vtkIdType node = 0; node < mesh->GetNumberOfPoints(); ++node) {
    double x[3];
    mesh->GetPoint(node, x);
    if (inside(x[0], x[1])) values->SetTuple1(node, change(values->GetTuple1(node)));
  }
}

void ChangeAtCells(vtkDataSet* mesh, const char* array, const Inside& inside, bool isAll,
                   const Change& change) {
  vtkDataArray* values = mesh->GetCellData()->GetArray(array);
  for (vtkIdType cell = 0; cell < mesh->GetNumberOfCells(); ++cell) {
    vtkIdList* corners = mesh->GetCell(cell)->GetPointIds();
    vtkIdType insideCount = 0;
    for (vtkIdType corner = 0; corner < corners->GetNumberOfIds(); ++corner) {
      double x[3];
      mesh->GetPoint(corners->GetId(corner), x);
      if (inside(x[0], x[1])) ++insideCount;
    }
    const bool isTaken = isAll ? insideCount == corners->GetNumberOfIds() : insideCount > 0;
    if (isTaken) values->SetTuple1(cell, change(values->GetTuple1(cell)));
  }
}

std::string Difference(vtkDataSet* expected, vtkDataSet* actual) {
  if (std::strcmp(expected->GetClassName(), actual->GetClassName()) != 0) {
    return std::string(expected->GetClassName()) + " became " + actual->GetClassName();
  }
  return FieldDifference(expected->GetPointData(), actual->GetPointData()) +
         FieldDifference(expected->GetCellData(), actual->GetCellData()) +
         FieldDifference(expected->GetFieldData(), actual->GetFieldData()) +
         CellDifference(expected, actual) + PointDifference(expected, actual);
}

}  // namespace clitests
