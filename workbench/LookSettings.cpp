#include "LookSettings.h"

namespace marquell::workbench {

LgIndex_t ColourVariable(const qelhost::Frame& frame, const LookSettings& settings) {
  const bool hasVariable = settings.isColoured && frame.Data() != nullptr &&
                           frame.Data()->FindVariable(frame.styles.contourVariable) != nullptr;
  return hasVariable ? frame.styles.contourVariable : 0;
}

qelhost::PlotLook LookOf(qelhost::Frame& frame, const LookSettings& settings) {
  qelhost::PlotLook look;
  look.variable = ColourVariable(frame, settings);
  look.min = settings.min;
  look.max = settings.max;
  if (settings.isRangeAutomatic && look.variable > 0) {
    const qelhost::Range range = frame.Data()->VariableRange(look.variable);
    look.min = range.min;
    look.max = range.max;
  }
  look.colourMap = settings.colourMap;
  look.showAxes = settings.showAxes;
  look.showOrientation = settings.showOrientation;
  return look;
}

void ChooseContourVariable(qelhost::Frame& frame) {
  if (frame.Data() == nullptr || frame.styles.contourVariable > 0) return;
  for (LgIndex_t variable = 1; variable <= frame.Data()->VariableCount(); ++variable) {
    if (frame.Data()->FindVariable(variable)->coordinateAxis >= 0) continue;
    frame.styles.contourVariable = variable;
    return;
  }
}

}  // namespace marquell::workbench
