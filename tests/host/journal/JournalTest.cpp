#include "Journal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace qelhost {
namespace {

using ::testing::ElementsAre;

/// The lines as "number:text".
std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (const JournalLine& line : ParseJournal(text, "j")) {
    lines.push_back(std::to_string(line.number) + ':' + line.text);
  }
  return lines;
}

struct TextRow {
  const char* rule;
  std::string text;
  std::vector<std::string> lines;
};

class JournalText : public ::testing::TestWithParam<TextRow> {};

TEST_P(JournalText, FollowsRule) { EXPECT_EQ(LinesOf(GetParam().text), GetParam().lines); }

INSTANTIATE_TEST_SUITE_P(
    Rules, JournalText,
    ::testing::Values(
        TextRow{"Empty", "", {}}, TextRow{"NoFinalLineBreak", "A B", {"1:A B"}},
        TextRow{"FinalLineBreak", "A B\n", {"1:A B"}},
        TextRow{"CarriageReturns", "A B\r\nC D\r\n", {"1:A B", "2:C D"}},
        TextRow{"CommentsAndBlankLinesCount", "# c\n\n  \t\nA B\n  # d\nC D", {"4:A B", "6:C D"}},
        TextRow{"ByteOrderMark", "\xEF\xBB\xBF# c\nA B", {"2:A B"}},
        TextRow{"ByteOrderMarkBeforeACommand", "\xEF\xBB\xBF$!REDRAW", {"1:$!REDRAW"}},
        TextRow{"NumberSignInsideACommandStays", "A B # C", {"1:A B # C"}},
        TextRow{"BlanksInsideACommandStay", "A  B \t C", {"1:A  B \t C"}},
        TextRow{"BlanksAtTheEndOfACommandStay", " A B=\"c \t\r\n", {"1:A B=\"c \t"}},
        TextRow{"LettersBeyondASCII",
                "A \"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\"",
                {"1:A \"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\""}}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST(Journal, TakesALineOfAnyLength) {
  const std::string line = "A " + std::string(5'000'000, 'x');
  EXPECT_THAT(LinesOf("# c\n" + line + "\nB C"), ElementsAre("2:" + line, "3:B C"));
}

struct BadRow {
  const char* rule;
  std::string bytes;
};

class BadJournalText : public ::testing::TestWithParam<BadRow> {};

TEST_P(BadJournalText, IsRefusedWithTheLinesNumber) {
  try {
    ParseJournal("# fine\nA B\nC " + GetParam().bytes + "\nD E", "name");
    ADD_FAILURE() << "the text was taken";
  } catch (const JournalError& e) {
    EXPECT_STREQ(e.what(), "name:3: is not UTF-8 text");
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rules, BadJournalText,
    ::testing::Values(BadRow{"Nul", std::string(1, '\0')}, BadRow{"LoneContinuation", "\x80"},
                      BadRow{"CutSequence", "\xE2\x82"}, BadRow{"Overlong", "\xC0\xAF"},
                      BadRow{"OverlongOfThree", "\xE0\x80\xAF"},
                      BadRow{"Surrogate", "\xED\xA0\x80"},
                      BadRow{"PastTheLastCodePoint", "\xF4\x90\x80\x80"},
                      BadRow{"NoLeadByte", "\xFF"}, BadRow{"Latin1", "caf\xE9 x"}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST(Journal, IsRefusedWithTheFilesNameWhenThereIsNone) {
  try {
    ReadJournal("/nowhere/edits.journal");
    ADD_FAILURE() << "a file that is not there was read";
  } catch (const JournalError& e) {
    EXPECT_STREQ(e.what(), "/nowhere/edits.journal: cannot be read: No such file or directory");
  }
}

TEST(Journal, IsNotAFolder) {
  try {
    ReadJournal(::testing::TempDir());
    ADD_FAILURE() << "a folder was read";
  } catch (const JournalError& e) {
    EXPECT_EQ(e.what(), ::testing::TempDir() + ": is a folder, not a journal");
  }
}

TEST(Journal, WhatIsWrittenIsRead) {
  const std::string path = ::testing::TempDir() + "journal_test.journal";
  WriteJournal(path, {"# marquell journal 1", "A \"b c\"", "$!TIME 1"});
  std::vector<std::string> texts;
  for (const JournalLine& line : ReadJournal(path)) texts.push_back(line.text);
  EXPECT_THAT(texts, ElementsAre("A \"b c\"", "$!TIME 1"));
  EXPECT_FALSE(std::filesystem::exists(path + ".part"));
  std::filesystem::remove(path);
}

TEST(Journal, LeavesNothingBehindWhenItCannotBeWritten) {
  EXPECT_THROW(WriteJournal("/nowhere/edits.journal", {"A B"}), JournalError);
  const std::string folder = ::testing::TempDir() + "journal_test_folder";
  std::filesystem::create_directories(folder + "/inside");
  EXPECT_THROW(WriteJournal(folder, {"A B"}), JournalError);
  EXPECT_FALSE(std::filesystem::exists(folder + ".part"));
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace qelhost
