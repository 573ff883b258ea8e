#include "DialogModel.h"

namespace qelhost {

namespace {

bool HoldsControls(ControlKind kind) {
  switch (kind) {
    case ControlKind::Dialog:
    case ControlKind::Tab:
    case ControlKind::TabPage:
    case ControlKind::Form:
    case ControlKind::FormPage:
      return true;
    default:
      return false;
  }
}

bool IsField(const Control* control) {
  return control != nullptr &&
         (control->kind == ControlKind::TextField || control->kind == ControlKind::SpinTextField);
}

bool IsToggle(const Control* control) {
  return control != nullptr &&
         (control->kind == ControlKind::Toggle || control->kind == ControlKind::BitmapToggle);
}

}  // namespace

LgIndex_t DialogModel::Add(ControlKind kind, LgIndex_t parent, const ControlPlace& place,
                           const ControlCallbacks& callbacks, const std::string& text) {
  if (parent != kMainDialog) {
    const Control* const holder = Find(parent);
    if (holder == nullptr || !HoldsControls(holder->kind)) return kNone;
  }
  Control control;
  control.id = static_cast<LgIndex_t>(m_controls.size()) + 1;
  control.parent = parent;
  control.kind = kind;
  control.place = place;
  control.callbacks = callbacks;
  control.text = text;
  m_controls.push_back(control);
  return control.id;
}

Control* DialogModel::Find(LgIndex_t id) {
  if (id < 1 || id > static_cast<LgIndex_t>(m_controls.size())) return nullptr;
  return &m_controls[static_cast<std::size_t>(id - 1)];
}

const Control* DialogModel::Find(LgIndex_t id) const {
  if (id < 1 || id > static_cast<LgIndex_t>(m_controls.size())) return nullptr;
  return &m_controls[static_cast<std::size_t>(id - 1)];
}

Control* DialogModel::Find(LgIndex_t id, ControlKind kind) {
  Control* const control = Find(id);
  return control != nullptr && control->kind == kind ? control : nullptr;
}

std::vector<LgIndex_t> DialogModel::ChildrenOf(LgIndex_t parent) const {
  std::vector<LgIndex_t> children;
  for (const Control& control : m_controls) {
    if (control.parent == parent) children.push_back(control.id);
  }
  return children;
}

std::vector<LgIndex_t> DialogModel::PagesOf(LgIndex_t tabOrForm) const {
  std::vector<LgIndex_t> pages;
  for (const Control& control : m_controls) {
    const bool isPage =
        control.kind == ControlKind::TabPage || control.kind == ControlKind::FormPage;
    if (isPage && control.parent == tabOrForm) pages.push_back(control.id);
  }
  return pages;
}

void DialogModel::Launch(LgIndex_t dialog) {
  Control* const control = Find(dialog, ControlKind::Dialog);
  if (control == nullptr) return;
  control->isUp = true;
  if (control->callbacks.init != nullptr) control->callbacks.init();
}

void DialogModel::Drop(LgIndex_t dialog) {
  if (Control* const control = Find(dialog, ControlKind::Dialog)) control->isUp = false;
}

bool DialogModel::IsUp(LgIndex_t dialog) const {
  const Control* const control = Find(dialog);
  return control != nullptr && control->kind == ControlKind::Dialog && control->isUp;
}

void DialogModel::ShowTabPage(LgIndex_t tab, LgIndex_t page) {
  Control* const control = Find(tab, ControlKind::Tab);
  if (control == nullptr || page < 1) return;
  if (page <= static_cast<LgIndex_t>(PagesOf(tab).size())) control->selected = page;
}

void DialogModel::ShowFormPage(LgIndex_t page) {
  const Control* const shown = Find(page, ControlKind::FormPage);
  if (shown == nullptr) return;
  const std::vector<LgIndex_t> pages = PagesOf(shown->parent);
  for (std::size_t i = 0; i < pages.size(); ++i) {
    if (pages[i] == page) Find(shown->parent)->selected = static_cast<LgIndex_t>(i) + 1;
  }
}

bool DialogModel::IsShown(LgIndex_t id) const {
  const Control* control = Find(id);
  while (control != nullptr) {
    if (!control->isVisible) return false;
    if (control->kind == ControlKind::Dialog) return control->isUp;
    const Control* const holder = Find(control->parent);
    if (control->kind == ControlKind::TabPage || control->kind == ControlKind::FormPage) {
      const std::vector<LgIndex_t> pages = PagesOf(control->parent);
      if (holder == nullptr || holder->selected < 1 ||
          pages[static_cast<std::size_t>(holder->selected - 1)] != control->id) {
        return false;
      }
    }
    control = holder;
  }
  return false;
}

bool DialogModel::CanAct(const Control* control) const {
  return control != nullptr && control->isSensitive && IsShown(control->id);
}

bool DialogModel::Press(LgIndex_t button) {
  const Control* const control = Find(button, ControlKind::Button);
  if (!CanAct(control)) return false;
  if (control->callbacks.pressed != nullptr) control->callbacks.pressed();
  return true;
}

bool DialogModel::Toggle(LgIndex_t toggle, bool on) {
  Control* const control = Find(toggle);
  if (!IsToggle(control) || !CanAct(control)) return false;
  control->selected = on ? 1 : 0;
  if (control->callbacks.chosen != nullptr) control->callbacks.chosen(control->selected);
  return true;
}

bool DialogModel::Choose(LgIndex_t menuOrRadioBox, LgIndex_t item) {
  Control* const control = Find(menuOrRadioBox);
  if (!CanAct(control)) return false;
  if (control->kind != ControlKind::OptionMenu && control->kind != ControlKind::RadioBox) {
    return false;
  }
  if (item < 1 || item > static_cast<LgIndex_t>(control->items.size())) return false;
  control->selected = item;
  if (control->callbacks.chosen != nullptr) control->callbacks.chosen(item);
  return true;
}

bool DialogModel::Enter(LgIndex_t field, const std::string& text) {
  Control* const control = Find(field);
  if (!IsField(control) || !CanAct(control)) return false;
  control->text = text;
  return control->callbacks.entered == nullptr || control->callbacks.entered(text.c_str());
}

bool DialogModel::Spin(LgIndex_t field, bool up) {
  const Control* const control = Find(field, ControlKind::SpinTextField);
  if (!CanAct(control)) return false;
  const QelGUIVoidCallback_pf step = up ? control->callbacks.up : control->callbacks.down;
  if (step != nullptr) step();
  return true;
}

bool DialogModel::TurnToPage(LgIndex_t tab, LgIndex_t page) {
  Control* const control = Find(tab, ControlKind::Tab);
  if (!CanAct(control) || page < 1 || page > static_cast<LgIndex_t>(PagesOf(tab).size())) {
    return false;
  }
  const LgIndex_t before = control->selected;
  if (before == page) return true;
  if (before > 0 && control->callbacks.left != nullptr) control->callbacks.left(before);
  control->selected = page;
  if (control->callbacks.chosen != nullptr) control->callbacks.chosen(page);
  return true;
}

bool DialogModel::CloseWindow(LgIndex_t dialog) {
  if (!IsUp(dialog)) return false;
  const QelGUIVoidCallback_pf close = Find(dialog)->callbacks.close;
  if (close != nullptr) {
    close();
  } else {
    Drop(dialog);
  }
  return true;
}

bool DialogModel::AskForHelp(LgIndex_t dialog) {
  if (!IsUp(dialog)) return false;
  const QelGUIVoidCallback_pf help = Find(dialog)->callbacks.help;
  if (help != nullptr) help();
  return true;
}

}  // namespace qelhost
