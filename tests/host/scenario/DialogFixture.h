// The dialog over a cube of bricks, opened by its user. The add-on's own objects are in the test,
// so that its sessions can be looked into.
#pragma once

#include "User.h"

#include "Controls.h"
#include "DialogModel.h"
#include "DialogState.h"
#include "Selvane.h"
#include "UserActions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

extern "C" void InitQelAddOn113(void);

namespace scenario {

using namespace qelhost;
using qelvane::qelutiltools::ControlIds;
using qelvane::qelutiltools::Controls;
using qelvane::qelutiltools::DialogSession;
using qelvane::qelutiltools::Selvane;

class DialogTest : public testing::Test {
 protected:
  DialogTest() {
    static const bool isLoaded = [] {
      InitQelAddOn113();
      return true;
    }();
    static_cast<void>(isLoaded);
    host.messages.isBatch = false;
    host.messages.SetSink([this](const std::string& text, QelMessageBox_e kind) {
      said.push_back(text);
      kinds.push_back(kind);
    });
    host.ShowDataSet(Cube(4));
    host.idle.Run();
    // So that nothing is asked in passing: an answer holds for the whole process.
    host.frames.Active()->styles.layerActive.fill(true);
    host.recorder.Start(FirstStateOf(host.frames));
    EXPECT_TRUE(ChooseMenu(host, "Data", "Marquell ..."));
  }
  ~DialogTest() override {
    host.recorder.Stop();
    host.dialogs.Drop(Controls.dialog);
    host.CloseAll();
    host.idle.Run();
    host.messages.SetSink(nullptr);
    EXPECT_FALSE(host.lock.IsOn());
  }

  const Control& At(LgIndex_t id) { return *host.dialogs.Find(id); }
  Selvane& Session() { return *DialogSession(); }
  void Switch(LgIndex_t toggle, bool on = true) {
    ASSERT_TRUE(host.dialogs.Toggle(toggle, on));
    host.idle.Run();
  }
  void Press(LgIndex_t button) {
    ASSERT_TRUE(host.dialogs.Press(button));
    host.idle.Run();
  }
  void Enter(LgIndex_t field, const char* text) {
    EXPECT_TRUE(host.dialogs.Enter(field, text));
    host.idle.Run();
  }
  void Draw() { Act(host, "$!GEOMETRY RECTANGLE X=-1 Y=-1 WIDTH=2 HEIGHT=2"); }
  /// Something to undo.
  void Alter() {
    host.dialogs.Choose(Controls.variableMenu, 4);
    Enter(Controls.modifierField, "+1");
    Switch(Controls.rectangleTool);
    if (host.frames.Active()->geometries.Count() == 0) Draw();
    Press(Controls.applyButton);
    ASSERT_TRUE(Session().IsUndoAvailable());
  }

  Host& host = Host::Instance();
  std::vector<std::string> said;
  std::vector<QelMessageBox_e> kinds;
};

}  // namespace scenario
