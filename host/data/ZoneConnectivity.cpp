#include <vtkCellArray.h>
#include <vtkIdList.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>

#include "Zone.h"

namespace qelhost {
namespace {

/// Nodes of a block's cell in VTK's order, without the points on the edges of a polygon.
vtkIdType CornersOfBlockCell(vtkDataSet* block, std::int64_t blockCell, vtkIdList* ids) {
  block->GetCellPoints(blockCell, ids);
  const vtkIdType count = ids->GetNumberOfIds();
  return HasPointsOnEdges(block->GetCellType(blockCell)) ? count / 2 : count;
}

void AddPolygonEdges(FaceCollector& collector, vtkDataSet* block, std::int64_t blockCell,
                     vtkIdList* ids) {
  vtkIdType count = CornersOfBlockCell(block, blockCell, ids);
  const Shape shape = ShapeOfVtkCell(block->GetCellType(blockCell));
  if (CornerCountOf(shape) > 0) count = std::min<vtkIdType>(count, CornerCountOf(shape));
  static constexpr int kAroundPixel[4] = {0, 1, 3, 2};
  const auto corner = [&](vtkIdType n) {
    return static_cast<LgIndex_t>(ids->GetId(shape == Shape::Pixel ? kAroundPixel[n] : n));
  };
  for (vtkIdType n = 0; n < count; ++n) {
    const LgIndex_t edge[2] = {corner(n), corner((n + 1) % count)};
    if (edge[0] != edge[1]) collector.AddFace(edge, 2);
  }
  collector.FinishElement();
}

void AddSolidFaces(FaceCollector& collector, vtkUnstructuredGrid* grid, std::int64_t blockCell,
                   vtkIdList* ids) {
  std::vector<LgIndex_t> face;
  const Shape shape = ShapeOfVtkCell(grid->GetCellType(blockCell));
  if (shape == Shape::Polyhedron) {
    grid->GetFaceStream(blockCell, ids);
    vtkIdType place = 1;
    for (vtkIdType n = 0; n < ids->GetId(0); ++n) {
      const vtkIdType size = ids->GetId(place++);
      face.clear();
      for (vtkIdType i = 0; i < size; ++i) {
        face.push_back(static_cast<LgIndex_t>(ids->GetId(place++)));
      }
      collector.AddFace(face.data(), static_cast<int>(face.size()));
    }
  } else {
    grid->GetCellPoints(blockCell, ids);
    const SolidFaces& faces = FacesOf(shape);
    for (int n = 0; n < faces.faceCount; ++n) {
      face.clear();
      for (const signed char point : faces.points[n]) {
        if (point < 0) break;
        face.push_back(static_cast<LgIndex_t>(ids->GetId(point)));
      }
      collector.AddFace(face.data(), static_cast<int>(face.size()));
    }
  }
  collector.FinishElement();
}

}  // namespace

void Zone::SetNodeMap(vtkCellArray* cells, std::int64_t arrayStart) {
  if (IsFaceBased()) return;
  m_nodeMap = std::make_unique<QelNodeMap>();
  m_nodeMap->cells = cells;
  m_nodeMap->zoneType = m_type;
  m_nodeMap->elementCount = m_cellCount;
  m_nodeMap->nodeCount = m_nodeCount;
  m_nodeMap->arrayStart = arrayStart;
  m_nodeMap->firstBlockCell = m_firstCell;
  m_nodeMap->cellOfElement = m_cellMap.empty() ? nullptr : m_cellMap.data();
  if (auto* grid = vtkUnstructuredGrid::SafeDownCast(m_block)) {
    vtkUnsignedCharArray* types = grid->GetCellTypesArray();
    m_nodeMap->cellTypes = types == nullptr ? nullptr : types->GetPointer(0);
  }
  ResolveNodeMap(*m_nodeMap);
  m_nodeMap->writable = !m_fromFile && m_nodeMap->plain;
}

QelNodeMap* Zone::NodeMap() { return m_nodeMap.get(); }

QelNodeMap* Zone::WritableNodeMap() {
  return m_nodeMap != nullptr && m_nodeMap->writable ? m_nodeMap.get() : nullptr;
}

const QelNodeToElemMap* Zone::NodeToElem() {
  if (m_nodeToElem == nullptr && !IsOrdered()) {
    m_nodeToElem = std::make_unique<QelNodeToElemMap>(
        IsFaceBased() ? BuildNodeToElemMap(*FaceMap(), *ElemToFace(), m_nodeCount)
                      : BuildNodeToElemMap(*m_nodeMap));
  }
  return m_nodeToElem.get();
}

const QelFaceNeighbors* Zone::FaceNeighbors() {
  if (m_nodeMap == nullptr) return nullptr;
  if (m_faceNeighbors == nullptr) {
    m_faceNeighbors = std::make_unique<QelFaceNeighbors>();
    m_faceNeighbors->nodes = m_nodeMap.get();
    m_faceNeighbors->elements = NodeToElem();
  }
  return m_faceNeighbors.get();
}

void Zone::BuildFaceMaps() {
  FaceCollector collector(m_nodeCount);
  vtkNew<vtkIdList> ids;
  auto* grid = vtkUnstructuredGrid::SafeDownCast(m_block);
  for (LgIndex_t cell = 0; cell < m_cellCount; ++cell) {
    if (m_type == ZoneType_FEPolygon) {
      AddPolygonEdges(collector, m_block, BlockCell(cell), ids);
    } else {
      AddSolidFaces(collector, grid, BlockCell(cell), ids);
    }
  }
  m_faceMap = std::make_unique<QelFaceMap>(std::move(collector.faceMap));
  m_elemToFace = std::make_unique<QelElemToFaceMap>(std::move(collector.elementMap));
}

const QelFaceMap* Zone::FaceMap() {
  if (!IsFaceBased()) return nullptr;
  if (m_faceMap == nullptr) BuildFaceMaps();
  return m_faceMap.get();
}

const QelElemToFaceMap* Zone::ElemToFace() {
  if (!IsFaceBased()) return nullptr;
  if (m_elemToFace == nullptr) BuildFaceMaps();
  return m_elemToFace.get();
}

void Zone::DropDerivedMaps() {
  m_version = NextZoneVersion();
  m_faceNeighbors.reset();
  m_nodeToElem.reset();
}

void Zone::CellNodes(std::int64_t cell, std::vector<std::int64_t>& nodes) {
  nodes.clear();
  if (m_nodeMap != nullptr) {
    for (int corner = 0; corner < m_nodeMap->nodesPerElement; ++corner) {
      nodes.push_back(m_nodeMap->Node(cell, corner));
    }
    return;
  }
  if (IsFaceBased()) {
    vtkNew<vtkIdList> ids;
    const vtkIdType count = CornersOfBlockCell(m_block, BlockCell(cell), ids);
    for (vtkIdType i = 0; i < count; ++i) nodes.push_back(ids->GetId(i));
    return;
  }
  const auto& [iMax, jMax, kMax] = m_dimensions;
  const std::int64_t iCells = std::max<std::int64_t>(iMax - 1, 1);
  const std::int64_t jCells = std::max<std::int64_t>(jMax - 1, 1);
  const std::int64_t i = cell % iCells, j = cell / iCells % jCells, k = cell / (iCells * jCells);
  for (std::int64_t dk = 0; dk < std::min<std::int64_t>(kMax, 2); ++dk) {
    for (std::int64_t dj = 0; dj < std::min<std::int64_t>(jMax, 2); ++dj) {
      for (std::int64_t di = 0; di < std::min<std::int64_t>(iMax, 2); ++di) {
        nodes.push_back(i + di + (j + dj) * iMax + (k + dk) * iMax * jMax);
      }
    }
  }
}

double Zone::Average(const QelFieldData& cells, std::int64_t node) {
  if (IsOrdered()) return AverageOrdered(cells, node);
  const QelNodeToElemMap& around = *NodeToElem();
  const std::int64_t count = around.Count(node);
  if (count == 0) return 0;
  double sum = 0;
  for (std::int64_t n = 0; n < count; ++n) sum += cells.get(&cells, around.Element(node, n));
  return sum / static_cast<double>(count);
}

double Zone::AverageOrdered(const QelFieldData& cells, std::int64_t node) const {
  std::array<std::int64_t, 3> cellCounts{}, first{}, last{};
  std::int64_t rest = node;
  for (int axis = 0; axis < 3; ++axis) {
    const std::int64_t at = rest % m_dimensions[axis];
    rest /= m_dimensions[axis];
    cellCounts[axis] = std::max<std::int64_t>(m_dimensions[axis] - 1, 1);
    first[axis] = std::max<std::int64_t>(at - 1, 0);
    last[axis] = std::min(at, cellCounts[axis] - 1);
  }
  double sum = 0;
  int count = 0;
  for (std::int64_t k = first[2]; k <= last[2]; ++k) {
    for (std::int64_t j = first[1]; j <= last[1]; ++j) {
      for (std::int64_t i = first[0]; i <= last[0]; ++i) {
        const std::int64_t cell = i + cellCounts[0] * (j + cellCounts[1] * k);
        sum += cells.get(&cells, static_cast<LgIndex_t>(cell));
        ++count;
      }
    }
  }
  return sum / count;
}

}  // namespace qelhost
