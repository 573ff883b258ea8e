#include "Surfaces.h"

#include <vtkCellData.h>
#include <vtkDataSetSurfaceFilter.h>
#include <vtkDoubleArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkThreshold.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

namespace qelhost {
namespace {

constexpr char kHidden[] = "hidden";

/// The block's mesh alone, without its arrays.
vtkSmartPointer<vtkDataSet> MeshOf(const Zone& zone) {
  auto mesh = vtkSmartPointer<vtkDataSet>::Take(zone.Block()->NewInstance());
  mesh->CopyStructure(zone.Block());
  return mesh;
}

void AddColours(vtkDataSet* mesh, DataSet& data, LgIndex_t zoneNum, LgIndex_t variable) {
  const QelFieldData* const field = data.Readable(zoneNum, variable);
  if (field == nullptr) return;
  const Zone& zone = *data.FindZone(zoneNum);
  const bool isAtCells = data.FindField(zoneNum, variable)->location == ValueLocation_CellCentered;
  vtkNew<vtkDoubleArray> colours;
  colours->SetName(kColours);
  colours->SetNumberOfValues(isAtCells ? mesh->GetNumberOfCells() : mesh->GetNumberOfPoints());
  colours->FillValue(0.0);
  for (LgIndex_t item = 0; item < field->count; ++item) {
    colours->SetValue(isAtCells ? zone.BlockCell(item) : item, field->get(field, item));
  }
  if (isAtCells) {
    mesh->GetCellData()->SetScalars(colours);
  } else {
    mesh->GetPointData()->SetScalars(colours);
  }
}

/// The mesh without its hidden cells. VTK's own marks for them are honoured for some kinds of mesh
/// only.
vtkSmartPointer<vtkDataSet> WithoutHidden(vtkDataSet* mesh, const Zone& zone,
                                          const BlankedItems& blanked) {
  vtkNew<vtkUnsignedCharArray> hidden;
  hidden->SetName(kHidden);
  hidden->SetNumberOfValues(mesh->GetNumberOfCells());
  hidden->FillValue(0);
  for (std::int64_t cell = 0; cell < blanked.cells.count; ++cell) {
    if (blanked.cells.Has(cell)) hidden->SetValue(zone.BlockCell(cell), 1);
  }
  mesh->GetCellData()->AddArray(hidden);
  vtkNew<vtkThreshold> shown;
  shown->SetInputData(mesh);
  shown->SetInputArrayToProcess(0, 0, 0, vtkDataObject::FIELD_ASSOCIATION_CELLS, kHidden);
  shown->SetThresholdFunction(vtkThreshold::THRESHOLD_LOWER);
  shown->SetLowerThreshold(0.5);
  shown->Update();
  return shown->GetOutput();
}

}  // namespace

vtkSmartPointer<vtkPolyData> SurfaceOf(Frame& frame, LgIndex_t zoneNum, LgIndex_t variable) {
  DataSet& data = *frame.Data();
  const Zone& zone = *data.FindZone(zoneNum);
  vtkSmartPointer<vtkDataSet> mesh = MeshOf(zone);
  if (variable > 0) AddColours(mesh, data, zoneNum, variable);
  if (const BlankedItems* const blanked = frame.Blanked(zoneNum)) {
    mesh = WithoutHidden(mesh, zone, *blanked);
  }
  vtkNew<vtkDataSetSurfaceFilter> surface;
  surface->SetInputData(mesh);
  surface->Update();
  return surface->GetOutput();
}

}  // namespace qelhost
