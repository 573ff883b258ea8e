#include "UserActions.h"

#include "GeometryCommands.h"
#include "HostCommands.h"
#include "PlotActions.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace qelhost {

namespace {

/// The work is over, also when it has failed.
class WorkEnd {
 public:
  explicit WorkEnd(WorkProgress& progress) : m_progress(progress) {}
  ~WorkEnd() { m_progress.End(); }
  WorkEnd(const WorkEnd&) = delete;
  WorkEnd& operator=(const WorkEnd&) = delete;

 private:
  WorkProgress& m_progress;
};

}  // namespace

void Perform(Host& host, const std::string& name, const std::function<void()>& deed) {
  const HistoryOperation operation(host.history, name);
  const WorkEnd end(host.progress);
  deed();
  host.idle.Run();
}

void ActAs(Host& host, const std::string& command, const std::function<void(Host&)>& deed) {
  Perform(host, command, [&] {
    host.recorder.AddStateLines(StateOf(host.frames));
    {
      const HostAction lock(host.lock);
      deed(host);
    }
    host.recorder.AddAction(command, StateOf(host.frames));
  });
}

void Act(Host& host, const std::string& command) {
  ActAs(host, command, ParseHostCommand(command));
}

void UndoLast(Host& host) { Act(host, "$!UNDO"); }
void RedoLast(Host& host) { Act(host, "$!REDO"); }

std::string DrawCommand(const Geometry& geometry) { return "$!GEOMETRY " + TextOf(geometry); }

namespace {

/// Performs what answers whether it could be done.
template <class Deed>
bool PerformIfPossible(Host& host, const std::string& name, const Deed& deed) {
  bool isDone = false;
  Perform(host, name, [&] { isDone = deed(); });
  return isDone;
}

std::string NameOfControl(const Host& host, LgIndex_t id) {
  const Control* const control = host.dialogs.Find(id);
  if (control == nullptr) return {};
  // What a field holds is no name.
  const bool isField =
      control->kind == ControlKind::TextField || control->kind == ControlKind::SpinTextField;
  return isField || control->text.empty() ? control->toolTip : control->text;
}

double SixDigits(double x) { return NumberOf(fmt::format("{:.6g}", x), "a number"); }

std::array<double, 3> SixDigits(const std::array<double, 3>& numbers) {
  return {SixDigits(numbers[0]), SixDigits(numbers[1]), SixDigits(numbers[2])};
}

bool AreFinite(const std::array<double, 3>& numbers) {
  return std::all_of(numbers.begin(), numbers.end(), [](double x) { return std::isfinite(x); });
}

/// A line's command: what stands behind the add-on's name.
std::string NameOfLine(const std::string& line) {
  if (IsHostCommand(line)) return line;
  const std::size_t blank = line.find_first_of(" \t");
  const std::size_t first = line.find_first_not_of(" \t", std::min(blank, line.size()));
  if (first == std::string::npos) return line;
  return line.substr(first, line.find_first_of(" \t", first) - first);
}

}  // namespace

bool ChooseMouseMode(Host& host, QelMouseMode_e mode) {
  return PerformIfPossible(host, "Choose a tool", [&] {
    const HostAction lock(host.lock);
    return SetMouseMode(host, mode);
  });
}

bool ChooseMenu(Host& host, const std::string& path, const std::string& label) {
  return PerformIfPossible(host, label, [&] { return host.menus.Choose(path, label); });
}

bool Probe(Host& host, LgIndex_t zone, LgIndex_t cell, LgIndex_t node, bool isCtrlHeld) {
  return PerformIfPossible(host, "Click in the plot",
                           [&] { return ClickProbe(host, zone, cell, node, isCtrlHeld); });
}

bool UserDragsShape(Host& host, const std::array<double, 3>& anchor,
                    const std::array<double, 3>& size, const std::array<double, 3>& rotationDeg) {
  if (!host.shape.isShown) return false;
  if (!AreFinite(anchor) || !AreFinite(size) || !AreFinite(rotationDeg)) return false;
  host.shape.anchor = SixDigits(anchor);
  host.shape.size = SixDigits(size);
  host.shape.rotationDeg = SixDigits(rotationDeg);
  // A copy: the add-on may show another shape, or none, in answer.
  const ShownShape shape = host.shape;
  Perform(host, "Move the shape", [&shape] {
    shape.changed(shape.anchor.data(), shape.size.data(), shape.rotationDeg.data());
  });
  return true;
}

LineResult PlayLine(Host& host, Player& player, const std::string& line) {
  LineResult result;
  Perform(host, NameOfLine(line), [&] { result = player.Play(line); });
  return result;
}

bool PressControl(Host& host, LgIndex_t button) {
  return PerformIfPossible(host, NameOfControl(host, button),
                           [&] { return host.dialogs.Press(button); });
}

bool ToggleControl(Host& host, LgIndex_t toggle, bool on) {
  return PerformIfPossible(host, NameOfControl(host, toggle),
                           [&] { return host.dialogs.Toggle(toggle, on); });
}

bool ChooseItem(Host& host, LgIndex_t menuOrRadioBox, LgIndex_t item) {
  return PerformIfPossible(host, NameOfControl(host, menuOrRadioBox),
                           [&] { return host.dialogs.Choose(menuOrRadioBox, item); });
}

bool EnterText(Host& host, LgIndex_t field, const std::string& text) {
  return PerformIfPossible(host, NameOfControl(host, field),
                           [&] { return host.dialogs.Enter(field, text); });
}

bool Spin(Host& host, LgIndex_t field, bool up) {
  return PerformIfPossible(host, NameOfControl(host, field),
                           [&] { return host.dialogs.Spin(field, up); });
}

bool TurnToPage(Host& host, LgIndex_t tab, LgIndex_t page) {
  return PerformIfPossible(host, NameOfControl(host, tab),
                           [&] { return host.dialogs.TurnToPage(tab, page); });
}

bool CloseDialog(Host& host, LgIndex_t dialog) {
  return PerformIfPossible(host, NameOfControl(host, dialog),
                           [&] { return host.dialogs.CloseWindow(dialog); });
}

bool AskForHelp(Host& host, LgIndex_t dialog) {
  return PerformIfPossible(host, NameOfControl(host, dialog),
                           [&] { return host.dialogs.AskForHelp(dialog); });
}

}  // namespace qelhost
