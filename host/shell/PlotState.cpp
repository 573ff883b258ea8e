#include "PlotState.h"

#include <fmt/format.h>
#include <algorithm>
#include <cmath>

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

const char* YesOrNo(bool flag) { return flag ? "YES" : "NO"; }

/// What has to be said of a constraint, all of it when `all`.
std::string SettingsOf(const BlankConstraint& from, const BlankConstraint& to, bool all) {
  std::string text;
  const auto say = [&text, all](bool isOther, const std::string& setting) {
    if (isOther || all) text += setting;
  };
  say(from.include != to.include, fmt::format(" INCLUDE = {}", YesOrNo(to.include)));
  say(from.varA != to.varA, fmt::format(" VARA = {}", to.varA));
  if (to.varB != 0) say(from.varB != to.varB, fmt::format(" VARB = {}", to.varB));
  say(from.relOp != to.relOp, fmt::format(" RELOP = {}", static_cast<int>(to.relOp)));
  say(from.op2Mode != to.op2Mode,
      fmt::format(" CONSTRAINTOP2MODE = {}", static_cast<int>(to.op2Mode)));
  // No line can say a number that is none, or has no end.
  if (std::isfinite(to.cutoff)) {
    say(from.cutoff != to.cutoff, fmt::format(" VALUECUTOFF = {}", to.cutoff));
  }
  return text;
}

void AddBlankingCommands(const ValueBlanking& from, const ValueBlanking& to,
                         std::vector<std::string>& commands) {
  for (std::size_t n = 0; n < to.constraints.size(); ++n) {
    const BlankConstraint& constraint = to.constraints[n];
    if (constraint.isAddOns || constraint.varA == 0) continue;
    // Without a variable nothing of it was said yet, whatever it held.
    const bool wasSaid = from.constraints[n].varA != 0;
    const BlankConstraint before = wasSaid ? from.constraints[n] : BlankConstraint();
    const std::string settings = SettingsOf(before, constraint, before.isAddOns);
    if (settings.empty()) continue;
    commands.push_back(fmt::format("$!BLANKING VALUE{{CONSTRAINT {} {{{} }}}}", n + 1, settings));
  }
  const bool areModesOther =
      from.blankEntireCell != to.blankEntireCell || from.cellMode != to.cellMode;
  if (!to.isCellModeAddOns && (from.isCellModeAddOns || areModesOther)) {
    commands.push_back(
        fmt::format("$!BLANKING VALUE{{BLANKENTIRECELL = {}}}", YesOrNo(to.blankEntireCell)));
    commands.push_back(
        fmt::format("$!BLANKING VALUE{{VALUEBLANKCELLMODE = {}}}", static_cast<int>(to.cellMode)));
  }
  if (from.include != to.include) {
    commands.push_back(fmt::format("$!BLANKING VALUE{{INCLUDE = {}}}", YesOrNo(to.include)));
  }
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
  state.blanking = active->styles.blanking;
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
  // Of blanking it is known how every frame begins.
  AddBlankingCommands(isOther ? ValueBlanking() : from.blanking, to.blanking, commands);
  return commands;
}

}  // namespace qelhost
