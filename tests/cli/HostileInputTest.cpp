// Inputs that ask for more than there is, for themselves, or for what is no file: one line, the
// code of a file that cannot be read, and nothing written; with little memory to do it in.
#include "Program.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdlib>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace clitests {

using testing::StartsWith;

namespace {

constexpr char kJournal[] =
    "Marquell ALTERELEMENT VARIABLE=\"p\" MODIFIER=\"+1\" ZONE=1 ELEMENT=1\n";

/// Of programs that are started while it lives.
class LittleMemory {
 public:
  explicit LittleMemory(rlim_t bytes = rlim_t{1} << 30) {
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    getrlimit(RLIMIT_AS, &m_before);
    const rlimit little{bytes, m_before.rlim_max};
    setrlimit(RLIMIT_AS, &little);
#else
    static_cast<void>(bytes);
#endif
  }
  ~LittleMemory() {
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    setrlimit(RLIMIT_AS, &m_before);
#endif
  }
  LittleMemory(const LittleMemory&) = delete;
  LittleMemory& operator=(const LittleMemory&) = delete;

 private:
  [[maybe_unused]] rlimit m_before{};
};

class HostileInput : public testing::Test {
 protected:
  void ExpectRefused(const std::string& input) {
    const std::string journal = folder.Write("j.journal", kJournal);
    const std::vector<std::string> namesBefore = folder.Names();
    const LittleMemory little;
    const Outcome outcome =
        RunProgram({"run", journal, input, "-o", folder.Path("out.vtm"), "--force"});
    EXPECT_EQ(outcome.exitCode, 3) << input << ": " << outcome.err;
    EXPECT_EQ(LineCount(outcome.err), 1) << outcome.err;
    EXPECT_THAT(outcome.err, StartsWith("marquell: " + input + ": "));
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(folder.Names(), namesBefore);
  }
  void ExpectRefused(const std::string& name, const std::string& text) {
    ExpectRefused(folder.Write(name, text));
  }

  TestFolder folder;
};

std::string Grid(const std::string& nodes, const std::string& cells, const std::string& data) {
  const std::string at = " format=\"appended\" offset=\"0\"/>";
  return "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\" "
         "header_type=\"UInt64\"><UnstructuredGrid><Piece NumberOfPoints=\"" +
         nodes + "\" NumberOfCells=\"" + cells +
         "\"><Points><DataArray type=\"Float32\" NumberOfComponents=\"3\"" + at +
         "</Points><Cells><DataArray type=\"Int64\" Name=\"connectivity\"" + at +
         "<DataArray type=\"Int64\" Name=\"offsets\"" + at +
         "<DataArray type=\"UInt8\" Name=\"types\"" + at +
         "</Cells></Piece></UnstructuredGrid><AppendedData encoding=\"raw\">_" + data +
         "</AppendedData></VTKFile>";
}

std::string Block(const std::string& extent) {
  return "<VTKFile type=\"ImageData\" version=\"1.0\" byte_order=\"LittleEndian\"><ImageData "
         "WholeExtent=\"" +
         extent + "\" Origin=\"0 0 0\" Spacing=\"1 1 1\"><Piece Extent=\"" + extent +
         "\"/></ImageData></VTKFile>";
}

std::string Legacy(const std::string& sections) {
  return "# vtk DataFile Version 3.0\nhostile\nBINARY\nDATASET " + sections;
}

constexpr const char* kAbsurd[] = {"9000000000000000000", "-1", "2147483648",
                                   "18446744073709551615", "1099511627776"};

TEST_F(HostileInput, AbsurdCountsAreRefused) {
  const std::string little("\x08\0\0\0\0\0\0\0abcdefgh", 16);
  for (const char* count : kAbsurd) {
    ExpectRefused("nodes.vtu", Grid(count, "1", little));
    ExpectRefused("cells.vtu", Grid("1", count, little));
    ExpectRefused("a.vtk", Legacy(std::string("POLYDATA\nPOINTS ") + count + " float\n"));
    ExpectRefused("b.vtk", Legacy(std::string("STRUCTURED_GRID\nDIMENSIONS 1 1 ") + count +
                                  "\nPOINTS 1 float\n" + std::string(12, '\0')));
  }
}

TEST_F(HostileInput, HeadersThatClaimPetabytesAreRefused) {
  for (const char last : {'\x7f', '\xff', '\x40', '\x01'}) {
    std::string header("\xff\xff\xff\xff\xff\xff\xff", 7);
    ExpectRefused("header.vtu", Grid("1", "1", header + last + std::string(64, '\0')));
  }
  std::string stl(80, ' ');
  ExpectRefused("a.stl", stl + "\xff\xff\xff\xff" + std::string(50, '\0'));
}

TEST_F(HostileInput, AbsurdExtentsAreRefused) {
  for (const char* extent : {"0 100000 0 100000 0 100000", "0 9000000000000000000 0 1 0 1",
                             "-2147483648 2147483647 0 0 0 0", "0 -1 0 -1 0 -1"}) {
    ExpectRefused("a.vti", Block(extent));
  }
}

TEST_F(HostileInput, CyclesAndPipesAreRefused) {
  ExpectRefused("a.vtm",
                "<VTKFile type=\"vtkMultiBlockDataSet\"><vtkMultiBlockDataSet><DataSet "
                "file=\"a.vtm\"/></vtkMultiBlockDataSet></VTKFile>");
  ASSERT_EQ(mkfifo(folder.Path("pipe.vtu").c_str(), 0600), 0);
  ExpectRefused(folder.Path("pipe.vtu"));
}

TEST_F(HostileInput, JournalsWithoutEndAreRefused) {
  const LittleMemory little;
  for (const char* command : {"check", "run"}) {
    std::vector<std::string> arguments = {command, "/dev/zero"};
    if (arguments[0] == "run") arguments.insert(arguments.end(), {"a.vtu", "--dry-run"});
    const Outcome outcome = RunProgram(arguments);
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.err, "marquell: /dev/zero: is longer than any journal\n");
  }
}

/// Whatever is being done when it is gone, also what takes memory to be given up.
TEST_F(HostileInput, MemoryThatIsGoneIsSaid) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "sanitizers take more memory than they are given";
#endif
  const std::string mesh = folder.Write(
      "a.vtk",
      "# vtk DataFile Version 3.0\nwide\nASCII\nDATASET POLYDATA\nPOINTS 1 float\n0 0 0\n"
      "CELL_DATA 0\nFIELD f 1\nx 60000 0 float\n");
  int refused = 0;
  for (rlim_t megabytes = 152; megabytes <= 192; megabytes += 8) {
    const LittleMemory little(megabytes << 20);
    const Outcome outcome = RunProgram({"info", mesh});
    if (outcome.exitCode == 0) continue;
    if (outcome.exitCode == 127) continue;  // too little to be started with
    EXPECT_EQ(outcome.exitCode, 3) << megabytes;
    EXPECT_EQ(LineCount(outcome.err), 1) << outcome.err;
    ++refused;
  }
  EXPECT_GT(refused, 0);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
/// The libraries under some readers print what they think of it; sanitizers open files themselves.
TEST_F(HostileInput, FewOpenFilesAreSaidInOneLine) {
  const std::string mesh = MARQUELL_EXAMPLES "/part/gmsh_part.exo";
  const std::string error = folder.Path("error");
  for (int files = 4; files < 12; ++files) {
    // What the tests themselves were started with counts as well.
    const std::string command = "(exec 3<&- 4<&- 5<&- 6<&- 7<&- 8<&- 9<&-; ulimit -n " +
                                std::to_string(files) + "; exec " + MARQUELL_PROGRAM " info " +
                                mesh + ") >/dev/null 2>" + error;
    const int status = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(status)) << files;
    EXPECT_EQ(LineCount(ReadText(error)), WEXITSTATUS(status) == 0 ? 0 : 1) << ReadText(error);
    EXPECT_TRUE(WEXITSTATUS(status) == 0 || WEXITSTATUS(status) == 3) << files;
  }
}
#endif

/// What only a process of its own finds out is said in the same way.
TEST_F(HostileInput, CasesThatTheirReaderDoesNotSurviveAreRefused) {
  folder.Write("a.geo",
               "one\ntwo\nnode id assign\nelement id assign\npart\n         1\nx\n"
               "coordinates\n2147483647\n 0.0\n");
  ExpectRefused("a.case", "FORMAT\ntype: ensight gold\nGEOMETRY\nmodel: a.geo\n");
}

}  // namespace
}  // namespace clitests
