// How the plot looks beyond what the host's styles say; nothing of it is recorded.
#pragma once

#include <string>

#include "Frame.h"
#include "PlotScene.h"

namespace marquell::workbench {

struct LookSettings {
  bool isColoured = true;
  bool isRangeAutomatic = true;  ///< the range goes by the variable's values
  double min = 0.0;
  double max = 1.0;
  std::string colourMap = "viridis";
  bool showAxes = true;
  bool showOrientation = true;
};

/// The variable that colours the plot, by the frame's contour variable; 0: none.
LgIndex_t ColourVariable(const qelhost::Frame& frame, const LookSettings& settings);

/// What is drawn of the frame by these settings.
qelhost::PlotLook LookOf(qelhost::Frame& frame, const LookSettings& settings);

/// Gives a frame that has no contour variable yet the first one that is no coordinate.
void ChooseContourVariable(qelhost::Frame& frame);

}  // namespace marquell::workbench
