// What was done since the file was opened, kept on disk for the day on which the program ends
// unexpectedly.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <string>
#include <vector>

#include "LogFile.h"
#include "Workspace.h"

namespace marquell::workbench {

/// A file, and what tells its state from another.
struct StampedFile {
  QString file;
  QByteArray stamp;
};

/// The steps of a window that did not end as it should.
struct LostWork {
  QString file;                    ///< that they begin with
  std::vector<StampedFile> files;  ///< that they were done on, as they were then
  bool isFileSame;                 ///< all are as they were, when the log was found
  QString journal;                 ///< the log itself
  std::vector<std::string> lines;

  /// Whether all of them are as they were now.
  bool AreFilesSame() const;
  /// The first that is not; empty: none.
  QString ChangedFile() const;
};

/// Writes every line as it comes, at once, into a file of this process. The file is gone when the
/// data are closed or the program quits; one that no process holds any more is lost work.
class CrashLog : public QObject {
  Q_OBJECT

 public:
  /// folder: where the logs of all windows of this user lie; made when missing.
  CrashLog(Workspace& workspace, const QString& folder, QObject* parent = nullptr);
  ~CrashLog() override;

  /// A file was opened in place of all others. Those that steps open beside it are seen here.
  void FileOpened(const QString& file);
  /// Data were written. Over the file that the log begins with, the log begins anew; over one of
  /// several, whose steps are in one log, there can be none any more.
  void FileSaved(const QString& file);
  /// There is nothing to lose any more.
  void End();

  /// What earlier windows have lost, the latest first. Logs without a step are removed on the way.
  std::vector<LostWork> FindLostWork();
  /// Removes a log.
  void Forget(const LostWork& work);

  /// Where a user's logs lie.
  static QString DefaultFolder();

 signals:
  /// What is done from now on would be lost with the program, and why. Said once for each log.
  void CannotKeep(const QString& reason);

 private:
  void Begin(const QString& file);
  void Write(const std::string& line);
  void TakeOpened(const std::string& line);
  void Tell(const QString& reason);

  Workspace& m_workspace;
  QString m_folder;
  std::unique_ptr<LogFile> m_log;
  QStringList m_files;  ///< that the steps in the log go by
  bool m_hasTold = false;
};

}  // namespace marquell::workbench
