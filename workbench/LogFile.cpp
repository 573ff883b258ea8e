#include "LogFile.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <sys/file.h>
#include <unistd.h>

namespace marquell::workbench {

namespace {

/// Hidden, so that nobody takes it before it is held.
QString NameToMake(const QString& path) {
  const QFileInfo file(path);
  return file.dir().filePath("." + file.fileName());
}

}  // namespace

bool TakeIfLeft(const QFile& file) { return flock(file.handle(), LOCK_EX | LOCK_NB) == 0; }

LogFile::LogFile(const QString& path, const std::string& head)
    : m_path(path), m_file(NameToMake(path)), m_waiting(head) {
  if (!m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
    m_reason = m_file.errorString();
    return;
  }
  const bool isReady = TakeIfLeft(m_file) && WriteWaiting();
  if (isReady && std::rename(QFile::encodeName(m_file.fileName()).constData(),
                             QFile::encodeName(m_path).constData()) == 0) {
    return;
  }
  if (m_reason.isEmpty()) m_reason = QString::fromLocal8Bit(std::strerror(errno));
  m_file.remove();
}

LogFile::~LogFile() {
  // While it is still held.
  if (m_file.isOpen()) QFile::remove(m_path);
}

bool LogFile::Add(const std::string& line) {
  m_waiting += line + '\n';
  return WriteWaiting();
}

bool LogFile::WriteWaiting() {
  const int file = m_file.handle();
  std::size_t done = 0;
  while (done < m_waiting.size()) {
    const ssize_t now = write(file, m_waiting.data() + done, m_waiting.size() - done);
    if (now < 0 && errno == EINTR) continue;
    if (now <= 0) {
      m_reason = QString::fromLocal8Bit(std::strerror(now < 0 ? errno : ENOSPC));
      // The beginning of a line would be taken for the beginning of the next.
      if (ftruncate(file, m_size) != 0 || lseek(file, m_size, SEEK_SET) != m_size) {
        QFile::remove(m_path);
      }
      return false;
    }
    done += static_cast<std::size_t>(now);
  }
  m_size += static_cast<qint64>(done);
  m_waiting.clear();
  return true;
}

}  // namespace marquell::workbench
