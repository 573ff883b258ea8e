#pragma once

#include "DataSet.h"

#include <vtkFloatArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkStructuredGrid.h>

namespace qelhost {

/// A structured block of nodes at whole numbers, with a variable "p" at its nodes, all 0.
inline vtkSmartPointer<vtkDataSet> MakeBlock(int iMax, int jMax, int kMax) {
  vtkNew<vtkPoints> points;
  for (int k = 0; k < kMax; ++k) {
    for (int j = 0; j < jMax; ++j) {
      for (int i = 0; i < iMax; ++i) points->InsertNextPoint(i, j, k);
    }
  }
  auto grid = vtkSmartPointer<vtkStructuredGrid>::New();
  grid->SetDimensions(iMax, jMax, kMax);
  grid->SetPoints(points);
  vtkNew<vtkFloatArray> p;
  p->SetName("p");
  p->SetNumberOfTuples(points->GetNumberOfPoints());
  p->Fill(0.0);
  grid->GetPointData()->AddArray(p);
  return grid;
}

inline DataSetPtr MakeData(int iMax, int jMax, int kMax) {
  return std::make_shared<DataSet>(
      "test", std::vector<BlockEntry>{{"block", MakeBlock(iMax, jMax, kMax)}}, nullptr);
}

}  // namespace qelhost
