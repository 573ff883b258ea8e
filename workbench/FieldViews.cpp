#include "FieldViews.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QStyleOptionSpinBox>
#include <QWheelEvent>

#include <algorithm>
#include <functional>
#include <utility>

namespace marquell::workbench {

using qelhost::Control;

namespace {

/// As long as a number becomes that an add-on shows in a field.
constexpr char kLongNumber[] = "-1.23457e-05";
/// A menu gets room for so many characters before the whole dialog grows for it.
constexpr int kMenuCharacters = 12;

/// Scrolling over a dialog must not alter what the pointer happens to pass.
template <class Field>
class CalmWheel : public Field {
 public:
  using Field::Field;

 protected:
  void wheelEvent(QWheelEvent* event) override {
    if (this->hasFocus()) {
      Field::wheelEvent(event);
    } else {
      event->ignore();
    }
  }
};

class MenuBox : public CalmWheel<QComboBox> {
 public:
  explicit MenuBox(QWidget* parent) : CalmWheel(parent) { setFocusPolicy(Qt::StrongFocus); }

  int WidthOfText() const {
    int width = 0;
    for (int i = 0; i < count(); ++i) {
      width = std::max(width, fontMetrics().horizontalAdvance(itemText(i)));
    }
    return width;
  }
  /// What shows a text of that width whole.
  QSize SizeFor(int textWidth) const {
    QStyleOptionComboBox option;
    initStyleOption(&option);
    // Fonts run over their advance a little.
    constexpr int kOverrun = 4;
    const QSize text(textWidth + kOverrun, fontMetrics().height() + kOverrun);
    return style()->sizeFromContents(QStyle::CT_ComboBox, &option, text, this);
  }
};

class OptionMenuView : public ControlView {
 public:
  OptionMenuView(const Control& control, QWidget* holder, DialogDeeds& deeds)
      : ControlView(control.id, new MenuBox(holder)) {
    const LgIndex_t id = control.id;
    QObject::connect(Menu(), QOverload<int>::of(&QComboBox::activated), Menu(),
                     [&deeds, id](int index) { deeds.Choose(id, index + 1); });
  }
  LayoutItem Ask() const override {
    const int enough = Menu()->fontMetrics().averageCharWidth() * kMenuCharacters;
    const int whole = Menu()->WidthOfText();
    LayoutItem item;
    item.need = Menu()->SizeFor(std::min(whole, enough));
    item.need.setHeight(std::max(item.need.height(), Menu()->sizeHint().height()));
    item.wishedWidth = Menu()->SizeFor(whole).width();
    return item;
  }

 protected:
  void Show(const Control& control) override {
    const QSignalBlocker quiet(Menu());
    ShowItems(control.items);
    const int index = control.selected - 1;
    if (Menu()->currentIndex() != index) Menu()->setCurrentIndex(index);
    ShowWhole(QString::fromStdString(control.toolTip));
  }

 private:
  MenuBox* Menu() const { return static_cast<MenuBox*>(Widget()); }

  void ShowItems(const std::vector<std::string>& items) {
    QStringList texts;
    for (const std::string& item : items) texts += QString::fromStdString(item);
    if (texts == m_items) return;
    m_items = texts;
    Menu()->clear();
    Menu()->addItems(texts);
    // The list itself shows long names whole, however narrow the menu is.
    Menu()->view()->setMinimumWidth(Menu()->WidthOfText() +
                                    2 * Menu()->style()->pixelMetric(QStyle::PM_ScrollBarExtent));
  }

  /// A name that does not fit stands whole in the tool tip.
  void ShowWhole(const QString& toolTip) {
    const int textWidth = Menu()->fontMetrics().horizontalAdvance(Menu()->currentText());
    const bool isWhole = Menu()->width() >= Menu()->SizeFor(textWidth).width();
    const QString text = isWhole ? toolTip : Menu()->currentText() + '\n' + toolTip;
    if (Menu()->toolTip() != text) Menu()->setToolTip(text);
  }

  QStringList m_items;
};

class TextFieldView : public ControlView {
 public:
  TextFieldView(const Control& control, QWidget* holder, DialogDeeds& deeds)
      : ControlView(control.id, new QLineEdit(holder)) {
    const LgIndex_t id = control.id;
    m_entry = new FieldEntry(
        Edit(), Edit(), [&deeds, id](const QString& text) { deeds.Enter(id, text.toStdString()); });
  }
  LayoutItem Ask() const override {
    LayoutItem item;
    item.need = QSize(Edit()->minimumSizeHint().width(), Edit()->sizeHint().height());
    return item;
  }
  FieldEntry* Entry() const override { return m_entry; }

 protected:
  void Show(const Control& control) override {
    m_entry->Show(QString::fromStdString(control.text));
  }

 private:
  QLineEdit* Edit() const { return static_cast<QLineEdit*>(Widget()); }

  FieldEntry* m_entry;
};

/// Any text, with arrows whose meaning the add-on knows.
class ArrowField : public CalmWheel<QAbstractSpinBox> {
 public:
  ArrowField(QWidget* parent, std::function<void(bool)> step)
      : CalmWheel(parent), m_step(std::move(step)) {
    setFocusPolicy(Qt::StrongFocus);
  }
  QLineEdit* Edit() const { return lineEdit(); }
  void stepBy(int steps) override {
    for (int i = 0; i < std::abs(steps); ++i) m_step(steps > 0);
  }
  QSize sizeHint() const override {
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    // Room for the cursor behind the last character.
    constexpr int kCursor = 6;
    const QSize inside(fontMetrics().horizontalAdvance(kLongNumber) + kCursor,
                       lineEdit()->sizeHint().height());
    return style()->sizeFromContents(QStyle::CT_SpinBox, &option, inside, this);
  }

 protected:
  StepEnabled stepEnabled() const override { return StepUpEnabled | StepDownEnabled; }

 private:
  std::function<void(bool)> m_step;
};

class SpinFieldView : public ControlView {
 public:
  SpinFieldView(const Control& control, QWidget* holder, DialogDeeds& deeds)
      : ControlView(control.id, new ArrowField(holder, [&deeds, id = control.id](bool up) {
                      deeds.Spin(id, up);
                    })) {
    const LgIndex_t id = control.id;
    auto* const field = static_cast<ArrowField*>(Widget());
    m_entry = new FieldEntry(field->Edit(), field, [&deeds, id](const QString& text) {
      deeds.Enter(id, text.toStdString());
    });
  }
  FieldEntry* Entry() const override { return m_entry; }

 protected:
  void Show(const Control& control) override {
    m_entry->Show(QString::fromStdString(control.text));
  }

 private:
  FieldEntry* m_entry;
};

}  // namespace

std::unique_ptr<ControlView> MakeOptionMenuView(const Control& control, QWidget* holder,
                                                DialogDeeds& deeds) {
  return std::make_unique<OptionMenuView>(control, holder, deeds);
}

std::unique_ptr<ControlView> MakeTextFieldView(const Control& control, QWidget* holder,
                                               DialogDeeds& deeds) {
  return std::make_unique<TextFieldView>(control, holder, deeds);
}

std::unique_ptr<ControlView> MakeSpinFieldView(const Control& control, QWidget* holder,
                                               DialogDeeds& deeds) {
  return std::make_unique<SpinFieldView>(control, holder, deeds);
}

}  // namespace marquell::workbench
