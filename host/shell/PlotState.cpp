#include "PlotState.h"

#include <fmt/format.h>
#include <algorithm>

namespace qelhost {

namespace {

std::vector<LgIndex_t> InactiveZonesOf(const Frame& frame) {
  std::vector<LgIndex_t> zones;
  if (frame.Data() == nullptr) return zones;
  for (LgIndex_t zone = 1; zone <= frame.Data()->ZoneCount(); ++zone) {
    if (!frame.Data()->FindZone(zone)->active) zones.push_back(zone);
  }
  return zones;
}

const char* KeywordOf(QelPlotType_e type) {
  switch (type) {
    case PlotType_Cartesian3D:
      return "CARTESIAN3D";
    case PlotType_Cartesian2D:
      return "CARTESIAN2D";
    case PlotType_Line:
      return "LINE";
    case PlotType_Polar:
      return "POLAR";
    case PlotType_Sketch:
      return "SKETCH";
    default:
      return nullptr;
  }
}

bool Contains(const std::vector<LgIndex_t>& zones, LgIndex_t zone) {
  return std::find(zones.begin(), zones.end(), zone) != zones.end();
}

}  // namespace

PlotState StateOf(const FrameList& frames) {
  PlotState state;
  const Frame* const active = frames.Active();
  if (active == nullptr) return state;
  for (LgIndex_t n = 1; n <= frames.Count(); ++n) {
    if (frames.At(n) == active) state.frame = n;
  }
  state.plotType = active->plotType;
  state.view = active->view;
  state.solutionTime = active->solutionTime;
  state.inactiveZones = InactiveZonesOf(*active);
  return state;
}

PlotState FirstStateOf(const FrameList& frames) {
  PlotState state;
  const Frame* const first = frames.At(1);
  if (first == nullptr) return state;
  state.frame = 1;
  state.plotType = first->FirstPlotType();
  state.view = first->FirstView();
  state.solutionTime = first->FirstSolutionTime();
  return state;
}

std::vector<std::string> CommandsBetween(const PlotState& from, const PlotState& to) {
  std::vector<std::string> commands;
  if (to.frame == 0) return commands;
  // Another frame starts from nothing known, so everything that matters is said.
  const bool isOther = from.frame != to.frame;
  if (isOther) commands.push_back(fmt::format("$!FRAME {}", to.frame));
  const char* const plotType = KeywordOf(to.plotType);
  if (plotType != nullptr && (isOther || from.plotType != to.plotType)) {
    commands.push_back(fmt::format("$!PLOTTYPE {}", plotType));
  }
  const bool isTurned = isOther || !HaveSameProjection(from.view, to.view);
  if (to.plotType == PlotType_Cartesian3D && isTurned) {
    commands.push_back(
        fmt::format("$!VIEW PSI={} ALPHA={} THETA={} ORIGINX={} ORIGINY={} ORIGINZ={}",
                    to.view.psiDeg, to.view.alphaDeg, to.view.thetaDeg, to.view.origin[0],
                    to.view.origin[1], to.view.origin[2]));
  }
  if (isOther || from.solutionTime != to.solutionTime) {
    commands.push_back(fmt::format("$!TIME {}", to.solutionTime));
  }
  for (const LgIndex_t zone : to.inactiveZones) {
    if (isOther || !Contains(from.inactiveZones, zone)) {
      commands.push_back(fmt::format("$!ZONE {} ACTIVE=NO", zone));
    }
  }
  for (const LgIndex_t zone : from.inactiveZones) {
    if (!isOther && !Contains(to.inactiveZones, zone)) {
      commands.push_back(fmt::format("$!ZONE {} ACTIVE=YES", zone));
    }
  }
  return commands;
}

}  // namespace qelhost
