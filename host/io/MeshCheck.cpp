#include "MeshCheck.h"

#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkIdTypeArray.h>
#include <vtkPolyData.h>
#include <vtkRectilinearGrid.h>
#include <vtkStructuredGrid.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "CellShapes.h"
#include "FileError.h"

namespace qelhost {
namespace {

/// Least nodes of a cell by its VTK type.
std::array<std::int64_t, 256> LeastSizes() {
  std::array<std::int64_t, 256> sizes{};
  for (int type = 0; type < 256; ++type) sizes[type] = CornerCountOf(ShapeOfVtkCell(type));
  return sizes;
}

template <class Index>
bool AreCellsSound(const Index* offsets, std::int64_t cellCount, const Index* nodes,
                   std::int64_t nodeSlots, std::int64_t nodeCount, const unsigned char* types,
                   std::int64_t leastSize) {
  if (cellCount > 0 && (offsets[0] != 0 || offsets[cellCount] > nodeSlots)) return false;
  const std::array<std::int64_t, 256> least = LeastSizes();
  for (std::int64_t cell = 0; cell < cellCount; ++cell) {
    const std::int64_t size = std::int64_t{offsets[cell + 1]} - offsets[cell];
    if (size < (types != nullptr ? least[types[cell]] : leastSize)) return false;
  }
  // Smallest and largest instead of a test each: this form vectorises.
  Index lowest = 0, highest = -1;
  for (std::int64_t i = 0; i < nodeSlots; ++i) {
    lowest = std::min(lowest, nodes[i]);
    highest = std::max(highest, nodes[i]);
  }
  return lowest >= 0 && highest < nodeCount;
}

/// leastSize: of every cell, where there are no types.
bool AreCellsSound(vtkCellArray* cells, std::int64_t nodeCount, const unsigned char* types,
                   std::int64_t leastSize = 0) {
  if (cells == nullptr || cells->GetNumberOfCells() == 0) return true;
  const std::int64_t count = cells->GetNumberOfCells();
  const std::int64_t slots = cells->GetConnectivityArray()->GetNumberOfValues();
  if (cells->IsStorage64Bit()) {
    return AreCellsSound(cells->GetOffsetsArray64()->GetPointer(0), count,
                         cells->GetConnectivityArray64()->GetPointer(0), slots, nodeCount, types,
                         leastSize);
  }
  return AreCellsSound(cells->GetOffsetsArray32()->GetPointer(0), count,
                       cells->GetConnectivityArray32()->GetPointer(0), slots, nodeCount, types,
                       leastSize);
}

/// A polyhedron's stream is its number of faces, then for each face its size and nodes.
bool ArePolyhedraSound(vtkUnstructuredGrid* grid) {
  vtkIdTypeArray* faces = grid->GetFaces();
  vtkIdTypeArray* starts = grid->GetFaceLocations();
  vtkUnsignedCharArray* types = grid->GetCellTypesArray();
  const bool any =
      types != nullptr &&
      std::find(types->GetPointer(0), types->GetPointer(0) + types->GetNumberOfValues(),
                VTK_POLYHEDRON) != types->GetPointer(0) + types->GetNumberOfValues();
  if (!any) return true;
  if (faces == nullptr || starts == nullptr) return false;
  const vtkIdType end = faces->GetNumberOfValues();
  for (vtkIdType cell = 0; cell < grid->GetNumberOfCells(); ++cell) {
    if (types->GetValue(cell) != VTK_POLYHEDRON) continue;
    vtkIdType at = cell < starts->GetNumberOfValues() ? starts->GetValue(cell) : -1;
    if (at < 0 || at >= end) return false;
    for (vtkIdType left = faces->GetValue(at++); left > 0; --left) {
      const vtkIdType size = at < end ? faces->GetValue(at++) : -1;
      if (size < 0 || at + size > end) return false;
      for (vtkIdType i = 0; i < size; ++i, ++at) {
        if (faces->GetValue(at) < 0 || faces->GetValue(at) >= grid->GetNumberOfPoints()) {
          return false;
        }
      }
    }
  }
  return true;
}

/// Not by a product, which may wrap around.
bool AreNodesOf(const int (&dimensions)[3], std::int64_t nodes) {
  for (const int count : dimensions) {
    if (count < 1 || nodes % count != 0) return nodes == 0 && count < 1;
    nodes /= count;
  }
  return nodes == 1;
}

}  // namespace

void CheckMesh(const std::string& path, vtkDataSet* block) {
  const std::int64_t nodes = block->GetNumberOfPoints();
  bool sound = true;
  if (auto* grid = vtkUnstructuredGrid::SafeDownCast(block)) {
    vtkUnsignedCharArray* types = grid->GetCellTypesArray();
    const bool hasCells = grid->GetNumberOfCells() > 0;
    sound =
        !hasCells ||
        (types != nullptr && types->GetNumberOfValues() == grid->GetNumberOfCells() &&
         AreCellsSound(grid->GetCells(), nodes, types->GetPointer(0)) && ArePolyhedraSound(grid));
  } else if (auto* surface = vtkPolyData::SafeDownCast(block)) {
    // VTK looks for the nodes of smaller ones among the vertices.
    sound = AreCellsSound(surface->GetVerts(), nodes, nullptr, 1) &&
            AreCellsSound(surface->GetLines(), nodes, nullptr, 2) &&
            AreCellsSound(surface->GetPolys(), nodes, nullptr, 3) &&
            AreCellsSound(surface->GetStrips(), nodes, nullptr, 3);
  } else if (auto* structured = vtkStructuredGrid::SafeDownCast(block)) {
    int dimensions[3];
    structured->GetDimensions(dimensions);
    sound = AreNodesOf(dimensions, nodes);
  } else if (auto* rectilinear = vtkRectilinearGrid::SafeDownCast(block)) {
    int dimensions[3];
    rectilinear->GetDimensions(dimensions);
    sound = rectilinear->GetXCoordinates()->GetNumberOfTuples() == dimensions[0] &&
            rectilinear->GetYCoordinates()->GetNumberOfTuples() == dimensions[1] &&
            rectilinear->GetZCoordinates()->GetNumberOfTuples() == dimensions[2];
  }
  if (!sound) throw FileError(path, "damaged: its cells refer to nodes that do not exist");
}

}  // namespace qelhost
