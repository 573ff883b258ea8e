// A window that is killed, and the next one.
#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>

#include <gmock/gmock.h>

#include <csignal>

#include "CrashLog.h"
#include "DataSetFiles.h"
#include "Desk.h"
#include "TakeUp.h"
#include "UserActions.h"

namespace marquell::workbench {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr char kFolder[] = "MARQUELL_TEST_LOST_WORK";

void Play(Desk& desk, const char* line) {
  desk.workspace().Do([line](qelhost::Host& host) {
    qelhost::Player player(host);
    const qelhost::LineResult result = qelhost::PlayLine(host, player, line);
    ASSERT_TRUE(result.isDone) << result.message;
  });
}

/// What a user does before the program is killed: with the mouse, by the dialog, by lines.
void Work(Desk& desk) {
  desk.Choose("addOn:Marquell ...");
  desk.ChooseFrom("Choose variable to pick and alter", "phi");
  desk.Type("Define modifier for picked notes/cells", "*2");
  desk.Press("Define pick area using a rectangle");
  const double half = 0.2 * desk.plot().width() * desk.plot().Scene().GridPerPixel();
  desk.Drag(desk.At(-half, -half), desk.At(half, half));
  desk.Press("Apply Alteration");
  desk.Press("Apply Alteration");
  desk.Choose("undo");
  desk.Choose("corner");
  Play(desk, "Marquell PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=-1 SIZEX=1 SIZEY=1 SIZEZ=2");
  Play(desk, "Marquell BLANKAREA RULE=ANYINSIDE");
}

/// Runs in a process of its own, see below.
TEST(LostWorkTest, DISABLED_WorksUntilItIsKilled) {
  const QString folder = qEnvironmentVariable(kFolder);
  ASSERT_FALSE(folder.isEmpty());
  Desk desk;
  desk.window().KeepCrashLog(folder + "/logs");
  ASSERT_TRUE(desk.window().Files().Open(folder + "/part.vtu"));
  Work(desk);
  qelhost::WriteDataSet(*desk.Frame().Data(), (folder + "/shown.vtu").toStdString());
  std::raise(SIGKILL);
}

TEST(LostWorkTest, WhatWasOnTheScreenIsThereAgainAfterTheProgramWasKilled) {
  QTemporaryDir folder;
  ASSERT_TRUE(QFile::copy(MARQUELL_EXAMPLES "/part/gmsh_part.vtu", folder.filePath("part.vtu")));
  QProcess killed;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(kFolder, folder.path());
  killed.setProcessEnvironment(environment);
  killed.setProcessChannelMode(QProcess::MergedChannels);
  killed.start(QCoreApplication::applicationFilePath(),
               {"--gtest_also_run_disabled_tests",
                "--gtest_filter=LostWorkTest.DISABLED_WorksUntilItIsKilled"});
  ASSERT_TRUE(killed.waitForFinished(60000));
  ASSERT_EQ(killed.exitStatus(), QProcess::CrashExit) << killed.readAll().toStdString();

  Desk desk;
  CrashLog& log = desk.window().KeepCrashLog(folder.filePath("logs"));
  int asked = 0;
  EXPECT_TRUE(OfferLostWork(desk.workspace(), desk.window().Files(), log, &desk.window(),
                            [&](QWidget*, const LostWork& work) {
                              ++asked;
                              EXPECT_TRUE(work.isFileSame);
                              return LostWorkAnswer::TakeUp;
                            }));
  EXPECT_EQ(asked, 1);
  EXPECT_THAT(desk.Failures(), IsEmpty());
  EXPECT_EQ(ValuesOf(*desk.Frame().Data()),
            ValuesOf(*qelhost::ReadDataSet(folder.filePath("shown.vtu").toStdString())));
  EXPECT_TRUE(desk.window().isWindowModified());
  EXPECT_THAT(log.FindLostWork(), IsEmpty()) << "this window has it now";
}

TEST(LostWorkTest, NothingIsLostByAWindowThatWasClosed) {
  QTemporaryDir folder;
  {
    Desk desk;
    desk.window().KeepCrashLog(folder.path());
    desk.OpenExample("part/gmsh_part.vtu");
    Work(desk);
    desk.window().close();
  }
  Desk desk;
  EXPECT_THAT(desk.window().KeepCrashLog(folder.path()).FindLostWork(), IsEmpty());
}

TEST(LostWorkTest, AFileThatChangedSinceIsNotPlayedOn) {
  QTemporaryDir folder;
  const QString file = folder.filePath("part.vtu");
  ASSERT_TRUE(QFile::copy(MARQUELL_EXAMPLES "/part/gmsh_part.vtu", file));
  QFile left(folder.filePath("1-1.journal"));
  ASSERT_TRUE(left.open(QIODevice::WriteOnly));
  left.write("# marquell journal 1\n# file " + file.toUtf8() +
             "\n# stamp 1 1\n$!TIME 0\n$!VIEW FIT\n$!VIEW PS");
  left.close();
  Desk desk;
  CrashLog& log = desk.window().KeepCrashLog(folder.path());
  EXPECT_FALSE(OfferLostWork(desk.workspace(), desk.window().Files(), log, &desk.window(),
                             [](QWidget*, const LostWork& work) {
                               EXPECT_FALSE(work.isFileSame);
                               EXPECT_THAT(work.lines,
                                           testing::ElementsAre("$!TIME 0", "$!VIEW FIT"));
                               return LostWorkAnswer::TakeUp;
                             }));
  EXPECT_EQ(desk.host().frames.Count(), 0);
  EXPECT_EQ(log.FindLostWork().size(), 1u);
  EXPECT_FALSE(OfferLostWork(desk.workspace(), desk.window().Files(), log, &desk.window(),
                             [](QWidget*, const LostWork&) { return LostWorkAnswer::Discard; }));
  EXPECT_THAT(log.FindLostWork(), IsEmpty());
}

TEST(LostWorkTest, SavingOverTheFileBeginsTheLogAnew) {
  QTemporaryDir folder;
  Desk desk;
  CrashLog& log = desk.window().KeepCrashLog(folder.path());
  desk.OpenExample("part/gmsh_part.vtu");
  Work(desk);
  EXPECT_GT(desk.host().recorder.Log().Lines().size(), 1u);
  desk.Choose("save");
  EXPECT_EQ(desk.host().recorder.Log().Lines().size(), 1u);
  EXPECT_FALSE(desk.host().recorder.IsRecording()) << "the user records nothing";
  EXPECT_THAT(log.FindLostWork(), IsEmpty());
}

}  // namespace
}  // namespace marquell::workbench
