// Steps that were done on more than one file, and the log that they are kept in.
#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

#include "CrashLog.h"
#include "Desk.h"
#include "TakeUp.h"
#include "UserActions.h"

namespace marquell::workbench {
namespace {

/// A desk with two files open, each in its frame, and a log of what is done.
class TwoFiles : public testing::Test {
 protected:
  TwoFiles() : m_log(m_desk.window().KeepCrashLog(m_folder.filePath("logs"))) {
    for (const QString& file : {First(), Second()}) {
      EXPECT_TRUE(QFile::copy(MARQUELL_EXAMPLES "/part/gmsh_part.vtu", file));
    }
    EXPECT_TRUE(m_desk.window().Files().Open(First()));
    PlayIn(m_desk, "$!OPEN \"" + Second().toStdString() + "\"");
  }

  static void PlayIn(Desk& desk, const std::string& line) {
    desk.workspace().Do([&line](qelhost::Host& host) {
      qelhost::Player player(host);
      const qelhost::LineResult result = qelhost::PlayLine(host, player, line);
      ASSERT_TRUE(result.isDone) << result.message;
    });
  }

  QString First() const { return m_folder.filePath("first.vtu"); }
  QString Second() const { return m_folder.filePath("second.vtu"); }
  QStringList Logs() const { return QDir(m_folder.filePath("logs")).entryList(QDir::Files); }
  /// The log, as it would be left by a window that was killed, in a folder of its own.
  QString LeftLogs() const {
    const QString folder = m_folder.filePath("left");
    QDir().mkpath(folder);
    EXPECT_TRUE(QFile::copy(m_folder.filePath("logs/" + Logs().value(0)), folder + "/1-1.journal"));
    return folder;
  }

  QTemporaryDir m_folder;
  Desk m_desk;
  CrashLog& m_log;
};

/// Played on what was saved, they would be done twice; and the other file is as it was.
TEST_F(TwoFiles, CannotBeTakenUpOnceOneIsSavedAndTheUserIsTold) {
  QStringList told;
  QObject::connect(&m_log, &CrashLog::CannotKeep,
                   [&told](const QString& reason) { told << reason; });
  PlayIn(m_desk, "$!TIME 0");
  EXPECT_EQ(Logs().size(), 1);
  m_desk.Choose("save");
  PlayIn(m_desk, "$!VIEW FIT");
  m_desk.Settle();
  EXPECT_EQ(Logs().size(), 0);
  EXPECT_EQ(told.size(), 1);
  m_desk.Choose("save");
  m_desk.Settle();
  EXPECT_EQ(told.size(), 1) << "of what is known already nothing is said";
  EXPECT_TRUE(m_desk.window().Files().Open(First()));
  EXPECT_EQ(Logs().size(), 1) << "a file by itself is kept again";
  EXPECT_THAT(m_desk.Failures(), testing::IsEmpty());
}

TEST_F(TwoFiles, AreNamedWhenTheyHaveChanged) {
  PlayIn(m_desk, "$!VIEW FIT");
  CrashLog next(m_desk.workspace(), LeftLogs());
  QStringList failures;
  QObject::connect(&m_desk.workspace(), &Workspace::Failed,
                   [&failures](const QString& text) { failures << text; });
  const auto changeAndTakeUp = [this](QWidget*, const LostWork& work) {
    EXPECT_TRUE(work.isFileSame);
    QFile second(Second());
    EXPECT_TRUE(second.open(QIODevice::Append));
    second.write("\n");
    return LostWorkAnswer::TakeUp;
  };
  EXPECT_FALSE(OfferLostWork(m_desk.workspace(), m_desk.window().Files(), next, &m_desk.window(),
                             changeAndTakeUp));
  ASSERT_EQ(failures.size(), 1);
  EXPECT_TRUE(failures.front().contains("\"" + Second() + "\"")) << failures.front().toStdString();
}

}  // namespace
}  // namespace marquell::workbench
