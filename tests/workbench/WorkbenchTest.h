// A user at the widgets: a host with the built add-on, a workspace and the windows on it.
#pragma once

#include "User.h"

#include "DialogWindows.h"
#include "JournalPanel.h"
#include "Workspace.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QTemporaryDir>

#include <string>
#include <vector>

namespace marquell::workbench {

class WorkbenchTest : public testing::Test {
 protected:
  WorkbenchTest();
  ~WorkbenchTest() override;

  using Values = std::vector<std::vector<double>>;

  /// What is shown is closed; then the cube, or the file.
  void ShowCube();
  void OpenExample(const std::string& name);
  Values ValuesNow() const { return scenario::ValuesOf(*host.frames.Active()->Data()); }

  /// By the add-on's entry in the menu.
  DialogWindow& OpenDialog();
  DialogWindow& Window();
  /// By its text or its tool tip.
  const qelhost::Control& Control(const std::string& textOrTip) const;
  QWidget* Widget(const std::string& textOrTip);
  QAbstractButton* Button(const std::string& textOrTip);
  QComboBox* Menu(const std::string& firstItemOrTip);
  QWidget* ModifierField() { return Widget("Define modifier for picked notes/cells"); }
  /// By what assistive programs are told.
  QWidget* Named(const QString& accessibleName);
  LgIndex_t TabId() const;

  void Click(QWidget* widget);
  /// Clicks where the label of a tab is.
  void ClickTab(int page);
  void Type(QWidget* field, const QString& text);
  /// Goes to the item by the keyboard.
  void ChooseItem(QComboBox* menu, const QString& item);

  /// Every widget shows what the model says. Fields in which something is typed are left out.
  void ExpectAgreement();

  qelhost::Host& host = qelhost::Host::Instance();
  Workspace workspace{host};
  QWidget mainWindow;
  DialogWindows windows{workspace, &mainWindow};
  QTemporaryDir folder;
  std::vector<std::string> said;
  std::vector<QString> failures;

 private:
  void ExpectShown(const qelhost::Control& control, QWidget* widget);
};

}  // namespace marquell::workbench
