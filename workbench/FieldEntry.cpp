#include "FieldEntry.h"

#include <QEvent>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QScopedValueRollback>

#include <utility>

namespace marquell::workbench {

FieldEntry::FieldEntry(QLineEdit* edit, QWidget* focusWidget,
                       std::function<void(const QString&)> enter)
    : QObject(edit), m_edit(edit), m_enter(std::move(enter)) {
  connect(edit, &QLineEdit::textChanged, this, [this] {
    if (!m_isShowing) m_isTyped = true;
  });
  focusWidget->installEventFilter(this);
}

void FieldEntry::Show(const QString& text) {
  const bool isNews = text != m_modelText;
  m_modelText = text;
  if (m_isTyped && !isNews) return;
  m_isTyped = false;
  if (m_edit->text() == text) return;
  const QScopedValueRollback<bool> showing(m_isShowing, true);
  m_edit->setText(text);
}

void FieldEntry::Commit() {
  // Taken back first: a message box that the entry brings up takes the keyboard away once more.
  if (std::exchange(m_isTyped, false)) m_enter(m_edit->text());
}

void FieldEntry::Revert() {
  m_isTyped = false;
  Show(m_modelText);
}

bool FieldEntry::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusOut) {
    if (static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason) Commit();
  } else if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
      Commit();
      return true;
    }
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace marquell::workbench
