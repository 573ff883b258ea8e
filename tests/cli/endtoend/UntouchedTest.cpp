// What no line touched comes back as it was, and files keep their layout.
#include "CompareData.h"
#include "DataFiles.h"
#include "Meshes.h"
#include "ProgramRun.h"

#include <string>
#include <vector>

#include <vtkCellData.h>
#include <vtkDataSet.h>
#include <vtkDoubleArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>

namespace clitest {

namespace {

struct LayoutRow {
  const char* name;
  Layout layout;
};

void PrintTo(const LayoutRow& row, std::ostream* out) { *out << row.name; }

class FileLayout : public ProgramTest, public ::testing::WithParamInterface<LayoutRow> {
 protected:
  /// The encoding of appended data, or the format of the first array.
  static std::string EncodingOf(const std::string& text) {
    if (text.find("<AppendedData encoding=\"raw\"") != std::string::npos) return "raw";
    if (text.find("<AppendedData encoding=\"base64\"") != std::string::npos) return "base64";
    return text.find("format=\"ascii\"") != std::string::npos ? "ascii" : "binary";
  }
};

TEST_P(FileLayout, IsKept) {
  WriteData(Path("in.vtu"), MixedVolume(), GetParam().layout);
  WriteText("none.journal", Journal({}));

  const Outcome outcome = Run({"run", "none.journal", "in.vtu", "-o", "out.vtu"});

  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_TRUE(IsSameData(ReadData(Path("in.vtu")), ReadData(Path("out.vtu"))));
  for (const char* const attribute : {"type", "byte_order", "header_type", "compressor"}) {
    EXPECT_EQ(XmlHeaderAttribute(Path("out.vtu"), attribute),
              XmlHeaderAttribute(Path("in.vtu"), attribute))
        << attribute;
  }
  EXPECT_EQ(EncodingOf(ReadText("out.vtu")), EncodingOf(ReadText("in.vtu")));
}

Layout Plain(Layout::Mode mode, const char* compressor = "none") {
  Layout layout;
  layout.mode = mode;
  layout.compressor = compressor;
  return layout;
}

Layout Narrow() {
  Layout layout;
  layout.is64Bit = false;
  return layout;
}

Layout BigEndian() {
  Layout layout;
  layout.isBigEndian = true;
  return layout;
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, FileLayout,
    ::testing::Values(LayoutRow{"Zlib", Layout()},
                      LayoutRow{"Lz4", Plain(Layout::Mode::kAppended, "lz4")},
                      LayoutRow{"Lzma", Plain(Layout::Mode::kBinary, "lzma")},
                      LayoutRow{"RawAppended", Plain(Layout::Mode::kRawAppended)},
                      LayoutRow{"Base64Appended", Plain(Layout::Mode::kAppended)},
                      LayoutRow{"Inline", Plain(Layout::Mode::kBinary)},
                      LayoutRow{"Ascii", Plain(Layout::Mode::kAscii)},
                      LayoutRow{"Headers32", Narrow()}, LayoutRow{"BigEndian", BigEndian()}),
    [](const auto& row) { return std::string(row.param.name); });

vtkSmartPointer<vtkDoubleArray> NamedArray(const std::string& name, vtkIdType count) {
  auto array = vtkSmartPointer<vtkDoubleArray>::New();
  array->SetName(name.c_str());
  for (vtkIdType i = 0; i < count; ++i) array->InsertNextValue(0.1 * static_cast<double>(i));
  return array;
}

class OddNames : public ProgramTest {
 protected:
  /// Runs an empty edit on bricks with arrays of these names, at nodes and at cells.
  void ExpectToComeBack(const std::string& extension, const std::vector<std::string>& names) {
    DataPtr data = Bricks();
    auto* const block = vtkDataSet::SafeDownCast(data);
    for (const std::string& name : names) {
      block->GetPointData()->AddArray(NamedArray(name, block->GetNumberOfPoints()));
      block->GetCellData()->AddArray(NamedArray(name, block->GetNumberOfCells()));
    }
    block->GetPointData()->SetActiveScalars("T");
    block->GetPointData()->SetActiveVectors("U");
    WriteData(Path("in" + extension), data);
    WriteText("none.journal", Journal({"$!VIEW FIT"}));
    const Outcome outcome = Run({"run", "none.journal", "in" + extension, "-o", "out" + extension});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_TRUE(IsSameData(ReadData(Path("in" + extension)), ReadData(Path("out" + extension))));
  }
};

TEST_F(OddNames, ComeBackAsTheyWere) {
  ExpectToComeBack(".vtu", {"X", "U_X", "it's", "T (cell)", "caf\xC3\xA9", " blank "});
}

TEST_F(OddNames, ComeBackAsTheyWereInALegacyFile) {
  ExpectToComeBack(".vtk", {"X", "U_X", "a \"quoted\" name", "T (cell)", "caf\xC3\xA9"});
}

TEST_F(OddNames, WithQuotesAreVariablesWithApostrophes) {
  DataPtr data = Bricks();
  auto* const block = vtkDataSet::SafeDownCast(data);
  block->GetPointData()->AddArray(NamedArray("a \"b\"", block->GetNumberOfPoints()));
  WriteData(Path("in.vtk"), data);
  WriteText("edits.journal",
            Journal({"Marquell ALTERELEMENT VARIABLE=\"a 'b'\" MODIFIER=\"=9\" ZONE=1 ELEMENT=2"}));
  const Outcome outcome = Run({"run", "edits.journal", "in.vtk", "-o", "out.vtk"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  DataPtr expected = ReadData(Path("in.vtk"));
  vtkDataSet::SafeDownCast(expected)->GetPointData()->GetArray("a \"b\"")->SetComponent(1, 0, 9);
  EXPECT_TRUE(IsSameData(expected, ReadData(Path("out.vtk"))));
}

}  // namespace

}  // namespace clitest
