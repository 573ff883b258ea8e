#include "Peers.h"

#include <vtkArrayCalculator.h>
#include <vtkBox.h>
#include <vtkDataObject.h>
#include <vtkDoubleArray.h>
#include <vtkExtractGeometry.h>
#include <vtkExtractSelection.h>
#include <vtkImplicitSelectionLoop.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkSelection.h>
#include <vtkSelectionNode.h>
#include <vtkSphere.h>
#include <vtkTransform.h>

namespace marquell::bench {

namespace {

constexpr double kMiddle = 0.5;

vtkSmartPointer<vtkBox> PlainBox(const Bounds3& box) {
  auto function = vtkSmartPointer<vtkBox>::New();
  function->SetBounds(box.low[0], box.high[0], box.low[1], box.high[1], box.low[2], box.high[2]);
  return function;
}

/// The corners as a frustum's are listed: near before far, low before high, left before right.
vtkSmartPointer<vtkDoubleArray> FrustumCorners(const Bounds3& box) {
  auto corners = vtkSmartPointer<vtkDoubleArray>::New();
  corners->SetNumberOfComponents(4);
  for (const double x : {box.low[0], box.high[0]}) {
    for (const double y : {box.low[1], box.high[1]}) {
      for (const double z : {box.high[2], box.low[2]}) corners->InsertNextTuple4(x, y, z, 1.0);
    }
  }
  return corners;
}

}  // namespace

vtkSmartPointer<vtkImplicitFunction> BoxFunction(const Bounds3& box) { return PlainBox(box); }

vtkSmartPointer<vtkImplicitFunction> SphereFunction(double radius) {
  auto sphere = vtkSmartPointer<vtkSphere>::New();
  sphere->SetCenter(kMiddle, kMiddle, kMiddle);
  sphere->SetRadius(radius);
  return sphere;
}

vtkSmartPointer<vtkImplicitFunction> TurnedBoxFunction(const Bounds3& box, double degrees) {
  const vtkSmartPointer<vtkBox> function = PlainBox(box);
  vtkNew<vtkTransform> turnedBack;  // from the grid's points to the box's
  turnedBack->Translate(box.low.data());
  turnedBack->RotateZ(-degrees);
  turnedBack->Translate(-box.low[0], -box.low[1], -box.low[2]);
  function->SetTransform(turnedBack);
  return function;
}

vtkSmartPointer<vtkImplicitFunction> LoopFunction(const std::vector<Corner>& corners) {
  vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  for (const Corner& corner : corners) {
    points->InsertNextPoint(kMiddle + corner[0], kMiddle + corner[1], 0.0);
  }
  auto loop = vtkSmartPointer<vtkImplicitSelectionLoop>::New();
  loop->SetLoop(points);
  loop->AutomaticNormalGenerationOff();
  loop->SetNormal(0.0, 0.0, 1.0);
  return loop;
}

vtkIdType ExtractGeometry(vtkUnstructuredGrid* grid, vtkImplicitFunction* inside) {
  vtkNew<vtkExtractGeometry> extract;
  extract->SetInputData(grid);
  extract->SetImplicitFunction(inside);
  extract->ExtractInsideOn();
  extract->Update();
  return extract->GetOutput()->GetNumberOfCells();
}

vtkIdType ExtractFrustum(vtkUnstructuredGrid* grid, const Bounds3& box) {
  vtkNew<vtkSelectionNode> node;
  node->SetContentType(vtkSelectionNode::FRUSTUM);
  node->SetFieldType(vtkSelectionNode::CELL);
  node->SetSelectionList(FrustumCorners(box));
  vtkNew<vtkSelection> selection;
  selection->AddNode(node);
  vtkNew<vtkExtractSelection> extract;
  extract->SetInputData(0, grid);
  extract->SetInputData(1, selection);
  extract->Update();
  return vtkDataSet::SafeDownCast(extract->GetOutput())->GetNumberOfCells();
}

vtkIdType Calculate(vtkUnstructuredGrid* grid) {
  vtkNew<vtkArrayCalculator> calculator;
  calculator->SetInputData(grid);
  calculator->SetAttributeTypeToCellData();
  calculator->AddScalarVariable("k", "k");
  calculator->SetFunction("k*1.4");
  calculator->SetResultArrayName("result");
  calculator->Update();
  return vtkDataSet::SafeDownCast(calculator->GetOutput())->GetNumberOfCells();
}

}  // namespace marquell::bench
