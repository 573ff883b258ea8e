// Targets that are no plain new files, and what others keep beside them.
#include "CompareData.h"
#include "DataFiles.h"
#include "Meshes.h"
#include "ProgramRun.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace clitest {

namespace {

namespace fs = std::filesystem;

class OddTarget : public ProgramTest {
 protected:
  OddTarget() {
    WriteData(Path("in.vtu"), MixedVolume(), {Layout::Mode::kRawAppended, "none"});
    WriteData(Path("in.vtm"), Blocks(), {Layout::Mode::kRawAppended, "none"});
    WriteText("edits.journal",
              Journal({"Marquell ALTERELEMENT VARIABLE=\"T\" MODIFIER=\"+1\" ZONE=1 ELEMENT=1"}));
    const Outcome outcome = Run({"run", "edits.journal", "in.vtu", "-o", "expected.vtu"});
    m_expected = outcome.exitCode == 0 ? ReadText("expected.vtu") : outcome.err;
    fs::remove(Path("expected.vtu"));
  }

  Outcome WriteTo(const std::string& target, std::vector<std::string> more = {"--force"}) {
    std::vector<std::string> arguments = {"run", "edits.journal", "in.vtu", "-o", target};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Run(arguments);
  }

  void ExpectRefused(const Outcome& outcome, int exitCode, const std::string& target) {
    EXPECT_EQ(outcome.exitCode, exitCode);
    EXPECT_TRUE(IsOneLineWith(outcome.err, {target}));
  }

  std::string m_expected;
};

TEST_F(OddTarget, PipeIsRefusedAndStays) {
  ASSERT_EQ(mkfifo(Path("out.vtu").c_str(), 0600), 0);
  const auto namesBefore = Listing();
  ExpectRefused(WriteTo("out.vtu"), 3, "out.vtu");
  EXPECT_TRUE(fs::is_fifo(Path("out.vtu")));
  EXPECT_EQ(Listing(), namesBefore);
}

// Never a device of the machine: with a fault, whoever may make one would lose it.
TEST_F(OddTarget, DeviceIsRefusedAndStays) {
  constexpr dev_t kNowhere = 0x103;
  if (mknod(Path("device").c_str(), S_IFCHR | 0600, kNowhere) != 0) {
    GTEST_SKIP() << "no device can be made here: " << std::strerror(errno);
  }
  fs::create_symlink("device", Path("out.vtu"));
  ExpectRefused(WriteTo("out.vtu"), 3, "out.vtu");
  EXPECT_TRUE(fs::is_symlink(Path("out.vtu")));
  EXPECT_TRUE(fs::is_character_file(Path("device")));
}

TEST_F(OddTarget, PipeIsNoPlaceForByProductsEither) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  for (const char* const option : {"--report", "--record", "--image"}) {
    ExpectRefused(WriteTo("out.vtu", {option, "pipe", "--force"}), 3, "pipe");
    EXPECT_TRUE(fs::is_fifo(Path("pipe")));
    EXPECT_FALSE(fs::exists(Path("out.vtu")));
  }
}

TEST_F(OddTarget, FolderIsRefusedWithAllThatIsInIt) {
  fs::create_directory(Path("out.vtu"));
  WriteText("out.vtu/note", "mine");
  ExpectRefused(WriteTo("out.vtu"), 3, "out.vtu");
  EXPECT_EQ(ReadText("out.vtu/note"), "mine");
}

TEST_F(OddTarget, LinkStaysAndTheFileBehindItIsWritten) {
  fs::create_directory(Path("elsewhere"));
  WriteText("elsewhere/real.vtu", "old");
  fs::create_symlink("elsewhere/real.vtu", Path("out.vtu"));
  EXPECT_EQ(WriteTo("out.vtu").exitCode, 0);
  EXPECT_TRUE(fs::is_symlink(Path("out.vtu")));
  EXPECT_EQ(ReadText("elsewhere/real.vtu"), m_expected);
}

TEST_F(OddTarget, LinkThatLeadsNowhereLeadsToTheResult) {
  fs::create_directory(Path("elsewhere"));
  fs::create_symlink("second.vtu", Path("out.vtu"));
  fs::create_symlink("elsewhere/real.vtu", Path("second.vtu"));
  EXPECT_EQ(WriteTo("out.vtu").exitCode, 0);
  EXPECT_TRUE(fs::is_symlink(Path("out.vtu")));
  EXPECT_TRUE(fs::is_symlink(Path("second.vtu")));
  EXPECT_EQ(ReadText("elsewhere/real.vtu"), m_expected);
}

TEST_F(OddTarget, LinksInACircleAreRefused) {
  fs::create_symlink("a.vtu", Path("b.vtu"));
  fs::create_symlink("b.vtu", Path("a.vtu"));
  ExpectRefused(WriteTo("a.vtu"), 3, "a.vtu");
  EXPECT_TRUE(fs::is_symlink(Path("a.vtu")));
}

TEST_F(OddTarget, OtherNameOfTheInputIsWrittenWholeAndTheInputKeptUnderItsOwn) {
  const std::string before = ReadText("in.vtu");
  fs::create_hard_link(Path("in.vtu"), Path("same.vtu"));
  EXPECT_EQ(WriteTo("same.vtu").exitCode, 0);
  EXPECT_EQ(ReadText("same.vtu"), m_expected);
  EXPECT_EQ(ReadText("in.vtu"), before);
}

TEST_F(OddTarget, LinkToTheInputReplacesIt) {
  fs::create_symlink("in.vtu", Path("same.vtu"));
  EXPECT_EQ(WriteTo("same.vtu").exitCode, 0);
  EXPECT_EQ(ReadText("in.vtu"), m_expected);
}

TEST_F(OddTarget, KeepsItsPermissionsWhenItIsReplaced) {
  WriteText("out.vtu", "old");
  ASSERT_EQ(chmod(Path("out.vtu").c_str(), 0440), 0);
  EXPECT_EQ(WriteTo("out.vtu").exitCode, 0);
  EXPECT_EQ(ReadText("out.vtu"), m_expected);
  EXPECT_EQ(fs::status(Path("out.vtu")).permissions(), fs::perms(0440));
}

TEST_F(OddTarget, NewFileHasTheUsualPermissions) {
  EXPECT_EQ(WriteTo("out.vtu").exitCode, 0);
  EXPECT_EQ(fs::status(Path("out.vtu")).permissions(), fs::status(Path("in.vtu")).permissions());
}

TEST_F(OddTarget, NameMayBeAsLongAsNamesMayBe) {
  const std::string name = std::string(251, 'n') + ".vtu";
  const auto namesBefore = Listing();
  EXPECT_EQ(WriteTo(name).exitCode, 0);
  EXPECT_EQ(ReadText(name), m_expected);
  EXPECT_EQ(Listing().size(), namesBefore.size() + 1);
}

struct TwiceRow {
  const char* name;
  std::vector<std::string> arguments;
  const char* named;
};

void PrintTo(const TwiceRow& row, std::ostream* out) { *out << row.name; }

class FileOfARun : public OddTarget, public ::testing::WithParamInterface<TwiceRow> {};

TEST_P(FileOfARun, IsNotWrittenTwice) {
  const auto namesBefore = Listing();
  const std::string dataBefore = ReadText("in.vtu");
  const std::string journalBefore = ReadText("edits.journal");
  ExpectRefused(WriteTo("out.vtu", GetParam().arguments), 2, GetParam().named);
  EXPECT_EQ(Listing(), namesBefore);
  EXPECT_EQ(ReadText("in.vtu"), dataBefore);
  EXPECT_EQ(ReadText("edits.journal"), journalBefore);
}

INSTANTIATE_TEST_SUITE_P(
    Files, FileOfARun,
    ::testing::Values(
        TwiceRow{"Input", {"--report", "in.vtu", "--force"}, "in.vtu"},
        TwiceRow{"Journal", {"--record", "./edits.journal", "--force"}, "edits.journal"},
        TwiceRow{"Result", {"--image", "out.vtu"}, "out.vtu"},
        TwiceRow{"OtherPicture", {"--image", "a.png", "--image-before", "./a.png"}, "a.png"},
        TwiceRow{"Report", {"--record", "a", "--report", "a", "--force"}, "a"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(OddTarget, JournalIsNoResultWhateverItsName) {
  fs::copy_file(Path("edits.journal"), Path("edits.vtu"));
  const std::string before = ReadText("edits.vtu");
  for (const char* const target : {"edits.vtu", "./edits.vtu"}) {
    ExpectRefused(Run({"run", "edits.vtu", "in.vtu", "-o", target, "--force"}), 2, "edits.vtu");
  }
  fs::create_symlink("edits.vtu", Path("link.vtu"));
  ExpectRefused(Run({"run", "edits.vtu", "in.vtu", "-o", "link.vtu", "--force"}), 2, "link.vtu");
  EXPECT_EQ(ReadText("edits.vtu"), before);
}

class PieceFolders : public OddTarget {
 protected:
  Outcome WriteBlocksTo(const std::string& target) {
    return Run({"run", "edits.journal", "in.vtm", "-o", target, "--force"});
  }
};

TEST_F(PieceFolders, StayWhileACopyOfTheIndexNamesThem) {
  ASSERT_EQ(WriteBlocksTo("out.vtm").exitCode, 0);
  const DataPtr first = ReadData(Path("out.vtm"));
  fs::copy_file(Path("out.vtm"), Path("kept.vtm"));
  ASSERT_EQ(WriteBlocksTo("out.vtm").exitCode, 0);
  EXPECT_TRUE(IsSameData(first, ReadData(Path("kept.vtm"))));
  EXPECT_TRUE(IsSameData(first, ReadData(Path("out.vtm"))));
  fs::remove(Path("kept.vtm"));
  ASSERT_EQ(WriteBlocksTo("out.vtm").exitCode, 0);
  EXPECT_TRUE(IsSameData(first, ReadData(Path("out.vtm"))));
}

TEST_F(PieceFolders, OfRunsAtTheSameTimeAreApart) {
  constexpr int kRuns = 6;
  ASSERT_EQ(WriteBlocksTo("out.vtm").exitCode, 0);
  const DataPtr expected = ReadData(Path("out.vtm"));
  std::vector<std::unique_ptr<Running>> programs;
  for (int n = 0; n < kRuns; ++n) {
    const char* const target = n % 2 == 0 ? "out.vtm" : "out.pvd";
    programs.push_back(std::make_unique<Running>(
        Folder(),
        std::vector<std::string>{"run", "edits.journal", "in.vtm", "-o", target, "--force"}));
  }
  for (const auto& program : programs) {
    const Outcome outcome = program->Wait();
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  }
  EXPECT_TRUE(IsSameData(expected, ReadData(Path("out.vtm"))));
  ASSERT_EQ(ReadPvd(Path("out.pvd")).size(), 1u);
  EXPECT_TRUE(IsSameData(expected, ReadData(Path(ReadPvd(Path("out.pvd"))[0].file))));
  for (const std::string& name : Listing()) EXPECT_NE(name.front(), '.') << name;
}

/// The number of a process that has been.
std::string DeadProcess() {
  const pid_t child = fork();
  if (child == 0) _exit(0);
  waitpid(child, nullptr, 0);
  return std::to_string(child);
}

class WorkFolders : public OddTarget {
 protected:
  void Make(const std::string& name) {
    fs::create_directory(Path(name));
    WriteText(name + "/out.vtu", "half a fi");
  }
};

TEST_F(WorkFolders, OfDeadProcessesGoWithTheNextRun) {
  auto expected = Listing();
  expected.emplace_back("out.vtu");
  const std::string dead = DeadProcess();
  Make(".out.vtu." + dead + ".part");
  Make(".out.vtu." + dead + "-2.part");
  EXPECT_EQ(WriteTo("out.vtu").exitCode, 0);
  EXPECT_EQ(Listing(), expected);
}

TEST_F(WorkFolders, OfTheLivingAndOfOthersStay) {
  const std::string dead = DeadProcess();
  const std::string alive = std::to_string(getpid());
  std::vector<std::string> names = {".out.vtu." + alive + ".part",
                                    ".out.vtu..part",
                                    ".out.vtu.x" + dead + ".part",
                                    ".other.vtu." + dead + ".part",
                                    ".out.vtu." + dead + ".parts",
                                    "out.vtu." + dead + ".part",
                                    ".out.vtu.0.part"};
  for (const std::string& name : names) Make(name);
  // Whose process cannot be seen from here.
  names.push_back(".out.vtu." + dead + "-7.part");
  Make(names.back());
  const int held = open(Path(names.back()).c_str(), O_RDONLY | O_DIRECTORY);
  ASSERT_EQ(flock(held, LOCK_EX | LOCK_NB), 0);
  // A file is nobody's folder.
  WriteText(".out.vtu." + dead + ".part", "mine");

  EXPECT_EQ(WriteTo("out.vtu").exitCode, 0);
  for (const std::string& name : names) EXPECT_EQ(ReadText(name + "/out.vtu"), "half a fi") << name;
  EXPECT_EQ(ReadText(".out.vtu." + dead + ".part"), "mine");
  close(held);
}

TEST_F(WorkFolders, OfOtherUsersStay) {
  const std::string other = ".out.vtu." + DeadProcess() + ".part";
  Make(other);
  constexpr uid_t kOther = 12345;
  if (chown(Path(other).c_str(), kOther, kOther) != 0) {
    GTEST_SKIP() << "no file can be given away here: " << std::strerror(errno);
  }
  EXPECT_EQ(WriteTo("out.vtu").exitCode, 0);
  EXPECT_EQ(ReadText(other + "/out.vtu"), "half a fi");
}

using SeveralResults = OddTarget;

TEST_F(SeveralResults, ThatCannotBeWrittenLeaveNoFolder) {
  const auto namesBefore = Listing();
  Surroundings surroundings;
  surroundings.fileSizeLimit = 1000;
  const Outcome outcome =
      Run({"run", "edits.journal", "in.vtu", "in.vtm", "-o", "results"}, surroundings);
  ExpectRefused(outcome, 3, "results/in.vtu");
  EXPECT_EQ(Listing(), namesBefore);
}

TEST_F(SeveralResults, AreNotReplacedByTheReport) {
  fs::create_directory(Path("results"));
  const auto namesBefore = Listing();
  for (const char* const option : {"--report", "--record", "--image"}) {
    ExpectRefused(Run({"run", "edits.journal", "in.vtu", "in.vtm", "-o", "results", "--force",
                       option, "results/in.vtu"}),
                  2, "results/in.vtu");
  }
  EXPECT_EQ(Listing(), namesBefore);
}

TEST_F(SeveralResults, AreNotReplacedByEachOther) {
  WriteData(Path("second.vtu"), MixedVolume());
  fs::create_directory(Path("results"));
  WriteText("results/in.vtu", "old");
  fs::create_symlink("in.vtu", Path("results/second.vtu"));
  ExpectRefused(Run({"run", "edits.journal", "in.vtu", "second.vtu", "-o", "results", "--force"}),
                2, "results/second.vtu");
  EXPECT_EQ(ReadText("results/in.vtu"), "old");
}

}  // namespace

}  // namespace clitest
