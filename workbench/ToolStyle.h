// Hands the mouse from VTK's interactor to our tools.
#pragma once

#include <vtkInteractorStyle.h>

#include <functional>

#include "MouseTools.h"

namespace marquell::workbench {

/// Gets the events that no VTK widget in the plot has taken. Does nothing of its own: the view is
/// the host's, and no key quits or picks.
class ToolStyle : public vtkInteractorStyle {
 public:
  static ToolStyle* New();
  vtkTypeMacro(ToolStyle, vtkInteractorStyle)

      std::function<void(const MouseEvent&)> onPress;
  std::function<void(const MouseEvent&)> onMove;
  std::function<void(const MouseEvent&)> onRelease;
  std::function<void(const MouseEvent&, double notches)> onWheel;

  void OnLeftButtonDown() override { Press(Qt::LeftButton); }
  void OnLeftButtonUp() override { Release(Qt::LeftButton); }
  void OnMiddleButtonDown() override { Press(Qt::MiddleButton); }
  void OnMiddleButtonUp() override { Release(Qt::MiddleButton); }
  void OnRightButtonDown() override { Press(Qt::RightButton); }
  void OnRightButtonUp() override { Release(Qt::RightButton); }
  void OnLeftButtonDoubleClick() override { Press(Qt::LeftButton, true); }
  void OnMouseMove() override { onMove(Here(Qt::NoButton)); }
  void OnMouseWheelForward() override { onWheel(Here(Qt::NoButton), 1.0); }
  void OnMouseWheelBackward() override { onWheel(Here(Qt::NoButton), -1.0); }
  void OnChar() override {}
  void OnKeyPress() override {}
  void OnKeyRelease() override {}

 protected:
  ToolStyle() = default;

 private:
  MouseEvent Here(Qt::MouseButton button, bool isDoubleClick = false) const;
  void Press(Qt::MouseButton button, bool isDoubleClick = false) {
    onPress(Here(button, isDoubleClick));
  }
  void Release(Qt::MouseButton button) { onRelease(Here(button)); }
};

}  // namespace marquell::workbench
