#pragma once

#include "qelvane/Types.h"

#include <deque>
#include <string>
#include <vector>

namespace qelhost {

enum class ControlKind {
  Dialog,
  BitmapToggle,
  Toggle,
  Tab,
  TabPage,
  Form,
  FormPage,
  Label,
  OptionMenu,
  Button,
  TextField,
  SpinTextField,
  RadioBox
};

/// Position and size in hundredths of the dialog font's character width and line height.
struct ControlPlace {
  LgIndex_t x = 0;
  LgIndex_t y = 0;
  LgIndex_t width = 0;
  LgIndex_t height = 0;
};

/// The pixels of a bitmap toggle, three bytes each, top row first.
struct Bitmap {
  LgIndex_t width = 0;
  LgIndex_t height = 0;
  std::string rgb;
  bool hasTransparentColor = false;
  LgIndex_t red = 0;
  LgIndex_t green = 0;
  LgIndex_t blue = 0;
};

/// What a control calls when the user acts on it; those that do not apply to its kind are null.
struct ControlCallbacks {
  QelGUIVoidCallback_pf pressed = nullptr;  ///< button
  QelGUIIntCallback_pf chosen = nullptr;    ///< toggle, menu item, radio button, page activated
  QelGUIIntCallback_pf left = nullptr;      ///< page deactivated
  QelGUITextCallback_pf entered = nullptr;
  QelGUIVoidCallback_pf up = nullptr;
  QelGUIVoidCallback_pf down = nullptr;
  QelGUIVoidCallback_pf init = nullptr;
  QelGUIVoidCallback_pf close = nullptr;
  QelGUIVoidCallback_pf help = nullptr;
};

/// A dialog or control as plain state.
struct Control {
  LgIndex_t id = 0;
  LgIndex_t parent = 0;
  ControlKind kind = ControlKind::Label;
  ControlPlace place;
  ControlCallbacks callbacks;
  std::string text;  ///< title, label, or what a field holds
  std::string toolTip;
  Bitmap bitmap;
  std::vector<std::string> items;  ///< of a menu or a radio box; the ids' texts of pages
  LgIndex_t selected = 0;          ///< item, radio button or page, from 1; a toggle's 0 or 1
  bool isUp = false;               ///< dialogs
  bool isSensitive = true;
  bool isVisible = true;
};

/// Every dialog of every add-on, with no toolkit. Setters change what is shown and call nothing;
/// the methods under "a user's actions" do what a toolkit does when the user acts: they change the
/// control and run its callback. Unknown ids, and ids of another kind, are ignored.
class DialogModel {
 public:
  static constexpr LgIndex_t kMainDialog = -1;
  static constexpr LgIndex_t kNone = -2;

  /// Adds a control and answers its id; kNone when the parent does not exist or holds no controls.
  LgIndex_t Add(ControlKind kind, LgIndex_t parent, const ControlPlace& place,
                const ControlCallbacks& callbacks, const std::string& text = {});

  /// Null for an unknown id. The pointer stays valid: controls are never deleted.
  Control* Find(LgIndex_t id);
  const Control* Find(LgIndex_t id) const;
  /// The same, null also for another kind.
  Control* Find(LgIndex_t id, ControlKind kind);
  std::vector<LgIndex_t> ChildrenOf(LgIndex_t parent) const;

  /// Shows the dialog, then calls its init callback, also when it is up already.
  void Launch(LgIndex_t dialog);
  void Drop(LgIndex_t dialog);
  bool IsUp(LgIndex_t dialog) const;
  /// Makes a page of a tab (from 1), or of a form (by its id), the one that is shown.
  void ShowTabPage(LgIndex_t tab, LgIndex_t page);
  void ShowFormPage(LgIndex_t page);
  /// Whether the control, every page it stands on and its dialog are shown.
  bool IsShown(LgIndex_t id) const;

  // A user's actions: false when the control cannot be acted on
  // -------------------------------------

  bool Press(LgIndex_t button);
  bool Toggle(LgIndex_t toggle, bool on);
  bool Choose(LgIndex_t menuOrRadioBox, LgIndex_t item);
  bool Enter(LgIndex_t field, const std::string& text);
  bool Spin(LgIndex_t field, bool up);
  bool TurnToPage(LgIndex_t tab, LgIndex_t page);
  bool CloseWindow(LgIndex_t dialog);
  bool AskForHelp(LgIndex_t dialog);

 private:
  /// The pages of a tab or form alone: other controls may stand on it too.
  std::vector<LgIndex_t> PagesOf(LgIndex_t tabOrForm) const;
  bool CanAct(const Control* control) const;

  std::deque<Control> m_controls;  ///< the id is the place plus 1
};

}  // namespace qelhost
