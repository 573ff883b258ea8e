// What a user types into a field, until it is entered.
#pragma once

#include <QLineEdit>
#include <QObject>

#include <functional>

namespace marquell::workbench {

/// Watches a field. What is typed is entered by Return, or when the keyboard goes elsewhere, even
/// to another window: a click into the plot may use what stands in the field.
class FieldEntry : public QObject {
 public:
  /// focusWidget: who has the keyboard, the edit itself or what is around it.
  FieldEntry(QLineEdit* edit, QWidget* focusWidget, std::function<void(const QString&)> enter);

  /// Shows the model's text. What is typed and not entered yet is kept unless that text is another
  /// one than before.
  void Show(const QString& text);
  bool IsTyped() const { return m_isTyped; }
  /// Enters what is typed; does nothing when nothing is.
  void Commit();
  /// Forgets what is typed.
  void Revert();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QLineEdit* m_edit;
  std::function<void(const QString&)> m_enter;
  QString m_modelText;
  bool m_isTyped = false;
  bool m_isShowing = false;
};

}  // namespace marquell::workbench
