#include "DialogModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qelhost {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> calls;

ControlCallbacks Recording() {
  ControlCallbacks callbacks;
  callbacks.pressed = [] { calls.emplace_back("pressed"); };
  callbacks.chosen = [](LgIndex_t value) { calls.push_back("chosen " + std::to_string(value)); };
  callbacks.left = [](LgIndex_t page) { calls.push_back("left " + std::to_string(page)); };
  callbacks.entered = [](const char* text) {
    calls.push_back(std::string("entered ") + text);
    return std::string(text) != "bad";
  };
  callbacks.up = [] { calls.emplace_back("up"); };
  callbacks.down = [] { calls.emplace_back("down"); };
  callbacks.init = [] { calls.emplace_back("init"); };
  callbacks.close = [] { calls.emplace_back("close"); };
  callbacks.help = [] { calls.emplace_back("help"); };
  return callbacks;
}

class Dialog : public ::testing::Test {
 protected:
  void SetUp() override { calls.clear(); }

  LgIndex_t Add(ControlKind kind) { return Add(kind, dialog); }
  LgIndex_t Add(ControlKind kind, LgIndex_t parent) {
    return model.Add(kind, parent, {}, Recording());
  }
  void Launch() {
    model.Launch(dialog);
    calls.clear();
  }

  DialogModel model;
  LgIndex_t dialog = model.Add(ControlKind::Dialog, DialogModel::kMainDialog, {}, Recording());
};

TEST_F(Dialog, LaunchShowsItBeforeInitRunsAndRunsInitEachTime) {
  static DialogModel* shown = nullptr;
  static LgIndex_t id = 0;
  static bool wasUp = false;
  ControlCallbacks callbacks;
  callbacks.init = [] {
    wasUp = shown->IsUp(id);
    calls.emplace_back("init");
  };
  shown = &model;
  id = model.Add(ControlKind::Dialog, DialogModel::kMainDialog, {}, callbacks);
  EXPECT_FALSE(model.IsUp(id));
  model.Launch(id);
  EXPECT_TRUE(wasUp);
  model.Launch(id);
  EXPECT_THAT(calls, ElementsAre("init", "init"));
}

TEST_F(Dialog, DropHidesItWithoutTheCloseCallback) {
  Launch();
  model.Drop(dialog);
  EXPECT_FALSE(model.IsUp(dialog));
  EXPECT_THAT(calls, IsEmpty());
}

TEST_F(Dialog, TheWindowsCloseButtonRunsTheCloseCallbackOnlyWhileItIsUp) {
  EXPECT_FALSE(model.CloseWindow(dialog));
  EXPECT_THAT(calls, IsEmpty());
  Launch();
  EXPECT_TRUE(model.CloseWindow(dialog));
  EXPECT_THAT(calls, ElementsAre("close"));
}

TEST_F(Dialog, HelpRunsItsCallback) {
  Launch();
  EXPECT_TRUE(model.AskForHelp(dialog));
  EXPECT_THAT(calls, ElementsAre("help"));
}

TEST_F(Dialog, ControlsCannotBeActedOnWhileTheDialogIsDown) {
  const LgIndex_t button = Add(ControlKind::Button);
  EXPECT_FALSE(model.Press(button));
  Launch();
  EXPECT_TRUE(model.Press(button));
  EXPECT_THAT(calls, ElementsAre("pressed"));
}

TEST_F(Dialog, GreyedAndHiddenControlsCannotBeActedOn) {
  const LgIndex_t grey = Add(ControlKind::Button);
  const LgIndex_t hidden = Add(ControlKind::Button);
  Launch();
  model.Find(grey)->isSensitive = false;
  model.Find(hidden)->isVisible = false;
  EXPECT_FALSE(model.Press(grey));
  EXPECT_FALSE(model.Press(hidden));
  EXPECT_THAT(calls, IsEmpty());
}

TEST_F(Dialog, TogglesOfBothKindsChangeAndTellTheNewValue) {
  for (const ControlKind kind : {ControlKind::Toggle, ControlKind::BitmapToggle}) {
    const LgIndex_t toggle = Add(kind);
    Launch();
    EXPECT_TRUE(model.Toggle(toggle, true));
    EXPECT_EQ(model.Find(toggle)->selected, 1);
    EXPECT_TRUE(model.Toggle(toggle, false));
    EXPECT_EQ(model.Find(toggle)->selected, 0);
    EXPECT_THAT(calls, ElementsAre("chosen 1", "chosen 0"));
  }
}

TEST_F(Dialog, AChoicePastTheItemsIsRefusedAndChangesNothing) {
  for (const ControlKind kind : {ControlKind::OptionMenu, ControlKind::RadioBox}) {
    const LgIndex_t menu = Add(kind);
    model.Find(menu)->items = {"one", "two"};
    model.Find(menu)->selected = 1;
    Launch();
    EXPECT_FALSE(model.Choose(menu, 0));
    EXPECT_FALSE(model.Choose(menu, 3));
    EXPECT_EQ(model.Find(menu)->selected, 1);
    EXPECT_TRUE(model.Choose(menu, 2));
    EXPECT_EQ(model.Find(menu)->selected, 2);
    EXPECT_THAT(calls, ElementsAre("chosen 2"));
  }
}

TEST_F(Dialog, AFieldTakesTheTextAndAnswersWhatItsCallbackSays) {
  const LgIndex_t field = Add(ControlKind::TextField);
  Launch();
  EXPECT_TRUE(model.Enter(field, "1.5"));
  EXPECT_EQ(model.Find(field)->text, "1.5");
  EXPECT_FALSE(model.Enter(field, "bad"));
  EXPECT_THAT(calls, ElementsAre("entered 1.5", "entered bad"));
}

TEST_F(Dialog, OnlyASpinFieldSpins) {
  const LgIndex_t spin = Add(ControlKind::SpinTextField);
  const LgIndex_t field = Add(ControlKind::TextField);
  Launch();
  EXPECT_TRUE(model.Spin(spin, true));
  EXPECT_TRUE(model.Spin(spin, false));
  EXPECT_FALSE(model.Spin(field, true));
  EXPECT_THAT(calls, ElementsAre("up", "down"));
}

TEST_F(Dialog, TurningATabsPageTellsTheOldPageFirstAndSettingItTellsNobody) {
  const LgIndex_t tab = Add(ControlKind::Tab);
  const LgIndex_t first = Add(ControlKind::TabPage, tab);
  const LgIndex_t second = Add(ControlKind::TabPage, tab);
  Launch();
  model.ShowTabPage(tab, 1);
  EXPECT_TRUE(model.IsShown(first));
  EXPECT_FALSE(model.IsShown(second));
  EXPECT_THAT(calls, IsEmpty());
  EXPECT_TRUE(model.TurnToPage(tab, 2));
  EXPECT_TRUE(model.IsShown(second));
  EXPECT_FALSE(model.TurnToPage(tab, 3));
  EXPECT_THAT(calls, ElementsAre("left 1", "chosen 2"));
}

TEST_F(Dialog, WhatElseStandsOnATabIsNoPage) {
  const LgIndex_t tab = Add(ControlKind::Tab);
  Add(ControlKind::Label, tab);
  const LgIndex_t first = Add(ControlKind::TabPage, tab);
  Add(ControlKind::Button, tab);
  const LgIndex_t second = Add(ControlKind::TabPage, tab);
  Launch();
  model.ShowTabPage(tab, 1);
  EXPECT_TRUE(model.IsShown(first));
  EXPECT_TRUE(model.TurnToPage(tab, 2));
  EXPECT_TRUE(model.IsShown(second));
  EXPECT_FALSE(model.TurnToPage(tab, 3));
}

TEST_F(Dialog, TheWindowsCloseButtonDropsADialogWithoutACloseCallback) {
  const LgIndex_t plain = model.Add(ControlKind::Dialog, DialogModel::kMainDialog, {}, {});
  model.Launch(plain);
  EXPECT_TRUE(model.CloseWindow(plain));
  EXPECT_FALSE(model.IsUp(plain));
}

TEST_F(Dialog, AFormShowsOneOfItsPagesAndWhatStandsOnIt) {
  const LgIndex_t form = Add(ControlKind::Form);
  const LgIndex_t first = Add(ControlKind::FormPage, form);
  const LgIndex_t second = Add(ControlKind::FormPage, form);
  const LgIndex_t onFirst = Add(ControlKind::Button, first);
  const LgIndex_t onSecond = Add(ControlKind::Button, second);
  Launch();
  model.ShowFormPage(second);
  EXPECT_FALSE(model.Press(onFirst));
  EXPECT_TRUE(model.Press(onSecond));
  model.ShowFormPage(first);
  EXPECT_TRUE(model.Press(onFirst));
  EXPECT_FALSE(model.Press(onSecond));
}

TEST_F(Dialog, OnlyDialogsTabsFormsAndPagesHoldControls) {
  const LgIndex_t button = Add(ControlKind::Button);
  EXPECT_EQ(Add(ControlKind::Label, button), DialogModel::kNone);
  EXPECT_EQ(Add(ControlKind::Label, 9999), DialogModel::kNone);
  EXPECT_EQ(Add(ControlKind::Label, DialogModel::kNone), DialogModel::kNone);
  EXPECT_GT(Add(ControlKind::Label, DialogModel::kMainDialog), 0);
}

TEST_F(Dialog, UnknownIdsAndIdsOfAnotherKindAreIgnored) {
  const LgIndex_t label = Add(ControlKind::Label);
  for (const LgIndex_t id : {DialogModel::kNone, DialogModel::kMainDialog, 0, 9999, label}) {
    model.Launch(id);
    model.Drop(id);
    model.ShowTabPage(id, 1);
    model.ShowFormPage(id);
    EXPECT_FALSE(model.IsUp(id)) << id;
    EXPECT_FALSE(model.Press(id)) << id;
    EXPECT_FALSE(model.Toggle(id, true)) << id;
    EXPECT_FALSE(model.Choose(id, 1)) << id;
    EXPECT_FALSE(model.Enter(id, "text")) << id;
    EXPECT_FALSE(model.Spin(id, true)) << id;
    EXPECT_FALSE(model.TurnToPage(id, 1)) << id;
    EXPECT_FALSE(model.CloseWindow(id)) << id;
  }
  EXPECT_THAT(calls, IsEmpty());
}

}  // namespace
}  // namespace qelhost
