#include "WorkbenchTest.h"

#include "Player.h"
#include "UserActions.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QLabel>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTabBar>
#include <QTabWidget>
#include <QtTest>

namespace marquell::workbench {

using qelhost::ControlKind;
using qelhost::DialogModel;

namespace {

/// A text as it is read, without the marks of mnemonics.
QString Read(QString text) {
  text.replace("&&", QChar(1));
  text.remove('&');
  return text.replace(QChar(1), '&');
}

}  // namespace

WorkbenchTest::WorkbenchTest() {
  host.LoadAddOns({MARQUELL_ADDON});
  host.messages.isBatch = false;
  host.messages.SetSink([this](const std::string& text, QelMessageBox_e) { said.push_back(text); });
  QObject::connect(&workspace, &Workspace::Failed, &mainWindow,
                   [this](const QString& reason) { failures.push_back(reason); });
  mainWindow.resize(400, 300);
  mainWindow.show();
  ShowCube();
}

WorkbenchTest::~WorkbenchTest() {
  workspace.Do([](qelhost::Host& h) {
    h.recorder.Stop();
    for (LgIndex_t id = 1; h.dialogs.Find(id) != nullptr; ++id) {
      h.dialogs.Drop(id);
      // What the add-on never sets itself would be left to the next test.
      qelhost::Control& control = *h.dialogs.Find(id);
      if (control.kind == ControlKind::RadioBox) control.selected = 1;
    }
    h.CloseAll();
    h.idle.Run();
  });
  host.messages.SetSink(nullptr);
  host.messages.SetBox(nullptr);
  EXPECT_EQ(host.lock.Depth(), 0U) << "a lock was left open";
}

void WorkbenchTest::ShowCube() {
  workspace.Do([](qelhost::Host& h) {
    h.CloseAll();
    h.ShowDataSet(scenario::Cube(4));
    // So that nothing is asked in passing: an answer holds for the whole process.
    h.frames.Active()->styles.layerActive.fill(true);
    h.idle.Run();
  });
}

void WorkbenchTest::OpenExample(const std::string& name) {
  workspace.Do([&name](qelhost::Host& h) {
    h.CloseAll();
    h.OpenFile(std::string(MARQUELL_EXAMPLES) + '/' + name);
    h.idle.Run();
  });
}

DialogWindow& WorkbenchTest::OpenDialog() {
  workspace.Do([](qelhost::Host& h) {
    EXPECT_TRUE(qelhost::ChooseMenu(h, "Data", "Marquell ...")) << "the entry is greyed";
  });
  // A window that was hidden does not become active once more on a screen without a window manager.
  QApplication::setActiveWindow(&Window());
  return Window();
}

DialogWindow& WorkbenchTest::Window() {
  for (LgIndex_t id = 1; host.dialogs.Find(id) != nullptr; ++id) {
    if (windows.WindowOf(id) != nullptr) return *windows.WindowOf(id);
  }
  throw std::logic_error("no dialog was opened");
}

const qelhost::Control& WorkbenchTest::Control(const std::string& textOrTip) const {
  for (LgIndex_t id = 1; host.dialogs.Find(id) != nullptr; ++id) {
    const qelhost::Control& control = *host.dialogs.Find(id);
    if (control.text == textOrTip || control.toolTip == textOrTip) return control;
  }
  throw std::logic_error("there is no control \"" + textOrTip + '"');
}

QWidget* WorkbenchTest::Widget(const std::string& textOrTip) {
  return Window().WidgetOf(Control(textOrTip).id);
}

QAbstractButton* WorkbenchTest::Button(const std::string& textOrTip) {
  auto* const button = qobject_cast<QAbstractButton*>(Widget(textOrTip));
  if (button == nullptr) throw std::logic_error("\"" + textOrTip + "\" is no button");
  return button;
}

QComboBox* WorkbenchTest::Menu(const std::string& firstItemOrTip) {
  for (LgIndex_t id = 1; host.dialogs.Find(id) != nullptr; ++id) {
    const qelhost::Control& control = *host.dialogs.Find(id);
    if (control.kind != ControlKind::OptionMenu) continue;
    const bool isIt = control.toolTip == firstItemOrTip ||
                      (!control.items.empty() && control.items.front() == firstItemOrTip);
    if (isIt) return static_cast<QComboBox*>(Window().WidgetOf(id));
  }
  throw std::logic_error("there is no menu \"" + firstItemOrTip + '"');
}

QWidget* WorkbenchTest::Named(const QString& accessibleName) {
  for (QWidget* const widget : Window().findChildren<QWidget*>()) {
    if (widget->accessibleName() == accessibleName) return widget;
  }
  throw std::logic_error("there is nothing called \"" + accessibleName.toStdString() + '"');
}

LgIndex_t WorkbenchTest::TabId() const {
  for (LgIndex_t id = 1; host.dialogs.Find(id) != nullptr; ++id) {
    if (host.dialogs.Find(id)->kind == ControlKind::Tab) return id;
  }
  throw std::logic_error("there is no tab");
}

void WorkbenchTest::Click(QWidget* widget) {
  ASSERT_TRUE(widget->isVisible() && widget->isEnabled());
  // A check box hears of clicks on its mark and its text alone.
  const bool isAtTheLeft = qobject_cast<QAbstractButton*>(widget) != nullptr;
  const QPoint at = isAtTheLeft ? QPoint(8, widget->height() / 2) : widget->rect().center();
  QTest::mouseClick(widget, Qt::LeftButton, {}, at);
}

void WorkbenchTest::ClickTab(int page) {
  QTabBar* const bar = static_cast<QTabWidget*>(Window().WidgetOf(TabId()))->tabBar();
  QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(page - 1).center());
}

void WorkbenchTest::Type(QWidget* field, const QString& text) {
  Click(field);
  QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(field, text);
}

void WorkbenchTest::ChooseItem(QComboBox* menu, const QString& item) {
  const int wanted = menu->findText(item);
  ASSERT_GE(wanted, 0) << item.toStdString();
  menu->setFocus();
  QTest::keyClick(menu, Qt::Key_Home);
  for (int i = 0; i < wanted; ++i) QTest::keyClick(menu, Qt::Key_Down);
  EXPECT_EQ(menu->currentText(), item);
}

void WorkbenchTest::ExpectAgreement() {
  const DialogWindow& window = Window();
  EXPECT_EQ(window.isVisible(), host.dialogs.IsUp(window.Dialog()));
  for (LgIndex_t id = window.Dialog() + 1; host.dialogs.Find(id) != nullptr; ++id) {
    QWidget* const widget = window.WidgetOf(id);
    ASSERT_NE(widget, nullptr) << id;
    ExpectShown(*host.dialogs.Find(id), widget);
    if (HasFailure()) return;
  }
}

void WorkbenchTest::ExpectShown(const qelhost::Control& control, QWidget* widget) {
  const QString text = QString::fromStdString(control.text);
  SCOPED_TRACE("control " + std::to_string(control.id) + " " + control.text + control.toolTip);
  if (host.dialogs.IsUp(Window().Dialog())) {
    EXPECT_EQ(widget->isVisible(), host.dialogs.IsShown(control.id));
    if (widget->isVisible()) {
      EXPECT_EQ(widget->isEnabled(), control.isSensitive);
    }
  }
  switch (control.kind) {
    case ControlKind::Label:
      EXPECT_EQ(Read(static_cast<QLabel*>(widget)->text()), text);
      break;
    case ControlKind::Button:
      EXPECT_EQ(Read(static_cast<QAbstractButton*>(widget)->text()), text);
      break;
    case ControlKind::Toggle:
    case ControlKind::BitmapToggle:
      EXPECT_EQ(static_cast<QAbstractButton*>(widget)->isChecked(), control.selected != 0);
      break;
    case ControlKind::Tab:
      EXPECT_EQ(static_cast<QTabWidget*>(widget)->currentIndex() + 1, control.selected);
      break;
    case ControlKind::Form:
      EXPECT_EQ(static_cast<QStackedWidget*>(widget)->currentIndex() + 1, control.selected);
      break;
    case ControlKind::OptionMenu: {
      auto* const menu = static_cast<QComboBox*>(widget);
      EXPECT_EQ(menu->currentIndex() + 1, control.selected);
      ASSERT_EQ(menu->count(), static_cast<int>(control.items.size()));
      for (int i = 0; i < menu->count(); ++i) {
        EXPECT_EQ(menu->itemText(i).toStdString(), control.items[static_cast<std::size_t>(i)]);
      }
      break;
    }
    case ControlKind::TextField:
    case ControlKind::SpinTextField: {
      auto* edit = qobject_cast<QLineEdit*>(widget);
      if (edit == nullptr) edit = widget->findChild<QLineEdit*>();
      if (!widget->hasFocus()) {
        EXPECT_EQ(edit->text(), text);
      }
      break;
    }
    case ControlKind::RadioBox: {
      const auto buttons = widget->findChildren<QRadioButton*>();
      for (int i = 0; i < buttons.size(); ++i) {
        EXPECT_EQ(buttons[i]->isChecked(), i + 1 == control.selected);
      }
      break;
    }
    default:
      break;
  }
}

}  // namespace marquell::workbench
