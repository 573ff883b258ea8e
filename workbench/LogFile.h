// A file of whole lines, held by this process.
#pragma once

#include <QFile>
#include <QString>

#include <string>

namespace marquell::workbench {

/// What stands in it is at every moment the first lines that were added, each of them whole: what a
/// full disk does not take waits for the next line, and nothing is written behind a gap.
class LogFile {
 public:
  /// Others see it once the lines of its head stand in it and this process holds it.
  LogFile(const QString& path, const std::string& head);
  /// Removes it.
  ~LogFile();
  LogFile(const LogFile&) = delete;
  LogFile& operator=(const LogFile&) = delete;

  bool IsThere() const { return m_file.isOpen(); }
  /// False while some of what was added is not in the file.
  bool Add(const std::string& line);
  /// Why the last line is not in the file, or why there is none.
  const QString& Reason() const { return m_reason; }

 private:
  bool WriteWaiting();

  QString m_path;
  QFile m_file;  ///< by the name under which it was made
  std::string m_waiting;
  qint64 m_size = 0;
  QString m_reason;
};

/// Whether no process holds the file; then nobody else takes it either while this one is open.
bool TakeIfLeft(const QFile& file);

}  // namespace marquell::workbench
