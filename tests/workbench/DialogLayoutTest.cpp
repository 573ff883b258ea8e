// Nothing is cut off and nothing overlaps, with whatever font, palette and page.
#include "WorkbenchTest.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionSpinBox>
#include <QToolButton>
#include <QtTest>

namespace marquell::workbench {
namespace {

constexpr const char* kToolNames[] = {"",
                                      "Pick individual cells/nodes",
                                      "Define pick area using a rectangle",
                                      "Define pick area using a circle",
                                      "Define pick area using a polygon",
                                      "Define pick area using a cube",
                                      "Define pick area using a sphere"};

struct Look {
  const char* name;
  int points;
  bool isDark;
};

std::ostream& operator<<(std::ostream& out, const Look& look) { return out << look.name; }

QPalette Dark() {
  QPalette palette(QColor(50, 52, 56));
  palette.setColor(QPalette::Base, QColor(30, 31, 34));
  palette.setColor(QPalette::Text, QColor(230, 230, 230));
  return palette;
}

class DialogLayout : public WorkbenchTest, public testing::WithParamInterface<Look> {
 protected:
  DialogLayout() : m_palette(QApplication::palette()), m_font(QApplication::font()) {
    QFont font = m_font;
    font.setPointSize(GetParam().points);
    QApplication::setFont(font);
    if (GetParam().isDark) QApplication::setPalette(Dark());
    OpenDialog();
  }
  ~DialogLayout() override {
    QApplication::setFont(m_font);
    QApplication::setPalette(m_palette);
  }

  QRect PlaceOf(QWidget* widget) {
    return {widget->mapTo(&Window(), QPoint(0, 0)), widget->size()};
  }

  std::vector<const qelhost::Control*> Shown() {
    std::vector<const qelhost::Control*> shown;
    for (LgIndex_t id = Window().Dialog() + 1; host.dialogs.Find(id) != nullptr; ++id) {
      if (Window().WidgetOf(id)->isVisible()) shown.push_back(host.dialogs.Find(id));
    }
    return shown;
  }

  void ExpectApart();
  void ExpectWhole(const qelhost::Control& control, QWidget* widget);
  void SavePicture(const QString& what);

  void Look(const QString& what) {
    SCOPED_TRACE(what.toStdString());
    QTest::qWait(1);
    ExpectApart();
    for (const qelhost::Control* const control : Shown()) {
      ExpectWhole(*control, Window().WidgetOf(control->id));
    }
    SavePicture(what);
  }

 private:
  QPalette m_palette;
  QFont m_font;
};

void DialogLayout::ExpectApart() {
  const auto shown = Shown();
  for (const qelhost::Control* const a : shown) {
    const bool isPage =
        a->kind == qelhost::ControlKind::TabPage || a->kind == qelhost::ControlKind::FormPage;
    if (isPage) continue;
    QWidget* const widget = Window().WidgetOf(a->id);
    EXPECT_TRUE(widget->parentWidget()->rect().contains(widget->geometry()))
        << a->text << a->toolTip << " sticks out";
    for (const qelhost::Control* const b : shown) {
      if (b->id <= a->id || b->parent != a->parent) continue;
      EXPECT_FALSE(PlaceOf(widget).intersects(PlaceOf(Window().WidgetOf(b->id))))
          << a->text << a->toolTip << " and " << b->text << b->toolTip;
    }
  }
}

void DialogLayout::ExpectWhole(const qelhost::Control& control, QWidget* widget) {
  SCOPED_TRACE(control.text + control.toolTip);
  if (auto* const button = qobject_cast<QPushButton*>(widget)) {
    QStyleOptionButton option;
    option.initFrom(button);
    const QRect inside =
        button->style()->subElementRect(QStyle::SE_PushButtonContents, &option, button);
    const QSize text = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
    EXPECT_GE(inside.width(), text.width());
    EXPECT_GE(inside.height(), text.height());
  } else if (auto* const menu = qobject_cast<QComboBox*>(widget)) {
    QStyleOptionComboBox option;
    option.initFrom(menu);
    const QRect inside = menu->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                       QStyle::SC_ComboBoxEditField, menu);
    EXPECT_GE(inside.width(), menu->fontMetrics().horizontalAdvance(menu->currentText()));
    EXPECT_GE(inside.height(), menu->fontMetrics().height());
    EXPECT_GE(menu->height(), menu->sizeHint().height());
  } else if (auto* const field = qobject_cast<QLineEdit*>(widget)) {
    EXPECT_GE(field->height(), field->sizeHint().height());
    EXPECT_GE(field->width(), field->fontMetrics().horizontalAdvance("*1.23456e+07"));
  } else if (auto* const spin = qobject_cast<QAbstractSpinBox*>(widget)) {
    auto* const inner = spin->findChild<QLineEdit*>();
    EXPECT_GE(spin->height(), spin->sizeHint().height());
    EXPECT_GT(inner->width(), spin->fontMetrics().horizontalAdvance("-1.23457e-05"));
  } else if (qobject_cast<QCheckBox*>(widget) != nullptr ||
             qobject_cast<QLabel*>(widget) != nullptr ||
             qobject_cast<QToolButton*>(widget) != nullptr ||
             control.kind == qelhost::ControlKind::RadioBox) {
    EXPECT_GE(widget->width(), widget->sizeHint().width());
    EXPECT_GE(widget->height(), widget->sizeHint().height());
    for (QRadioButton* const radio : widget->findChildren<QRadioButton*>()) {
      EXPECT_GE(radio->width(), radio->sizeHint().width());
      EXPECT_GE(radio->height(), radio->sizeHint().height());
    }
  }
}

/// For looking at, when a folder is named.
void DialogLayout::SavePicture(const QString& what) {
  const QString into = qEnvironmentVariable("MARQUELL_PICTURES");
  if (into.isEmpty()) return;
  Window().setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
  Window().resize(Window().WholeSize());
  const QPixmap picture = Window().grab();
  const QString name = QString("%1/%2-%3-x%4.png")
                           .arg(into, QString(GetParam().name), what)
                           .arg(picture.devicePixelRatio());
  EXPECT_TRUE(picture.save(name)) << name.toStdString();
}

TEST_P(DialogLayout, IsWholeOnEveryPage) {
  for (const int page : {1, 2}) {
    ClickTab(page);
    ASSERT_EQ(Control("Alter").kind, qelhost::ControlKind::TabPage);
    int n = 0;
    for (const char* const tool : kToolNames) {
      if (*tool != '\0') Click(Button(tool));
      Look(QString("page%1-tool%2").arg(page).arg(n++));
    }
    Click(Button(kToolNames[6]));
  }
}

TEST_P(DialogLayout, IsWholeWithTheSeedText) {
  Click(Button("Define pick area using a rectangle"));
  workspace.Act("$!GEOMETRY RECTANGLE X=-1 Y=-1 WIDTH=2 HEIGHT=2");
  auto* const box = Widget("Limit picked cells to surface only or drill through");
  Click(box->findChildren<QRadioButton*>().at(1));
  Click(Button("Apply Alteration"));
  ASSERT_TRUE(Widget("Identify a surface 'seed' point.")->isVisible());
  Look("seed");
}

TEST_P(DialogLayout, TakesNoMoreRoomThanAScreenHas) {
  const bool isLarge = GetParam().points > 9;
  EXPECT_LE(Window().WholeSize().width(), isLarge ? 800 : 600);
  EXPECT_LE(Window().WholeSize().height(), isLarge ? 1000 : 700);
}

INSTANTIATE_TEST_SUITE_P(Looks, DialogLayout,
                         testing::Values(Look{"Light9", 9, false}, Look{"Light14", 14, false},
                                         Look{"Dark9", 9, true}, Look{"Dark14", 14, true}),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace marquell::workbench
