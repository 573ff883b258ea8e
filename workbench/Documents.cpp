#include "Documents.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

#include "Busy.h"
#include "DataSetFiles.h"
#include "Host.h"
#include "ReadWatch.h"
#include "UserActions.h"
#include "WriteCancel.h"

namespace marquell::workbench {

namespace {

using qelhost::Frame;
using qelhost::Host;

constexpr int kRecentCount = 10;

QString Filter(bool toWrite) {
  QStringList all;
  QStringList each;
  for (const qelhost::FormatHelp& format : qelhost::KnownFormats()) {
    if (toWrite && !format.writable) continue;
    const QString pattern = "*" + QString::fromStdString(format.extension);
    all << pattern;
    each << QString("%1 (%2)").arg(QString::fromStdString(format.help), pattern);
  }
  each.prepend(QObject::tr("Simulation results (%1)").arg(all.join(' ')));
  if (!toWrite) each << QObject::tr("All files (*)");
  return each.join(";;");
}

/// The file beside the source that a format which cannot be written becomes.
QString ProposalFor(const QString& path) {
  const QFileInfo file(path);
  const QString extension = "." + file.suffix().toLower();
  for (const qelhost::FormatHelp& format : qelhost::KnownFormats()) {
    if (QString::fromStdString(format.extension) != extension) continue;
    if (format.writable) return path;
    return file.path() + "/" + file.completeBaseName() + QString::fromStdString(format.writtenAs);
  }
  return path;
}

/// Values are read when somebody asks for them. What the first picture asks for is read here,
/// beside the window, so that the window need not wait for it.
void ReadForFirstPicture(qelhost::DataSet& data) {
  bool hasColours = false;
  for (LgIndex_t n = 1; n <= data.VariableCount(); ++n) {
    const bool isCoordinate = data.FindVariable(n)->coordinateAxis >= 0;
    if (!isCoordinate && hasColours) continue;
    hasColours = hasColours || !isCoordinate;
    try {
      data.VariableRange(n);
    } catch (const qelhost::ValuesError&) {
      // Told when it is shown, which other variables can still be.
    }
  }
}

std::string OpenCommand(const QString& path) {
  return "$!OPEN \"" + QFileInfo(path).absoluteFilePath().toStdString() + "\"";
}

}  // namespace

DocumentQuestions AskInDialogs() {
  DocumentQuestions questions;
  questions.fileToOpen = [](QWidget* window, const QString& folder) {
    return QFileDialog::getOpenFileName(window, QObject::tr("Open"), folder, Filter(false));
  };
  questions.fileToSave = [](QWidget* window, const QString& proposal) {
    return QFileDialog::getSaveFileName(window, QObject::tr("Save As"), proposal, Filter(true));
  };
  questions.replace = [](QWidget* window, const QString& name) {
    return QMessageBox::question(
               window, QObject::tr("Replace the results?"),
               QObject::tr("Saving replaces the results in \"%1\" by the altered ones. Replace "
                           "them? (Save As writes another file.)")
                   .arg(name),
               QMessageBox::Save | QMessageBox::Cancel, QMessageBox::Cancel) == QMessageBox::Save;
  };
  questions.unsaved = [](QWidget* window, const QString& name) {
    const auto answer = QMessageBox::question(
        window, QObject::tr("Unsaved changes"),
        QObject::tr("\"%1\" was altered and is not saved. Save it?").arg(name),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    return answer == QMessageBox::Save      ? DocumentQuestions::Answer::Save
           : answer == QMessageBox::Discard ? DocumentQuestions::Answer::Discard
                                            : DocumentQuestions::Answer::Cancel;
  };
  return questions;
}

Documents::Documents(Workspace& workspace, QWidget* window)
    : QObject(window), m_workspace(workspace), m_window(window) {}

qelhost::DataSetPtr Documents::Read(const QString& path) {
  const Workspace::Hold hold(m_workspace);
  qelhost::DataSetPtr data;
  try {
    RunBeside(m_window, tr("Reading %1").arg(QFileInfo(path).fileName()),
              [&](const TellProgress& tell) {
                const qelhost::ReadWatch watch(tell);
                data = qelhost::ReadDataSet(path.toStdString());
                ReadForFirstPicture(*data);
              });
  } catch (const qelhost::ReadCancelled&) {
    data.reset();
    emit Said(tr("Not opened: cancelled"));
  } catch (const std::exception& e) {
    emit m_workspace.Failed(QString::fromStdString(e.what()));
  }
  return data;
}

bool Documents::AskAndOpen() {
  const Frame* const frame = m_workspace.TheHost().frames.Active();
  const QString folder = frame == nullptr
                             ? QString()
                             : QFileInfo(QString::fromStdString(frame->fileName)).absolutePath();
  const QString path = questions.fileToOpen(m_window, folder);
  return !path.isEmpty() && Open(path);
}

bool Documents::Open(const QString& path) {
  const Workspace::Hold hold(m_workspace);
  // Asked before reading: the file may be the one that is saved in answer.
  if (!MayDiscard()) return false;
  const qelhost::DataSetPtr data = Read(path);
  if (data == nullptr) return false;
  const bool isShown = m_workspace.Do([&](Host& host) {
    if (host.frames.Count() > 0) host.CloseAll();
    host.ShowFile(data, QFileInfo(path).absoluteFilePath().toStdString());
    host.idle.Run();
  });
  m_savedRevision.clear();
  if (isShown) {
    Remember(path);
    emit Opened(QFileInfo(path).absoluteFilePath());
  }
  return isShown;
}

bool Documents::AskAndAdd() {
  const QString path = questions.fileToOpen(m_window, {});
  return !path.isEmpty() && Add(path);
}

bool Documents::Add(const QString& path) {
  if (m_workspace.TheHost().frames.Count() == 0) return Open(path);
  const qelhost::DataSetPtr data = Read(path);
  if (data == nullptr) return false;
  const bool isShown = m_workspace.Do([&](Host& host) {
    qelhost::ActAs(host, OpenCommand(path), [&](Host& its) {
      its.ShowFile(data, QFileInfo(path).absoluteFilePath().toStdString());
    });
  });
  if (isShown) {
    Remember(path);
    emit Added(QFileInfo(path).absoluteFilePath());
  }
  return isShown;
}

bool Documents::Close() {
  const Workspace::Hold hold(m_workspace);
  if (!MayDiscard()) return false;
  emit Closed();
  return m_workspace.Do([](Host& host) {
    host.CloseAll();
    host.idle.Run();
  });
}

bool Documents::Save() {
  Frame* const frame = m_workspace.TheHost().frames.Active();
  return frame != nullptr && frame->Data() != nullptr && SaveBack(*frame);
}

bool Documents::SaveBack(Frame& frame) {
  const QString path = QString::fromStdString(frame.fileName);
  QString target = ProposalFor(path);
  if (target != path) {
    target = questions.fileToSave(m_window, target);
  } else if (m_savedRevision.count(frame.Data()->Id()) == 0 &&
             !questions.replace(m_window, QFileInfo(path).fileName())) {
    return false;
  }
  return !target.isEmpty() && SaveTo(frame, target);
}

bool Documents::SaveAs() {
  Frame* const frame = m_workspace.TheHost().frames.Active();
  if (frame == nullptr || frame->Data() == nullptr) return false;
  const QString path =
      questions.fileToSave(m_window, ProposalFor(QString::fromStdString(frame->fileName)));
  return !path.isEmpty() && SaveTo(*frame, path);
}

bool Documents::SaveTo(Frame& frame, const QString& path) {
  const Workspace::Hold hold(m_workspace);
  const std::string target = QFileInfo(path).absoluteFilePath().toStdString();
  try {
    RunBeside(m_window, tr("Saving %1").arg(QFileInfo(path).fileName()),
              [&](const TellProgress& tell) {
                const qelhost::WriteWatch watch(tell);
                qelhost::WriteDataSet(*frame.Data(), target);
              });
  } catch (const qelhost::WriteCancelled&) {
    emit Said(tr("Not saved: cancelled"));
    return false;
  } catch (const std::exception& e) {
    emit m_workspace.Failed(QString::fromStdString(e.what()));
    return false;
  }
  m_savedRevision[frame.Data()->Id()] = m_workspace.TheHost().history.Revision(frame.Data()->Id());
  m_workspace.Do([&](Host&) { frame.fileName = target; });
  Remember(path);
  emit Saved(QFileInfo(path).absoluteFilePath());
  emit Said(tr("Saved %1").arg(path));
  return true;
}

bool Documents::IsUnsaved(const Frame& frame) const {
  if (frame.Data() == nullptr) return false;
  const auto saved = m_savedRevision.find(frame.Data()->Id());
  const std::int64_t before = saved == m_savedRevision.end() ? 0 : saved->second;
  return m_workspace.TheHost().history.Revision(frame.Data()->Id()) != before;
}

bool Documents::MayDiscard() {
  const Workspace::Hold hold(m_workspace);
  Host& host = m_workspace.TheHost();
  for (LgIndex_t n = 1; n <= host.frames.Count(); ++n) {
    Frame& frame = *host.frames.At(n);
    if (!IsUnsaved(frame)) continue;
    const QString name = QFileInfo(QString::fromStdString(frame.fileName)).fileName();
    switch (questions.unsaved(m_window, name)) {
      case DocumentQuestions::Answer::Cancel:
        return false;
      case DocumentQuestions::Answer::Discard:
        break;
      case DocumentQuestions::Answer::Save:
        if (!SaveBack(frame)) return false;
    }
  }
  return true;
}

void Documents::Remember(const QString& path) {
  const QString file = QFileInfo(path).absoluteFilePath();
  m_recent.removeAll(file);
  m_recent.prepend(file);
  while (m_recent.size() > kRecentCount) m_recent.removeLast();
  emit RecentChanged();
}

}  // namespace marquell::workbench
