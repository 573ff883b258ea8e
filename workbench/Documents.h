// Opening and saving data sets.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <map>

#include "Workspace.h"

namespace marquell::workbench {

/// What is asked of the user; tests answer in place of dialogs.
struct DocumentQuestions {
  enum class Answer { Save, Discard, Cancel };
  std::function<QString(QWidget* window, const QString& folder)> fileToOpen;
  std::function<QString(QWidget* window, const QString& proposal)> fileToSave;
  /// About writing over results that were opened and not written by this window yet.
  std::function<bool(QWidget* window, const QString& name)> replace;
  /// About data that were altered and not saved.
  std::function<Answer(QWidget* window, const QString& name)> unsaved;
};

/// The questions as dialogs.
DocumentQuestions AskInDialogs();

/// The data sets that are open, as files.
class Documents : public QObject {
  Q_OBJECT

 public:
  Documents(Workspace& workspace, QWidget* window);

  DocumentQuestions questions = AskInDialogs();

  /// Asks for a file, and about what is unsaved, and shows it in place of what is open.
  bool AskAndOpen();
  /// Shows a file in place of what is open, after asking about what is unsaved. False when the user
  /// has cancelled or the file cannot be read: everything is as it was then.
  bool Open(const QString& path);
  /// Shows a file in a frame beside the others; recorded.
  bool AskAndAdd();
  bool Add(const QString& path);
  bool Close();

  /// Saves the active frame's data to the file they came from, which the user is asked about the
  /// first time; SaveAs when its format cannot be written.
  bool Save();
  bool SaveAs();

  /// Asks what to do with unsaved data; false when the user wants to go on with them.
  bool MayDiscard();
  /// Whether the frame's data were altered since they were opened or saved.
  bool IsUnsaved(const qelhost::Frame& frame) const;

  /// The files opened last, the latest first.
  const QStringList& Recent() const { return m_recent; }
  void SetRecent(const QStringList& files) { m_recent = files; }

 signals:
  /// A file is shown in place of everything else, or beside the others.
  void Opened(const QString& path);
  void Added(const QString& path);
  void Saved(const QString& path);
  void Closed();
  void RecentChanged();
  void Said(const QString& text);

 private:
  qelhost::DataSetPtr Read(const QString& path);
  bool SaveBack(qelhost::Frame& frame);
  bool SaveTo(qelhost::Frame& frame, const QString& path);
  void Remember(const QString& path);

  Workspace& m_workspace;
  QWidget* m_window;
  QStringList m_recent;
  std::map<QelUniqueID_t, std::int64_t> m_savedRevision;  ///< by data set
};

}  // namespace marquell::workbench
