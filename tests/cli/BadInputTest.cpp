// What goes wrong ends as one line on standard error, the right code, and no file left behind.
#include "Meshes.h"
#include "Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace clitests {

using testing::HasSubstr;

namespace {

struct BadCase {
  const char* name;
  const char* journal;
  const char* input;
  const char* output;
  std::vector<std::string> more;
  int exitCode;
  const char* says;
  Limits limits = {};
};

void PrintTo(const BadCase& c, std::ostream* stream) { *stream << c.name; }

constexpr char kGood[] = "Marquell ALTERELEMENT VARIABLE=\"p\" MODIFIER=\"+1\" ZONE=1 ELEMENT=3\n";

class BadInput : public testing::TestWithParam<BadCase> {
 protected:
  BadInput() {
    WriteMesh(MakeMesh(MeshKind::kBricks), folder.Path("good.vtu"));
    WriteMesh(MakeMesh(MeshKind::kImage), folder.Path("image.vti"));
    WriteMesh(MakeMesh(MeshKind::kRectilinear), folder.Path("rect.vtr"));
    WriteMesh(MakeMesh(MeshKind::kBricks), folder.Path("old.vtk"));
    for (const char* name : {"good.vtu", "image.vti", "old.vtk"}) {
      const std::string whole = ReadText(folder.Path(name));
      folder.Write(std::string("cut-") + name, whole.substr(0, whole.size() / 2));
    }
    folder.Write("foreign.vtu", "This is a letter, not a mesh.\n");
    folder.Write("foreign.stl", "This is a letter, not a mesh.\n");
    folder.Write("empty.vtu", "");
    folder.Write("exists.vtu", "already here");
  }

  TestFolder folder;
};

}  // namespace

TEST_P(BadInput, EndsWithOneLineTheCodeAndNothingLeft) {
  const BadCase& bad = GetParam();
  std::vector<std::string> arguments = {"run", folder.Write("j.journal", bad.journal),
                                        folder.Path(bad.input), "-o", folder.Path(bad.output)};
  arguments.insert(arguments.end(), bad.more.begin(), bad.more.end());
  const std::vector<std::string> namesBefore = folder.Names();

  const Outcome outcome = RunProgram(arguments, bad.limits);

  EXPECT_EQ(outcome.exitCode, bad.exitCode) << outcome.err;
  EXPECT_EQ(LineCount(outcome.err), 1) << outcome.err;
  EXPECT_THAT(outcome.err, HasSubstr(bad.says));
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(folder.Names(), namesBefore);
  EXPECT_EQ(ReadText(folder.Path("exists.vtu")), "already here");
}

INSTANTIATE_TEST_SUITE_P(
    Runs, BadInput,
    testing::Values(
        BadCase{"MissingFile", kGood, "none.vtu", "out.vtu", {}, 3, "none.vtu"},
        BadCase{"TruncatedGrid", kGood, "cut-good.vtu", "out.vtu", {}, 3, "cut-good.vtu"},
        BadCase{"TruncatedImage", kGood, "cut-image.vti", "out.vti", {}, 3, "cut-image.vti"},
        BadCase{"TruncatedLegacy", kGood, "cut-old.vtk", "out.vtk", {}, 3, "cut-old.vtk"},
        BadCase{"ForeignGrid", kGood, "foreign.vtu", "out.vtu", {}, 3, "foreign.vtu"},
        BadCase{"ForeignStl", kGood, "foreign.stl", "out.vtu", {}, 3, "foreign.stl"},
        BadCase{"EmptyFile", kGood, "empty.vtu", "out.vtu", {}, 3, "empty.vtu"},
        BadCase{"UnknownCommand",
                "# one\nMarquell PICKNOTHING\n",
                "good.vtu",
                "out.vtu",
                {},
                1,
                "j.journal:2: Marquell PICKNOTHING: "},
        BadCase{"MissingParameter",
                "Marquell PICKCIRCLE ANCHORX=1 ANCHORY=1\n",
                "good.vtu",
                "out.vtu",
                {},
                1,
                "Missing parameter in PICKCIRCLE macro"},
        BadCase{"UnknownHostCommand",
                "$!NOTHING\n",
                "good.vtu",
                "out.vtu",
                {},
                1,
                "j.journal:1: $!NOTHING: "},
        BadCase{"UnknownAddOn", "Nobody UNDOALTER\n", "good.vtu", "out.vtu", {}, 1, "Nobody"},
        BadCase{"UnknownVariable",
                "Marquell ALTERELEMENT VARIABLE=\"none\" MODIFIER=\"+1\" ZONE=1 ELEMENT=3\n",
                "good.vtu",
                "out.vtu",
                {},
                1,
                "Bad value for VARIABLE in ALTERELEMENT command"},
        BadCase{"BadModifier",
                "Marquell ALTERELEMENT VARIABLE=\"p\" MODIFIER=\"^1\" ZONE=1 ELEMENT=3\n",
                "good.vtu",
                "out.vtu",
                {},
                1,
                "Bad data for MODIFIER in ALTERELEMENT command"},
        BadCase{"ZoneOutOfRange",
                "Marquell ALTERELEMENT VARIABLE=\"p\" MODIFIER=\"+1\" ZONE=9 ELEMENT=3\n",
                "good.vtu",
                "out.vtu",
                {},
                1,
                "Error during execution of ALTERELEMENT operation"},
        BadCase{"NodeOutOfRange",
                "Marquell ALTERELEMENT VARIABLE=\"p\" MODIFIER=\"+1\" ZONE=1 ELEMENT=9999\n",
                "good.vtu",
                "out.vtu",
                {},
                1,
                "Error during execution of ALTERELEMENT operation"},
        BadCase{"AreaWithoutBoundary",
                "Marquell PICKRECTANGLE ANCHORX=0 ANCHORY=0 SIZEX=0\n",
                "good.vtu",
                "out.vtu",
                {},
                1,
                "j.journal:1: "},
        BadCase{"ComputedCoordinatesOfAnImage",
                "Marquell ALTERELEMENT VARIABLE=\"X\" MODIFIER=\"+1\" ZONE=1 ELEMENT=3\n",
                "image.vti",
                "out.vti",
                {},
                1,
                "image"},
        BadCase{"ComputedCoordinatesOfARectilinearGrid",
                "Marquell ALTERELEMENT VARIABLE=\"X\" MODIFIER=\"+1\" ZONE=1 ELEMENT=3\n",
                "rect.vtr",
                "out.vtr",
                {},
                1,
                "rectilinear"},
        BadCase{"ExistingOutput", kGood, "good.vtu", "exists.vtu", {}, 3, "exists.vtu: exists"},
        BadCase{"OutputIsTheInput", kGood, "good.vtu", "good.vtu", {}, 3, "good.vtu: exists"},
        BadCase{"UnknownExtension", kGood, "good.vtu", "out.xyz", {}, 2, "out.xyz"},
        BadCase{"NoExtension", kGood, "good.vtu", "out", {}, 2, "out"},
        BadCase{"ExtensionThatIsOnlyRead", kGood, "good.vtu", "out.exo", {}, 2, ".exo"},
        BadCase{"FormatThatCannotHoldTheData", kGood, "good.vtu", "out.vti", {}, 3, "out.vti"},
        BadCase{"NoSuchFolder", kGood, "good.vtu", "none/out.vtu", {}, 3, "out.vtu"},
        BadCase{"UnknownOption", kGood, "good.vtu", "out.vtu", {"--nonsense"}, 2, "--nonsense"},
        BadCase{"QuietAndVerbose",
                kGood,
                "good.vtu",
                "out.vtu",
                {"--quiet", "--verbose"},
                2,
                "--verbose"},
        BadCase{"FullDisk", kGood, "good.vtu", "out.vtu", {}, 3, "out.vtu", {1000, -1}},
        BadCase{"FullDiskAtAnImage", kGood, "image.vti", "out.vti", {}, 3, "out.vti", {1000, -1}},
        BadCase{
            "FullDiskAtALegacyFile", kGood, "old.vtk", "out.vtk", {}, 3, "out.vtk", {1000, -1}}),
    [](const auto& info) { return info.param.name; });

TEST(BadCommandLine, MissingPiecesAreNamedInOneLine) {
  const TestFolder folder;
  const std::vector<std::vector<std::string>> lines = {
      {}, {"run"}, {"nonsense"}, {"info"}, {"check"}, {"run", "only.journal"}};
  for (const auto& arguments : lines) {
    const Outcome outcome = RunProgram(arguments);
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(LineCount(outcome.err), 1) << outcome.err;
  }
}

TEST(BadCommandLine, OutputIsRequired) {
  const TestFolder folder;
  const Outcome outcome =
      RunProgram({"run", folder.Write("j.journal", kGood), folder.Path("in.vtu")});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(LineCount(outcome.err), 1) << outcome.err;
}

TEST(BadJournal, MissingJournalIsAFileThatCannotBeRead) {
  const TestFolder folder;
  WriteMesh(MakeMesh(MeshKind::kBricks), folder.Path("in.vtu"));
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"check", folder.Path("none.journal")},
        std::vector<std::string>{"run", folder.Path("none.journal"), folder.Path("in.vtu"), "-o",
                                 folder.Path("out.vtu")}}) {
    const Outcome outcome = RunProgram(arguments);
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(LineCount(outcome.err), 1) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr("none.journal"));
  }
}

TEST(BadTarget, FolderThatTakesNoFilesIsReported) {
  const TestFolder folder;
  WriteMesh(MakeMesh(MeshKind::kBricks), folder.Path("in.vtu"));
  // Nobody, root included, can make a file there.
  const Outcome outcome = RunProgram(
      {"run", folder.Write("j.journal", kGood), folder.Path("in.vtu"), "-o", "/proc/out.vtu"});
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(LineCount(outcome.err), 1) << outcome.err;
  EXPECT_THAT(outcome.err, HasSubstr("/proc/out.vtu: "));
}

}  // namespace clitests
