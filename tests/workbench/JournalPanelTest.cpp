// The journal panel: what it shows, when it may be asked for what, and what it makes of bad files.
#include "WorkbenchTest.h"

#include "Journal.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QLabel>
#include <QListView>
#include <QMessageBox>
#include <QTimer>
#include <QtTest>

namespace marquell::workbench {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class JournalPanelTest : public WorkbenchTest {
 protected:
  JournalPanelTest() {
    panel.resize(300, 400);
    panel.show();
    panel.askSavePath = [this] { return folder.filePath("out.journal"); };
    panel.askOpenPath = [this] { return folder.filePath("in.journal"); };
    panel.confirm = [this](const QString& question) {
      questions.push_back(question.toStdString());
      return answer;
    };
  }

  QAction& Action(const char* name) { return *panel.findChild<QAction*>(name); }
  QString Message() { return panel.findChild<QLabel*>("journalMessage")->text(); }

  QString Write(const QByteArray& text) {
    const QString path = folder.filePath("in.journal");
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
    return path;
  }
  void Open(const QByteArray& text) { ASSERT_TRUE(panel.OpenFile(Write(text))); }
  void PlayOn() {
    Action("journalPlay").trigger();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !panel.IsPlaying(); }, 60000));
  }
  std::vector<LineState> States() const {
    std::vector<LineState> states;
    for (int row = 0; row < panel.Played().Count(); ++row) {
      states.push_back(panel.Played().StateOf(row));
    }
    return states;
  }
  std::vector<std::string> Recorded() const {
    std::vector<std::string> lines;
    for (int row = 0; row < panel.Recorded().Count(); ++row) {
      lines.push_back(panel.Recorded().At(row).text);
    }
    return lines;
  }

  JournalPanel panel{workspace};
  std::vector<std::string> questions;
  bool answer = true;
};

constexpr char kThreeGood[] =
    "# marquell journal 1\n\n$!VIEW FIT\n$!LAYER SHOWMESH=YES\n$!LAYER SHOWMESH=NO\n";
constexpr char kSecondBad[] = "$!VIEW FIT\n$!NONSENSE\n$!LAYER SHOWMESH=NO\n";
constexpr auto kDone = LineState::Done;
constexpr auto kFailed = LineState::Failed;
constexpr auto kWaiting = LineState::Waiting;

TEST_F(JournalPanelTest, LinesAppearAsTheyAreRecorded) {
  Action("journalRecord").trigger();
  EXPECT_THAT(Recorded(), ElementsAre("# marquell journal 1"));
  workspace.Act("$!VIEW FIT");
  workspace.Act("$!LAYER SHOWMESH=NO");
  EXPECT_THAT(Recorded(), ElementsAre("# marquell journal 1", "$!VIEW FIT", "$!LAYER SHOWMESH=NO"));
  Action("journalStop").trigger();
  workspace.Act("$!VIEW FIT");
  EXPECT_THAT(Recorded(), SizeIs(3));
  EXPECT_FALSE(panel.IsRecording());
}

TEST_F(JournalPanelTest, OnlyWhatMakesSenseCanBeAskedFor) {
  const auto enabled = [this] {
    std::string names;
    for (const QAction* const action : panel.Actions()) {
      if (action->isEnabled()) names += action->objectName().mid(7).toStdString() + ' ';
    }
    return names;
  };
  EXPECT_EQ(enabled(), "Record Open ");
  Action("journalRecord").trigger();
  EXPECT_EQ(enabled(), "Stop Open Save ");
  workspace.Act("$!VIEW FIT");
  Action("journalStop").trigger();
  EXPECT_EQ(enabled(), "Record Play Step Open Save Clear ");
  Action("journalStep").trigger();
  EXPECT_EQ(enabled(), "Record Rewind Open Save Clear ");
  Action("journalRewind").trigger();
  EXPECT_EQ(enabled(), "Record Play Step Open Save Clear ");
}

TEST_F(JournalPanelTest, StepsLineByLine) {
  Open(kThreeGood);
  EXPECT_EQ(panel.Played().Count(), 3);
  EXPECT_EQ(panel.Played().At(0).number, 3) << "as in the file";
  EXPECT_EQ(panel.Played().InHand(), 0);
  Action("journalStep").trigger();
  EXPECT_EQ(panel.Played().InHand(), 1);
  EXPECT_THAT(States(), ElementsAre(kDone, kWaiting, kWaiting));
  const QModelIndex inHand = panel.Played().index(1, 0);
  EXPECT_TRUE(inHand.data(Qt::FontRole).value<QFont>().bold());
  const auto picture = [this](int row) {
    const QVariant icon = panel.Played().index(row, 0).data(Qt::DecorationRole);
    return icon.value<QIcon>().pixmap(16, 16).toImage();
  };
  QImage nothing = picture(2);
  nothing.fill(Qt::transparent);
  EXPECT_EQ(picture(2), nothing);
  EXPECT_NE(picture(0), nothing);
  EXPECT_NE(picture(1), nothing);
  EXPECT_NE(picture(1), picture(0));
  PlayOn();
  EXPECT_THAT(States(), ElementsAre(kDone, kDone, kDone));
}

TEST_F(JournalPanelTest, AFailedLineStaysInHandWithItsMessage) {
  Open(kSecondBad);
  PlayOn();
  EXPECT_THAT(States(), ElementsAre(kDone, kFailed, kWaiting));
  EXPECT_EQ(panel.Played().InHand(), 1);
  const QModelIndex failed = panel.Played().index(1, 0);
  EXPECT_TRUE(failed.data(Qt::ToolTipRole).toString().contains("NONSENSE"));
  EXPECT_TRUE(failed.data(Qt::ForegroundRole).isValid());
  EXPECT_TRUE(Message().startsWith("Line 2 failed: ")) << Message().toStdString();
  EXPECT_GT(Message().size(), 20);
  // Past it by marking the next one.
  panel.findChild<QListView*>("playedLines")->setCurrentIndex(panel.Played().index(2, 0));
  Action("journalFromHere").trigger();
  PlayOn();
  EXPECT_THAT(States(), ElementsAre(kDone, kFailed, kDone));
}

TEST_F(JournalPanelTest, AFailureIsToldWhenThePanelIsClosed) {
  Open(kSecondBad);
  PlayOn();
  EXPECT_THAT(failures, IsEmpty());
  Action("journalRewind").trigger();
  panel.hide();
  PlayOn();
  ASSERT_THAT(failures, SizeIs(1));
  EXPECT_TRUE(failures[0].startsWith("Line 2 of the journal: "));
}

TEST_F(JournalPanelTest, AnAddOnThatIsNotThereFailsItsLine) {
  Open("Nobody DOSOMETHING\n");
  PlayOn();
  EXPECT_THAT(States(), ElementsAre(kFailed));
  EXPECT_TRUE(Message().contains("No add-on named Nobody is loaded."));
}

TEST_F(JournalPanelTest, StopIsHeardBetweenLines) {
  QByteArray text;
  for (int i = 0; i < 500; ++i) text += "$!VIEW FIT\n";
  Open(text);
  int played = 0;
  QObject::connect(&workspace, &Workspace::Changed, &panel, [this, &played] {
    if (++played == 7) QTimer::singleShot(0, &Action("journalStop"), &QAction::trigger);
  });
  PlayOn();
  EXPECT_GE(panel.Played().InHand(), 7);
  EXPECT_LT(panel.Played().InHand(), 20);
  const int stoppedAt = panel.Played().InHand();
  QTest::qWait(20);
  EXPECT_EQ(panel.Played().InHand(), stoppedAt);
}

TEST_F(JournalPanelTest, TheWindowPaintsWhileItPlays) {
  QByteArray text;
  for (int i = 0; i < 200; ++i) text += "$!VIEW FIT\n";
  Open(text);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&panel));
  struct Counter : QObject {
    int count = 0;
    bool eventFilter(QObject*, QEvent* event) override {
      if (event->type() == QEvent::Paint) ++count;
      return false;
    }
  } paints;
  panel.findChild<QListView*>("playedLines")->viewport()->installEventFilter(&paints);
  PlayOn();
  EXPECT_GT(paints.count, 10);
}

TEST_F(JournalPanelTest, NothingIsPlayedBehindAMessage) {
  Open("$!VIEW FIT\n$!VIEW FIT\n");
  Action("journalPlay").trigger();
  workspace.Do([this](qelhost::Host&) {
    QTest::qWait(120);
    EXPECT_EQ(panel.Played().InHand(), 0);
  });
  EXPECT_TRUE(QTest::qWaitFor([this] { return !panel.IsPlaying(); }, 5000));
  EXPECT_EQ(panel.Played().InHand(), 2);
}

TEST_F(JournalPanelTest, WhatCannotBeReadIsToldAndLeavesThePanelAsItIs) {
  Open(kThreeGood);
  Action("journalStep").trigger();
  const struct {
    QString path;
    const char* reason;
  } files[] = {{folder.filePath("not-there.journal"), "cannot be read"},
               {folder.path(), "is a folder"},
               {Write("$!VIEW FIT\nbytes \xFF\xFE\n"), "is not UTF-8 text"}};
  for (const auto& file : files) {
    failures.clear();
    EXPECT_FALSE(panel.OpenFile(file.path));
    ASSERT_THAT(failures, SizeIs(1)) << file.reason;
    EXPECT_THAT(failures[0].toStdString(), HasSubstr(file.reason));
    EXPECT_EQ(panel.Played().Count(), 3);
    EXPECT_EQ(panel.Played().InHand(), 1);
  }
}

TEST_F(JournalPanelTest, OpenTakesTheFileThatTheUserNames) {
  Write(kThreeGood);
  Action("journalOpen").trigger();
  EXPECT_EQ(panel.Played().Count(), 3);
  panel.askOpenPath = [] { return QString(); };
  Action("journalOpen").trigger();
  EXPECT_EQ(panel.Played().Count(), 3);
  EXPECT_THAT(failures, IsEmpty());
}

TEST_F(JournalPanelTest, AsksBeforeItReplacesAFile) {
  Action("journalRecord").trigger();
  workspace.Act("$!VIEW FIT");
  EXPECT_TRUE(panel.HasUnsavedLines());
  Action("journalSave").trigger();
  EXPECT_THAT(questions, IsEmpty());
  EXPECT_FALSE(panel.HasUnsavedLines());
  workspace.Act("$!LAYER SHOWMESH=NO");
  answer = false;
  Action("journalSave").trigger();
  EXPECT_THAT(questions, ElementsAre(HasSubstr("out.journal")));
  const std::string path = folder.filePath("out.journal").toStdString();
  EXPECT_THAT(qelhost::ReadJournal(path), SizeIs(1));
  answer = true;
  Action("journalSave").trigger();
  EXPECT_THAT(qelhost::ReadJournal(path), SizeIs(2));
}

TEST_F(JournalPanelTest, AFileThatCannotBeWrittenIsTold) {
  Action("journalRecord").trigger();
  workspace.Act("$!VIEW FIT");
  panel.askSavePath = [this] { return folder.filePath("no-such-folder/out.journal"); };
  Action("journalSave").trigger();
  ASSERT_THAT(failures, SizeIs(1));
  EXPECT_THAT(failures[0].toStdString(), HasSubstr("cannot be written"));
  EXPECT_TRUE(panel.HasUnsavedLines());
}

TEST_F(JournalPanelTest, AsksBeforeRecordedLinesAreLost) {
  Action("journalRecord").trigger();
  workspace.Act("$!VIEW FIT");
  Action("journalStop").trigger();
  answer = false;
  Action("journalRecord").trigger();
  Action("journalClear").trigger();
  EXPECT_THAT(questions, SizeIs(2));
  EXPECT_FALSE(panel.IsRecording());
  EXPECT_THAT(Recorded(), SizeIs(2));
  answer = true;
  Action("journalRecord").trigger();
  EXPECT_THAT(Recorded(), SizeIs(1));
}

TEST_F(JournalPanelTest, AHundredThousandLinesAreShownAndScrolled) {
  constexpr int kLines = 100000;
  QByteArray text;
  for (int i = 0; i < kLines; ++i) text += "$!LAYER SHOWMESH=YES\n";
  Open(text);
  ASSERT_EQ(panel.Played().Count(), kLines);
  auto* const view = panel.findChild<QListView*>("playedLines");
  view->scrollToBottom();
  EXPECT_TRUE(view->viewport()->rect().contains(
      view->visualRect(panel.Played().index(kLines - 1, 0)).center()));
  view->setCurrentIndex(panel.Played().index(kLines - 2, 0));
  Action("journalFromHere").trigger();
  PlayOn();
  EXPECT_EQ(panel.Played().InHand(), kLines);
  EXPECT_EQ(panel.Played().StateOf(kLines - 3), kWaiting);
  EXPECT_EQ(panel.Played().StateOf(kLines - 1), kDone);
}

}  // namespace
}  // namespace marquell::workbench
