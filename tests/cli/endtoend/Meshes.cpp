#include "Meshes.h"

#include "LatticeCells.h"

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string>

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkCompositeDataSet.h>
#include <vtkDataArray.h>
#include <vtkDoubleArray.h>
#include <vtkFieldData.h>
#include <vtkImageData.h>
#include <vtkInformation.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkRectilinearGrid.h>
#include <vtkStringArray.h>
#include <vtkStructuredGrid.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

namespace clitest {

namespace {

constexpr int kNodesX = 5;
constexpr int kNodesY = 4;
constexpr int kNodesZ = 3;

constexpr latticecells::Lattice kLattice = {kNodesX, kNodesY, kNodesZ};

using Ids = latticecells::Corners;

vtkSmartPointer<vtkPoints> PointsOf(int layers) {
  return latticecells::Lattice{kNodesX, kNodesY, layers}.UnitPoints();
}

Ids QuadAt(int i, int j) {
  Ids quad = kLattice.Box(i, j, 0);
  quad.resize(4);
  return quad;
}

void AddCell(vtkUnstructuredGrid* grid, int type, const Ids& ids) {
  grid->InsertNextCell(type, static_cast<vtkIdType>(ids.size()), ids.data());
}

void AddCell(vtkCellArray* cells, const Ids& ids) {
  cells->InsertNextCell(static_cast<vtkIdType>(ids.size()), ids.data());
}

void AddFilled(vtkDataSetAttributes* attributes, vtkIdType count, const char* name, int type,
               int components) {
  auto array = vtkSmartPointer<vtkDataArray>::Take(vtkDataArray::CreateDataArray(type));
  array->SetName(name);
  array->SetNumberOfComponents(components);
  array->SetNumberOfTuples(count);
  for (vtkIdType i = 0; i < count; ++i) {
    for (int c = 0; c < components; ++c) {
      const double value =
          type == VTK_FLOAT || type == VTK_DOUBLE ? 0.1 + 1.37 * i - 0.61 * c : (i * 7 + c) % 120;
      array->SetComponent(i, c, value);
    }
  }
  attributes->AddArray(array);
}

void AddFieldData(vtkDataObject* data) {
  vtkNew<vtkStringArray> note;
  note->SetName("note");
  note->InsertNextValue("kept as it is");
  data->GetFieldData()->AddArray(note);
  vtkNew<vtkDoubleArray> settings;
  settings->SetName("settings");
  settings->InsertNextValue(0.1);
  settings->InsertNextValue(-1e300);
  data->GetFieldData()->AddArray(settings);
}

void AddBlockArrays(vtkDataSet* block) {
  struct Column {
    const char* name;
    int type;
    int components;
  };
  constexpr Column kNodeColumns[] = {
      {"T", VTK_DOUBLE, 1}, {"U", VTK_FLOAT, 3}, {"count", VTK_LONG_LONG, 1}};
  constexpr Column kCellColumns[] = {{"T", VTK_FLOAT, 1},
                                     {"S", VTK_DOUBLE, 9},
                                     {"id", VTK_INT, 1},
                                     {"flag", VTK_UNSIGNED_CHAR, 1},
                                     {"i8", VTK_SIGNED_CHAR, 1},
                                     {"i16", VTK_SHORT, 1},
                                     {"u16", VTK_UNSIGNED_SHORT, 1},
                                     {"u32", VTK_UNSIGNED_INT, 1},
                                     {"u64", VTK_UNSIGNED_LONG_LONG, 1}};
  for (const Column& column : kNodeColumns) {
    AddFilled(block->GetPointData(), block->GetNumberOfPoints(), column.name, column.type,
              column.components);
  }
  for (const Column& column : kCellColumns) {
    AddFilled(block->GetCellData(), block->GetNumberOfCells(), column.name, column.type,
              column.components);
  }
  AddFieldData(block);
}

vtkSmartPointer<vtkUnstructuredGrid> GridOnLattice(int nz) {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(PointsOf(nz));
  grid->Allocate(32);
  return grid;
}

vtkSmartPointer<vtkPolyData> SurfaceOnLattice() {
  auto surface = vtkSmartPointer<vtkPolyData>::New();
  surface->SetPoints(PointsOf(1));
  return surface;
}

void AddTetrahedra(vtkUnstructuredGrid* grid, const Ids& b) {
  for (const Ids& tet :
       {Ids{b[0], b[1], b[3], b[4]}, Ids{b[1], b[2], b[3], b[6]}, Ids{b[1], b[6], b[4], b[5]},
        Ids{b[3], b[4], b[6], b[7]}, Ids{b[1], b[3], b[4], b[6]}}) {
    AddCell(grid, VTK_TETRA, tet);
  }
}

}  // namespace

void AddArrays(vtkDataObject* data) {
  if (auto* const block = vtkDataSet::SafeDownCast(data)) return AddBlockArrays(block);
  auto* const blocks = vtkMultiBlockDataSet::SafeDownCast(data);
  for (unsigned i = 0; i < blocks->GetNumberOfBlocks(); ++i) {
    if (blocks->GetBlock(i) != nullptr) AddArrays(blocks->GetBlock(i));
  }
}

DataPtr MixedVolume() {
  auto grid = GridOnLattice(kNodesZ);
  kLattice.ForEachBox([&](int i, int j, int k) {
    const Ids b = kLattice.Box(i, j, k);
    const int kind = (i + 2 * j + 3 * k) % 5;
    if (kind == 1) {
      AddTetrahedra(grid, b);
    } else if (kind == 2) {
      AddCell(grid, VTK_WEDGE, {b[0], b[3], b[1], b[4], b[7], b[5]});
      AddCell(grid, VTK_QUAD, {b[0], b[1], b[2], b[3]});
      AddCell(grid, VTK_WEDGE, {b[1], b[3], b[2], b[5], b[7], b[6]});
    } else if (kind == 3) {
      AddCell(grid, VTK_PYRAMID, {b[0], b[1], b[2], b[3], b[4]});
      AddCell(grid, VTK_LINE, {b[0], b[6]});
    } else {
      AddCell(grid, VTK_HEXAHEDRON, b);
    }
  });
  AddArrays(grid);
  return grid;
}

DataPtr Bricks() {
  auto grid = GridOnLattice(kNodesZ);
  kLattice.ForEachBox(
      [&](int i, int j, int k) { AddCell(grid, VTK_HEXAHEDRON, kLattice.Box(i, j, k)); });
  AddArrays(grid);
  return grid;
}

DataPtr Voxels() {
  auto grid = GridOnLattice(kNodesZ);
  kLattice.ForEachBox([&](int i, int j, int k) {
    const Ids b = kLattice.Box(i, j, k);
    AddCell(grid, VTK_VOXEL, {b[0], b[1], b[3], b[2], b[4], b[5], b[7], b[6]});
  });
  AddArrays(grid);
  return grid;
}

DataPtr Polyhedra() {
  auto grid = GridOnLattice(kNodesZ);
  kLattice.ForEachBox([&](int i, int j, int k) {
    const Ids b = kLattice.Box(i, j, k);
    if (i == 1 && j == 1 && k == 0) {
      AddCell(grid, VTK_HEXAHEDRON, b);
    } else {
      latticecells::InsertPolyhedron(grid, b);
    }
  });
  AddArrays(grid);
  return grid;
}

DataPtr QuadraticTets() {
  auto grid = GridOnLattice(kNodesZ);
  vtkPoints* const points = grid->GetPoints();
  const auto middle = [points](vtkIdType a, vtkIdType b) {
    std::array<double, 3> p{};
    std::array<double, 3> q{};
    points->GetPoint(a, p.data());
    points->GetPoint(b, q.data());
    return points->InsertNextPoint((p[0] + q[0]) / 2, (p[1] + q[1]) / 2, (p[2] + q[2]) / 2);
  };
  kLattice.ForEachBox([&](int i, int j, int k) {
    const Ids b = kLattice.Box(i, j, k);
    for (const Ids& t : {Ids{b[0], b[1], b[3], b[4]}, Ids{b[1], b[2], b[3], b[6]}}) {
      AddCell(grid, VTK_QUADRATIC_TETRA,
              {t[0], t[1], t[2], t[3], middle(t[0], t[1]), middle(t[1], t[2]), middle(t[0], t[2]),
               middle(t[0], t[3]), middle(t[1], t[3]), middle(t[2], t[3])});
    }
  });
  AddArrays(grid);
  return grid;
}

DataPtr GhostBricks() {
  DataPtr data = Bricks();
  auto* const grid = vtkUnstructuredGrid::SafeDownCast(data);
  vtkNew<vtkUnsignedCharArray> ghosts;
  ghosts->SetName(vtkDataSetAttributes::GhostArrayName());
  for (vtkIdType cell = 0; cell < grid->GetNumberOfCells(); ++cell) {
    ghosts->InsertNextValue(cell % 4 == 3 ? vtkDataSetAttributes::DUPLICATECELL : 0);
  }
  grid->GetCellData()->AddArray(ghosts);
  return data;
}

DataPtr FlatPixels() {
  auto grid = GridOnLattice(1);
  for (int j = 0; j + 1 < kNodesY; ++j) {
    for (int i = 0; i + 1 < kNodesX; ++i) {
      const Ids q = QuadAt(i, j);
      AddCell(grid, VTK_PIXEL, {q[0], q[1], q[3], q[2]});
    }
  }
  AddArrays(grid);
  return grid;
}

DataPtr FlatTriangles() {
  auto surface = SurfaceOnLattice();
  vtkNew<vtkCellArray> triangles;
  for (int j = 0; j + 1 < kNodesY; ++j) {
    for (int i = 0; i + 1 < kNodesX; ++i) {
      const Ids q = QuadAt(i, j);
      AddCell(triangles, {q[0], q[1], q[2]});
      AddCell(triangles, {q[0], q[2], q[3]});
    }
  }
  surface->SetPolys(triangles);
  AddArrays(surface);
  return surface;
}

DataPtr FlatMixed() {
  auto surface = SurfaceOnLattice();
  vtkNew<vtkCellArray> cells;
  for (int j = 0; j + 1 < kNodesY; ++j) {
    for (int i = 0; i + 1 < kNodesX; ++i) {
      const Ids q = QuadAt(i, j);
      if ((i + j) % 2 == 0) {
        AddCell(cells, q);
      } else {
        AddCell(cells, {q[0], q[1], q[3]});
        AddCell(cells, {q[1], q[2], q[3]});
      }
    }
  }
  vtkNew<vtkCellArray> vertices;
  AddCell(vertices, Ids{3});
  vtkNew<vtkCellArray> lines;
  AddCell(lines, {0, 1, 2});
  AddCell(lines, {5, 6});
  surface->SetVerts(vertices);
  surface->SetLines(lines);
  surface->SetPolys(cells);
  AddArrays(surface);
  return surface;
}

DataPtr FlatPolygons() {
  auto surface = SurfaceOnLattice();
  vtkNew<vtkCellArray> cells;
  // Two columns of hexagons of two lattice cells each, a pentagon and a triangle that fill the
  // rest.
  for (int j = 0; j + 1 < kNodesY; ++j) {
    const Ids left = QuadAt(0, j);
    const Ids right = QuadAt(1, j);
    AddCell(cells, {left[0], left[1], right[1], right[2], left[2], left[3]});
  }
  const Ids a = QuadAt(2, 0);
  const Ids b = QuadAt(3, 0);
  AddCell(cells, {a[0], a[1], b[1], b[2], a[3]});
  AddCell(cells, {a[3], b[2], QuadAt(2, 1)[3]});
  surface->SetPolys(cells);
  AddArrays(surface);
  return surface;
}

DataPtr LineSegments() {
  auto surface = SurfaceOnLattice();
  vtkNew<vtkCellArray> lines;
  for (int j = 0; j < kNodesY; ++j) {
    for (int i = 0; i + 1 < kNodesX; ++i) {
      AddCell(lines, {kLattice.Node(i, j, 0), kLattice.Node(i + 1, j, 0)});
    }
  }
  surface->SetLines(lines);
  AddArrays(surface);
  return surface;
}

DataPtr Curvilinear(int nx, int ny, int nz) {
  auto grid = vtkSmartPointer<vtkStructuredGrid>::New();
  grid->SetDimensions(nx, ny, nz);
  vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  for (int k = 0; k < nz; ++k) {
    for (int j = 0; j < ny; ++j) {
      for (int i = 0; i < nx; ++i) points->InsertNextPoint(i, ny == 1 ? 1 : j, k);
    }
  }
  grid->SetPoints(points);
  AddArrays(grid);
  return grid;
}

DataPtr Rectilinear() {
  auto grid = vtkSmartPointer<vtkRectilinearGrid>::New();
  grid->SetDimensions(kNodesX, kNodesY, kNodesZ);
  const auto ticks = [](std::initializer_list<double> values, const char* name) {
    auto array = vtkSmartPointer<vtkDoubleArray>::New();
    array->SetName(name);
    for (const double value : values) array->InsertNextValue(value);
    return array;
  };
  grid->SetXCoordinates(ticks({0, 1, 2, 3, 4}, "x"));
  grid->SetYCoordinates(ticks({0, 1, 2, 3}, "y"));
  grid->SetZCoordinates(ticks({0, 1, 2}, "z"));
  AddArrays(grid);
  return grid;
}

DataPtr Image() {
  auto image = vtkSmartPointer<vtkImageData>::New();
  image->SetExtent(2, 6, 1, 4, 0, 2);
  image->SetOrigin(-2, -1, 0);
  AddArrays(image);
  return image;
}

DataPtr EmptyGrid() { return vtkSmartPointer<vtkUnstructuredGrid>::New(); }

DataPtr Blocks() {
  auto blocks = vtkSmartPointer<vtkMultiBlockDataSet>::New();
  const auto put = [](vtkMultiBlockDataSet* into, unsigned i, vtkDataObject* block,
                      const char* name) {
    into->SetBlock(i, block);
    into->GetMetaData(i)->Set(vtkCompositeDataSet::NAME(), name);
  };
  put(blocks, 0, Bricks(), "inside");
  put(blocks, 1, EmptyGrid(), "nothing");
  auto patches = vtkSmartPointer<vtkMultiBlockDataSet>::New();
  put(patches, 0, Image(), "box");
  patches->SetBlock(1, nullptr);
  put(patches, 2, FlatTriangles(), "wall");
  put(blocks, 2, patches, "patches");
  return blocks;
}

DataPtr LargeVolume() {
  auto image = vtkSmartPointer<vtkImageData>::New();
  image->SetDimensions(90, 90, 90);
  const vtkIdType count = image->GetNumberOfPoints();
  vtkNew<vtkDoubleArray> noise;
  noise->SetName("noise");
  noise->SetNumberOfTuples(count);
  std::uint64_t state = 1;
  for (vtkIdType i = 0; i < count; ++i) {
    state = state * 6364136223846793005ULL + 1442695040888963407ULL;
    noise->SetValue(i, static_cast<double>(state >> 40));
  }
  image->GetPointData()->AddArray(noise);
  return image;
}

}  // namespace clitest
