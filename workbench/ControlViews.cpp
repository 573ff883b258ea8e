#include "ControlViews.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QStyle>
#include <QStyleOptionTabWidgetFrame>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <vector>

#include "BitmapIcon.h"
#include "FieldViews.h"

namespace marquell::workbench {

using qelhost::Control;
using qelhost::ControlKind;

namespace {

QString TextOf(const std::string& text) { return QString::fromStdString(text); }

class LabelView : public ControlView {
 public:
  LabelView(const Control& control, QWidget* holder, DialogDeeds&)
      : ControlView(control.id, new QLabel(holder)) {
    Label()->setTextFormat(Qt::PlainText);
  }
  LayoutItem Ask() const override {
    LayoutItem item;
    item.need = Label()->sizeHint();
    item.lineHeight = Label()->fontMetrics().height();
    return item;
  }
  QList<QWidget*> KeyboardStops() const override { return {}; }

 protected:
  void Show(const Control& control) override {
    // An ampersand is a mark only in a label that leads to a field.
    const QString text = Label()->buddy() == nullptr ? TextOf(control.text) : Marked(control.text);
    if (Label()->text() != text) Label()->setText(text);
  }

 private:
  QLabel* Label() const { return static_cast<QLabel*>(Widget()); }
};

class ButtonView : public ControlView {
 public:
  ButtonView(const Control& control, QWidget* holder, DialogDeeds& deeds)
      : ControlView(control.id, new QPushButton(holder)) {
    // Return in a field enters the field and presses nothing.
    Button()->setAutoDefault(false);
    const LgIndex_t id = control.id;
    QObject::connect(Button(), &QPushButton::clicked, Button(), [&deeds, id] { deeds.Press(id); });
  }
  /// Styles ask for a width that suits rows of OK and Cancel; here the text is enough.
  LayoutItem Ask() const override {
    const int margin = Button()->style()->pixelMetric(QStyle::PM_ButtonMargin, nullptr, Button()) +
                       2 * Button()->style()->pixelMetric(QStyle::PM_DefaultFrameWidth);
    LayoutItem item;
    item.need = Button()->sizeHint();
    item.need.setWidth(
        Button()->fontMetrics().size(Qt::TextShowMnemonic, Button()->text()).width() + margin);
    return item;
  }

 protected:
  void Show(const Control& control) override {
    const QString text = Marked(control.text);
    if (Button()->text() != text) Button()->setText(text);
  }

 private:
  QPushButton* Button() const { return static_cast<QPushButton*>(Widget()); }
};

/// Toggles with a text and with a picture.
class ToggleView : public ControlView {
 public:
  ToggleView(const Control& control, QAbstractButton* button, DialogDeeds& deeds)
      : ControlView(control.id, button) {
    button->setCheckable(true);
    const LgIndex_t id = control.id;
    QObject::connect(button, &QAbstractButton::clicked, button,
                     [&deeds, id](bool on) { deeds.Toggle(id, on); });
  }

 protected:
  void Show(const Control& control) override {
    const QSignalBlocker quiet(Button());
    Button()->setChecked(control.selected != 0);
    const QString text = Marked(control.text);
    if (Button()->text() != text) Button()->setText(text);
  }
  QAbstractButton* Button() const { return static_cast<QAbstractButton*>(Widget()); }
};

class TextToggleView : public ToggleView {
 public:
  TextToggleView(const Control& control, QWidget* holder, DialogDeeds& deeds)
      : ToggleView(control, new QCheckBox(holder), deeds) {}
};

/// Pressed in more clearly than styles show it: which tool is on is what the dialog is about.
class PictureButton : public QToolButton {
 public:
  using QToolButton::QToolButton;

 protected:
  void paintEvent(QPaintEvent* event) override {
    QToolButton::paintEvent(event);
    if (!isChecked()) return;
    constexpr int kFrame = 2;
    QPainter painter(this);
    painter.setPen(QPen(palette().color(QPalette::Highlight), kFrame));
    painter.drawRect(rect().adjusted(kFrame / 2, kFrame / 2, -kFrame / 2, -kFrame / 2));
  }
};

class BitmapToggleView : public ToggleView {
 public:
  BitmapToggleView(const Control& control, QWidget* holder, DialogDeeds& deeds)
      : ToggleView(control, new PictureButton(holder), deeds) {
    Button()->setFocusPolicy(Qt::StrongFocus);
    Button()->setIconSize(QSize(control.bitmap.width, control.bitmap.height));
    Button()->setIcon(IconOf(control.bitmap, Button()->palette()));
  }
  void TakeLook(const Control& control) override {
    Button()->setIcon(IconOf(control.bitmap, Button()->palette()));
  }
};

class RadioBoxView : public ControlView {
 public:
  RadioBoxView(const Control& control, QWidget* holder, DialogDeeds& deeds)
      : ControlView(control.id, new QWidget(holder)) {
    auto* const column = new QVBoxLayout(Widget());
    column->setContentsMargins(0, 0, 0, 0);
    for (const std::string& item : control.items) {
      auto* const button = new QRadioButton(TextOf(item).replace('&', "&&"), Widget());
      column->addWidget(button);
      m_buttons.push_back(button);
      const LgIndex_t id = control.id;
      const auto number = static_cast<LgIndex_t>(m_buttons.size());
      QObject::connect(button, &QRadioButton::clicked, button,
                       [&deeds, id, number] { deeds.Choose(id, number); });
    }
  }
  QList<QWidget*> KeyboardStops() const override { return {m_buttons.begin(), m_buttons.end()}; }

 protected:
  void Show(const Control& control) override {
    const auto chosen = static_cast<std::size_t>(control.selected);
    for (std::size_t i = 0; i < m_buttons.size(); ++i) {
      const QSignalBlocker quiet(m_buttons[i]);
      if (i + 1 == chosen) m_buttons[i]->setChecked(true);
      m_buttons[i]->setToolTip(TextOf(control.toolTip));
    }
  }

 private:
  std::vector<QRadioButton*> m_buttons;
};

/// Says how much of it is frame.
class FramedTab : public QTabWidget {
 public:
  using QTabWidget::QTabWidget;

  QSize Frame() const {
    constexpr int kLength = 1000;
    QStyleOptionTabWidgetFrame option;
    initStyleOption(&option);
    option.rect = QRect(0, 0, kLength, kLength);
    const QRect pages = style()->subElementRect(QStyle::SE_TabWidgetTabContents, &option, this);
    return {kLength - pages.width(), kLength - tabBar()->sizeHint().height() - pages.height()};
  }
};

class TabView : public ControlView {
 public:
  TabView(const Control& control, QWidget* holder, DialogDeeds& deeds)
      : ControlView(control.id, new FramedTab(holder)) {
    const LgIndex_t id = control.id;
    QObject::connect(Tab(), &QTabWidget::currentChanged, Tab(),
                     [&deeds, id](int index) { deeds.TurnToPage(id, index + 1); });
  }
  LayoutItem Ask() const override {
    LayoutItem item;
    item.barHeight = Tab()->tabBar()->sizeHint().height();
    item.frame = static_cast<FramedTab*>(Widget())->Frame();
    item.need = QSize(Tab()->tabBar()->sizeHint().width(), 0);
    return item;
  }
  QList<QWidget*> KeyboardStops() const override { return {Tab()->tabBar()}; }

 protected:
  void Show(const Control& control) override {
    const QSignalBlocker quiet(Tab());
    if (control.selected > 0) Tab()->setCurrentIndex(control.selected - 1);
  }

 private:
  QTabWidget* Tab() const { return static_cast<QTabWidget*>(Widget()); }
};

class TabPageView : public ControlView {
 public:
  TabPageView(const Control& control, QWidget* holder, DialogDeeds&)
      : ControlView(control.id, new QWidget), m_tab(static_cast<QTabWidget*>(holder)) {
    const QSignalBlocker quiet(m_tab);
    m_tab->addTab(Widget(), {});
  }
  QList<QWidget*> KeyboardStops() const override { return {}; }

 protected:
  void Show(const Control& control) override {
    const int index = m_tab->indexOf(Widget());
    const QString text = Marked(control.text);
    if (m_tab->tabText(index) != text) m_tab->setTabText(index, text);
  }

 private:
  QTabWidget* m_tab;
};

class FormView : public ControlView {
 public:
  FormView(const Control& control, QWidget* holder, DialogDeeds&)
      : ControlView(control.id, new QStackedWidget(holder)) {}
  /// The pages' own needs are looked at on the pages.
  LayoutItem Ask() const override { return {}; }
  QList<QWidget*> KeyboardStops() const override { return {}; }

 protected:
  void Show(const Control& control) override {
    auto* const form = static_cast<QStackedWidget*>(Widget());
    if (control.selected > 0) form->setCurrentIndex(control.selected - 1);
  }
};

class FormPageView : public ControlView {
 public:
  FormPageView(const Control& control, QWidget* holder, DialogDeeds&)
      : ControlView(control.id, new QWidget) {
    static_cast<QStackedWidget*>(holder)->addWidget(Widget());
  }
  QList<QWidget*> KeyboardStops() const override { return {}; }

 protected:
  void Show(const Control&) override {}
};

using Maker = std::unique_ptr<ControlView> (*)(const Control&, QWidget*, DialogDeeds&);

template <class View>
std::unique_ptr<ControlView> Make(const Control& control, QWidget* holder, DialogDeeds& deeds) {
  return std::make_unique<View>(control, holder, deeds);
}

struct KindRow {
  ControlKind kind;
  Maker make;
};

constexpr KindRow kKinds[] = {
    {ControlKind::BitmapToggle, Make<BitmapToggleView>},
    {ControlKind::Toggle, Make<TextToggleView>},
    {ControlKind::Tab, Make<TabView>},
    {ControlKind::TabPage, Make<TabPageView>},
    {ControlKind::Form, Make<FormView>},
    {ControlKind::FormPage, Make<FormPageView>},
    {ControlKind::Label, Make<LabelView>},
    {ControlKind::OptionMenu, MakeOptionMenuView},
    {ControlKind::Button, Make<ButtonView>},
    {ControlKind::TextField, MakeTextFieldView},
    {ControlKind::SpinTextField, MakeSpinFieldView},
    {ControlKind::RadioBox, Make<RadioBoxView>},
};

}  // namespace

void ControlView::Sync(const Control& control, bool isVisible) {
  const bool isPage = control.kind == ControlKind::TabPage || control.kind == ControlKind::FormPage;
  // A page is shown and hidden by what holds it.
  if (!isPage && m_widget->isHidden() == isVisible) m_widget->setVisible(isVisible);
  if (m_widget->isEnabledTo(m_widget->parentWidget()) != control.isSensitive) {
    m_widget->setEnabled(control.isSensitive);
  }
  const QString toolTip = TextOf(control.toolTip);
  if (m_widget->toolTip() != toolTip && control.kind != ControlKind::OptionMenu) {
    m_widget->setToolTip(toolTip);
  }
  Show(control);
}

LayoutItem ControlView::Ask() const {
  LayoutItem item;
  item.need = m_widget->sizeHint();
  return item;
}

QList<QWidget*> ControlView::KeyboardStops() const { return {m_widget}; }

QString ControlView::Marked(const std::string& text) const {
  QString marked;
  bool isMarked = m_mnemonic.isNull();
  const QString plain = TextOf(text);
  // As it was chosen: the first letter of a word, when there is such a one.
  int place = -1;
  for (int i = plain.size() - 1; i >= 0 && !isMarked; --i) {
    if (plain.at(i).toUpper() != m_mnemonic) continue;
    const bool isFirst = i == 0 || plain.at(i - 1).isSpace();
    const bool isBetter = place < 0 || isFirst || !(place == 0 || plain.at(place - 1).isSpace());
    if (isBetter) place = i;
  }
  for (int i = 0; i < plain.size(); ++i) {
    if (i == place || plain.at(i) == '&') marked += '&';
    marked += plain.at(i);
  }
  return marked;
}

std::unique_ptr<ControlView> MakeControlView(const Control& control, QWidget* holder,
                                             DialogDeeds& deeds) {
  const auto row =
      std::find_if(std::begin(kKinds), std::end(kKinds),
                   [&control](const KindRow& each) { return each.kind == control.kind; });
  return row == std::end(kKinds) ? nullptr : row->make(control, holder, deeds);
}

}  // namespace marquell::workbench
