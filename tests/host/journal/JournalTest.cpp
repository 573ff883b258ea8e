#include "Journal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace qelhost {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;
namespace fs = std::filesystem;

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

struct BadLineRow {
  const char* rule;
  std::string bytes;
};

class BadJournalText : public ::testing::TestWithParam<BadLineRow> {};

TEST_P(BadJournalText, IsRefusedWithTheLinesNumber) {
  try {
    ParseJournal("# fine\nA B\nC " + GetParam().bytes + "\nD E", "name");
    ADD_FAILURE() << "the text was taken";
  } catch (const JournalError& e) {
    EXPECT_STREQ(e.what(), "name:3: is not UTF-8 text");
  }
}

INSTANTIATE_TEST_SUITE_P(Rules, BadJournalText,
                         ::testing::Values(BadLineRow{"Nul", std::string(1, '\0')},
                                           BadLineRow{"LoneContinuation", "\x80"},
                                           BadLineRow{"CutSequence", "\xE2\x82"},
                                           BadLineRow{"Overlong", "\xC0\xAF"},
                                           BadLineRow{"OverlongOfThree", "\xE0\x80\xAF"},
                                           BadLineRow{"Surrogate", "\xED\xA0\x80"},
                                           BadLineRow{"PastTheLastCodePoint", "\xF4\x90\x80\x80"},
                                           BadLineRow{"NoLeadByte", "\xFF"},
                                           BadLineRow{"Latin1", "caf\xE9 x"}),
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

/// A folder of its own, removed with all that is in it.
class WrittenJournal : public ::testing::Test {
 protected:
  WrittenJournal() : folder(::testing::TempDir() + "journal_test_" + std::to_string(getpid())) {
    fs::create_directories(folder);
  }
  ~WrittenJournal() override { fs::remove_all(folder); }

  std::string In(const std::string& name) const { return folder + "/" + name; }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }
  static void Save(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
  }
  static std::string TextOf(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
  }

  const std::string folder;
};

/// While it lives, files of this process may have no more bytes: what a full disk looks like.
class ShortFiles {
 public:
  explicit ShortFiles(rlim_t bytes) : m_signal(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &m_before);
    rlimit limit = m_before;
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~ShortFiles() {
    setrlimit(RLIMIT_FSIZE, &m_before);
    std::signal(SIGXFSZ, m_signal);
  }
  ShortFiles(const ShortFiles&) = delete;
  ShortFiles& operator=(const ShortFiles&) = delete;

 private:
  rlimit m_before{};
  void (*m_signal)(int);
};

/// What keeps a journal from being written; empty when it was.
std::string WriteError(const std::string& path) {
  try {
    WriteJournal(path, {"# marquell journal 1", "A \"b c\"", "$!TIME 1"});
    return {};
  } catch (const JournalError& e) {
    return e.what();
  }
}

TEST_F(WrittenJournal, IsReadAgain) {
  ASSERT_EQ(WriteError(In("a.journal")), "");
  std::vector<std::string> texts;
  for (const JournalLine& line : ReadJournal(In("a.journal"))) texts.push_back(line.text);
  EXPECT_THAT(texts, ElementsAre("A \"b c\"", "$!TIME 1"));
  EXPECT_THAT(Names(), ElementsAre("a.journal"));
}

TEST_F(WrittenJournal, LeavesOtherFilesAlone) {
  Save(In("a.journal.part"), "mine");
  ASSERT_EQ(WriteError(In("a.journal")), "");
  EXPECT_THAT(Names(), UnorderedElementsAre("a.journal", "a.journal.part"));
  EXPECT_EQ(TextOf(In("a.journal.part")), "mine");
}

TEST_F(WrittenJournal, GoesWhereALinkLeads) {
  fs::create_directories(In("kept"));
  Save(In("kept/real.journal"), "old");
  fs::create_symlink("kept/real.journal", In("a.journal"));
  ASSERT_EQ(WriteError(In("a.journal")), "");
  EXPECT_EQ(fs::read_symlink(In("a.journal")), "kept/real.journal");
  EXPECT_EQ(TextOf(In("kept/real.journal")), "# marquell journal 1\nA \"b c\"\n$!TIME 1\n");
}

TEST_F(WrittenJournal, LeavesTheOldOneWhereThereIsNoRoom) {
  Save(In("a.journal"), "old");
  std::string error;
  {
    constexpr rlim_t kRoom = 24;
    const ShortFiles full(kRoom);
    error = WriteError(In("a.journal"));
  }
  EXPECT_EQ(error, In("a.journal") + ": cannot be written: File too large");
  EXPECT_EQ(TextOf(In("a.journal")), "old");
  EXPECT_THAT(Names(), ElementsAre("a.journal"));
}

TEST_F(WrittenJournal, SaysWhyItIsNot) {
  EXPECT_EQ(WriteError(In("nowhere/a.journal")),
            In("nowhere/a.journal") + ": cannot be written: its folder does not exist");
  fs::create_directories(In("folder/inside"));
  EXPECT_EQ(WriteError(In("folder")), In("folder") + ": cannot be written: Is a directory");
  EXPECT_EQ(WriteError("/dev/full"), "/dev/full: cannot be written: is no regular file");
  EXPECT_THAT(Names(), ElementsAre("folder"));
}

}  // namespace
}  // namespace qelhost
