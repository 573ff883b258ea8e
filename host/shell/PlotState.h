#pragma once

#include "Frame.h"

#include "qelvane/Types.h"

#include <string>
#include <vector>

namespace qelhost {

/// What a pick depends on besides the data: which frame is active, its plot type, the direction of
/// its view, its time and its active zones.
struct PlotState {
  LgIndex_t frame = 0;  ///< its place among the frames, from 1; 0: none
  QelPlotType_e plotType = PlotType_None;
  View view;
  double solutionTime = 0.0;
  std::vector<LgIndex_t> inactiveZones;
};

/// The state of the active frame.
PlotState StateOf(const FrameList& frames);

/// The state that a journal starts from: the first frame, as it was when it first showed its data.
PlotState FirstStateOf(const FrameList& frames);

/// The host commands that lead from one state to the other, in an order in which they work. Numbers
/// are written so that they are read back as they were.
std::vector<std::string> CommandsBetween(const PlotState& from, const PlotState& to);

}  // namespace qelhost
