// What happens while something else is under way.
#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QProgressDialog>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <thread>

#include "Busy.h"
#include "Desk.h"
#include "JournalPanel.h"
#include "MenuBar.h"
#include "PlotActions.h"
#include "UserActions.h"

namespace marquell::workbench {
namespace {

using Answer = DocumentQuestions::Answer;

class InterruptionTest : public testing::Test {
 protected:
  void SetUp() override { desk.OpenExample("part/gmsh_part.vtu"); }
  void Alter() {
    desk.workspace().Do([](qelhost::Host& host) {
      qelhost::Player player(host);
      for (const char* const line :
           {"Marquell PICKCUBE ANCHORX=-1 ANCHORY=-1 ANCHORZ=-1 SIZEX=2 SIZEY=2 SIZEZ=2",
            "Marquell ALTERAREA VARIABLE=\"phi\" MODIFIER=\"+1\" RULE=ANYINSIDE"}) {
        ASSERT_TRUE(qelhost::PlayLine(host, player, line).isDone) << line;
      }
    });
    desk.Settle();
  }
  Desk desk;
};

TEST_F(InterruptionTest, NothingIsOpenedByADropWhileAnAddOnWaitsForAnAnswer) {
  const qelhost::DataSetPtr before = desk.Frame().Data();
  const QString other = desk.Example("part/mixed.vtu");
  bool wasShown = false;
  desk.host().messages.SetBox([&](const std::string&, QelMessageBox_e) {
    wasShown = true;
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(other)});
    QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&desk.window(), &enter);
    EXPECT_FALSE(enter.isAccepted());
    QDropEvent drop({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&desk.window(), &drop);
    QTest::qWait(100);
    EXPECT_EQ(desk.host().frames.Count(), 1);
    EXPECT_EQ(desk.Frame().Data(), before);
    EXPECT_FALSE(desk.window().close());
    return true;
  });
  desk.workspace().Do(
      [](qelhost::Host& host) { host.messages.Show("Wait", MessageBox_Information); });
  EXPECT_TRUE(wasShown);
}

TEST_F(InterruptionTest, LinesOfAJournalWaitWhileTheUserIsAskedAboutUnsavedData) {
  Alter();
  constexpr int kLines = 30;
  const std::string journal = desk.Path("many.journal").toStdString();
  {
    std::ofstream file(journal);
    for (int n = 0; n < kLines; ++n) file << "$!VIEW FIT\n";
  }
  JournalPanel& panel = desk.window().Journal();
  ASSERT_TRUE(panel.OpenFile(QString::fromStdString(journal)));
  panel.Play();
  desk.window().Files().questions.unsaved = [&panel](QWidget*, const QString&) {
    const int before = panel.Played().InHand();
    QTest::qWait(400);
    EXPECT_EQ(panel.Played().InHand(), before);
    EXPECT_TRUE(panel.IsPlaying());
    return Answer::Cancel;
  };
  EXPECT_FALSE(desk.window().Files().Close());
  constexpr int kEnoughMs = 30000;
  EXPECT_TRUE(QTest::qWaitFor([&panel] { return !panel.IsPlaying(); }, kEnoughMs));
  EXPECT_EQ(panel.Played().InHand(), kLines) << "it goes on afterwards";
}

TEST_F(InterruptionTest, AFileThatIsSavedBeforeItIsOpenedAgainShowsWhatWasSaved) {
  Alter();
  const std::vector<double> altered = ValuesOf(*desk.Frame().Data());
  desk.window().Files().questions.unsaved = [](QWidget*, const QString&) { return Answer::Save; };
  ASSERT_TRUE(desk.window().Files().Open(desk.Path("part/gmsh_part.vtu")));
  EXPECT_EQ(ValuesOf(*desk.Frame().Data()), altered);
}

TEST_F(InterruptionTest, ARecentFileIsOpenedFromTheMenuThatItMakesAnew) {
  ASSERT_TRUE(desk.window().Files().Open(desk.Example("part/mixed.vtu")));
  const auto* const menu = desk.window().findChild<QMenu*>("recent");
  ASSERT_GE(menu->actions().size(), 2);
  menu->actions()[1]->trigger();
  desk.Settle();
  EXPECT_EQ(QString::fromStdString(desk.Frame().fileName), desk.Path("part/gmsh_part.vtu"));
}

TEST_F(InterruptionTest, TheTabsOfFramesWorkByKeyboardToo) {
  ASSERT_TRUE(desk.window().Files().Add(desk.Example("part/mixed.vtu")));
  desk.Settle();
  auto* const tabs = desk.window().findChild<QTabBar*>("frames");
  ASSERT_EQ(tabs->currentIndex(), 1);
  QTest::keyClick(tabs, Qt::Key_Left);
  EXPECT_EQ(desk.host().frames.Active(), desk.host().frames.At(1));
  EXPECT_EQ(tabs->currentIndex(), 0);
}

TEST_F(InterruptionTest, AnUnfinishedPolygonGoesWithItsTool) {
  desk.Choose("modePolygon");
  const QPoint middle = desk.plot().rect().center();
  for (const QPoint& step : {QPoint(-40, 0), QPoint(40, 0), QPoint(0, 40)}) {
    desk.Click(middle + step);
  }
  desk.Choose("modeSelect");
  QTest::keyClick(&desk.plot(), Qt::Key_Return);
  EXPECT_EQ(desk.Frame().geometries.Count(), 0);
}

TEST_F(InterruptionTest, WhatAnAddOnWantsToBeClickedIsSaidUntilItIsOver) {
  desk.workspace().Do([](qelhost::Host& host) {
    qelhost::InstallProbe(
        host, [](bool) {}, "Click on a cell");
  });
  EXPECT_EQ(desk.Label("probed"), "Click on a cell");
  desk.Click(desk.plot().rect().center());
  EXPECT_NE(desk.Label("probed"), "Click on a cell");
  desk.workspace().Do([](qelhost::Host& host) {
    qelhost::InstallProbe(
        host, [](bool) {}, "Click on a node");
  });
  EXPECT_EQ(desk.Label("probed"), "Click on a node");
  desk.Choose("modeSelect");
  EXPECT_EQ(desk.Label("probed"), "");
}

TEST_F(InterruptionTest, TheBarStaysUntilCancelledWorkHasEnded) {
  std::atomic<bool> mayEnd{false};
  const auto bar = [this] { return desk.window().findChild<QProgressDialog*>("progress"); };
  constexpr int kLongerThanAMomentMs = 500;
  QTimer::singleShot(kLongerThanAMomentMs, [&] {
    EXPECT_TRUE(bar()->isVisible());
    bar()->findChild<QPushButton*>()->click();
    EXPECT_TRUE(bar()->isVisible());
    EXPECT_FALSE(bar()->findChild<QPushButton*>()->isEnabled());
    QTest::qWait(100);
    EXPECT_TRUE(bar()->isVisible());
    mayEnd = true;
  });
  bool wasTold = false;
  RunBeside(&desk.window(), "Working", [&](const TellProgress& tell) {
    while (!mayEnd) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    wasTold = !tell(0.5);
  });
  EXPECT_TRUE(wasTold);
}

}  // namespace
}  // namespace marquell::workbench
