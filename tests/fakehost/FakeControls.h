#pragma once

#include "qelvane/Types.h"

#include <array>
#include <string>
#include <vector>

namespace fakehost {

constexpr LgIndex_t kMainDialog = -1;
constexpr LgIndex_t kNoControl = -2;

enum class ControlKind {
  Dialog,
  BitmapToggle,
  Tab,
  TabPage,
  Form,
  FormPage,
  Label,
  OptionMenu,
  Toggle,
  Button,
  TextField,
  SpinField,
  RadioBox
};

/// What a control was made with. It never changes again.
struct ControlMade {
  ControlKind kind = ControlKind::Label;
  LgIndex_t parent = kNoControl;
  LgIndex_t x = 0;
  LgIndex_t y = 0;
  LgIndex_t width = 0;
  LgIndex_t height = 0;
  std::string text;                ///< title or label
  std::vector<std::string> items;  ///< of a menu or a radio box
  LgIndex_t bitmapWidth = 0;
  LgIndex_t bitmapHeight = 0;
  std::vector<unsigned char> pixels;
  bool hasTransparentColor = false;
  std::array<LgIndex_t, 3> transparentColor{};

  QelGUIVoidCallback_pf init = nullptr;  ///< dialogs: init, close and help
  QelGUIVoidCallback_pf close = nullptr;
  QelGUIVoidCallback_pf help = nullptr;
  QelGUIVoidCallback_pf pressed = nullptr;    ///< buttons
  QelGUIIntCallback_pf chosen = nullptr;      ///< toggles, menus, radio boxes; tabs: page activated
  QelGUIIntCallback_pf left = nullptr;        ///< tabs: page deactivated
  QelGUITextCallback_pf entered = nullptr;    ///< both kinds of fields
  QelGUIVoidCallback_pf steppedUp = nullptr;  ///< spin fields
  QelGUIVoidCallback_pf steppedDown = nullptr;
};

/// A dialog or a control of one.
struct Control {
  LgIndex_t id = kNoControl;
  ControlMade made;
  std::string toolTip;
  std::string text;                ///< title, label or what a field holds
  std::vector<std::string> items;  ///< of a menu or a radio box; a tab's or a form's pages by label
  LgIndex_t value = 0;             ///< a toggle's 0 or 1; item, button or page from 1
  bool isUp = false;               ///< dialogs alone
  bool isSensitive = true;
  bool isVisible = true;
};

}  // namespace fakehost
