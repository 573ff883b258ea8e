// An add-on's dialog as a window of its own.
#pragma once

#include <QDialog>

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "ControlViews.h"
#include "DialogDeeds.h"
#include "DialogLayout.h"

class QHBoxLayout;
class QScrollArea;

namespace marquell::workbench {

/// Shows one dialog of the host's model, laid out as its author placed the controls, in units that
/// let all of them stand free of each other with the font and the style in use. What the user does
/// goes to the model; what is shown comes from it, by Sync after every deed.
class DialogWindow : public QDialog {
  Q_OBJECT

 public:
  DialogWindow(Workspace& workspace, LgIndex_t dialog, QWidget* parent);
  ~DialogWindow() override;

  /// Shows the model as it is now.
  void Sync();
  LgIndex_t Dialog() const { return m_dialog; }
  /// Null when the dialog has no such control.
  QWidget* WidgetOf(LgIndex_t id) const;
  /// The window without scroll bars.
  QSize WholeSize() const;

  /// Enters what is typed in a field and not entered yet. Answers whether that went by without a
  /// message to the user.
  bool CommitTyped();

  void reject() override;

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  using Rects = std::map<LgIndex_t, QRect>;

  const qelhost::DialogModel& Model() const { return m_deeds.Model(); }
  ControlView* Find(LgIndex_t id) const;
  void Build();
  void GiveTexts();
  void OrderKeyboard();
  void AddFooter();
  void AddButton(const QString& name, const QString& text, const std::function<void()>& press);

  void LayOutWhenNeeded();
  /// Everything that the layout depends on, to see when it has to be made anew.
  std::vector<QSize> Needs() const;
  LayoutUnits FontUnits() const;
  Shortage Place(LgIndex_t holder, const QSize& room, const LayoutUnits& units, Rects& rects) const;
  QSize RoomOfDialog(const LayoutUnits& units) const;
  void TakeSize();
  void StandBesideParent();

  Workspace& m_workspace;
  DialogDeeds m_deeds;
  LgIndex_t m_dialog;
  QScrollArea* m_scroll;
  QWidget* m_content;
  QHBoxLayout* m_footer;
  std::vector<std::unique_ptr<ControlView>> m_views;
  LayoutUnits m_units;
  std::vector<QSize> m_laidOut;
  int m_blockedCount = 0;
  bool m_wasPlaced = false;
};

}  // namespace marquell::workbench
