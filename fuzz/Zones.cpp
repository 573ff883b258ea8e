// Any arrays as a mesh: offsets, cell types, streams of faces, coordinates. It is refused by the
// check that files have to pass, or every map, every hidden cell and every face to draw can be had.
#include "Input.h"

#include "DataSet.h"
#include "FileError.h"
#include "MeshCheck.h"
#include "ValueBlanking.h"
#include "ZoneFaces.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkIdTypeArray.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkRectilinearGrid.h>
#include <vtkStructuredGrid.h>
#include <vtkTypeInt32Array.h>
#include <vtkTypeInt64Array.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>

namespace {

using namespace qelhost;

constexpr int kMostCells = 24;

/// Mostly as it should be, sometimes any number.
std::int64_t Index(Input& input, int end) {
  const int kind = input.Take<std::uint8_t>();
  if (kind == 255) return input.Take<std::int64_t>();
  if (kind == 254) return input.Take<std::int16_t>();
  return end < 1 ? kind : kind % end;
}

vtkSmartPointer<vtkPoints> Points(Input& input, int count) {
  auto points = vtkSmartPointer<vtkPoints>::New();
  points->SetDataType(input.Flag() ? VTK_DOUBLE : VTK_FLOAT);
  for (int n = 0; n < count; ++n) {
    const double x = input.Coordinate();
    const double y = input.Coordinate();
    points->InsertNextPoint(x, y, input.Coordinate());
  }
  return points;
}

template <class Array>
vtkSmartPointer<vtkCellArray> CellsOf(Input& input, const std::vector<int>& sizes, int nodeCount) {
  vtkNew<Array> offsets;
  vtkNew<Array> nodes;
  std::int64_t end = 0;
  offsets->InsertNextValue(0);
  for (const int size : sizes) {
    for (int n = 0; n < size; ++n) {
      nodes->InsertNextValue(static_cast<typename Array::ValueType>(Index(input, nodeCount)));
    }
    end += size;
    offsets->InsertNextValue(static_cast<typename Array::ValueType>(end));
  }
  // Offsets that lie.
  for (int lies = input.Take<std::uint8_t>(); lies > 252; --lies) {
    offsets->SetValue(input.Below(static_cast<int>(offsets->GetNumberOfValues())),
                      static_cast<typename Array::ValueType>(Index(input, 64)));
  }
  auto cells = vtkSmartPointer<vtkCellArray>::New();
  cells->SetData(offsets, nodes);
  return cells;
}

vtkSmartPointer<vtkCellArray> Cells(Input& input, const std::vector<int>& sizes, int nodeCount) {
  return input.Flag() ? CellsOf<vtkTypeInt64Array>(input, sizes, nodeCount)
                      : CellsOf<vtkTypeInt32Array>(input, sizes, nodeCount);
}

std::vector<int> Sizes(Input& input) {
  std::vector<int> sizes;
  for (int n = input.Below(kMostCells); n > 0; --n) sizes.push_back(input.Below(10));
  return sizes;
}

struct CellKind {
  int type;
  int size;
};

/// A cell type with as many nodes as it has, mostly.
CellKind Kind(Input& input) {
  static constexpr CellKind kKinds[] = {{VTK_LINE, 2},
                                        {VTK_TRIANGLE, 3},
                                        {VTK_QUAD, 4},
                                        {VTK_PIXEL, 4},
                                        {VTK_POLYGON, 5},
                                        {VTK_POLYGON, 6},
                                        {VTK_TETRA, 4},
                                        {VTK_PYRAMID, 5},
                                        {VTK_WEDGE, 6},
                                        {VTK_HEXAHEDRON, 8},
                                        {VTK_VOXEL, 8},
                                        {VTK_PENTAGONAL_PRISM, 10},
                                        {VTK_POLYHEDRON, 4},
                                        {VTK_HEXAGONAL_PRISM, 12},
                                        {VTK_QUADRATIC_POLYGON, 6},
                                        {VTK_VERTEX, 1},
                                        {VTK_POLY_VERTEX, 3},
                                        {VTK_POLY_LINE, 3},
                                        {VTK_QUADRATIC_EDGE, 3},
                                        {VTK_QUADRATIC_TETRA, 10},
                                        {VTK_TRIANGLE_STRIP, 4},
                                        {VTK_EMPTY_CELL, 0}};
  const int n = input.Take<std::uint8_t>();
  constexpr int kCount = sizeof kKinds / sizeof *kKinds;
  CellKind kind = n < 250 ? kKinds[n % kCount] : CellKind{input.Take<std::uint8_t>(), 4};
  if (n > 252) kind.size = input.Below(13);
  return kind;
}

/// The number of faces, then each face's size and nodes; of every polyhedron one after the other.
void SetCellsWithFaces(Input& input, vtkUnstructuredGrid* grid, vtkUnsignedCharArray* types,
                       vtkCellArray* cells, int nodeCount) {
  vtkNew<vtkIdTypeArray> faces;
  vtkNew<vtkIdTypeArray> starts;
  for (vtkIdType cell = 0; cell < types->GetNumberOfValues(); ++cell) {
    const bool isSolid = types->GetValue(cell) == VTK_POLYHEDRON;
    starts->InsertNextValue(isSolid ? faces->GetNumberOfValues() : -1);
    if (!isSolid) continue;
    const int faceCount = input.Below(7);
    faces->InsertNextValue(faceCount);
    for (int face = 0; face < faceCount; ++face) {
      const int size = input.Below(6);
      faces->InsertNextValue(size);
      for (int n = 0; n < size; ++n) faces->InsertNextValue(Index(input, nodeCount));
    }
  }
  for (int lies = input.Take<std::uint8_t>(); lies > 252; --lies) {
    vtkIdTypeArray* const array = input.Flag() ? starts.Get() : faces.Get();
    const int length = static_cast<int>(std::min<vtkIdType>(array->GetNumberOfValues(), 256));
    if (length > 0) array->SetValue(input.Below(length), Index(input, 64));
  }
  if (input.Take<std::uint8_t>() == 255) starts->Resize(starts->GetNumberOfValues() / 2);
  grid->SetCells(types, cells, starts, faces);
}

vtkSmartPointer<vtkDataSet> Unstructured(Input& input) {
  const int nodeCount = input.Below(40);
  std::vector<int> sizes;
  vtkNew<vtkUnsignedCharArray> types;
  bool hasSolids = false;
  for (int n = input.Below(kMostCells); n > 0; --n) {
    const CellKind kind = Kind(input);
    sizes.push_back(kind.size);
    types->InsertNextValue(static_cast<unsigned char>(kind.type));
    hasSolids = hasSolids || kind.type == VTK_POLYHEDRON;
  }
  if (input.Take<std::uint8_t>() == 255) types->Resize(types->GetNumberOfValues() / 2);
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(Points(input, nodeCount));
  const auto cells = Cells(input, sizes, nodeCount);
  if (hasSolids && input.Take<std::uint8_t>() != 255) {
    SetCellsWithFaces(input, grid, types, cells, nodeCount);
  } else {
    grid->SetCells(types, cells, nullptr, nullptr);
  }
  return grid;
}

vtkSmartPointer<vtkDataSet> Surface(Input& input) {
  const int nodeCount = input.Below(40);
  auto surface = vtkSmartPointer<vtkPolyData>::New();
  surface->SetPoints(Points(input, nodeCount));
  const auto which = input.Take<std::uint8_t>();
  if ((which & 1) != 0) surface->SetVerts(Cells(input, Sizes(input), nodeCount));
  if ((which & 2) != 0) surface->SetLines(Cells(input, Sizes(input), nodeCount));
  if ((which & 12) != 0) surface->SetPolys(Cells(input, Sizes(input), nodeCount));
  if ((which & 16) != 0) surface->SetStrips(Cells(input, Sizes(input), nodeCount));
  return surface;
}

vtkSmartPointer<vtkDataSet> Structured(Input& input) {
  // One block in four is as large as its numbers say; it has no values then.
  const bool isAnySize = input.Below(4) == 0;
  int extent[6];
  for (int axis = 0; axis < 3; ++axis) {
    extent[2 * axis] = isAnySize ? input.Take<std::int32_t>() : input.Below(3);
    extent[2 * axis + 1] =
        isAnySize ? input.Take<std::int32_t>() : extent[2 * axis] + input.Below(5) - 1;
  }
  const int kind = input.Below(3);
  if (kind == 0 || isAnySize) {
    auto image = vtkSmartPointer<vtkImageData>::New();
    image->SetExtent(extent);
    return image;
  }
  if (kind == 1) {
    auto grid = vtkSmartPointer<vtkRectilinearGrid>::New();
    grid->SetExtent(extent);
    const auto ticks = [&input] {
      auto array = vtkSmartPointer<vtkDoubleArray>::New();
      for (int n = input.Below(6); n > 0; --n) array->InsertNextValue(input.Coordinate());
      return array;
    };
    grid->SetXCoordinates(ticks());
    grid->SetYCoordinates(ticks());
    grid->SetZCoordinates(ticks());
    return grid;
  }
  auto grid = vtkSmartPointer<vtkStructuredGrid>::New();
  grid->SetExtent(extent);
  grid->SetPoints(Points(input, input.Below(64)));
  return grid;
}

void AddValues(Input& input, vtkDataSet* block) {
  if (block->GetNumberOfPoints() > 4096 || block->GetNumberOfCells() > 4096) return;
  const auto values = [&input](const char* name, vtkIdType count) {
    auto array = vtkSmartPointer<vtkFloatArray>::New();
    array->SetName(name);
    for (vtkIdType n = 0; n < count; ++n) {
      array->InsertNextValue(static_cast<float>(input.Take<std::int8_t>()));
    }
    return array;
  };
  // Arrays of another length than the mesh has are refused.
  const int longer = input.Take<std::uint8_t>() == 255 ? 1 : 0;
  block->GetPointData()->AddArray(values("n", block->GetNumberOfPoints() + longer));
  block->GetCellData()->AddArray(values("c", block->GetNumberOfCells()));
  if (!input.Flag()) return;
  auto marks = vtkSmartPointer<vtkUnsignedCharArray>::New();
  marks->SetName(vtkDataSetAttributes::GhostArrayName());
  for (int n = input.Below(32); n > 0; --n) marks->InsertNextValue(input.Take<std::uint8_t>());
  block->GetCellData()->AddArray(marks);
}

void DemandNode(std::int64_t node, const Zone& zone) {
  Demand(node >= 0 && node < zone.NodeCount(), "a node is one of the zone's");
}

/// Each cell's corners are nodes of the block's cell; each node's cells have it as a corner.
void AskCells(Zone& zone) {
  vtkNew<vtkIdList> ids;
  std::vector<std::int64_t> nodes;
  for (std::int64_t cell = 0; cell < zone.CellCount(); ++cell) {
    const std::int64_t blockCell = zone.BlockCell(cell);
    Demand(zone.CellOfBlockCell(blockCell) == cell, "a cell is found again");
    zone.CellNodes(cell, nodes);
    if (zone.NodeMap() != nullptr) zone.Block()->GetCellPoints(blockCell, ids);
    for (const std::int64_t node : nodes) {
      DemandNode(node, zone);
      Demand(zone.NodeMap() == nullptr || ids->IsId(node) >= 0, "it is a node of the file's cell");
    }
  }
  const QelNodeToElemMap* const around = zone.NodeToElem();
  if (around == nullptr) return;
  Demand(around->NodeCount() == zone.NodeCount(), "every node has its cells");
  for (std::int64_t node = 0; node < zone.NodeCount(); ++node) {
    for (std::int64_t n = 0; n < around->Count(node); ++n) {
      const LgIndex_t element = around->Element(node, n);
      Demand(element >= 0 && element < zone.CellCount(), "a cell is one of the zone's");
    }
  }
}

void AskFaces(Zone& zone) {
  if (const QelFaceNeighbors* const neighbours = zone.FaceNeighbors()) {
    for (LgIndex_t cell = 0; cell < zone.CellCount(); ++cell) {
      for (int face = -1; face < 7; ++face) {
        Demand(neighbours->Count(cell, face) >= 0, "neighbours are counted");
      }
    }
  }
  const QelFaceMap* const faces = zone.FaceMap();
  if (faces == nullptr) return;
  Demand(zone.ElemToFace()->ElementCount() == zone.CellCount(), "every cell has its faces");
  for (LgIndex_t face = 0; face < faces->FaceCount(); ++face) {
    Demand(faces->left[face] >= 0 && faces->left[face] < zone.CellCount() &&
               faces->right[face] >= -1 && faces->right[face] < zone.CellCount(),
           "a face lies between cells of the zone");
    for (LgIndex_t n = 0; n < faces->NodeCount(face); ++n) DemandNode(faces->Node(face, n), zone);
  }
}

void DemandSound(const FaceList& list, const Zone& zone, const ItemBits* hidden) {
  for (std::int64_t face = 0; face < list.Count(); ++face) {
    Demand(list.cells[face] >= 0 && list.cells[face] < zone.CellCount(), "a drawn face has a cell");
    Demand(hidden == nullptr || !hidden->Has(list.cells[face]),
           "of a hidden cell nothing is drawn");
    Demand(list.Size(face) >= 2, "a drawn face has nodes");
    for (int n = 0; n < list.Size(face); ++n) DemandNode(list.Begin(face)[n], zone);
  }
}

ValueBlanking Settings(Input& input) {
  ValueBlanking settings;
  settings.include = true;
  settings.blankEntireCell = input.Flag();
  settings.cellMode = static_cast<QelBlankCellMode_e>(input.Below(3));
  for (std::size_t n = 0; n < 2; ++n) {
    settings.constraints[n] = {true,
                               input.Below(7),
                               input.Below(7),
                               static_cast<QelBlankRelOp_e>(input.Below(6)),
                               static_cast<QelConstraintOp2Mode_e>(input.Below(2)),
                               input.Coordinate()};
  }
  return settings;
}

void AskEverything(DataSet& data, Input& input) {
  Zone& zone = *data.FindZone(1);
  // Images are as large as their numbers say, and cost as much to look at.
  if (zone.NodeCount() > 4096 || zone.CellCount() > 4096) return;
  AskCells(zone);
  AskFaces(zone);
  zone.IJK();
  const BlankedItems hidden = EvaluateBlanking(data, 1, Settings(input));
  const auto faces = MakeZoneFaces(zone);
  DemandSound(faces->Shown(nullptr), zone, nullptr);
  DemandSound(faces->Shown(&hidden.cells), zone, &hidden.cells);
  for (LgIndex_t var = 1; var <= data.VariableCount(); ++var) {
    data.ZoneRange(1, var);
    const QelFieldData* const field = data.ReadableAtNodes(1, var);
    for (LgIndex_t node = 0; node < zone.NodeCount(); ++node) field->get(field, node);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const int kind = input.Below(4);
  const vtkSmartPointer<vtkDataSet> block = kind == 0   ? Surface(input)
                                            : kind == 1 ? Structured(input)
                                                        : Unstructured(input);
  try {
    CheckMesh("block", block);
    AddValues(input, block);
    DataSet dataSet("block", {{"block", block}}, nullptr);
    AskEverything(dataSet, input);
  } catch (const FileError& e) {
    Demand(*e.what() != '\0', "a refused mesh has a reason");
  } catch (const DataError& e) {
    Demand(*e.what() != '\0', "a refused zone has a reason");
  }
  return 0;
}
