// The box and the sphere of an add-on, dragged, sized and turned in the plot.
#pragma once

#include <vtkBoxRepresentation.h>
#include <vtkBoxWidget2.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>
#include <vtkSphereRepresentation.h>
#include <vtkSphereWidget2.h>

#include <cstdint>
#include <functional>

#include "Workspace.h"

namespace marquell::workbench {

/// Shows VTK's handles for the shape that an add-on wants to be dragged, and tells the add-on what
/// the user makes of it.
class ShapeHandles {
 public:
  ShapeHandles(Workspace& workspace, vtkRenderWindowInteractor* interactor, vtkRenderer* renderer);
  ~ShapeHandles();
  ShapeHandles(const ShapeHandles&) = delete;
  ShapeHandles& operator=(const ShapeHandles&) = delete;

  /// Brings the handles to the shape that the host holds.
  void Follow();
  /// Called when the user takes hold of a handle, and when he lets go.
  std::function<void(bool isDragging)> onDragging;

  /// Takes the handles off the picture, for one that is written to a file.
  void Hide();

 private:
  void SetDragging(bool isDragging);
  void ShowBox(const qelhost::ShownShape& shape);
  void ShowSphere(const qelhost::ShownShape& shape);
  void TakeBox();
  void TakeSphere();
  void Tell(const std::array<double, 3>& anchor, const std::array<double, 3>& size,
            const std::array<double, 3>& rotationDeg);

  Workspace& m_workspace;
  vtkSmartPointer<vtkBoxWidget2> m_box;
  vtkSmartPointer<vtkBoxRepresentation> m_boxShape;
  vtkSmartPointer<vtkSphereWidget2> m_sphere;
  vtkSmartPointer<vtkSphereRepresentation> m_sphereShape;
  std::int64_t m_version = -1;
  bool m_isDragging = false;
};

}  // namespace marquell::workbench
