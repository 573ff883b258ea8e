// bench_make_grid N FILE: writes a unit cube of N x N x N bricks with typical variables.
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

void AddPoints(vtkUnstructuredGrid* grid, vtkIdType n) {
  vtkNew<vtkPoints> points;
  points->SetDataTypeToFloat();
  points->SetNumberOfPoints((n + 1) * (n + 1) * (n + 1));
  vtkIdType point = 0;
  for (vtkIdType k = 0; k <= n; ++k) {
    for (vtkIdType j = 0; j <= n; ++j) {
      for (vtkIdType i = 0; i <= n; ++i) {
        const double edge = static_cast<double>(n);
        points->SetPoint(point++, i / edge, j / edge, k / edge);
      }
    }
  }
  grid->SetPoints(points);
}

void AddBricks(vtkUnstructuredGrid* grid, vtkIdType n) {
  vtkNew<vtkCellArray> bricks;
  bricks->AllocateExact(n * n * n, 8 * n * n * n);
  const vtkIdType row = n + 1;
  const vtkIdType layer = row * row;
  for (vtkIdType k = 0; k < n; ++k) {
    for (vtkIdType j = 0; j < n; ++j) {
      for (vtkIdType i = 0; i < n; ++i) {
        const vtkIdType first = i + j * row + k * layer;
        const vtkIdType corners[8] = {
            first,         first + 1,         first + 1 + row,         first + row,
            first + layer, first + 1 + layer, first + 1 + row + layer, first + row + layer};
        bricks->InsertNextCell(8, corners);
      }
    }
  }
  grid->SetCells(VTK_HEXAHEDRON, bricks);
}

template <class Array>
void AddField(vtkDataSetAttributes* attributes, const char* name, vtkIdType count) {
  vtkNew<Array> array;
  array->SetName(name);
  array->SetNumberOfTuples(count);
  for (vtkIdType i = 0; i < count; ++i) {
    array->SetValue(i, static_cast<typename Array::ValueType>(std::sin(0.001 * i)));
  }
  attributes->AddArray(array);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3 || std::atoi(argv[1]) < 1) {
    std::fprintf(stderr, "usage: bench_make_grid CELLS-ON-AN-EDGE FILE\n");
    return 2;
  }
  const vtkIdType n = std::atoi(argv[1]);
  vtkNew<vtkUnstructuredGrid> grid;
  AddPoints(grid, n);
  AddBricks(grid, n);
  AddField<vtkDoubleArray>(grid->GetPointData(), "p", grid->GetNumberOfPoints());
  AddField<vtkFloatArray>(grid->GetPointData(), "k", grid->GetNumberOfPoints());
  AddField<vtkDoubleArray>(grid->GetCellData(), "T", grid->GetNumberOfCells());

  vtkNew<vtkXMLUnstructuredGridWriter> writer;
  writer->SetFileName(argv[2]);
  writer->SetInputData(grid);
  writer->SetDataModeToAppended();
  writer->EncodeAppendedDataOff();
  writer->SetCompressorTypeToNone();
  return writer->Write() == 1 ? 0 : 1;
}
