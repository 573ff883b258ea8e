#include "JournalLines.h"

#include <QApplication>
#include <QFont>

#include <algorithm>
#include <utility>

#include "JournalIcons.h"

namespace marquell::workbench {

using qelhost::JournalLine;

void JournalLines::Take(std::vector<JournalLine> lines) {
  beginResetModel();
  m_lines.clear();
  for (JournalLine& line : lines) m_lines.push_back({std::move(line)});
  m_inHand = 0;
  endResetModel();
}

void JournalLines::Follow(const std::vector<std::string>& lines) {
  const bool isContinued =
      lines.size() >= m_lines.size() && std::equal(m_lines.begin(), m_lines.end(), lines.begin(),
                                                   [](const Entry& entry, const std::string& text) {
                                                     return entry.line.text == text;
                                                   });
  if (!isContinued) Clear();
  if (lines.size() == m_lines.size()) return;
  beginInsertRows({}, Count(), static_cast<int>(lines.size()) - 1);
  while (m_lines.size() < lines.size()) {
    m_lines.push_back({{Count() + 1, lines[m_lines.size()]}});
  }
  m_inHand = Count();
  endInsertRows();
}

void JournalLines::GoTo(int row) {
  m_inHand = std::clamp(row, 0, Count());
  for (int later = m_inHand; later < Count(); ++later) {
    m_lines[Place(later)].state = LineState::Waiting;
    m_lines[Place(later)].message.clear();
  }
  if (Count() > 0) emit dataChanged(index(0), index(Count() - 1));
}

void JournalLines::Played(bool isDone, const QString& message) {
  Entry& entry = m_lines[Place(m_inHand)];
  entry.state = isDone ? LineState::Done : LineState::Failed;
  entry.message = isDone ? QString() : message;
  const int played = m_inHand;
  if (isDone) ++m_inHand;
  emit dataChanged(index(played), index(std::min(m_inHand, Count() - 1)));
}

int JournalLines::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : Count();
}

QVariant JournalLines::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= Count()) return {};
  const int row = index.row();
  switch (role) {
    case Qt::DisplayRole:
      return QString::fromStdString(At(row).text);
    case Qt::DecorationRole:
      return PictureOf(row);
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
      return TipOf(row);
    case Qt::ForegroundRole:
      if (StateOf(row) != LineState::Failed) return {};
      return AlarmColor(QApplication::palette());
    case Qt::FontRole:
      if (row == m_inHand) {
        QFont bold = QApplication::font();
        bold.setBold(true);
        return bold;
      }
      return {};
    default:
      return {};
  }
}

QVariant JournalLines::PictureOf(int row) const {
  static const QIcon kNone = IconOf(JournalIcon::None);
  static const QIcon kInHand = IconOf(JournalIcon::InHand);
  static const QIcon kDone = IconOf(JournalIcon::Done);
  static const QIcon kFailed = IconOf(JournalIcon::Failed);
  if (StateOf(row) == LineState::Failed) return kFailed;
  if (row == m_inHand) return kInHand;
  if (StateOf(row) == LineState::Done) return kDone;
  return kNone;
}

QString JournalLines::TipOf(int row) const {
  const QString text = QString::fromStdString(At(row).text);
  const QString tip = tr("Line %1: %2").arg(At(row).number).arg(text);
  return MessageOf(row).isEmpty() ? tip : tip + '\n' + MessageOf(row);
}

}  // namespace marquell::workbench
