// The dialog toolkit, on the dialog model.
#include "ApiGuard.h"

#include "qelvane/QelGUI.h"

#include <cstdlib>
#include <sstream>

using namespace qelhost;

namespace {

LgIndex_t Add(const char* function, ControlKind kind, LgIndex_t parent, const ControlPlace& place,
              const ControlCallbacks& callbacks, const char* text = nullptr) {
  return Guarded(function, DialogModel::kNone, [&](Host& host) {
    return host.dialogs.Add(kind, parent, place, callbacks, TextOf(text));
  });
}

/// Changes a control, of that kind when one is given; unknown ids are ignored.
template <class Change>
void OnControl(const char* function, LgIndex_t id, Change&& change) {
  GuardedVoid(function, [&](Host& host) {
    if (Control* const control = host.dialogs.Find(id)) change(*control);
  });
}

template <class Change>
void OnControl(const char* function, LgIndex_t id, ControlKind kind, Change&& change) {
  GuardedVoid(function, [&](Host& host) {
    if (Control* const control = host.dialogs.Find(id, kind)) change(*control);
  });
}

std::vector<std::string> CutAtCommas(const std::string& text) {
  std::vector<std::string> items;
  std::istringstream stream(text);
  for (std::string item; std::getline(stream, item, ',');) items.push_back(item);
  return items;
}

/// As strtod reads it in the C locale, whatever the process's locale is.
bool ReadDouble(std::string text, double& value) {
  constexpr char kBlanks[] = " \t\n\v\f\r";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string::npos) return false;
  text = text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
  const locale_t c = newlocale(LC_ALL_MASK, "C", nullptr);
  char* end = nullptr;
  const double number = strtod_l(text.c_str(), &end, c);
  freelocale(c);
  if (end == text.c_str() || *end != '\0') return false;
  value = number;
  return true;
}

}  // namespace

LgIndex_t QelGUIDialogCreateModeless(LgIndex_t parent, LgIndex_t width, LgIndex_t height,
                                     const char* title, QelGUIVoidCallback_pf init,
                                     QelGUIVoidCallback_pf close, QelGUIVoidCallback_pf help) {
  ControlCallbacks callbacks;
  callbacks.init = init;
  callbacks.close = close;
  callbacks.help = help;
  return Add(__func__, ControlKind::Dialog, parent, {0, 0, width, height}, callbacks, title);
}

void QelGUIDialogLaunch(LgIndex_t dialog) {
  GuardedVoid(__func__, [&](Host& host) { host.dialogs.Launch(dialog); });
}

void QelGUIDialogDrop(LgIndex_t dialog) {
  GuardedVoid(__func__, [&](Host& host) { host.dialogs.Drop(dialog); });
}

bool QelGUIDialogIsUp(LgIndex_t dialog) {
  return Guarded(__func__, false, [&](Host& host) { return host.dialogs.IsUp(dialog); });
}

LgIndex_t QelGUIBitmapToggleAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                                LgIndex_t height, LgIndex_t bitmapWidth, LgIndex_t bitmapHeight,
                                const char* rgb, bool useTransparentColor, LgIndex_t red,
                                LgIndex_t green, LgIndex_t blue,
                                QelGUIIntCallback_pf valueChanged) {
  constexpr LgIndex_t kLargestBitmap = 4096;
  if (rgb == nullptr || bitmapWidth < 1 || bitmapHeight < 1 || bitmapWidth > kLargestBitmap ||
      bitmapHeight > kLargestBitmap) {
    return DialogModel::kNone;
  }
  ControlCallbacks callbacks;
  callbacks.chosen = valueChanged;
  const LgIndex_t id =
      Add(__func__, ControlKind::BitmapToggle, parent, {x, y, width, height}, callbacks);
  OnControl(__func__, id, [&](Control& control) {
    control.bitmap = {bitmapWidth,
                      bitmapHeight,
                      std::string(rgb, static_cast<std::size_t>(bitmapWidth) *
                                           static_cast<std::size_t>(bitmapHeight) * 3),
                      useTransparentColor,
                      red,
                      green,
                      blue};
  });
  return id;
}

void QelGUISetToolTip(LgIndex_t control, const char* text) {
  OnControl(__func__, control, [&](Control& found) { found.toolTip = TextOf(text); });
}

LgIndex_t QelGUITabAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                       LgIndex_t height, QelGUIIntCallback_pf pageActivated,
                       QelGUIIntCallback_pf pageDeactivated) {
  ControlCallbacks callbacks;
  callbacks.chosen = pageActivated;
  callbacks.left = pageDeactivated;
  return Add(__func__, ControlKind::Tab, parent, {x, y, width, height}, callbacks);
}

LgIndex_t QelGUITabAddPage(LgIndex_t tab, const char* label) {
  return Guarded(__func__, DialogModel::kNone, [&](Host& host) {
    Control* const holder = host.dialogs.Find(tab, ControlKind::Tab);
    if (holder == nullptr) return DialogModel::kNone;
    if (holder->selected == 0) holder->selected = 1;
    return host.dialogs.Add(ControlKind::TabPage, tab, {}, {}, TextOf(label));
  });
}

void QelGUITabSetCurrentPage(LgIndex_t tab, LgIndex_t page) {
  GuardedVoid(__func__, [&](Host& host) { host.dialogs.ShowTabPage(tab, page); });
}

LgIndex_t QelGUIFormAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                        LgIndex_t height) {
  return Add(__func__, ControlKind::Form, parent, {x, y, width, height}, {});
}

LgIndex_t QelGUIFormAddPage(LgIndex_t form) {
  return Guarded(__func__, DialogModel::kNone, [&](Host& host) {
    Control* const holder = host.dialogs.Find(form, ControlKind::Form);
    if (holder == nullptr) return DialogModel::kNone;
    if (holder->selected == 0) holder->selected = 1;
    return host.dialogs.Add(ControlKind::FormPage, form, {}, {});
  });
}

void QelGUIFormSetCurrentPage(LgIndex_t page) {
  GuardedVoid(__func__, [&](Host& host) { host.dialogs.ShowFormPage(page); });
}

LgIndex_t QelGUILabelAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, const char* text) {
  return Add(__func__, ControlKind::Label, parent, {x, y, 0, 0}, {}, text);
}

LgIndex_t QelGUIOptionMenuAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                              LgIndex_t height, const char* items,
                              QelGUIIntCallback_pf itemChosen) {
  ControlCallbacks callbacks;
  callbacks.chosen = itemChosen;
  const LgIndex_t id =
      Add(__func__, ControlKind::OptionMenu, parent, {x, y, width, height}, callbacks);
  OnControl(__func__, id, [&](Control& control) {
    control.items = CutAtCommas(TextOf(items));
    control.selected = control.items.empty() ? 0 : 1;
  });
  return id;
}

LgIndex_t QelGUIToggleAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                          LgIndex_t height, const char* label, QelGUIIntCallback_pf valueChanged) {
  ControlCallbacks callbacks;
  callbacks.chosen = valueChanged;
  return Add(__func__, ControlKind::Toggle, parent, {x, y, width, height}, callbacks, label);
}

LgIndex_t QelGUIButtonAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                          LgIndex_t height, const char* label, QelGUIVoidCallback_pf pressed) {
  ControlCallbacks callbacks;
  callbacks.pressed = pressed;
  return Add(__func__, ControlKind::Button, parent, {x, y, width, height}, callbacks, label);
}

LgIndex_t QelGUITextFieldAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                             LgIndex_t height, QelGUITextCallback_pf entered) {
  ControlCallbacks callbacks;
  callbacks.entered = entered;
  return Add(__func__, ControlKind::TextField, parent, {x, y, width, height}, callbacks);
}

LgIndex_t QelGUISpinTextFieldAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                                 LgIndex_t height, QelGUITextCallback_pf entered,
                                 QelGUIVoidCallback_pf up, QelGUIVoidCallback_pf down) {
  ControlCallbacks callbacks;
  callbacks.entered = entered;
  callbacks.up = up;
  callbacks.down = down;
  return Add(__func__, ControlKind::SpinTextField, parent, {x, y, width, height}, callbacks);
}

LgIndex_t QelGUIRadioBoxAdd(LgIndex_t parent, LgIndex_t x, LgIndex_t y, LgIndex_t width,
                            LgIndex_t height, const char* label1, const char* label2,
                            const char* label3, const char* label4, const char* label5,
                            QelGUIIntCallback_pf chosen) {
  ControlCallbacks callbacks;
  callbacks.chosen = chosen;
  const LgIndex_t id =
      Add(__func__, ControlKind::RadioBox, parent, {x, y, width, height}, callbacks);
  OnControl(__func__, id, [&](Control& control) {
    for (const char* const label : {label1, label2, label3, label4, label5}) {
      if (label != nullptr) control.items.emplace_back(label);
    }
    control.selected = control.items.empty() ? 0 : 1;
  });
  return id;
}

LgIndex_t QelGUIRadioBoxGetToggle(LgIndex_t box) {
  return Guarded<LgIndex_t>(__func__, 0, [&](Host& host) {
    const Control* const control = host.dialogs.Find(box, ControlKind::RadioBox);
    return control == nullptr ? 0 : control->selected;
  });
}

void QelGUIToggleSet(LgIndex_t toggle, bool on) {
  OnControl(__func__, toggle, [&](Control& control) {
    if (control.kind == ControlKind::Toggle || control.kind == ControlKind::BitmapToggle) {
      control.selected = on ? 1 : 0;
    }
  });
}

LgIndex_t QelGUIOptionMenuGet(LgIndex_t menu) {
  return Guarded<LgIndex_t>(__func__, 0, [&](Host& host) {
    const Control* const control = host.dialogs.Find(menu, ControlKind::OptionMenu);
    return control == nullptr ? 0 : control->selected;
  });
}

void QelGUIOptionMenuSet(LgIndex_t menu, LgIndex_t item) {
  OnControl(__func__, menu, ControlKind::OptionMenu, [&](Control& control) {
    if (item >= 1 && item <= static_cast<LgIndex_t>(control.items.size())) control.selected = item;
  });
}

LgIndex_t QelGUIOptionMenuGetItemCount(LgIndex_t menu) {
  return Guarded<LgIndex_t>(__func__, 0, [&](Host& host) {
    const Control* const control = host.dialogs.Find(menu, ControlKind::OptionMenu);
    return control == nullptr ? 0 : static_cast<LgIndex_t>(control->items.size());
  });
}

void QelGUIOptionMenuDeleteAllItems(LgIndex_t menu) {
  OnControl(__func__, menu, ControlKind::OptionMenu, [](Control& control) {
    control.items.clear();
    control.selected = 0;
  });
}

void QelGUIOptionMenuAppendItem(LgIndex_t menu, const char* item) {
  OnControl(__func__, menu, ControlKind::OptionMenu, [&](Control& control) {
    control.items.push_back(TextOf(item));
    if (control.selected == 0) control.selected = 1;
  });
}

void QelGUILabelSetText(LgIndex_t label, const char* text) {
  OnControl(__func__, label, ControlKind::Label,
            [&](Control& control) { control.text = TextOf(text); });
}

void QelGUIButtonSetText(LgIndex_t button, const char* text) {
  OnControl(__func__, button, ControlKind::Button,
            [&](Control& control) { control.text = TextOf(text); });
}

bool QelGUITextFieldGetDouble(LgIndex_t field, double* value) {
  return Guarded(__func__, false, [&](Host& host) {
    const Control* control = host.dialogs.Find(field, ControlKind::TextField);
    if (control == nullptr) control = host.dialogs.Find(field, ControlKind::SpinTextField);
    if (control == nullptr || value == nullptr) return false;
    return ReadDouble(control->text, *value);
  });
}

void QelGUITextFieldSetString(LgIndex_t field, const char* text) {
  OnControl(__func__, field, [&](Control& control) {
    if (control.kind == ControlKind::TextField || control.kind == ControlKind::SpinTextField) {
      control.text = TextOf(text);
    }
  });
}

void QelGUISetSensitivity(LgIndex_t control, bool sensitive) {
  OnControl(__func__, control, [&](Control& found) { found.isSensitive = sensitive; });
}

void QelGUISetVisibility(LgIndex_t control, bool visible) {
  OnControl(__func__, control, [&](Control& found) { found.isVisible = visible; });
}
