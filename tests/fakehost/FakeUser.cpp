// What a user does with dialogs, mouse and view. A toolkit calls back with nobody holding the lock.
#include "FakeCall.h"
#include "FakeGui.h"

#include "qelvane/Keywords.h"

namespace fakehost {

namespace {

/// Whether every page below which the control stands is the one shown, and the dialog up.
bool IsShownAndSensitive(const Control* control) {
  for (; control != nullptr; control = FindControl(control->made.parent)) {
    if (!control->isVisible || !control->isSensitive) return false;
    if (control->made.kind == ControlKind::Dialog) return control->isUp;
    const bool isPage =
        control->made.kind == ControlKind::TabPage || control->made.kind == ControlKind::FormPage;
    if (isPage && FindControl(control->made.parent)->value != PlaceOfPage(*control)) return false;
  }
  return false;
}

Control* Reachable(LgIndex_t id, ControlKind kind) {
  Control* const found = FindControl(id, kind);
  return IsShownAndSensitive(found) ? found : nullptr;
}

Control* ReachableToggle(LgIndex_t id) {
  Control* const bitmap = Reachable(id, ControlKind::BitmapToggle);
  return bitmap != nullptr ? bitmap : Reachable(id, ControlKind::Toggle);
}

Control* ReachableField(LgIndex_t id) {
  Control* const spin = Reachable(id, ControlKind::SpinField);
  return spin != nullptr ? spin : Reachable(id, ControlKind::TextField);
}

bool HasItem(const Control* control, LgIndex_t item) {
  return control != nullptr && item >= 1 && item <= static_cast<LgIndex_t>(control->items.size());
}

/// Runs what an add-on wants to be called with; the lock has to be free before and after.
template <class Body>
void CallBack(const Body& body) {
  if (Host().LockDepth() != 0) Host().Report("a user acted while the lock was on");
  const int depth = Host().LockDepth();
  body();
  if (Host().LockDepth() != depth) Host().Report("a control's callback left the lock unbalanced");
}

void Run(QelGUIVoidCallback_pf callback) {
  if (callback != nullptr) CallBack([callback] { callback(); });
}

void Run(QelGUIIntCallback_pf callback, LgIndex_t value) {
  if (callback != nullptr) CallBack([=] { callback(value); });
}

bool ChooseItem(Control* control, LgIndex_t item) {
  if (!HasItem(control, item)) return false;
  control->value = item;
  Run(control->made.chosen, item);
  return true;
}

bool Step(LgIndex_t field, QelGUIVoidCallback_pf ControlMade::*direction) {
  Control* const control = Reachable(field, ControlKind::SpinField);
  if (control == nullptr) return false;
  Run(control->made.*direction);
  return true;
}

}  // namespace

// Dialogs ----------------------------------------------------------------------------------------

const Control& FakeHost::At(LgIndex_t control) const {
  static const Control* const none = new Control();
  const Control* const found = FindControl(control);
  return found == nullptr ? *none : *found;
}

std::vector<Control> FakeHost::Controls() const {
  return {AllControls().begin(), AllControls().end()};
}

std::string FakeHost::ChosenItem(LgIndex_t menu) const {
  const Control& control = At(menu);
  return HasItem(&control, control.value)
             ? control.items[static_cast<std::size_t>(control.value - 1)]
             : "";
}

bool FakeHost::IsReachable(LgIndex_t control) const {
  return IsShownAndSensitive(FindControl(control));
}

bool FakeHost::IsDialogUp() const {
  for (const Control& control : AllControls()) {
    if (control.isUp) return true;
  }
  return false;
}

bool FakeHost::Press(LgIndex_t button) {
  Control* const control = Reachable(button, ControlKind::Button);
  if (control == nullptr) return false;
  Run(control->made.pressed);
  return true;
}

bool FakeHost::Switch(LgIndex_t toggle, bool on) {
  Control* const control = ReachableToggle(toggle);
  if (control == nullptr || (control->value != 0) == on) return false;
  control->value = on ? 1 : 0;
  Run(control->made.chosen, control->value);
  return true;
}

bool FakeHost::Choose(LgIndex_t menu, LgIndex_t item) {
  return ChooseItem(Reachable(menu, ControlKind::OptionMenu), item);
}

bool FakeHost::ChooseRadio(LgIndex_t box, LgIndex_t toggle) {
  return ChooseItem(Reachable(box, ControlKind::RadioBox), toggle);
}

bool FakeHost::EnterText(LgIndex_t field, const std::string& text) {
  Control* const control = ReachableField(field);
  if (control == nullptr) return false;
  control->text = text;
  bool answer = true;
  const QelGUITextCallback_pf entered = control->made.entered;
  if (entered != nullptr) CallBack([&] { answer = entered(text.c_str()); });
  return answer;
}

bool FakeHost::StepUp(LgIndex_t field) { return Step(field, &ControlMade::steppedUp); }

bool FakeHost::StepDown(LgIndex_t field) { return Step(field, &ControlMade::steppedDown); }

bool FakeHost::TurnTo(LgIndex_t tab, LgIndex_t page) {
  Control* const control = Reachable(tab, ControlKind::Tab);
  if (!HasItem(control, page) || control->value == page) return false;
  const LgIndex_t before = control->value;
  control->value = page;
  Run(control->made.left, before);
  Run(control->made.chosen, page);
  return true;
}

bool FakeHost::CloseWindow(LgIndex_t dialog) {
  const Control* const control = Reachable(dialog, ControlKind::Dialog);
  if (control == nullptr) return false;
  Run(control->made.close);
  return true;
}

bool FakeHost::AskForHelp(LgIndex_t dialog) {
  const Control* const control = Reachable(dialog, ControlKind::Dialog);
  if (control == nullptr) return false;
  Run(control->made.help);
  return true;
}

// Mouse, view and style --------------------------------------------------------------------------

void FakeHost::ChooseMouseMode(QelMouseMode_e mode) {
  if (mode != Mouse_Probe) probeCallback = nullptr;
  mouseMode = mode;
  Deliver(StateChange_MouseModeUpdate);
}

QelGeomID_t FakeHost::DrawGeometry(const Geometry& geometry) {
  const QelGeomID_t id = AddGeometry(geometry);
  Deliver(StateChange_GeomCreated);
  return id;
}

void FakeHost::RotateView(double psi, double alpha, double theta) {
  ViewState& view = ActiveFrame().view;
  view.psi = psi;
  view.alpha = alpha;
  view.theta = theta;
  Deliver(StateChange_Style, {SV_THREEDVIEW});
}

void FakeHost::SwitchBlanking(bool on) {
  ActiveFrame().blanking.include = on;
  Deliver(StateChange_Style, {SV_BLANKING, SV_VALUE, SV_INCLUDE});
}

}  // namespace fakehost
