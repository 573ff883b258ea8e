#include "LeftOutDifference.h"

#include "HiddenCellFiles.h"
#include "HiddenCellMeshes.h"

#include <vtkCellData.h>
#include <vtkFieldData.h>
#include <vtkIdList.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkUnstructuredGrid.h>

#include <cstddef>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace hiddencells {

namespace {

using NodeList = std::vector<vtkIdType>;

std::string TupleDifference(vtkFieldData* before, vtkIdType from, vtkFieldData* after,
                            vtkIdType to) {
  for (int n = 0; n < before->GetNumberOfArrays(); ++n) {
    if (BytesOf(before->GetAbstractArray(n), from) != BytesOf(after->GetAbstractArray(n), to)) {
      return std::string(before->GetArrayName(n)) + " differs; ";
    }
  }
  return {};
}

/// How the arrays as such differ.
std::string ArraysDifference(vtkFieldData* before, vtkFieldData* after) {
  if (before->GetNumberOfArrays() != after->GetNumberOfArrays()) return "other arrays; ";
  for (int n = 0; n < before->GetNumberOfArrays(); ++n) {
    vtkAbstractArray* const a = before->GetAbstractArray(n);
    vtkAbstractArray* const b = after->GetAbstractArray(n);
    if (std::strcmp(a->GetName(), b->GetName()) != 0 || a->GetDataType() != b->GetDataType() ||
        a->GetNumberOfComponents() != b->GetNumberOfComponents()) {
      return std::string(a->GetName()) + " is another array; ";
    }
  }
  return {};
}

/// The faces of a polyhedron, whose corners have no order of their own; the corners of any other
/// cell.
std::vector<NodeList> FacesOf(vtkDataSet* mesh, vtkIdType cell) {
  vtkNew<vtkIdList> ids;
  std::vector<NodeList> faces;
  if (mesh->GetCellType(cell) != VTK_POLYHEDRON) {
    mesh->GetCellPoints(cell, ids);
    return {NodeList(ids->begin(), ids->end())};
  }
  vtkUnstructuredGrid::SafeDownCast(mesh)->GetFaceStream(cell, ids);
  vtkIdType at = 1;
  for (vtkIdType n = 0; n < ids->GetId(0); ++n) {
    faces.emplace_back();
    for (vtkIdType left = ids->GetId(at++); left > 0; --left)
      faces.back().push_back(ids->GetId(at++));
  }
  return faces;
}

/// How the cells and what belongs to them differ from the cells of a block that are not hidden.
class DropComparison {
 public:
  DropComparison(vtkDataSet* before, vtkDataSet* after) : m_before(before), m_after(after) {}

  std::string Difference() {
    std::string difference = ArraysDifference(m_before->GetPointData(), m_after->GetPointData()) +
                             ArraysDifference(m_before->GetCellData(), m_after->GetCellData()) +
                             ArraysDifference(m_before->GetFieldData(), m_after->GetFieldData());
    if (!difference.empty()) return difference;
    for (vtkIdType cell = 0; cell < m_before->GetNumberOfCells(); ++cell) {
      if (!IsHidden(m_before, cell)) difference += CellDifference(cell);
    }
    if (m_cell != m_after->GetNumberOfCells()) difference += "other number of cells; ";
    const auto used = static_cast<vtkIdType>(m_pointOf.size());
    if (m_after->GetNumberOfPoints() != used) {
      difference += std::to_string(m_after->GetNumberOfPoints()) + " points instead of " +
                    std::to_string(used) + "; ";
    }
    return difference.substr(0, 300);
  }

 private:
  std::string CellDifference(vtkIdType cell) {
    const vtkIdType other = m_cell++;
    if (other >= m_after->GetNumberOfCells()) return "a cell is missing; ";
    const std::string name = "cell " + std::to_string(cell) + ": ";
    if (m_before->GetCellType(cell) != m_after->GetCellType(other)) return name + "other type; ";
    std::string difference =
        TupleDifference(m_before->GetCellData(), cell, m_after->GetCellData(), other);
    const std::vector<NodeList> from = FacesOf(m_before, cell);
    const std::vector<NodeList> to = FacesOf(m_after, other);
    if (from.size() != to.size()) return name + "other faces; ";
    for (std::size_t face = 0; face < from.size(); ++face) {
      if (from[face].size() != to[face].size()) return name + "other corners; ";
      for (std::size_t n = 0; n < from[face].size(); ++n) {
        difference += PointDifference(from[face][n], to[face][n]);
      }
    }
    return difference.empty() ? difference : name + difference;
  }

  std::string PointDifference(vtkIdType from, vtkIdType to) {
    if (!m_pointOf.emplace(from, to).second) {
      return m_pointOf.at(from) == to ? "" : "a point is there twice; ";
    }
    std::string difference;
    if (PositionOf(m_before, from) != PositionOf(m_after, to)) {
      difference = "point " + std::to_string(from) + " moved; ";
    }
    return difference +
           TupleDifference(m_before->GetPointData(), from, m_after->GetPointData(), to);
  }

  vtkDataSet* m_before;
  vtkDataSet* m_after;
  vtkIdType m_cell = 0;
  std::map<vtkIdType, vtkIdType> m_pointOf;
};

}  // namespace

std::string DropDifference(vtkDataSet* before, vtkDataSet* after) {
  return DropComparison(before, after).Difference();
}

}  // namespace hiddencells
