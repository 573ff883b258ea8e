#include "CrashLog.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <sys/file.h>

#include "Host.h"

namespace marquell::workbench {

namespace {

constexpr char kSuffix[] = ".journal";
constexpr char kFileMark[] = "# file ";
constexpr char kStampMark[] = "# stamp ";

/// What tells one state of a file from another.
QByteArray StampOf(const QString& file) {
  const QFileInfo info(file);
  return QByteArray::number(info.size()) + ' ' +
         QByteArray::number(info.lastModified().toMSecsSinceEpoch());
}

/// Whether no process holds the log; then nobody else takes it either while this file is open.
bool IsLeft(const QFile& log) { return flock(log.handle(), LOCK_EX | LOCK_NB) == 0; }

LostWork Read(QFile& log) {
  LostWork work{{}, false, log.fileName(), {}};
  QByteArray stamp;
  while (!log.atEnd()) {
    const QByteArray whole = log.readLine();
    // The last line may have been cut off with the process.
    if (!whole.endsWith('\n')) break;
    const QByteArray line = whole.chopped(1);
    if (line.startsWith(kFileMark)) {
      work.file = QString::fromUtf8(line.mid(sizeof kFileMark - 1));
    } else if (line.startsWith(kStampMark)) {
      stamp = line.mid(sizeof kStampMark - 1);
    } else if (!line.startsWith('#') && !line.isEmpty()) {
      work.lines.push_back(line.toStdString());
    }
  }
  work.isFileSame =
      !work.file.isEmpty() && QFileInfo::exists(work.file) && StampOf(work.file) == stamp;
  return work;
}

}  // namespace

CrashLog::CrashLog(Workspace& workspace, const QString& folder, QObject* parent)
    : QObject(parent), m_workspace(workspace), m_folder(folder) {
  m_workspace.TheHost().recorder.Log().onLine = [this](const std::string& line) { Write(line); };
}

CrashLog::~CrashLog() {
  m_workspace.TheHost().recorder.Log().onLine = nullptr;
  End();
}

QString CrashLog::DefaultFolder() {
  return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/lost-work";
}

void CrashLog::FileOpened(const QString& file) {
  m_files = QStringList{file};
  Begin(file);
}

void CrashLog::FileSaved(const QString& file) {
  if (!m_files.contains(file)) return;
  if (m_files.size() == 1) {
    Begin(file);
  } else {
    End();
  }
}

void CrashLog::Begin(const QString& file) {
  End();
  QDir().mkpath(m_folder);
  const QString name = QString("%1-%2%3")
                           .arg(QDateTime::currentMSecsSinceEpoch())
                           .arg(QCoreApplication::applicationPid())
                           .arg(kSuffix);
  m_log = std::make_unique<QFile>(QDir(m_folder).filePath(name));
  if (!m_log->open(QIODevice::WriteOnly | QIODevice::Unbuffered) || !IsLeft(*m_log)) {
    // Work goes on without a net; there is nothing better to do for a full or read-only home.
    m_log.reset();
    return;
  }
  qelhost::Host& host = m_workspace.TheHost();
  Write(qelhost::Recorder::kHeader);
  Write(kFileMark + file.toStdString());
  Write(kStampMark + StampOf(file).toStdString());
  host.recorder.Log().Start(qelhost::FirstStateOf(host.frames));
}

void CrashLog::End() {
  m_workspace.TheHost().recorder.Log().Stop();
  if (m_log == nullptr) return;
  m_log->remove();
  m_log.reset();
}

void CrashLog::Write(const std::string& line) {
  if (m_log == nullptr) return;
  const std::string whole = line + '\n';
  m_log->write(whole.data(), static_cast<qint64>(whole.size()));
}

std::vector<LostWork> CrashLog::FindLostWork() {
  std::vector<LostWork> found;
  const QDir folder(m_folder);
  for (const QString& name : folder.entryList({QString("*") + kSuffix}, QDir::Files, QDir::Name)) {
    QFile log(folder.filePath(name));
    if (!log.open(QIODevice::ReadWrite) || !IsLeft(log)) continue;
    LostWork work = Read(log);
    if (work.lines.empty()) {
      log.remove();
    } else {
      found.insert(found.begin(), std::move(work));
    }
  }
  return found;
}

void CrashLog::Forget(const LostWork& work) { QFile::remove(work.journal); }

}  // namespace marquell::workbench
