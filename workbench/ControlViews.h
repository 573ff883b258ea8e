// An add-on's controls as Qt's own.
#pragma once

#include <QSize>
#include <QWidget>

#include <memory>

#include "DialogDeeds.h"
#include "DialogLayout.h"
#include "FieldEntry.h"

namespace marquell::workbench {

/// One control of a dialog and the widget that shows it. The widget belongs to its parent widget.
/// Nothing that Show does calls back: only the user's own clicks and keys become deeds.
class ControlView {
 public:
  ControlView(LgIndex_t id, QWidget* widget) : m_id(id), m_widget(widget) {}
  virtual ~ControlView() = default;
  ControlView(const ControlView&) = delete;
  ControlView& operator=(const ControlView&) = delete;

  LgIndex_t Id() const { return m_id; }
  QWidget* Widget() const { return m_widget; }

  /// Brings the widget to what the model says, where it differs.
  void Sync(const qelhost::Control& control, bool isVisible);
  /// What the layout has to know, the place left out.
  virtual LayoutItem Ask() const;
  /// The widgets that take the keyboard, in their order.
  virtual QList<QWidget*> KeyboardStops() const;
  /// Null but for fields.
  virtual FieldEntry* Entry() const { return nullptr; }
  /// Another font, style or palette.
  virtual void TakeLook(const qelhost::Control&) {}

  void SetMnemonic(QChar letter) { m_mnemonic = letter; }

 protected:
  virtual void Show(const qelhost::Control& control) = 0;
  /// The text with the mnemonic marked, when it occurs in it.
  QString Marked(const std::string& text) const;

 private:
  LgIndex_t m_id;
  QWidget* m_widget;
  QChar m_mnemonic;
};

/// Makes the view of a control in its holder's widget; of a page, on its tab or form.
std::unique_ptr<ControlView> MakeControlView(const qelhost::Control& control, QWidget* holder,
                                             DialogDeeds& deeds);

}  // namespace marquell::workbench
