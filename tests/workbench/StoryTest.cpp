// From the menu to values and back, at the widgets; what was recorded gives the same without them.
#include "WorkbenchTest.h"

#include "Journal.h"
#include "Player.h"

#include <gmock/gmock.h>

#include <QRadioButton>
#include <QtTest>

namespace marquell::workbench {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

class Story : public WorkbenchTest {
 protected:
  Story() {
    panel.show();
    panel.askSavePath = [this] { return folder.filePath("story.journal"); };
    panel.confirm = [](const QString&) { return true; };
  }

  QAction& Action(const char* name) { return *panel.findChild<QAction*>(name); }

  std::vector<std::string> SavedLines() const {
    std::vector<std::string> lines;
    for (const auto& line : qelhost::ReadJournal(folder.filePath("story.journal").toStdString())) {
      lines.push_back(line.text);
    }
    return lines;
  }

  void PlayAll() {
    Action("journalPlay").trigger();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !panel.IsPlaying(); }, 60000));
  }

  /// Saves, opens fresh data, plays, and compares every value; then records the playing and
  /// compares the journals.
  void ExpectTheSameFromTheFile(const std::function<void()>& open) {
    Action("journalStop").trigger();
    Action("journalSave").trigger();
    const Values done = ValuesNow();
    const std::vector<std::string> saved = SavedLines();
    open();
    ASSERT_NE(ValuesNow(), done);
    Action("journalRecord").trigger();
    ASSERT_TRUE(panel.OpenFile(folder.filePath("story.journal")));
    PlayAll();
    EXPECT_EQ(panel.Played().InHand(), panel.Played().Count());
    EXPECT_EQ(ValuesNow(), done);
    Action("journalStop").trigger();
    Action("journalSave").trigger();
    EXPECT_EQ(SavedLines(), saved) << "a played line is recorded as it is";
  }

  JournalPanel panel{workspace};
};

TEST_F(Story, AltersInARectangleAndTakesItBack) {
  OpenExample("part/gmsh_part.vtu");
  Action("journalRecord").trigger();
  OpenDialog();
  QComboBox* const variables = Menu("Choose variable to pick and alter");
  ASSERT_GT(variables->count(), 3);
  const QString variable = variables->itemText(variables->count() - 1);
  ChooseItem(variables, variable);
  Type(ModifierField(), "*2");
  Click(Button("Define pick area using a rectangle"));
  workspace.Act("$!GEOMETRY RECTANGLE X=-1000 Y=-1000 WIDTH=1000 HEIGHT=2000");
  const Values before = ValuesNow();
  Click(Button("Apply Alteration"));
  const Values altered = ValuesNow();
  EXPECT_NE(altered, before);
  Click(Button("Undo last alter"));
  EXPECT_EQ(ValuesNow(), before);
  Click(Button("Apply Alteration"));
  EXPECT_EQ(ValuesNow(), altered);
  EXPECT_THAT(failures, IsEmpty());
  ExpectTheSameFromTheFile([this] { OpenExample("part/gmsh_part.vtu"); });
}

TEST_F(Story, HidesInABoxThatWasTypedAndSpun) {
  Action("journalRecord").trigger();
  OpenDialog();
  ClickTab(2);
  Click(Button("Define pick area using a cube"));
  for (const char* const field : {"Anchor X", "Anchor Y", "Anchor Z"}) Type(Named(field), "0.5");
  for (const char* const field : {"Size X", "Size Y", "Size Z"}) Type(Named(field), "2.75");
  QTest::keyClick(Named("Size Z"), Qt::Key_Return);
  QTest::keyClick(Named("Rotate Z"), Qt::Key_Up);
  ChooseItem(Menu("Any"), "Any");
  host.messages.QueueAnswer(true);
  const Values before = ValuesNow();
  Click(Button("Apply Blanking"));
  EXPECT_NE(ValuesNow(), before);
  EXPECT_THAT(failures, IsEmpty());
  ExpectTheSameFromTheFile([this] { ShowCube(); });
}

}  // namespace
}  // namespace marquell::workbench
