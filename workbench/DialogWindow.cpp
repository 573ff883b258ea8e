#include "DialogWindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressDialog>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

#include "DialogOrder.h"

namespace marquell::workbench {

using qelhost::Control;
using qelhost::ControlKind;
using qelhost::DialogModel;

namespace {

/// How much the units grow at a time, and how often at the most: to about three times the font's.
constexpr double kGrowth = 1.02;
constexpr int kMostTries = 56;

bool IsPage(ControlKind kind) {
  return kind == ControlKind::TabPage || kind == ControlKind::FormPage;
}

/// A button that was pressed when a message came up never hears of its release.
void LetGoOfButtons(const QWidget& window) {
  if (QApplication::mouseButtons() != Qt::NoButton) return;
  for (QAbstractButton* const button : window.findChildren<QAbstractButton*>()) {
    if (button->isDown()) button->setDown(false);
  }
}

}  // namespace

DialogWindow::DialogWindow(Workspace& workspace, LgIndex_t dialog, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                          Qt::WindowCloseButtonHint),
      m_workspace(workspace),
      m_deeds(workspace, [this] { return CommitTyped(); }),
      m_dialog(dialog),
      m_scroll(new QScrollArea(this)),
      m_content(new QWidget),
      m_footer(new QHBoxLayout) {
  m_scroll->setFrameShape(QFrame::NoFrame);
  m_scroll->setFocusPolicy(Qt::NoFocus);
  m_scroll->setWidget(m_content);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(m_scroll);
  const int margin = style()->pixelMetric(QStyle::PM_LayoutBottomMargin);
  m_footer->setContentsMargins(margin, margin / 2, margin, margin);
  column->addLayout(m_footer);
  Build();
  AddFooter();
  GiveTexts();
  OrderKeyboard();
  Sync();
}

DialogWindow::~DialogWindow() {
  for (const auto& view : m_views) {
    if (FieldEntry* const entry = view->Entry()) entry->Revert();
  }
}

void DialogWindow::Sync() {
  const Control& dialog = *Model().Find(m_dialog);
  const QString title = QString::fromStdString(dialog.text);
  if (windowTitle() != title) setWindowTitle(title);
  for (const auto& view : m_views) {
    const Control& control = *Model().Find(view->Id());
    const Control& holder = *Model().Find(control.parent);
    view->Sync(control, control.isVisible && (!IsPage(holder.kind) || holder.isVisible));
    FieldEntry* const entry = view->Entry();
    if (entry != nullptr && !Model().IsShown(control.id)) entry->Revert();
  }
  LayOutWhenNeeded();
  if (isVisible() == dialog.isUp) return;
  setVisible(dialog.isUp);
  if (dialog.isUp) activateWindow();
}

QWidget* DialogWindow::WidgetOf(LgIndex_t id) const {
  const ControlView* const view = Find(id);
  return view == nullptr ? nullptr : view->Widget();
}

QSize DialogWindow::WholeSize() const {
  const QSize footer = m_footer->sizeHint();
  const QSize controls = m_content->size();
  return {std::max(controls.width(), footer.width()), controls.height() + footer.height()};
}

bool DialogWindow::CommitTyped() {
  const int blockedBefore = m_blockedCount;
  for (const auto& view : m_views) {
    if (FieldEntry* const entry = view->Entry()) entry->Commit();
  }
  return m_blockedCount == blockedBefore;
}

void DialogWindow::reject() { m_deeds.CloseWindow(m_dialog); }

bool DialogWindow::event(QEvent* event) {
  // A message box stands before the dialog, or has gone; a bar asks nothing.
  const bool isBar = qobject_cast<QProgressDialog*>(QApplication::activeModalWidget()) != nullptr;
  if (event->type() == QEvent::WindowBlocked && !isBar) ++m_blockedCount;
  if (event->type() == QEvent::WindowUnblocked) {
    QTimer::singleShot(0, this, [this] { LetGoOfButtons(*this); });
  }
  return QDialog::event(event);
}

void DialogWindow::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  const QEvent::Type type = event->type();
  if (type != QEvent::FontChange && type != QEvent::StyleChange && type != QEvent::PaletteChange) {
    return;
  }
  for (const auto& view : m_views) view->TakeLook(*Model().Find(view->Id()));
  m_laidOut.clear();
  // The controls hear of a font after the window does.
  QTimer::singleShot(0, this, [this] { LayOutWhenNeeded(); });
}

void DialogWindow::closeEvent(QCloseEvent* event) {
  reject();
  event->setAccepted(!Model().IsUp(m_dialog));
}

void DialogWindow::keyPressEvent(QKeyEvent* event) {
  QWidget* const focus = focusWidget();
  switch (event->key()) {
    case Qt::Key_F1:
      m_deeds.AskForHelp(m_dialog);
      return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (auto* const button = qobject_cast<QAbstractButton*>(focus)) button->click();
      if (auto* const menu = qobject_cast<QComboBox*>(focus)) menu->showPopup();
      return;
    default:
      QDialog::keyPressEvent(event);
  }
}

void DialogWindow::showEvent(QShowEvent* event) {
  if (!m_wasPlaced) StandBesideParent();
  m_wasPlaced = true;
  QDialog::showEvent(event);
}

ControlView* DialogWindow::Find(LgIndex_t id) const {
  const auto found = std::find_if(m_views.begin(), m_views.end(),
                                  [id](const auto& view) { return view->Id() == id; });
  return found == m_views.end() ? nullptr : found->get();
}

// Controls come after what holds them, so one walk over the ids meets every holder first.
void DialogWindow::Build() {
  for (LgIndex_t id = m_dialog + 1; Model().Find(id) != nullptr; ++id) {
    const Control& control = *Model().Find(id);
    QWidget* const holder = control.parent == m_dialog ? m_content : WidgetOf(control.parent);
    if (holder == nullptr) continue;
    if (auto view = MakeControlView(control, holder, m_deeds)) m_views.push_back(std::move(view));
  }
}

/// Not the toolkit's box for such buttons: it takes the keyboard back to its first one for ever.
void DialogWindow::AddFooter() {
  if (Model().Find(m_dialog)->callbacks.help != nullptr) {
    AddButton("help", tr("&Help"), [this] { m_deeds.AskForHelp(m_dialog); });
  }
  m_footer->addStretch();
  AddButton("close", tr("&Close"), [this] { reject(); });
}

void DialogWindow::AddButton(const QString& name, const QString& text,
                             const std::function<void()>& press) {
  auto* const button = new QPushButton(text, this);
  button->setObjectName(name);
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, press);
  m_footer->addWidget(button);
}

void DialogWindow::GiveTexts() {
  const DialogTexts texts = TextsOf(Model(), m_dialog, QStringLiteral("CH"));
  for (const auto& [label, field] : texts.fieldOfLabel) {
    static_cast<QLabel*>(WidgetOf(label))->setBuddy(WidgetOf(field));
  }
  for (const auto& [id, letter] : texts.mnemonics) Find(id)->SetMnemonic(letter);
  for (const auto& view : m_views) {
    const Control& control = *Model().Find(view->Id());
    const auto name = texts.names.find(view->Id());
    const QString toolTip = QString::fromStdString(control.toolTip);
    if (name != texts.names.end()) {
      view->Widget()->setAccessibleName(name->second);
    } else if (control.kind == ControlKind::BitmapToggle || control.kind == ControlKind::RadioBox) {
      view->Widget()->setAccessibleName(toolTip);
    }
    view->Widget()->setAccessibleDescription(toolTip);
  }
}

void DialogWindow::OrderKeyboard() {
  QWidget* before = nullptr;
  const auto goOnWith = [&before](QWidget* stop) {
    if (before != nullptr) setTabOrder(before, stop);
    before = stop;
  };
  for (const LgIndex_t id : ReadingOrder(Model(), m_dialog)) {
    const ControlView* const view = Find(id);
    if (view == nullptr) continue;
    for (QWidget* const stop : view->KeyboardStops()) goOnWith(stop);
  }
  for (int i = 0; i < m_footer->count(); ++i) {
    if (QWidget* const button = m_footer->itemAt(i)->widget()) goOnWith(button);
  }
}

std::vector<QSize> DialogWindow::Needs() const {
  std::vector<QSize> needs;
  for (const auto& view : m_views) {
    const LayoutItem item = view->Ask();
    needs.push_back(item.need);
    needs.emplace_back(item.wishedWidth, item.barHeight);
  }
  return needs;
}

LayoutUnits DialogWindow::FontUnits() const {
  const QFontMetricsF metrics(font());
  return {metrics.averageCharWidth(), metrics.lineSpacing()};
}

QSize DialogWindow::RoomOfDialog(const LayoutUnits& units) const {
  const qelhost::ControlPlace& place = Model().Find(m_dialog)->place;
  return {static_cast<int>(std::ceil(place.width * units.x / kHundredths)),
          static_cast<int>(std::ceil(place.height * units.y / kHundredths))};
}

void DialogWindow::LayOutWhenNeeded() {
  std::vector<QSize> needs = Needs();
  if (needs == m_laidOut) return;
  // A longer text may widen the dialog; a shorter one does not make it jump back.
  const LayoutUnits font = FontUnits();
  LayoutUnits units = m_laidOut.empty() ? font : m_units;
  Rects rects;
  for (int i = 0; i < kMostTries; ++i) {
    rects.clear();
    const Shortage shortage = Place(m_dialog, RoomOfDialog(units), units, rects);
    if (!shortage.IsAny()) break;
    if (shortage.inWidth) units.x *= kGrowth;
    if (shortage.inHeight) units.y *= kGrowth;
  }
  m_units = units;
  m_laidOut = std::move(needs);
  for (const auto& [id, rect] : rects) WidgetOf(id)->setGeometry(rect);
  m_content->setFixedSize(RoomOfDialog(units));
  // Menus say in their tool tips what their width cuts off.
  for (const auto& view : m_views) {
    const Control& control = *Model().Find(view->Id());
    if (control.kind == ControlKind::OptionMenu) view->Sync(control, !view->Widget()->isHidden());
  }
  TakeSize();
}

/// As large as the controls; on a small screen with scroll bars.
void DialogWindow::TakeSize() {
  const QSize whole = WholeSize();
  const QScreen* const on = screen();
  const QSize room = on == nullptr ? whole : on->availableSize();
  const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  const bool isTooHigh = whole.height() > room.height();
  setMaximumSize(whole + QSize(isTooHigh ? bar : 0, 0));
  resize(maximumSize().boundedTo(room));
}

Shortage DialogWindow::Place(LgIndex_t holder, const QSize& room, const LayoutUnits& units,
                             Rects& rects) const {
  std::vector<LayoutItem> items;
  std::vector<const Control*> controls;
  for (const LgIndex_t id : Model().ChildrenOf(holder)) {
    const ControlView* const view = Find(id);
    if (view == nullptr || IsPage(Model().Find(id)->kind)) continue;
    controls.push_back(Model().Find(id));
    items.push_back(view->Ask());
    items.back().place = controls.back()->place;
  }
  std::vector<QRect> placed;
  Shortage shortage = PlaceSiblings(items, units, room, placed);
  for (std::size_t i = 0; i < controls.size(); ++i) {
    rects[controls[i]->id] = placed[i];
    const QSize pageRoom = placed[i].size() - items[i].frame - QSize(0, items[i].barHeight);
    for (const LgIndex_t page : Model().ChildrenOf(controls[i]->id)) {
      if (IsPage(Model().Find(page)->kind)) shortage.Add(Place(page, pageRoom, units, rects));
    }
  }
  return shortage;
}

/// Beside the plot rather than upon it, as far as the screen allows.
void DialogWindow::StandBesideParent() {
  const QScreen* const on = screen();
  if (parentWidget() == nullptr || on == nullptr) return;
  const QRect room = on->availableGeometry();
  const QRect parent = parentWidget()->window()->frameGeometry();
  constexpr int kFromTheTop = 48;
  const int x = std::min(parent.right() + 1, room.right() + 1 - width());
  const int y = std::min(parent.top() + kFromTheTop, room.bottom() + 1 - height());
  move(std::max(x, room.left()), std::max(y, room.top()));
}

}  // namespace marquell::workbench
