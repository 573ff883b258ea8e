#include "HiddenCells.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkDataSetAttributes.h>
#include <vtkFieldData.h>
#include <vtkIdList.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPointSet.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <vector>

namespace qelhost {
namespace {

/// The array that says which cells are hidden; null when there is none or it hides none.
vtkDataArray* HidingArray(vtkDataSet* block, const std::string& name) {
  vtkDataArray* const array = block->GetCellData()->GetArray(name.c_str());
  if (array == nullptr || array->GetNumberOfTuples() != block->GetNumberOfCells()) return nullptr;
  for (vtkIdType cell = 0; cell < array->GetNumberOfTuples(); ++cell) {
    if (array->GetComponent(cell, 0) == 1.0) return array;
  }
  return nullptr;
}

bool IsHidden(vtkDataArray* hiding, vtkIdType cell) { return hiding->GetComponent(cell, 0) == 1.0; }

vtkSmartPointer<vtkDataSet> WithMarks(vtkDataSet* block, vtkDataArray* hiding) {
  const vtkIdType cellCount = block->GetNumberOfCells();
  vtkNew<vtkUnsignedCharArray> marks;
  if (vtkUnsignedCharArray* const known = block->GetCellGhostArray()) {
    marks->DeepCopy(known);
  } else {
    marks->SetNumberOfValues(cellCount);
    marks->FillValue(0);
  }
  marks->SetName(vtkDataSetAttributes::GhostArrayName());
  for (vtkIdType cell = 0; cell < cellCount; ++cell) {
    if (!IsHidden(hiding, cell)) continue;
    marks->SetValue(cell, marks->GetValue(cell) | vtkDataSetAttributes::HIDDENCELL);
  }
  auto marked = vtkSmartPointer<vtkDataSet>::Take(block->NewInstance());
  marked->ShallowCopy(block);
  marked->GetCellData()->AddArray(marks);
  return marked;
}

/// Numbers the points that are asked for, in the order in which they are.
class PointNumbers {
 public:
  explicit PointNumbers(vtkIdType pointCount)
      : m_numbers(static_cast<std::size_t>(pointCount), -1) {}

  vtkIdType Of(vtkIdType point) {
    vtkIdType& number = m_numbers[static_cast<std::size_t>(point)];
    if (number < 0) {
      number = static_cast<vtkIdType>(m_kept.size());
      m_kept.push_back(point);
    }
    return number;
  }
  const std::vector<vtkIdType>& Kept() const { return m_kept; }

 private:
  std::vector<vtkIdType> m_numbers;
  std::vector<vtkIdType> m_kept;
};

/// Gives the mesh the points that are numbered, with their values and in their own precision;
/// computed positions are doubles.
void TakePoints(vtkDataSet* from, const PointNumbers& numbers, vtkPointSet* to) {
  const auto pointCount = static_cast<vtkIdType>(numbers.Kept().size());
  auto* const set = vtkPointSet::SafeDownCast(from);
  vtkNew<vtkPoints> points;
  points->SetDataType(set == nullptr ? VTK_DOUBLE : set->GetPoints()->GetDataType());
  points->SetNumberOfPoints(pointCount);
  to->GetPointData()->CopyAllOn();
  to->GetPointData()->CopyAllocate(from->GetPointData(), pointCount);
  for (vtkIdType point = 0; point < pointCount; ++point) {
    const vtkIdType old = numbers.Kept()[static_cast<std::size_t>(point)];
    points->SetPoint(point, from->GetPoint(old));
    to->GetPointData()->CopyData(from->GetPointData(), old, point);
  }
  to->SetPoints(points);
}

/// A surface without its hidden cells and the points that only those had.
vtkSmartPointer<vtkDataSet> ShownSurface(vtkPolyData* surface, vtkDataArray* hiding) {
  auto shown = vtkSmartPointer<vtkPolyData>::New();
  shown->GetCellData()->CopyAllOn();
  shown->GetCellData()->CopyAllocate(surface->GetCellData());
  PointNumbers numbers(surface->GetNumberOfPoints());
  vtkIdType cell = 0;
  vtkIdType shownCount = 0;
  const auto takeShown = [&](vtkCellArray* cells) {
    auto kept = vtkSmartPointer<vtkCellArray>::New();
    vtkNew<vtkIdList> points;
    for (vtkIdType n = 0; n < cells->GetNumberOfCells(); ++n, ++cell) {
      if (IsHidden(hiding, cell)) continue;
      cells->GetCellAtId(n, points);
      for (vtkIdType i = 0; i < points->GetNumberOfIds(); ++i) {
        points->SetId(i, numbers.Of(points->GetId(i)));
      }
      kept->InsertNextCell(points);
      shown->GetCellData()->CopyData(surface->GetCellData(), cell, shownCount++);
    }
    return kept;
  };
  // The order in which a surface counts its cells.
  shown->SetVerts(takeShown(surface->GetVerts()));
  shown->SetLines(takeShown(surface->GetLines()));
  shown->SetPolys(takeShown(surface->GetPolys()));
  shown->SetStrips(takeShown(surface->GetStrips()));
  TakePoints(surface, numbers, shown);
  return shown;
}

/// A cell's points, or a polyhedron's list of faces with their points, as a new grid takes them.
void RenumberedCell(vtkDataSet* block, vtkIdType cell, PointNumbers& numbers, vtkIdList* ids) {
  auto* const grid = vtkUnstructuredGrid::SafeDownCast(block);
  if (grid == nullptr || grid->GetCellType(cell) != VTK_POLYHEDRON) {
    block->GetCellPoints(cell, ids);
    for (vtkIdType i = 0; i < ids->GetNumberOfIds(); ++i) ids->SetId(i, numbers.Of(ids->GetId(i)));
    return;
  }
  grid->GetFaceStream(cell, ids);
  vtkIdType place = 1;
  for (vtkIdType face = 0; face < ids->GetId(0); ++face) {
    const vtkIdType size = ids->GetId(place++);
    for (vtkIdType i = 0; i < size; ++i, ++place) ids->SetId(place, numbers.Of(ids->GetId(place)));
  }
}

/// Any other mesh without its hidden cells and the points that only those had. Made here because
/// VTK's own filters also leave out what other programs have marked, and round computed positions.
vtkSmartPointer<vtkDataSet> ShownVolume(vtkDataSet* block, vtkDataArray* hiding) {
  auto shown = vtkSmartPointer<vtkUnstructuredGrid>::New();
  const vtkIdType cellCount = block->GetNumberOfCells();
  shown->Allocate(cellCount);
  shown->GetCellData()->CopyAllOn();
  shown->GetCellData()->CopyAllocate(block->GetCellData(), cellCount);
  PointNumbers numbers(block->GetNumberOfPoints());
  vtkNew<vtkIdList> ids;
  for (vtkIdType cell = 0; cell < cellCount; ++cell) {
    if (IsHidden(hiding, cell)) continue;
    RenumberedCell(block, cell, numbers, ids);
    const vtkIdType added = shown->InsertNextCell(block->GetCellType(cell), ids);
    shown->GetCellData()->CopyData(block->GetCellData(), cell, added);
  }
  TakePoints(block, numbers, shown);
  return shown;
}

vtkSmartPointer<vtkDataSet> WithoutHidden(vtkDataSet* block, vtkDataArray* hiding) {
  auto* const surface = vtkPolyData::SafeDownCast(block);
  vtkSmartPointer<vtkDataSet> shown =
      surface != nullptr ? ShownSurface(surface, hiding) : ShownVolume(block, hiding);
  shown->GetFieldData()->ShallowCopy(block->GetFieldData());
  return shown;
}

void Treat(FileNode& node, const HiddenCells& hidden) {
  for (FileNode& child : node.children) Treat(child, hidden);
  if (node.block == nullptr) return;
  if (node.xml != nullptr) LoadAll(*node.xml);
  vtkDataArray* const hiding = HidingArray(node.block, hidden.array);
  if (hiding == nullptr) return;
  node.xml = nullptr;  // the block that is written is another
  node.block = hidden.treatment == HiddenCells::Treatment::Mark ? WithMarks(node.block, hiding)
                                                                : WithoutHidden(node.block, hiding);
}

}  // namespace

bool IsStructured(vtkDataSet* block) {
  switch (block->GetDataObjectType()) {
    case VTK_UNSTRUCTURED_GRID:
    case VTK_POLY_DATA:
      return false;
    default:
      return true;
  }
}

FileSource WithHiddenCells(const FileSource& source, const HiddenCells& hidden) {
  FileSource treated = source;
  for (FileStep& step : treated.steps) Treat(step.root, hidden);
  return treated;
}

}  // namespace qelhost
