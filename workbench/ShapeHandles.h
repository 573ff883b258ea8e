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
/// the user makes of it. A box is moved by its middle handle, sized by those of its faces and
/// turned beside them; a sphere is sized by its rim and moved within it.
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

  void SetScale(double devicePixelRatio);
  /// Takes the handles off the picture, for one that is written to a file.
  void Hide();

 private:
  void SetDragging(bool isDragging);
  void BeginSphere();
  /// How far the pointer is from the sphere's centre, in data units.
  double PointerDistance() const;
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
  bool m_isSizing = false;                 ///< of the sphere, by its rim
  std::array<double, 3> m_sphereCentre{};  ///< when the user took hold of it
};

}  // namespace marquell::workbench
