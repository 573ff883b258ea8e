#include "ShapeHandles.h"

#include <vtkCamera.h>
#include <vtkCommand.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>
#include <vtkTransform.h>
#include <vtkWidgetEvent.h>
#include <vtkWidgetEventTranslator.h>

#include <algorithm>
#include <cmath>

#include "BoxTurn.h"
#include "UserActions.h"

namespace marquell::workbench {

namespace {

constexpr double kHandleColour[] = {0.95, 0.45, 0.05};

/// Calls a function for one of VTK's events.
class Listener : public vtkCommand {
 public:
  static Listener* New() { return new Listener; }
  std::function<void()> onEvent;
  void Execute(vtkObject*, unsigned long, void*) override { onEvent(); }
};

void Listen(vtkObject* object, unsigned long event, std::function<void()> onEvent) {
  vtkNew<Listener> listener;
  listener->onEvent = std::move(onEvent);
  object->AddObserver(event, listener);
}

/// The middle and right buttons belong to the view.
void LeaveOtherButtons(vtkAbstractWidget* widget) {
  vtkWidgetEventTranslator* const events = widget->GetEventTranslator();
  for (const unsigned long event :
       {vtkCommand::MiddleButtonPressEvent, vtkCommand::MiddleButtonReleaseEvent,
        vtkCommand::RightButtonPressEvent, vtkCommand::RightButtonReleaseEvent}) {
    events->RemoveTranslation(event);
  }
}

Triple Between(const double* from, const double* to) {
  return {to[0] - from[0], to[1] - from[1], to[2] - from[2]};
}

}  // namespace

ShapeHandles::ShapeHandles(Workspace& workspace, vtkRenderWindowInteractor* interactor,
                           vtkRenderer* renderer)
    : m_workspace(workspace),
      m_box(vtkSmartPointer<vtkBoxWidget2>::New()),
      m_boxShape(vtkSmartPointer<vtkBoxRepresentation>::New()),
      m_sphere(vtkSmartPointer<vtkSphereWidget2>::New()),
      m_sphereShape(vtkSmartPointer<vtkSphereRepresentation>::New()) {
  m_boxShape->SetPlaceFactor(1.0);
  double unit[] = {0.0, 1.0, 0.0, 1.0, 0.0, 1.0};
  m_boxShape->PlaceWidget(unit);
  m_boxShape->GetOutlineProperty()->SetColor(kHandleColour[0], kHandleColour[1], kHandleColour[2]);
  m_boxShape->GetHandleProperty()->SetColor(kHandleColour[0], kHandleColour[1], kHandleColour[2]);
  m_sphereShape->SetRepresentationToWireframe();
  m_sphereShape->HandleVisibilityOff();
  m_sphereShape->HandleTextOff();
  m_sphereShape->RadialLineOff();
  m_sphereShape->GetSphereProperty()->SetColor(kHandleColour[0], kHandleColour[1],
                                               kHandleColour[2]);
  m_sphereShape->GetSphereProperty()->SetOpacity(0.25);
  m_box->SetRepresentation(m_boxShape);
  m_sphere->SetRepresentation(m_sphereShape);
  const std::pair<vtkAbstractWidget*, void (ShapeHandles::*)()> widgets[] = {
      {m_box, &ShapeHandles::TakeBox}, {m_sphere, &ShapeHandles::TakeSphere}};
  for (const auto& [widget, take] : widgets) {
    widget->SetInteractor(interactor);
    widget->SetCurrentRenderer(renderer);
    widget->SetDefaultRenderer(renderer);
    LeaveOtherButtons(widget);
    Listen(widget, vtkCommand::StartInteractionEvent, [this, isSphere = widget == m_sphere] {
      if (isSphere) BeginSphere();
      SetDragging(true);
    });
    Listen(widget, vtkCommand::InteractionEvent, [this, take = take] { (this->*take)(); });
    Listen(widget, vtkCommand::EndInteractionEvent, [this] { SetDragging(false); });
  }
}

ShapeHandles::~ShapeHandles() { Hide(); }

void ShapeHandles::SetDragging(bool isDragging) {
  m_isDragging = isDragging;
  if (onDragging) onDragging(isDragging);
  if (isDragging) return;
  // Now the numbers lead again, which were rounded.
  m_version = -1;
  Follow();
}

void ShapeHandles::SetScale(double devicePixelRatio) {
  constexpr double kHandlePixels = 5.0;
  m_boxShape->SetHandleSize(kHandlePixels * devicePixelRatio);
}

void ShapeHandles::Hide() {
  m_box->SetEnabled(0);
  m_sphere->SetEnabled(0);
  m_version = -1;
}

void ShapeHandles::Follow() {
  const qelhost::ShownShape& shape = m_workspace.TheHost().shape;
  // While the user drags, the handles lead and the numbers follow, rounded.
  if (m_isDragging || shape.version == m_version) return;
  m_version = shape.version;
  const bool isBox = shape.isShown && shape.kind == Shape_Box;
  const bool isSphere = shape.isShown && shape.kind == Shape_Sphere;
  if (isBox) ShowBox(shape);
  if (isSphere) ShowSphere(shape);
  m_box->SetEnabled(isBox ? 1 : 0);
  m_sphere->SetEnabled(isSphere ? 1 : 0);
}

void ShapeHandles::ShowBox(const qelhost::ShownShape& shape) {
  const std::array<double, 16> matrix = MatrixOf({shape.anchor, shape.size, shape.rotationDeg});
  vtkNew<vtkTransform> transform;
  transform->SetMatrix(matrix.data());
  m_boxShape->SetTransform(transform);
}

void ShapeHandles::ShowSphere(const qelhost::ShownShape& shape) {
  m_sphereShape->SetCenter(shape.anchor[0], shape.anchor[1], shape.anchor[2]);
  m_sphereShape->SetRadius(std::fabs(shape.size[0]));
}

void ShapeHandles::TakeBox() {
  vtkNew<vtkPolyData> hull;
  m_boxShape->GetPolyData(hull);
  // VTK's corners 0 to 3 go around the bottom, 4 to 7 lie above them.
  std::array<Triple, 8> corners{};
  for (vtkIdType n = 0; n < 8; ++n) hull->GetPoint(n, corners[n].data());
  const TurnedBox box = BoxOf(corners[0], Between(corners[0].data(), corners[1].data()),
                              Between(corners[0].data(), corners[3].data()),
                              Between(corners[0].data(), corners[4].data()));
  Tell(box.anchor, box.size, box.rotationDeg);
}

double ShapeHandles::PointerDistance() const {
  vtkRenderer* const renderer = m_sphere->GetCurrentRenderer();
  renderer->SetWorldPoint(m_sphereCentre[0], m_sphereCentre[1], m_sphereCentre[2], 1.0);
  renderer->WorldToDisplay();
  const double* const centre = renderer->GetDisplayPoint();
  const int* const pointer = m_sphere->GetInteractor()->GetEventPosition();
  const double unitsPerPixel =
      2.0 * renderer->GetActiveCamera()->GetParallelScale() / renderer->GetSize()[1];
  return std::hypot(pointer[0] - centre[0], pointer[1] - centre[1]) * unitsPerPixel;
}

void ShapeHandles::BeginSphere() {
  constexpr double kRim = 0.75;  ///< of the radius; from there on outwards
  m_sphereShape->GetCenter(m_sphereCentre.data());
  m_isSizing = PointerDistance() > kRim * m_sphereShape->GetRadius();
}

void ShapeHandles::TakeSphere() {
  std::array<double, 3> centre{};
  if (m_isSizing) {
    // VTK has moved it: its own sizing wants another button.
    m_sphereShape->SetCenter(m_sphereCentre.data());
    m_sphereShape->SetRadius(PointerDistance());
  }
  m_sphereShape->GetCenter(centre.data());
  Tell(centre, {m_sphereShape->GetRadius(), 0.0, 0.0}, {0.0, 0.0, 0.0});
}

void ShapeHandles::Tell(const std::array<double, 3>& anchor, const std::array<double, 3>& size,
                        const std::array<double, 3>& rotationDeg) {
  m_workspace.Do(
      [&](qelhost::Host& host) { qelhost::UserDragsShape(host, anchor, size, rotationDeg); });
}

}  // namespace marquell::workbench
