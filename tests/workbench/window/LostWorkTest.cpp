// A window that is killed, and the next one.
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QProgressDialog>

#include <gmock/gmock.h>

#include <csignal>

#include <sys/resource.h>

#include "CrashLog.h"
#include "DataSetFiles.h"
#include "Desk.h"
#include "LogFile.h"
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

/// Copies the one log in a folder to another, as the log of a window that is no more.
void CopyLog(const QString& from, const QString& to) {
  const QDir logs(from);
  const QStringList names = logs.entryList(QDir::Files);
  EXPECT_EQ(names.size(), 1);
  QDir().mkpath(to);
  EXPECT_TRUE(QFile::copy(logs.filePath(names.value(0)), to + "/1-1.journal"));
}

/// A log as it was left by a window that was killed.
class LeftLog {
 public:
  LeftLog() {
    QFile::copy(MARQUELL_EXAMPLES "/part/gmsh_part.vtu", File());
    Desk desk;
    CrashLog& log = desk.window().KeepCrashLog(m_folder.filePath("own"));
    EXPECT_TRUE(desk.window().Files().Open(File()));
    Work(desk);
    CopyLog(m_folder.filePath("own"), Folder());
    EXPECT_THAT(log.FindLostWork(), IsEmpty());
  }
  QString File() const { return m_folder.filePath("part.vtu"); }
  QString Folder() const { return m_folder.filePath("logs"); }

 private:
  QTemporaryDir m_folder;
};

TEST(LostWorkTest, AFileThatChangesWhileTheQuestionStandsIsNotPlayedOn) {
  const LeftLog left;
  Desk desk;
  CrashLog& log = desk.window().KeepCrashLog(left.Folder());
  EXPECT_FALSE(OfferLostWork(desk.workspace(), desk.window().Files(), log, &desk.window(),
                             [&left](QWidget*, const LostWork& work) {
                               EXPECT_TRUE(work.isFileSame);
                               EXPECT_TRUE(QFile::remove(left.File()));
                               EXPECT_TRUE(
                                   QFile::copy(MARQUELL_EXAMPLES "/part/mixed.vtu", left.File()));
                               return LostWorkAnswer::TakeUp;
                             }));
  EXPECT_EQ(desk.Failures().size(), 1);
  EXPECT_EQ(desk.host().frames.Count(), 0);
  EXPECT_EQ(log.FindLostWork().size(), 1u) << "it stays for later";
}

TEST(LostWorkTest, AFileThatChangesWhileItIsReadIsNotPlayedOn) {
  const LeftLog left;
  Desk desk;
  CrashLog& log = desk.window().KeepCrashLog(left.Folder());
  QObject::connect(&desk.window().Files(), &Documents::Opened, [&left] {
    QFile file(left.File());
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write("\n");
  });
  EXPECT_FALSE(OfferLostWork(desk.workspace(), desk.window().Files(), log, &desk.window(),
                             [](QWidget*, const LostWork&) { return LostWorkAnswer::TakeUp; }));
  EXPECT_EQ(desk.Failures().size(), 1);
  EXPECT_FALSE(desk.window().isWindowModified()) << "nothing was played";
}

/// Counts the bars that come over the window.
class BarCounter : public QObject {
 public:
  BarCounter() { qApp->installEventFilter(this); }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Show && qobject_cast<QProgressDialog*>(watched) != nullptr) {
      ++count;
      wasReplay = wasReplay || watched->objectName() == "replay";
    }
    return false;
  }
  int count = 0;
  bool wasReplay = false;
};

TEST(LostWorkTest, ManyStepsAreSeenToBePlayedByOneBar) {
  const LeftLog left;
  QFile log(left.Folder() + "/1-1.journal");
  ASSERT_TRUE(log.open(QIODevice::Append));
  constexpr int kPicks = 20000;
  for (int n = 0; n < kPicks; ++n) {
    log.write(
        "Marquell PICKSPHERE ANCHORX=0 ANCHORY=0 ANCHORZ=0 RADIUS=0.001\n"
        "Marquell ALTERAREA VARIABLE=\"phi\" MODIFIER=\"+0\" RULE=ANYINSIDE\n");
  }
  log.close();
  Desk desk;
  CrashLog& lost = desk.window().KeepCrashLog(left.Folder());
  BarCounter bars;
  EXPECT_TRUE(OfferLostWork(desk.workspace(), desk.window().Files(), lost, &desk.window(),
                            [](QWidget*, const LostWork&) { return LostWorkAnswer::TakeUp; }));
  EXPECT_THAT(desk.Failures(), IsEmpty());
  EXPECT_TRUE(bars.wasReplay);
  EXPECT_LT(bars.count, kPicks / 10) << "a bar a step takes longer than the step";
}

TEST(LostWorkTest, OtherFilesThatStepsHaveOpenedAreLookedAtToo) {
  QTemporaryDir folder;
  const QString second = folder.filePath("second.vtu");
  ASSERT_TRUE(QFile::copy(MARQUELL_EXAMPLES "/part/gmsh_part.vtu", second));
  Desk desk;
  desk.window().KeepCrashLog(folder.filePath("logs"));
  desk.OpenExample("part/gmsh_part.vtu");
  Play(desk, ("$!OPEN \"" + second.toStdString() + "\"").c_str());
  CopyLog(folder.filePath("logs"), folder.filePath("copies"));
  Desk next;
  CrashLog& log = next.window().KeepCrashLog(folder.filePath("copies"));
  ASSERT_EQ(log.FindLostWork().size(), 1u);
  EXPECT_TRUE(log.FindLostWork().front().isFileSame);
  ASSERT_TRUE(QFile::remove(second));
  ASSERT_TRUE(QFile::copy(MARQUELL_EXAMPLES "/part/mixed.vtu", second));
  EXPECT_FALSE(log.FindLostWork().front().isFileSame);
}

TEST(LostWorkTest, PiecesOfAnIndexAreLookedAtToo) {
  QTemporaryDir folder;
  Desk desk;
  desk.window().KeepCrashLog(folder.filePath("logs"));
  desk.OpenExample("flange/flange.pvd");
  Play(desk, "$!VIEW FIT");
  CopyLog(folder.filePath("logs"), folder.filePath("copies"));
  CrashLog other(desk.workspace(), folder.filePath("copies"));
  ASSERT_EQ(other.FindLostWork().size(), 1u);
  EXPECT_TRUE(other.FindLostWork().front().isFileSame);
  const QDir pieces(QFileInfo(other.FindLostWork().front().file).dir().filePath("flange_2"));
  QFile piece(pieces.filePath(pieces.entryList(QDir::Files).value(0)));
  ASSERT_TRUE(piece.open(QIODevice::Append));
  piece.write("\n");
  piece.close();
  EXPECT_FALSE(other.FindLostWork().front().isFileSame);
}

TEST(LostWorkTest, NameMayHoldWhateverEndsALine) {
  QTemporaryDir folder;
  const QString file = folder.filePath("a\n$!VIEW NONE%0A\r.vtu");
  ASSERT_TRUE(QFile::copy(MARQUELL_EXAMPLES "/part/gmsh_part.vtu", file));
  Desk desk;
  desk.window().KeepCrashLog(folder.filePath("logs"));
  ASSERT_TRUE(desk.window().Files().Open(file));
  Play(desk, "$!TIME 0");
  CopyLog(folder.filePath("logs"), folder.filePath("copies"));
  CrashLog other(desk.workspace(), folder.filePath("copies"));
  const std::vector<LostWork> found = other.FindLostWork();
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found.front().file, file);
  EXPECT_TRUE(found.front().isFileSame);
  EXPECT_THAT(found.front().lines, testing::ElementsAre("$!TIME 0"));
}

/// What a full disk has not taken follows when it takes something again.
TEST(LostWorkTest, LogHasNoGapAndNoBeginningOfALine) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "files of the sanitizers are limited as well";
#endif
  QTemporaryDir folder;
  const QString path = folder.filePath("1-1.journal");
  const auto contents = [&path] {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  };
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const auto signalBefore = std::signal(SIGXFSZ, SIG_IGN);
  {
    LogFile log(path, "head\n");
    ASSERT_TRUE(log.IsThere());
    EXPECT_TRUE(log.Add("one"));
    const rlimit full{12, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    const bool isTwoIn = log.Add("two, which is long");
    const bool isThreeIn = log.Add("three");
    const QByteArray whileFull = contents();
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_FALSE(isTwoIn);
    EXPECT_FALSE(isThreeIn);
    EXPECT_FALSE(log.Reason().isEmpty());
    EXPECT_EQ(whileFull, "head\none\n");
    EXPECT_TRUE(log.Add("four"));
    EXPECT_EQ(contents(), "head\none\ntwo, which is long\nthree\nfour\n");
  }
  std::signal(SIGXFSZ, signalBefore);
  EXPECT_FALSE(QFile::exists(path));
}

/// Another window that looks for lost work at the same moment must not take it away.
TEST(LostWorkTest, LogIsHeldBeforeOthersSeeIt) {
  QTemporaryDir folder;
  LogFile log(folder.filePath("1-1.journal"), "head\n");
  Desk desk;
  EXPECT_THAT(desk.window().KeepCrashLog(folder.path()).FindLostWork(), IsEmpty());
  EXPECT_TRUE(QFile::exists(folder.filePath("1-1.journal")));
  EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST(LostWorkTest, LogThatCannotBeMadeIsTold) {
  QTemporaryDir folder;
  QFile inTheWay(folder.filePath("logs"));
  ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
  Desk desk;
  CrashLog& log = desk.window().KeepCrashLog(folder.filePath("logs"));
  QStringList told;
  QObject::connect(&log, &CrashLog::CannotKeep, [&told](const QString& reason) { told << reason; });
  desk.OpenExample("part/gmsh_part.vtu");
  Work(desk);
  EXPECT_EQ(told.size(), 1);
  EXPECT_THAT(desk.Failures(), IsEmpty());
}

TEST(LostWorkTest, SavingOverTheFileByAnotherNameBeginsTheLogAnew) {
  QTemporaryDir folder;
  const QString file = folder.filePath("part.vtu");
  ASSERT_TRUE(QFile::copy(MARQUELL_EXAMPLES "/part/gmsh_part.vtu", file));
  ASSERT_TRUE(QFile::link(file, folder.filePath("link.vtu")));
  Desk desk;
  desk.window().KeepCrashLog(folder.filePath("logs"));
  ASSERT_TRUE(desk.window().Files().Open(folder.filePath("link.vtu")));
  Work(desk);
  EXPECT_GT(desk.host().recorder.Log().Lines().size(), 1u);
  desk.window().Files().questions.fileToSave = [&](QWidget*, const QString&) { return file; };
  EXPECT_TRUE(desk.window().Files().SaveAs());
  EXPECT_EQ(desk.host().recorder.Log().Lines().size(), 1u);
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
