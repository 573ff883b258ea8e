#include "UserActions.h"

#include "GeometryCommands.h"
#include "HostCommands.h"
#include "PlotActions.h"

namespace qelhost {

void Act(Host& host, const std::string& command) {
  const CommandAction action = ParseHostCommand(command);
  host.recorder.AddStateLines(StateOf(host.frames));
  {
    const HostAction lock(host.lock);
    action(host);
  }
  host.recorder.AddAction(command, StateOf(host.frames));
  host.idle.Run();
}

std::string DrawCommand(const Geometry& geometry) { return "$!GEOMETRY " + TextOf(geometry); }

bool ChooseMouseMode(Host& host, QelMouseMode_e mode) {
  bool isChosen = false;
  {
    const HostAction lock(host.lock);
    isChosen = SetMouseMode(host, mode);
  }
  host.idle.Run();
  return isChosen;
}

bool ChooseMenu(Host& host, const std::string& path, const std::string& label) {
  const bool isChosen = host.menus.Choose(path, label);
  host.idle.Run();
  return isChosen;
}

}  // namespace qelhost
