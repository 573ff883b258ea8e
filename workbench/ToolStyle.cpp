#include "ToolStyle.h"

#include <vtkObjectFactory.h>
#include <vtkRenderWindowInteractor.h>

namespace marquell::workbench {

vtkStandardNewMacro(ToolStyle)

    MouseEvent ToolStyle::Here(Qt::MouseButton button, bool isDoubleClick) const {
  MouseEvent event;
  event.x = this->Interactor->GetEventPosition()[0];
  event.y = this->Interactor->GetEventPosition()[1];
  event.button = button;
  event.isCtrlHeld = this->Interactor->GetControlKey() != 0;
  event.isDoubleClick = isDoubleClick;
  return event;
}

}  // namespace marquell::workbench
