// Colours, ticks and numbers, and that all ways to a picture lead to the same one.
#include <vtkDoubleArray.h>
#include <vtkPointData.h>

#include <gtest/gtest.h>

#include "Axes.h"
#include "Canvas.h"
#include "Picture.h"
#include "RandomMeshes.h"

namespace rendertests {
namespace {

using namespace qelhost;

double Lightness(const std::array<double, 3>& colour) {
  return 0.2126 * colour[0] + 0.7152 * colour[1] + 0.0722 * colour[2];
}

TEST(ColourMaps, BeginWithTheDefault) {
  ASSERT_FALSE(ColourMapNames().empty());
  EXPECT_EQ(ColourMapNames().front(), PlotLook().colourMap);
  EXPECT_EQ(ColourAt("no such map", 0.3), ColourAt("viridis", 0.3));
  EXPECT_NE(ColourAt("inferno", 0.3), ColourAt("viridis", 0.3));
}

TEST(ColourMaps, GrowLighterFromLowToHigh) {
  for (const std::string name : {"viridis", "cividis", "inferno", "grey"}) {
    for (int n = 0; n < 64; ++n) {
      EXPECT_LT(Lightness(ColourAt(name, n / 64.0)), Lightness(ColourAt(name, (n + 1) / 64.0)))
          << name << " at " << n;
    }
  }
}

TEST(ColourMaps, StayWithinTheirEnds) {
  for (const std::string& name : ColourMapNames()) {
    EXPECT_EQ(ColourAt(name, -1.0), ColourAt(name, 0.0));
    EXPECT_EQ(ColourAt(name, 2.0), ColourAt(name, 1.0));
  }
}

TEST(Ticks, AreRoundNumbersWithin) {
  EXPECT_EQ(TicksWithin(0.0, 10.0, 5), (std::vector<double>{0, 2, 4, 6, 8, 10}));
  const std::vector<double> ticks = TicksWithin(-0.13, 0.41, 5);
  ASSERT_EQ(ticks.size(), 3U);
  EXPECT_DOUBLE_EQ(ticks[0], 0.0);
  EXPECT_DOUBLE_EQ(ticks[1], 0.2);
  EXPECT_DOUBLE_EQ(ticks[2], 0.4);
}

TEST(Ticks, AreFewInAnyRange) {
  Random random(4);
  std::uniform_real_distribution<double> exponent(-12.0, 12.0), place(-1.0, 1.0);
  for (int round = 0; round < 2000; ++round) {
    const double width = std::pow(10.0, exponent(random));
    const double low = width * 10.0 * place(random);
    const std::vector<double> ticks = TicksWithin(low, low + width, 6);
    EXPECT_GE(ticks.size(), 2U) << low << " + " << width;
    EXPECT_LE(ticks.size(), 8U) << low << " + " << width;
    for (const double tick : ticks) {
      EXPECT_GE(tick, low - 1e-8 * width);
      EXPECT_LE(tick, low + width * (1.0 + 1e-8));
    }
  }
  EXPECT_TRUE(TicksWithin(1.0, 1.0, 5).empty());
  EXPECT_TRUE(TicksWithin(1e20, 1e20 + 2e4, 5).empty()) << "finer than the numbers are";
}

TEST(Ticks, AreWrittenAsShortAsTheyDiffer) {
  EXPECT_EQ(TickText(0.0, 0.2), "0.0");
  EXPECT_EQ(TickText(0.4, 0.2), "0.4");
  EXPECT_EQ(TickText(12.0, 2.0), "12");
  EXPECT_EQ(TickText(-0.05, 0.05), "-0.05");
  EXPECT_EQ(TickText(1200000.0, 200000.0), "1.2e+06");
  EXPECT_EQ(TickText(2e-6, 1e-6), "2e-06");
}

void ShowOne(Frame& frame, vtkSmartPointer<vtkDataSet> mesh) {
  vtkNew<vtkDoubleArray> values;
  values->SetName("v");
  for (vtkIdType node = 0; node < mesh->GetNumberOfPoints(); ++node) {
    values->InsertNextValue(std::sin(0.5 * static_cast<double>(node)));
  }
  mesh->GetPointData()->AddArray(values);
  frame.Show(std::make_shared<DataSet>(
      "test", std::vector<BlockEntry>{{"z", mesh, 0, 0.0, nullptr}}, nullptr));
  frame.view.psiDeg = 50.0;
  frame.view.alphaDeg = 30.0;
}

PlotLook LookAtValues(Frame& frame) {
  PlotLook look;
  look.variable = frame.Data()->VariableNumber("v");
  look.min = -1.0;
  look.max = 1.0;
  return look;
}

TEST(Pictures, WithoutAWindowAreThoseOfTheScene) {
  Frame frame;
  ShowOne(frame, Volume(4, AddAsBrick));
  PlotLook look = LookAtValues(frame);
  look.caption = "as it is";
  Canvas canvas(400, 300);
  const Pixels pixels = canvas.Draw(frame, look);
  PictureOptions options;
  options.width = 400;
  options.height = 300;
  options.variable = look.variable;
  options.min = look.min;
  options.max = look.max;
  options.caption = look.caption;
  const Picture picture = LoadPainter()->Draw(frame, options);
  ASSERT_EQ(picture.rgb.size(), pixels.rgb.size());
  int others = 0;
  for (int y = 0; y < 300; ++y) {
    const auto row = static_cast<std::size_t>(3 * 400 * y);
    const auto fromTop = static_cast<std::size_t>(3 * 400 * (299 - y));
    others += std::equal(pixels.rgb.begin() + static_cast<std::ptrdiff_t>(row),
                         pixels.rgb.begin() + static_cast<std::ptrdiff_t>(row + 3 * 400),
                         picture.rgb.begin() + static_cast<std::ptrdiff_t>(fromTop))
                  ? 0
                  : 1;
  }
  EXPECT_EQ(others, 0);
}

TEST(Pictures, FarFromTheOriginLookLikeThoseNearIt) {
  Frame near, far;
  ShowOne(near, Volume(4, AddAsBrick));
  auto moved = Volume(4, AddAsBrick);
  vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  for (vtkIdType node = 0; node < moved->GetNumberOfPoints(); ++node) {
    double at[3];
    moved->GetPoint(node, at);
    points->InsertNextPoint(at[0] + 5e8, at[1] - 3e8, at[2] + 1e8);
  }
  moved->SetPoints(points);
  ShowOne(far, moved);
  Canvas canvas(400, 300);
  const Pixels expected = canvas.Draw(near, LookAtValues(near));
  EXPECT_LT(canvas.Draw(far, LookAtValues(far)).CountOthers(expected), 200);
  EXPECT_GT(expected.CountNear({255, 255, 255}, 0), 1000);
  EXPECT_LT(expected.CountNear({255, 255, 255}, 0), 400 * 300 * 8 / 10);
}

TEST(Pictures, OfAVariableThatThereIsNotAreGrey) {
  Frame frame;
  ShowOne(frame, Sheet(4, AddAsQuad));
  for (std::size_t layer = 0; layer < 5; ++layer) frame.styles.layerActive[layer] = true;
  PlotLook none = LookAtValues(frame);
  none.variable = 0;
  PlotLook unknown = none;
  unknown.variable = 99;
  Canvas canvas(400, 300);
  const Pixels grey = canvas.Draw(frame, none);
  EXPECT_EQ(canvas.Draw(frame, unknown).rgb, grey.rgb);
  EXPECT_GT(grey.CountNear({199, 204, 212}, 12), 10000);
}

TEST(Pictures, OfNothingAreWhite) {
  Frame frame;
  Canvas canvas(200, 150);
  EXPECT_EQ(canvas.Draw(frame, {}).CountNear({255, 255, 255}, 0), 200 * 150);
  EXPECT_FALSE(canvas.scene.HitAt(50.0, 50.0).has_value());
}

TEST(Pictures, OfAxesKeepTheirNumbersInTheWindow) {
  Frame frame;
  ShowOne(frame, Volume(4, AddAsBrick));
  PlotLook look = LookAtValues(frame);
  look.showAxes = true;
  look.showOrientation = true;
  Canvas canvas(400, 300);
  for (int step = 0; step < 8; ++step) {
    frame.view.alphaDeg = 45.0 * step + 10.0;
    const Pixels pixels = canvas.Draw(frame, look);
    int touched = 0;
    for (int y = 0; y < 270; ++y) {
      touched += Distance(pixels.At(0, y), {255, 255, 255}) > 60 ? 1 : 0;
      touched += Distance(pixels.At(330, y), {255, 255, 255}) > 60 ? 1 : 0;
    }
    for (int x = 0; x < 331; ++x) {
      touched += Distance(pixels.At(x, 0), {255, 255, 255}) > 60 ? 1 : 0;
      touched += Distance(pixels.At(x, 275), {255, 255, 255}) > 60 ? 1 : 0;
    }
    EXPECT_EQ(touched, 0) << "turned by " << frame.view.alphaDeg;
  }
}

}  // namespace
}  // namespace rendertests
