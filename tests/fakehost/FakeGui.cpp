// The dialog toolkit, as a model that nobody sees. The host never takes a dialog back, so dialogs
// and controls outlive a test; which of them are up does not. What users do stands in FakeUser.cpp.
#include "FakeGui.h"

#include "FakeCall.h"

#include <cstdlib>

namespace fakehost {

std::deque<Control>& AllControls() {
  static auto* const controls = new std::deque<Control>();
  return *controls;
}

Control* FindControl(LgIndex_t id) {
  if (id < 1 || id > static_cast<LgIndex_t>(AllControls().size())) return nullptr;
  return &AllControls()[static_cast<std::size_t>(id - 1)];
}

Control* FindControl(LgIndex_t id, ControlKind kind) {
  Control* const found = FindControl(id);
  return found != nullptr && found->made.kind == kind ? found : nullptr;
}

LgIndex_t PlaceOfPage(const Control& page) {
  LgIndex_t place = 0;
  for (const Control& control : AllControls()) {
    if (control.made.parent == page.made.parent && control.made.kind == page.made.kind) ++place;
    if (control.id == page.id) return place;
  }
  return 0;
}

void DropAllDialogs() {
  for (Control& control : AllControls()) control.isUp = false;
}

namespace {

bool HoldsControls(ControlKind kind) {
  return kind == ControlKind::Dialog || kind == ControlKind::Tab || kind == ControlKind::TabPage ||
         kind == ControlKind::Form || kind == ControlKind::FormPage;
}

bool HoldsText(ControlKind kind) {
  return kind == ControlKind::TextField || kind == ControlKind::SpinField;
}

bool IsToggle(ControlKind kind) {
  return kind == ControlKind::Toggle || kind == ControlKind::BitmapToggle;
}

/// Of what has a choice, the first is chosen.
LgIndex_t FirstValue(const ControlMade& made) { return made.items.empty() ? 0 : 1; }

LgIndex_t Add(const char* function, const ControlMade& made) {
  if (Fails(function, made.parent, made.x, made.y, made.width, made.height, made.text.c_str())) {
    return kNoControl;
  }
  Control* const parent = FindControl(made.parent);
  if (parent == nullptr ? made.parent != kMainDialog : !HoldsControls(parent->made.kind)) {
    Host().Report(std::string(function) + " got a parent that can hold no control");
    return kNoControl;
  }
  Control control;
  control.id = static_cast<LgIndex_t>(AllControls().size() + 1);
  control.made = made;
  control.text = made.text;
  control.items = made.items;
  control.value = FirstValue(made);
  AllControls().push_back(control);
  return control.id;
}

/// A page is one of its parent's choices; the first one is shown until another is.
LgIndex_t AddPage(const char* function, ControlKind kind, ControlKind parentKind, LgIndex_t parent,
                  const char* label) {
  if (FindControl(parent, parentKind) == nullptr) {
    Host().Report(std::string(function) + " got a parent of another kind");
    return kNoControl;
  }
  ControlMade made;
  made.kind = kind;
  made.parent = parent;
  made.text = label == nullptr ? "" : label;
  const LgIndex_t id = Add(function, made);
  if (id == kNoControl) return id;
  Control& holder = *FindControl(parent);
  holder.items.push_back(made.text);
  if (holder.value == 0) holder.value = 1;
  return id;
}

ControlMade At(ControlKind kind, LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
               LgIndex_t height, const char* text = nullptr) {
  ControlMade made;
  made.kind = kind;
  made.parent = parent;
  made.x = x;
  made.y = y;
  made.width = width;
  made.height = height;
  if (text != nullptr) made.text = text;
  return made;
}

std::vector<std::string> CutAtCommas(const char* items) {
  std::vector<std::string> cut;
  std::string rest = items == nullptr ? "" : items;
  while (!rest.empty()) {
    const std::size_t comma = rest.find(',');
    cut.push_back(rest.substr(0, comma));
    rest = comma == std::string::npos ? "" : rest.substr(comma + 1);
  }
  return cut;
}

}  // namespace

}  // namespace fakehost

using namespace fakehost;

// Dialogs ----------------------------------------------------------------------------------------

LgIndex_t QelGUIDialogCreateModeless(LgIndex_t parent, LgIndex_t width, LgIndex_t height,
                                     const char* title, QelGUIVoidCallback_pf init,
                                     QelGUIVoidCallback_pf close, QelGUIVoidCallback_pf help) {
  ControlMade made = At(ControlKind::Dialog, parent, 0, 0, width, height, title);
  made.init = init;
  made.close = close;
  made.help = help;
  return Add(__func__, made);
}

void QelGUIDialogLaunch(LgIndex_t dialog) {
  Note(__func__, dialog);
  Control* const found = FindControl(dialog, ControlKind::Dialog);
  if (found == nullptr) return;
  found->isUp = true;
  if (found->made.init != nullptr) found->made.init();
}

void QelGUIDialogDrop(LgIndex_t dialog) {
  Note(__func__, dialog);
  if (Control* const found = FindControl(dialog, ControlKind::Dialog)) found->isUp = false;
}

bool QelGUIDialogIsUp(LgIndex_t dialog) {
  const Control* const found = FindControl(dialog, ControlKind::Dialog);
  return !Fails(__func__, dialog) && found != nullptr && found->isUp;
}

// Adding controls --------------------------------------------------------------------------------

LgIndex_t QelGUIBitmapToggleAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                                LgIndex_t height, LgIndex_t bitmapWidth, LgIndex_t bitmapHeight,
                                const char* rgb, bool useTransparentColor, LgIndex_t red,
                                LgIndex_t green, LgIndex_t blue,
                                QelGUIIntCallback_pf valueChanged) {
  ControlMade made = At(ControlKind::BitmapToggle, parent, x, y, width, height);
  made.bitmapWidth = bitmapWidth;
  made.bitmapHeight = bitmapHeight;
  if (rgb != nullptr) made.pixels.assign(rgb, rgb + 3 * bitmapWidth * bitmapHeight);
  made.hasTransparentColor = useTransparentColor;
  made.transparentColor = {red, green, blue};
  made.chosen = valueChanged;
  return Add(__func__, made);
}

void QelGUISetToolTip(LgIndex_t control, const char* text) {
  Note(__func__, control, text);
  Control* const found = FindControl(control);
  if (found != nullptr && text != nullptr) found->toolTip = text;
}

LgIndex_t QelGUITabAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                       LgIndex_t height, QelGUIIntCallback_pf pageActivated,
                       QelGUIIntCallback_pf pageDeactivated) {
  ControlMade made = At(ControlKind::Tab, parent, x, y, width, height);
  made.chosen = pageActivated;
  made.left = pageDeactivated;
  return Add(__func__, made);
}

LgIndex_t QelGUITabAddPage(LgIndex_t tab, const char* label) {
  return AddPage(__func__, ControlKind::TabPage, ControlKind::Tab, tab, label);
}

LgIndex_t QelGUIFormAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                        LgIndex_t height) {
  return Add(__func__, At(ControlKind::Form, parent, x, y, width, height));
}

LgIndex_t QelGUIFormAddPage(LgIndex_t form) {
  return AddPage(__func__, ControlKind::FormPage, ControlKind::Form, form, nullptr);
}

LgIndex_t QelGUILabelAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, const char* text) {
  return Add(__func__, At(ControlKind::Label, parent, x, y, 0, 0, text));
}

LgIndex_t QelGUIOptionMenuAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                              LgIndex_t height, const char* items,
                              QelGUIIntCallback_pf itemChosen) {
  ControlMade made = At(ControlKind::OptionMenu, parent, x, y, width, height);
  made.items = CutAtCommas(items);
  made.chosen = itemChosen;
  return Add(__func__, made);
}

LgIndex_t QelGUIToggleAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                          LgIndex_t height, const char* label, QelGUIIntCallback_pf valueChanged) {
  ControlMade made = At(ControlKind::Toggle, parent, x, y, width, height, label);
  made.chosen = valueChanged;
  return Add(__func__, made);
}

LgIndex_t QelGUIButtonAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                          LgIndex_t height, const char* label, QelGUIVoidCallback_pf pressed) {
  ControlMade made = At(ControlKind::Button, parent, x, y, width, height, label);
  made.pressed = pressed;
  return Add(__func__, made);
}

LgIndex_t QelGUITextFieldAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                             LgIndex_t height, QelGUITextCallback_pf entered) {
  ControlMade made = At(ControlKind::TextField, parent, x, y, width, height);
  made.entered = entered;
  return Add(__func__, made);
}

LgIndex_t QelGUISpinTextFieldAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                                 LgIndex_t height, QelGUITextCallback_pf entered,
                                 QelGUIVoidCallback_pf up, QelGUIVoidCallback_pf down) {
  ControlMade made = At(ControlKind::SpinField, parent, x, y, width, height);
  made.entered = entered;
  made.steppedUp = up;
  made.steppedDown = down;
  return Add(__func__, made);
}

LgIndex_t QelGUIRadioBoxAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                            LgIndex_t height, const char* label1, const char* label2,
                            const char* label3, const char* label4, const char* label5,
                            QelGUIIntCallback_pf chosen) {
  ControlMade made = At(ControlKind::RadioBox, parent, x, y, width, height);
  for (const char* label : {label1, label2, label3, label4, label5}) {
    if (label != nullptr) made.items.emplace_back(label);
  }
  made.chosen = chosen;
  return Add(__func__, made);
}

// Reading and setting. What is set runs no callback ----------------------------------------------

void QelGUITabSetCurrentPage(LgIndex_t tab, LgIndex_t page) {
  Note(__func__, tab, page);
  Control* const found = FindControl(tab, ControlKind::Tab);
  if (found == nullptr || page < 1 || page > static_cast<LgIndex_t>(found->items.size())) return;
  found->value = page;
}

void QelGUIFormSetCurrentPage(LgIndex_t page) {
  Note(__func__, page);
  const Control* const found = FindControl(page, ControlKind::FormPage);
  if (found != nullptr) FindControl(found->made.parent)->value = PlaceOfPage(*found);
}

LgIndex_t QelGUIRadioBoxGetToggle(LgIndex_t box) {
  if (Fails(__func__, box)) return 0;
  const Control* const found = FindControl(box, ControlKind::RadioBox);
  return found == nullptr ? 0 : found->value;
}

void QelGUIToggleSet(LgIndex_t toggle, bool on) {
  Note(__func__, toggle, on);
  Control* const found = FindControl(toggle);
  if (found != nullptr && IsToggle(found->made.kind)) found->value = on ? 1 : 0;
}

LgIndex_t QelGUIOptionMenuGet(LgIndex_t menu) {
  if (Fails(__func__, menu)) return 0;
  const Control* const found = FindControl(menu, ControlKind::OptionMenu);
  return found == nullptr ? 0 : found->value;
}

void QelGUIOptionMenuSet(LgIndex_t menu, LgIndex_t item) {
  Note(__func__, menu, item);
  Control* const found = FindControl(menu, ControlKind::OptionMenu);
  if (found == nullptr) return;
  if (item < 1 || item > static_cast<LgIndex_t>(found->items.size())) {
    Host().Report("a menu was set to an item that it does not have");
    return;
  }
  found->value = item;
}

LgIndex_t QelGUIOptionMenuGetItemCount(LgIndex_t menu) {
  if (Fails(__func__, menu)) return 0;
  const Control* const found = FindControl(menu, ControlKind::OptionMenu);
  return found == nullptr ? 0 : static_cast<LgIndex_t>(found->items.size());
}

void QelGUIOptionMenuDeleteAllItems(LgIndex_t menu) {
  Note(__func__, menu);
  Control* const found = FindControl(menu, ControlKind::OptionMenu);
  if (found == nullptr) return;
  found->items.clear();
  found->value = 0;
}

void QelGUIOptionMenuAppendItem(LgIndex_t menu, const char* item) {
  Note(__func__, menu, item);
  Control* const found = FindControl(menu, ControlKind::OptionMenu);
  if (found == nullptr) return;
  found->items.emplace_back(item == nullptr ? "" : item);
  if (found->value == 0) found->value = 1;
}

void QelGUILabelSetText(LgIndex_t label, const char* text) {
  Note(__func__, label, text);
  Control* const found = FindControl(label, ControlKind::Label);
  if (found != nullptr && text != nullptr) found->text = text;
}

void QelGUIButtonSetText(LgIndex_t button, const char* text) {
  Note(__func__, button, text);
  Control* const found = FindControl(button, ControlKind::Button);
  if (found != nullptr && text != nullptr) found->text = text;
}

bool QelGUITextFieldGetDouble(LgIndex_t field, double* value) {
  const Control* const found = FindControl(field);
  if (Fails(__func__, field) || found == nullptr || value == nullptr) return false;
  if (!HoldsText(found->made.kind)) return false;
  char* end = nullptr;
  const double number = std::strtod(found->text.c_str(), &end);
  if (end == found->text.c_str()) return false;
  while (*end == ' ' || *end == '\t') ++end;
  if (*end != '\0') return false;
  *value = number;
  return true;
}

void QelGUITextFieldSetString(LgIndex_t field, const char* text) {
  Note(__func__, field, text);
  Control* const found = FindControl(field);
  if (found == nullptr || text == nullptr || !HoldsText(found->made.kind)) return;
  found->text = text;
}

void QelGUISetSensitivity(LgIndex_t control, bool sensitive) {
  Note(__func__, control, sensitive);
  if (Control* const found = FindControl(control)) found->isSensitive = sensitive;
}

void QelGUISetVisibility(LgIndex_t control, bool visible) {
  Note(__func__, control, visible);
  if (Control* const found = FindControl(control)) found->isVisible = visible;
}
