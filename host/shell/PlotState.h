#pragma once

#include "Frame.h"

#include "qelvane/Types.h"

#include <string>
#include <vector>

namespace qelhost {

/// What a pick depends on besides the data: which frame is active, its plot type, the direction of
/// its view, its time, its active zones and what value blanking hides.
struct PlotState {
  LgIndex_t frame = 0;  ///< its place among the frames, from 1; 0: none
  QelPlotType_e plotType = PlotType_None;
  View view;
  double solutionTime = 0.0;
  std::vector<LgIndex_t> inactiveZones;
  ValueBlanking blanking;
};

/// The state of the active frame.
PlotState StateOf(const FrameList& frames);

/// The state that a journal starts from: the first frame, as it was when it first showed its data.
PlotState FirstStateOf(const FrameList& frames);

/// The host commands that lead from one state to the other, in an order in which they work. Numbers
/// are written so that they are read back as they were. Blanking settings that an add-on set last
/// are left to the add-on's own commands: they may be about a variable that only those make.
std::vector<std::string> CommandsBetween(const PlotState& from, const PlotState& to);

}  // namespace qelhost
