// The dialog toolkit, as a model that nobody sees. The host never takes a dialog back, so dialogs
// and controls outlive a test; which of them are up does not.
#include "FakeCall.h"

#include <cstdlib>

namespace fakehost {

namespace {

constexpr LgIndex_t kMainDialog = -1;
constexpr LgIndex_t kNone = -2;

struct Control {
  std::string text;
  std::vector<std::string> items;
  LgIndex_t parent = kNone;
  LgIndex_t value = 0;
  bool isDialog = false;
  bool isUp = false;
  bool isSensitive = true;
  bool isVisible = true;
  QelGUIVoidCallback_pf init = nullptr;
  QelGUIVoidCallback_pf close = nullptr;
};

std::vector<Control>& Controls() {
  static auto* const controls = new std::vector<Control>();
  return *controls;
}

Control* At(LgIndex_t id) {
  if (id < 1 || id > static_cast<LgIndex_t>(Controls().size())) return nullptr;
  return &Controls()[static_cast<std::size_t>(id - 1)];
}

LgIndex_t Add(const char* function, LgIndex_t parent, const char* text) {
  if (Fails(function, parent, text)) return kNone;
  if (parent != kMainDialog && At(parent) == nullptr) return kNone;
  Control control;
  control.parent = parent;
  control.text = text == nullptr ? "" : text;
  Controls().push_back(control);
  return static_cast<LgIndex_t>(Controls().size());
}

void SetText(LgIndex_t id, const char* text) {
  Control* const control = At(id);
  if (control != nullptr && text != nullptr) control->text = text;
}

void SetValue(LgIndex_t id, LgIndex_t value) {
  if (Control* const control = At(id)) control->value = value;
}

}  // namespace

void DropAllDialogs() {
  for (Control& control : Controls()) control.isUp = false;
}

bool FakeHost::IsDialogUp() const {
  for (const Control& control : Controls()) {
    if (control.isUp) return true;
  }
  return false;
}

void FakeHost::PressCloseButton(LgIndex_t dialog) {
  Control* const control = At(dialog);
  if (control != nullptr && control->close != nullptr) control->close();
}

}  // namespace fakehost

using namespace fakehost;

LgIndex_t QelGUIDialogCreateModeless(LgIndex_t parent, LgIndex_t, LgIndex_t, const char* title,
                                     QelGUIVoidCallback_pf init, QelGUIVoidCallback_pf close,
                                     QelGUIVoidCallback_pf) {
  const LgIndex_t id = Add(__func__, parent, title);
  if (Control* const dialog = At(id)) {
    dialog->isDialog = true;
    dialog->init = init;
    dialog->close = close;
  }
  return id;
}

void QelGUIDialogLaunch(LgIndex_t dialog) {
  Note(__func__, dialog);
  Control* const found = At(dialog);
  if (found == nullptr || !found->isDialog) return;
  found->isUp = true;
  if (found->init != nullptr) found->init();
}

void QelGUIDialogDrop(LgIndex_t dialog) {
  Note(__func__, dialog);
  if (Control* const found = At(dialog)) found->isUp = false;
}

bool QelGUIDialogIsUp(LgIndex_t dialog) {
  const Control* const found = At(dialog);
  return !Fails(__func__, dialog) && found != nullptr && found->isUp;
}

LgIndex_t QelGUIBitmapToggleAdd(LgIndex_t parent, LgIndex_t, LgIndex_t, LgIndex_t, LgIndex_t,
                                LgIndex_t, LgIndex_t, const char*, bool, LgIndex_t, LgIndex_t,
                                LgIndex_t, QelGUIIntCallback_pf) {
  return Add(__func__, parent, "");
}
void QelGUISetToolTip(LgIndex_t control, const char* text) { Note(__func__, control, text); }
LgIndex_t QelGUITabAdd(LgIndex_t parent, LgIndex_t, LgIndex_t, LgIndex_t, LgIndex_t,
                       QelGUIIntCallback_pf, QelGUIIntCallback_pf) {
  return Add(__func__, parent, "");
}
LgIndex_t QelGUITabAddPage(LgIndex_t tab, const char* label) { return Add(__func__, tab, label); }
void QelGUITabSetCurrentPage(LgIndex_t tab, LgIndex_t page) {
  Note(__func__, tab, page);
  SetValue(tab, page);
}
LgIndex_t QelGUIFormAdd(LgIndex_t parent, LgIndex_t, LgIndex_t, LgIndex_t, LgIndex_t) {
  return Add(__func__, parent, "");
}
LgIndex_t QelGUIFormAddPage(LgIndex_t form) { return Add(__func__, form, ""); }
void QelGUIFormSetCurrentPage(LgIndex_t page) {
  Note(__func__, page);
  if (const Control* const found = At(page)) SetValue(found->parent, page);
}
LgIndex_t QelGUILabelAdd(LgIndex_t parent, LgIndex_t, LgIndex_t, const char* text) {
  return Add(__func__, parent, text);
}
LgIndex_t QelGUIOptionMenuAdd(LgIndex_t parent, LgIndex_t, LgIndex_t, LgIndex_t, LgIndex_t,
                              const char* items, QelGUIIntCallback_pf) {
  const LgIndex_t id = Add(__func__, parent, "");
  Control* const menu = At(id);
  std::string rest = items == nullptr ? "" : items;
  while (menu != nullptr && !rest.empty()) {
    const std::size_t comma = rest.find(',');
    menu->items.push_back(rest.substr(0, comma));
    rest = comma == std::string::npos ? "" : rest.substr(comma + 1);
  }
  return id;
}
LgIndex_t QelGUIToggleAdd(LgIndex_t parent, LgIndex_t, LgIndex_t, LgIndex_t, LgIndex_t,
                          const char* label, QelGUIIntCallback_pf) {
  return Add(__func__, parent, label);
}
LgIndex_t QelGUIButtonAdd(LgIndex_t parent, LgIndex_t, LgIndex_t, LgIndex_t, LgIndex_t,
                          const char* label, QelGUIVoidCallback_pf) {
  return Add(__func__, parent, label);
}
LgIndex_t QelGUITextFieldAdd(LgIndex_t parent, LgIndex_t, LgIndex_t, LgIndex_t, LgIndex_t,
                             QelGUITextCallback_pf) {
  return Add(__func__, parent, "");
}
LgIndex_t QelGUISpinTextFieldAdd(LgIndex_t parent, LgIndex_t, LgIndex_t, LgIndex_t, LgIndex_t,
                                 QelGUITextCallback_pf, QelGUIVoidCallback_pf,
                                 QelGUIVoidCallback_pf) {
  return Add(__func__, parent, "");
}
LgIndex_t QelGUIRadioBoxAdd(LgIndex_t parent, LgIndex_t, LgIndex_t, LgIndex_t, LgIndex_t,
                            const char*, const char*, const char*, const char*, const char*,
                            QelGUIIntCallback_pf) {
  const LgIndex_t id = Add(__func__, parent, "");
  SetValue(id, 1);
  return id;
}

LgIndex_t QelGUIRadioBoxGetToggle(LgIndex_t box) {
  Note(__func__, box);
  return At(box) == nullptr ? 0 : At(box)->value;
}
void QelGUIToggleSet(LgIndex_t toggle, bool on) {
  Note(__func__, toggle, on);
  SetValue(toggle, on ? 1 : 0);
}
LgIndex_t QelGUIOptionMenuGet(LgIndex_t menu) {
  Note(__func__, menu);
  return At(menu) == nullptr ? 0 : At(menu)->value;
}
void QelGUIOptionMenuSet(LgIndex_t menu, LgIndex_t item) {
  Note(__func__, menu, item);
  SetValue(menu, item);
}
LgIndex_t QelGUIOptionMenuGetItemCount(LgIndex_t menu) {
  Note(__func__, menu);
  return At(menu) == nullptr ? 0 : static_cast<LgIndex_t>(At(menu)->items.size());
}
void QelGUIOptionMenuDeleteAllItems(LgIndex_t menu) {
  Note(__func__, menu);
  if (Control* const found = At(menu)) found->items.clear();
}
void QelGUIOptionMenuAppendItem(LgIndex_t menu, const char* item) {
  Note(__func__, menu, item);
  if (Control* const found = At(menu)) found->items.emplace_back(item == nullptr ? "" : item);
}
void QelGUILabelSetText(LgIndex_t label, const char* text) {
  Note(__func__, label, text);
  SetText(label, text);
}
void QelGUIButtonSetText(LgIndex_t button, const char* text) {
  Note(__func__, button, text);
  SetText(button, text);
}
bool QelGUITextFieldGetDouble(LgIndex_t field, double* value) {
  const Control* const found = At(field);
  if (Fails(__func__, field) || found == nullptr || value == nullptr) return false;
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
  SetText(field, text);
}
void QelGUISetSensitivity(LgIndex_t control, bool sensitive) {
  Note(__func__, control, sensitive);
  if (Control* const found = At(control)) found->isSensitive = sensitive;
}
void QelGUISetVisibility(LgIndex_t control, bool visible) {
  Note(__func__, control, visible);
  if (Control* const found = At(control)) found->isVisible = visible;
}
