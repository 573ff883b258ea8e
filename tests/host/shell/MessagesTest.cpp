#include "Menus.h"
#include "Messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qelhost {
namespace {

using ::testing::ElementsAre;

TEST(Messages, GoToTheSinkWithTheirKind) {
  Messages messages;
  std::vector<std::string> shown;
  messages.SetSink([&shown](const std::string& text, QelMessageBox_e kind) {
    shown.push_back(text + ' ' + std::to_string(kind));
  });
  EXPECT_TRUE(messages.Show("information", MessageBox_Information));
  EXPECT_TRUE(messages.Show("error", MessageBox_Error));
  EXPECT_FALSE(messages.Show("question", MessageBox_YesNo));
  EXPECT_THAT(shown, ElementsAre("information 0", "error 1", "question 4"));
}

TEST(Messages, QuestionsAreAnsweredNoUnlessAnAnswerWasQueued) {
  Messages messages;
  messages.QueueAnswer(true);
  messages.QueueAnswer(false);
  messages.QueueAnswer(true);
  EXPECT_TRUE(messages.Show("a", MessageBox_YesNo));
  // What asks nothing uses no answer up.
  EXPECT_TRUE(messages.Show("b", MessageBox_Warning));
  EXPECT_FALSE(messages.Show("c", MessageBox_YesNo));
  EXPECT_TRUE(messages.Show("d", MessageBox_OkCancel));
  EXPECT_FALSE(messages.Show("e", MessageBox_OkCancel));
}

TEST(Messages, AreAnsweredByTheBoxOfAWindow) {
  Messages messages;
  std::vector<std::string> shown;
  messages.SetBox([&shown](const std::string& text, QelMessageBox_e) {
    shown.push_back(text);
    return text == "yes";
  });
  messages.QueueAnswer(false);
  EXPECT_FALSE(messages.Show("batch", MessageBox_YesNo));
  EXPECT_TRUE(shown.empty()) << "there is no user";
  messages.isBatch = false;
  EXPECT_TRUE(messages.Show("yes", MessageBox_YesNo));
  EXPECT_FALSE(messages.Show("no", MessageBox_OkCancel));
  EXPECT_TRUE(messages.Show("told", MessageBox_Information));
  EXPECT_THAT(shown, ElementsAre("yes", "no", "told"));
}

int chosen = 0;
void Choose() { ++chosen; }

TEST(Menus, AGreyedEntryCannotBeChosen) {
  chosen = 0;
  Menus menus;
  menus.AddSeparator("Data");
  menus.AddOption("Data", "Do ...", 1, Choose);
  menus.SetSensitivity("Data", "Do ...", false);
  EXPECT_FALSE(menus.Choose("Data", "Do ..."));
  menus.SetSensitivity("Data", "Do ...", true);
  EXPECT_TRUE(menus.Choose("Data", "Do ..."));
  EXPECT_FALSE(menus.Choose("Data", "Other"));
  EXPECT_FALSE(menus.Choose("File", "Do ..."));
  EXPECT_FALSE(menus.Choose("Data", ""));
  EXPECT_EQ(chosen, 1);
}

}  // namespace
}  // namespace qelhost
