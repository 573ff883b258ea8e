#include "ApiTesting.h"

#include "qelvane/QelGUI.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qelhost {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> calls;

void OnValue(LgIndex_t value) { calls.push_back("value " + std::to_string(value)); }
void OnVoid() { calls.emplace_back("void"); }
bool OnText(const char* text) {
  calls.push_back(std::string("text ") + text);
  return true;
}

class Dialogs : public ::testing::Test {
 protected:
  void SetUp() override { calls.clear(); }
  const LgIndex_t dialog =
      QelGUIDialogCreateModeless(-1, 1000, 1000, "Title", nullptr, OnVoid, OnVoid);
};

TEST_F(Dialogs, RunInitAtEachLaunchAndNothingAtDrop) {
  const LgIndex_t other = QelGUIDialogCreateModeless(
      -1, 1, 1, "T", [] { calls.emplace_back("init"); }, OnVoid, OnVoid);
  EXPECT_GT(other, 0);
  EXPECT_FALSE(QelGUIDialogIsUp(other));
  QelGUIDialogLaunch(other);
  QelGUIDialogLaunch(other);
  EXPECT_TRUE(QelGUIDialogIsUp(other));
  QelGUIDialogDrop(other);
  EXPECT_FALSE(QelGUIDialogIsUp(other));
  EXPECT_THAT(calls, ElementsAre("init", "init"));
}

TEST_F(Dialogs, SettersNeverCallBack) {
  const char pixel[3] = {0, 0, 0};
  const LgIndex_t bitmap =
      QelGUIBitmapToggleAdd(dialog, 0, 0, 1, 1, 1, 1, pixel, true, 0, 0, 0, OnValue);
  const LgIndex_t toggle = QelGUIToggleAdd(dialog, 0, 0, 1, 1, "t", OnValue);
  const LgIndex_t menu = QelGUIOptionMenuAdd(dialog, 0, 0, 1, 1, "a,b", OnValue);
  const LgIndex_t field = QelGUITextFieldAdd(dialog, 0, 0, 1, 1, OnText);
  const LgIndex_t spin = QelGUISpinTextFieldAdd(dialog, 0, 0, 1, 1, OnText, OnVoid, OnVoid);
  const LgIndex_t button = QelGUIButtonAdd(dialog, 0, 0, 1, 1, "b", OnVoid);
  const LgIndex_t tab = QelGUITabAdd(dialog, 0, 0, 1, 1, OnValue, OnValue);
  const LgIndex_t form = QelGUIFormAdd(dialog, 0, 0, 1, 1);
  QelGUITabAddPage(tab, "one");
  QelGUITabAddPage(tab, "two");
  QelGUIFormAddPage(form);
  QelGUIDialogLaunch(dialog);
  for (const LgIndex_t id : {bitmap, toggle}) {
    QelGUIToggleSet(id, true);
    QelGUISetToolTip(id, "tip");
  }
  QelGUIOptionMenuSet(menu, 2);
  QelGUIOptionMenuAppendItem(menu, "c");
  for (const LgIndex_t id : {field, spin}) QelGUITextFieldSetString(id, "1");
  QelGUIButtonSetText(button, "c");
  QelGUITabSetCurrentPage(tab, 2);
  QelGUIFormSetCurrentPage(QelGUIFormAddPage(form));
  QelGUISetSensitivity(button, false);
  QelGUISetVisibility(button, false);
  EXPECT_THAT(calls, IsEmpty());
}

TEST_F(Dialogs, MenusCountTheirItems) {
  const LgIndex_t menu = QelGUIOptionMenuAdd(dialog, 0, 0, 1, 1, "a,b", OnValue);
  EXPECT_EQ(QelGUIOptionMenuGetItemCount(menu), 2);
  EXPECT_EQ(QelGUIOptionMenuGet(menu), 1);
  QelGUIOptionMenuSet(menu, 2);
  QelGUIOptionMenuSet(menu, 3);
  QelGUIOptionMenuSet(menu, 0);
  EXPECT_EQ(QelGUIOptionMenuGet(menu), 2);
  QelGUIOptionMenuDeleteAllItems(menu);
  EXPECT_EQ(QelGUIOptionMenuGet(menu), 0);
  EXPECT_EQ(QelGUIOptionMenuGetItemCount(menu), 0);
  QelGUIOptionMenuAppendItem(menu, "c");
  EXPECT_EQ(QelGUIOptionMenuGet(menu), 1);
  const LgIndex_t box =
      QelGUIRadioBoxAdd(dialog, 0, 0, 1, 1, "a", "b", nullptr, nullptr, nullptr, OnValue);
  EXPECT_EQ(QelGUIRadioBoxGetToggle(box), 1);
  EXPECT_EQ(QelGUIRadioBoxGetToggle(menu), 0);
}

struct NumberRow {
  const char* rule;
  const char* text;
  bool isNumber;
  double number;
};

class FieldNumber : public ::testing::TestWithParam<NumberRow> {};

TEST_P(FieldNumber, FollowsRule) {
  const LgIndex_t dialog = QelGUIDialogCreateModeless(-1, 1, 1, "T", nullptr, nullptr, nullptr);
  const LgIndex_t field = QelGUITextFieldAdd(dialog, 0, 0, 1, 1, nullptr);
  QelGUITextFieldSetString(field, GetParam().text);
  double number = -77;
  EXPECT_EQ(QelGUITextFieldGetDouble(field, &number), GetParam().isNumber);
  EXPECT_EQ(number, GetParam().isNumber ? GetParam().number : -77);
}

INSTANTIATE_TEST_SUITE_P(Rules, FieldNumber,
                         ::testing::Values(NumberRow{"Plain", "1.5", true, 1.5},
                                           NumberRow{"BlanksAround", " \t-2e3\n ", true, -2000},
                                           NumberRow{"Hexadecimal", "0x10", true, 16},
                                           NumberRow{"NothingAfterThePoint", "3.", true, 3},
                                           NumberRow{"Comma", "1,5", false, 0},
                                           NumberRow{"Rest", "1.5 m", false, 0},
                                           NumberRow{"Empty", "", false, 0},
                                           NumberRow{"OnlyBlanks", "  ", false, 0}),
                         [](const auto& row) { return std::string(row.param.rule); });

TEST_F(Dialogs, IdsOfAnotherKindAreIgnored) {
  const LgIndex_t label = QelGUILabelAdd(dialog, 0, 0, "1.5");
  double number = 0.0;
  EXPECT_FALSE(QelGUITextFieldGetDouble(label, &number));
  QelGUIDialogLaunch(label);
  EXPECT_FALSE(QelGUIDialogIsUp(label));
  EXPECT_EQ(QelGUITabAddPage(label, "page"), -2);
  EXPECT_EQ(QelGUIFormAddPage(dialog), -2);
  EXPECT_EQ(QelGUIOptionMenuGetItemCount(label), 0);
  EXPECT_EQ(QelGUIButtonAdd(label, 0, 0, 1, 1, "b", OnVoid), -2);
  const char pixel[3] = {0, 0, 0};
  EXPECT_EQ(QelGUIBitmapToggleAdd(dialog, 0, 0, 1, 1, 0, 1, pixel, false, 0, 0, 0, OnValue), -2);
}

}  // namespace
}  // namespace qelhost
