// Frames to look at.
#pragma once

#include <vtkCellData.h>
#include <vtkDoubleArray.h>
#include <vtkPointData.h>

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "Canvas.h"
#include "RandomMeshes.h"

namespace rendertests {

using namespace qelhost;

constexpr int kWidth = 400;
constexpr int kHeight = 300;

/// At nodes "n", at cells "c"; both vary from item to item.
inline vtkSmartPointer<vtkDataSet> WithValues(vtkSmartPointer<vtkDataSet> mesh) {
  vtkNew<vtkDoubleArray> n, c;
  n->SetName("n");
  c->SetName("c");
  for (vtkIdType item = 0; item < mesh->GetNumberOfPoints(); ++item) {
    n->InsertNextValue(std::sin(0.9 * static_cast<double>(item)));
  }
  for (vtkIdType item = 0; item < mesh->GetNumberOfCells(); ++item) {
    c->InsertNextValue(static_cast<double>(item % 7));
  }
  mesh->GetPointData()->AddArray(n);
  mesh->GetCellData()->AddArray(c);
  return mesh;
}

inline void ShowMeshes(Frame& frame, const std::vector<vtkSmartPointer<vtkDataSet>>& meshes) {
  std::vector<BlockEntry> blocks;
  for (const auto& mesh : meshes) {
    blocks.push_back({"z" + std::to_string(blocks.size()), mesh, 0, 0.0, nullptr});
  }
  frame.Show(std::make_shared<DataSet>("test", blocks, nullptr));
}

inline PlotLook LookAt(Frame& frame, const std::string& variable) {
  PlotLook look;
  look.variable = frame.Data()->VariableNumber(variable);
  const Range range = frame.Data()->VariableRange(look.variable);
  look.min = range.min;
  look.max = range.max;
  return look;
}

inline void HideWhere(Frame& frame, char axis, double above) {
  ValueBlanking& blanking = frame.styles.blanking;
  blanking.include = true;
  blanking.blankEntireCell = true;
  blanking.constraints[0] = {true,
                             frame.Data()->CoordinateVariable(axis),
                             0,
                             BlankRelOp_GreaterThan,
                             ConstraintOp2Mode_UseConstant,
                             above,
                             false};
}

inline vtkSmartPointer<vtkDataSet> ShiftedBricks(int n, double x) {
  auto mesh = Volume(n, AddAsBrick);
  for (vtkIdType node = 0; node < mesh->GetNumberOfPoints(); ++node) {
    double at[3];
    mesh->GetPoint(node, at);
    mesh->GetPoints()->SetPoint(node, at[0] + x, at[1], at[2]);
  }
  return mesh;
}

}  // namespace rendertests
