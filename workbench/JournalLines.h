// The lines of a journal, as a list shows them.
#pragma once

#include <QAbstractListModel>

#include <string>
#include <vector>

#include "Journal.h"

namespace marquell::workbench {

enum class LineState { Waiting, Done, Failed };

/// Lines with what became of them when they were played, and a mark at the line in hand: the one
/// that is played next.
class JournalLines : public QAbstractListModel {
  Q_OBJECT

 public:
  using QAbstractListModel::QAbstractListModel;

  /// Other lines; the first is in hand.
  void Take(std::vector<qelhost::JournalLine> lines);
  /// Shows lines that grow at their end, or others when they were begun anew. No line is in hand.
  void Follow(const std::vector<std::string>& lines);
  void Clear() { Take({}); }

  int Count() const { return static_cast<int>(m_lines.size()); }
  const qelhost::JournalLine& At(int row) const { return m_lines[Place(row)].line; }
  LineState StateOf(int row) const { return m_lines[Place(row)].state; }
  /// Why the line failed; empty when it did not.
  QString MessageOf(int row) const { return m_lines[Place(row)].message; }

  /// Count() when there is none.
  int InHand() const { return m_inHand; }
  /// The mark moves; that line and those behind it wait again.
  void GoTo(int row);
  /// What became of the line in hand. The mark goes on when it was done and stays when it failed.
  void Played(bool isDone, const QString& message);

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  struct Entry {
    qelhost::JournalLine line;
    LineState state = LineState::Waiting;
    QString message{};
  };
  static std::size_t Place(int row) { return static_cast<std::size_t>(row); }
  QVariant PictureOf(int row) const;
  QString TipOf(int row) const;

  std::vector<Entry> m_lines;
  int m_inHand = 0;
};

}  // namespace marquell::workbench
