// Pictures of runs, drawn without a display and read back.
#include "Program.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkDoubleArray.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPNGReader.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>

namespace clitests {

using testing::HasSubstr;

namespace {

using Pixel = std::array<int, 3>;
constexpr Pixel kWhite = {255, 255, 255};
/// The ends of the colours.
constexpr Pixel kLowest = {68, 1, 84};
constexpr Pixel kHighest = {253, 231, 37};

/// Ten by ten flat cells on [0, 10] x [0, 10]; c is 0 left of X = 5 and 1 right of it.
void WritePlate(const std::string& path) {
  vtkNew<vtkPoints> points;
  for (int j = 0; j <= 10; ++j) {
    for (int i = 0; i <= 10; ++i) points->InsertNextPoint(i, j, 0);
  }
  vtkNew<vtkUnstructuredGrid> grid;
  grid->SetPoints(points);
  vtkNew<vtkDoubleArray> c;
  c->SetName("c");
  for (vtkIdType j = 0; j < 10; ++j) {
    for (vtkIdType i = 0; i < 10; ++i) {
      const vtkIdType a = i + 11 * j;
      const vtkIdType nodes[] = {a, a + 1, a + 12, a + 11};
      grid->InsertNextCell(VTK_QUAD, 4, nodes);
      c->InsertNextValue(i < 5 ? 0.0 : 1.0);
    }
  }
  grid->GetCellData()->AddArray(c);
  vtkNew<vtkXMLUnstructuredGridWriter> writer;
  writer->SetInputData(grid);
  writer->SetFileName(path.c_str());
  ASSERT_EQ(writer->Write(), 1);
}

class Image : public testing::Test {
 protected:
  Image() : input(folder.Path("in.vtu")) {
    WritePlate(input);
    unsetenv("DISPLAY");
  }

  Outcome Run(const std::string& lines, const std::vector<std::string>& options) {
    std::vector<std::string> arguments = {"run", folder.Write("j.journal", lines), input,
                                          "--dry-run"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunProgram(arguments);
  }

  void Read(const std::string& name) {
    m_reader->SetFileName(folder.Path(name).c_str());
    m_reader->Modified();
    m_reader->Update();
  }
  int Width() const { return m_reader->GetOutput()->GetDimensions()[0]; }
  int Height() const { return m_reader->GetOutput()->GetDimensions()[1]; }

  /// The pixel over a place on the plate; the plate fills the height of the plot's part.
  Pixel At(double x, double y, int leftOfPicture = 0) {
    const double plotHeight = 0.92 * Height();
    const double unit = 0.94 * plotHeight / 10.0;
    const double middleX = 0.83 * 800 / 2;
    const int column = leftOfPicture + static_cast<int>(middleX + (x - 5.0) * unit);
    const int row = static_cast<int>(plotHeight / 2 + (y - 5.0) * unit);
    Pixel pixel{};
    for (int part = 0; part < 3; ++part) {
      pixel[static_cast<std::size_t>(part)] =
          static_cast<int>(m_reader->GetOutput()->GetScalarComponentAsDouble(column, row, 0, part));
    }
    return pixel;
  }

  static bool AreClose(const Pixel& a, const Pixel& b) {
    int distance = 0;
    for (std::size_t part = 0; part < 3; ++part) distance += std::abs(a[part] - b[part]);
    return distance < 24;
  }

  TestFolder folder;
  std::string input;

 private:
  vtkNew<vtkPNGReader> m_reader;
};

TEST_F(Image, ShowsValuesInTheirColours) {
  const Outcome outcome = Run("$!PLOTTYPE CARTESIAN2D\n", {"--image", folder.Path("a.png")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  Read("a.png");
  EXPECT_EQ(Width(), 800);
  EXPECT_EQ(Height(), 600);
  EXPECT_TRUE(AreClose(At(1.5, 5), kLowest)) << testing::PrintToString(At(1.5, 5));
  EXPECT_TRUE(AreClose(At(8.5, 5), kHighest)) << testing::PrintToString(At(8.5, 5));
  EXPECT_EQ(At(-0.5, 5), kWhite);
}

TEST_F(Image, LeavesOutWhatBlankingHides) {
  const std::string hide =
      "Marquell PICKRECTANGLE ANCHORX=5.9 ANCHORY=-1 SIZEX=9 SIZEY=12\n"
      "Marquell BLANKAREA RULE=ALLINSIDE\n";
  ASSERT_EQ(Run(hide, {"--image", folder.Path("off.png")}).exitCode, 0);
  Read("off.png");
  EXPECT_TRUE(AreClose(At(8.5, 5), kHighest)) << "blanking is off";
  ASSERT_EQ(
      Run(hide + "$!BLANKING VALUE{INCLUDE = YES}\n", {"--image", folder.Path("on.png")}).exitCode,
      0);
  Read("on.png");
  EXPECT_EQ(At(8.5, 5), kWhite);
  EXPECT_TRUE(AreClose(At(5.5, 5), kHighest));
  EXPECT_TRUE(AreClose(At(1.5, 5), kLowest));
}

TEST_F(Image, LeavesOutInactiveZones) {
  ASSERT_EQ(Run("$!ZONE 1 ACTIVE=NO\n", {"--image", folder.Path("a.png")}).exitCode, 0);
  Read("a.png");
  EXPECT_EQ(At(5, 5), kWhite);
}

TEST_F(Image, BeforeAndAfterDifferWhereTheRunAltered) {
  const Outcome outcome =
      Run("Marquell PICKRECTANGLE ANCHORX=-1 ANCHORY=4.9 SIZEX=12 SIZEY=9\n"
          "Marquell ALTERAREA VARIABLE=\"c\" MODIFIER=\"=1\" RULE=ALLINSIDE\n",
          {"--image-pair", folder.Path("pair.png"), "--image-before", folder.Path("before.png")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  Read("pair.png");
  ASSERT_EQ(Width(), 1600);
  EXPECT_TRUE(AreClose(At(1.5, 8), kLowest));
  EXPECT_TRUE(AreClose(At(1.5, 8, 800), kHighest));
  EXPECT_TRUE(AreClose(At(1.5, 2), kLowest));
  EXPECT_TRUE(AreClose(At(1.5, 2, 800), kLowest));
  const Pixel inPair = At(1.5, 8);
  Read("before.png");
  EXPECT_EQ(At(1.5, 8), inPair);
}

TEST_F(Image, IsRefusedForAVariableThatThereIsNot) {
  const Outcome outcome =
      Run("$!VIEW FIT\n", {"--image", folder.Path("a.png"), "--image-variable", "nothing"});
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(outcome.err, HasSubstr("there is no variable nothing"));
  EXPECT_EQ(LineCount(outcome.err), 1);
}

TEST_F(Image, ReplacesAFileOnlyByForce) {
  folder.Write("a.png", "mine");
  EXPECT_EQ(Run("$!VIEW FIT\n", {"--image", folder.Path("a.png")}).exitCode, 3);
  EXPECT_EQ(ReadText(folder.Path("a.png")), "mine");
  EXPECT_EQ(Run("$!VIEW FIT\n", {"--image", folder.Path("a.png"), "--force"}).exitCode, 0);
  EXPECT_NE(ReadText(folder.Path("a.png")), "mine");
}

}  // namespace
}  // namespace clitests
