#include "CrashLog.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTimer>

#include <algorithm>

#include "Host.h"
#include "IndexFiles.h"

namespace marquell::workbench {

namespace {

constexpr char kSuffix[] = ".journal";
constexpr char kFileMark[] = "# file ";
constexpr char kStampMark[] = "# stamp ";

QByteArray StateOf(const QString& file) {
  const QFileInfo info(file);
  return QByteArray::number(info.size()) + ' ' +
         QByteArray::number(info.lastModified().toMSecsSinceEpoch());
}

/// Of the file and of all that an index names.
QByteArray StampOf(const QString& file) {
  QByteArray pieces;
  for (const std::string& piece : qelhost::FilesNamedBy(file.toStdString())) {
    pieces += StateOf(QString::fromStdString(piece)) + '\n';
  }
  if (pieces.isEmpty()) return StateOf(file);
  return StateOf(file) + ' ' + QCryptographicHash::hash(pieces, QCryptographicHash::Sha1).toHex();
}

/// A name may hold whatever ends a line.
QByteArray OnOneLine(const QString& file) {
  QByteArray name = file.toUtf8();
  return name.replace('%', "%25").replace('\n', "%0A").replace('\r', "%0D");
}

std::string LinesOf(const QString& file) {
  return kFileMark + OnOneLine(file).toStdString() + '\n' + kStampMark +
         StampOf(file).toStdString();
}

bool IsSameFile(const QString& a, const QString& b) {
  const QString real = QFileInfo(a).canonicalFilePath();
  return a == b || (!real.isEmpty() && real == QFileInfo(b).canonicalFilePath());
}

LostWork Read(QFile& log) {
  LostWork work{{}, {}, false, log.fileName(), {}};
  while (!log.atEnd()) {
    const QByteArray whole = log.readLine();
    // The last line may have been cut off with the process.
    if (!whole.endsWith('\n')) break;
    const QByteArray line = whole.chopped(1);
    if (line.startsWith(kFileMark)) {
      const QByteArray name = QByteArray::fromPercentEncoding(line.mid(sizeof kFileMark - 1));
      work.files.push_back({QString::fromUtf8(name), {}});
    } else if (line.startsWith(kStampMark) && !work.files.empty()) {
      work.files.back().stamp = line.mid(sizeof kStampMark - 1);
    } else if (!line.startsWith('#') && !line.isEmpty()) {
      work.lines.push_back(line.toStdString());
    }
  }
  if (!work.files.empty()) work.file = work.files.front().file;
  work.isFileSame = work.AreFilesSame();
  return work;
}

}  // namespace

bool LostWork::AreFilesSame() const { return !files.empty() && ChangedFile().isEmpty(); }

QString LostWork::ChangedFile() const {
  const auto changed = std::find_if(files.begin(), files.end(), [](const StampedFile& known) {
    return !QFileInfo::exists(known.file) || StampOf(known.file) != known.stamp;
  });
  return changed == files.end() ? QString() : changed->file;
}

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
  const auto isSaved = [&file](const QString& known) { return IsSameFile(known, file); };
  if (std::none_of(m_files.begin(), m_files.end(), isSaved)) return;
  if (m_files.size() == 1) {
    Begin(m_files.front());
  } else if (m_log != nullptr) {
    End();
    m_hasTold = false;
    Tell(tr(
        "one of several files was saved. Steps are kept again when a file is opened by itself."));
  }
}

void CrashLog::Begin(const QString& file) {
  End();
  QDir().mkpath(m_folder);
  const QString name = QString("%1-%2%3")
                           .arg(QDateTime::currentMSecsSinceEpoch())
                           .arg(QCoreApplication::applicationPid())
                           .arg(kSuffix);
  const std::string head = std::string(qelhost::Recorder::kHeader) + '\n' + LinesOf(file) + '\n';
  m_hasTold = false;
  m_log = std::make_unique<LogFile>(QDir(m_folder).filePath(name), head);
  if (!m_log->IsThere()) {
    // Work goes on without a net; there is nothing better to do for a full or read-only home.
    Tell(m_log->Reason());
    m_log.reset();
    return;
  }
  qelhost::Host& host = m_workspace.TheHost();
  host.recorder.Log().Start(qelhost::FirstStateOf(host.frames));
}

void CrashLog::End() {
  m_workspace.TheHost().recorder.Log().Stop();
  m_log.reset();
}

void CrashLog::Write(const std::string& line) {
  if (m_log == nullptr) return;
  if (!m_log->Add(line)) Tell(m_log->Reason());
  TakeOpened(line);
}

/// However it was opened, what follows is about that file as well.
void CrashLog::TakeOpened(const std::string& line) {
  static const QRegularExpression kOpen(R"x(^\$!OPEN\s+"?(.*?)"?\s*$)x");
  const auto opened = kOpen.match(QString::fromStdString(line));
  if (!opened.hasMatch()) return;
  m_files << opened.captured(1);
  Write(LinesOf(m_files.back()));
}

void CrashLog::Tell(const QString& reason) {
  if (m_hasTold) return;
  m_hasTold = true;
  // In the middle of a deed nobody may be asked or shown anything.
  QTimer::singleShot(0, this, [this, reason] { emit CannotKeep(reason); });
}

std::vector<LostWork> CrashLog::FindLostWork() {
  std::vector<LostWork> found;
  const QDir folder(m_folder);
  for (const QString& name : folder.entryList({QString("*") + kSuffix}, QDir::Files, QDir::Name)) {
    QFile log(folder.filePath(name));
    if (!log.open(QIODevice::ReadWrite) || !TakeIfLeft(log)) continue;
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
