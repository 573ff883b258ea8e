#include "Grid.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkIdTypeArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>

#include <cmath>

namespace marquell::bench {

namespace {

void AddNodes(vtkUnstructuredGrid* grid, vtkIdType n) {
  const vtkIdType count = (n + 1) * (n + 1) * (n + 1);
  vtkNew<vtkPoints> points;
  points->SetDataTypeToFloat();
  points->SetNumberOfPoints(count);
  vtkNew<vtkFloatArray> pressure;
  pressure->SetName("p");
  pressure->SetNumberOfTuples(count);
  vtkNew<vtkDoubleArray> temperature;
  temperature->SetName("T");
  temperature->SetNumberOfTuples(count);
  vtkNew<vtkFloatArray> velocity;
  velocity->SetName("U");
  velocity->SetNumberOfComponents(3);
  velocity->SetNumberOfTuples(count);
  const double width = 1.0 / static_cast<double>(n);
  vtkIdType node = 0;
  for (vtkIdType k = 0; k <= n; ++k) {
    for (vtkIdType j = 0; j <= n; ++j) {
      for (vtkIdType i = 0; i <= n; ++i, ++node) {
        const double x = static_cast<double>(i) * width;
        const double y = static_cast<double>(j) * width;
        const double z = static_cast<double>(k) * width;
        points->SetPoint(node, x, y, z);
        pressure->SetValue(node, static_cast<float>(std::sin(7.0 * x) * std::cos(5.0 * y) + z));
        temperature->SetValue(node, 300.0 + 100.0 * x * std::sin(9.0 * z));
        velocity->SetTuple3(node, std::cos(6.0 * y), std::sin(4.0 * x), x * y * z);
      }
    }
  }
  grid->SetPoints(points);
  grid->GetPointData()->AddArray(pressure);
  grid->GetPointData()->AddArray(temperature);
  grid->GetPointData()->AddArray(velocity);
}

void AddCells(vtkUnstructuredGrid* grid, vtkIdType n) {
  const vtkIdType count = n * n * n;
  const vtkIdType row = n + 1;
  const vtkIdType layer = row * row;
  vtkNew<vtkIdTypeArray> offsets;
  offsets->SetNumberOfValues(count + 1);
  vtkNew<vtkIdTypeArray> corners;
  corners->SetNumberOfValues(8 * count);
  vtkNew<vtkFloatArray> energy;
  energy->SetName("k");
  energy->SetNumberOfTuples(count);
  vtkIdType cell = 0;
  for (vtkIdType k = 0; k < n; ++k) {
    for (vtkIdType j = 0; j < n; ++j) {
      for (vtkIdType i = 0; i < n; ++i, ++cell) {
        const vtkIdType first = i + j * row + k * layer;
        const vtkIdType nodes[8] = {
            first,         first + 1,         first + 1 + row,         first + row,
            first + layer, first + 1 + layer, first + 1 + row + layer, first + row + layer};
        for (vtkIdType corner = 0; corner < 8; ++corner) {
          corners->SetValue(8 * cell + corner, nodes[corner]);
        }
        offsets->SetValue(cell, 8 * cell);
        energy->SetValue(cell,
                         static_cast<float>(std::fmod(0.37 * static_cast<double>(cell), 5.0)));
      }
    }
  }
  offsets->SetValue(count, 8 * count);
  vtkNew<vtkCellArray> cells;
  cells->SetData(offsets, corners);
  grid->SetCells(VTK_HEXAHEDRON, cells);
  grid->GetCellData()->AddArray(energy);
}

}  // namespace

vtkSmartPointer<vtkUnstructuredGrid> MakeGrid(vtkIdType n) {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  AddNodes(grid, n);
  AddCells(grid, n);
  return grid;
}

}  // namespace marquell::bench
