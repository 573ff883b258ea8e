#include "View.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace qelhost {
namespace {

using Point = std::array<double, 3>;

View Looking(double psiDeg, double alphaDeg, double thetaDeg) {
  View view;
  view.psiDeg = psiDeg;
  view.alphaDeg = alphaDeg;
  view.thetaDeg = thetaDeg;
  return view;
}

struct DirectionRow {
  const char* rule;
  View view;
  Point plane;  ///< of the point (1, 2, 3)
};

class ViewDirection : public ::testing::TestWithParam<DirectionRow> {};

TEST_P(ViewDirection, FollowsRuleWithoutRounding) {
  EXPECT_EQ(ProjectionOf(GetParam().view).ToPlane(1, 2, 3), GetParam().plane);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, ViewDirection,
    ::testing::Values(DirectionRow{"DownZWithXRightAndYUp", Looking(0, 0, 0), {1, 2, 3}},
                      DirectionRow{"AlongYWithXRightAndZUp", Looking(90, 0, 0), {1, 3, -2}},
                      DirectionRow{"AlongXWithYRightAndZUp", Looking(90, -90, 0), {2, 3, 1}},
                      DirectionRow{"ThetaTurnsThePicture", Looking(0, 0, 90), {-2, 1, 3}},
                      DirectionRow{"WholeTurnsDoNothing", Looking(360, -720, 360), {1, 2, 3}}),
    [](const auto& row) { return std::string(row.param.rule); });

/// The vector turned about a unit axis by Rodrigues' formula.
Point TurnedAbout(const Point& axis, double degrees, const Point& v) {
  const double angle = degrees * std::acos(-1.0) / 180.0;
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  const double along = axis[0] * v[0] + axis[1] * v[1] + axis[2] * v[2];
  const Point cross = {axis[1] * v[2] - axis[2] * v[1], axis[2] * v[0] - axis[0] * v[2],
                       axis[0] * v[1] - axis[1] * v[0]};
  Point turned{};
  for (std::size_t i = 0; i < 3; ++i) {
    turned[i] = v[i] * c + cross[i] * s + axis[i] * along * (1 - c);
  }
  return turned;
}

TEST(Projection, IsTheTurnOfTheDataAboutItsAxesAndThenThePicture) {
  for (const View& angles : {Looking(60, 30, 240), Looking(17, -123, 5), Looking(90, 45, 180)}) {
    View view = angles;
    view.origin = {1.5, -2, 0.25};
    Point expected = {4 - 1.5, 5 + 2, -6 - 0.25};
    expected = TurnedAbout({0, 0, 1}, view.alphaDeg, expected);
    expected = TurnedAbout({1, 0, 0}, -view.psiDeg, expected);
    expected = TurnedAbout({0, 0, 1}, view.thetaDeg, expected);
    const Point plane = ProjectionOf(view).ToPlane(4, 5, -6);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(plane[i], expected[i], 1e-12) << i;
  }
}

TEST(Projection, DoesNotDependOnZoomOrTranslation) {
  View zoomed = Looking(60, 30, 240);
  zoomed.magnification = 7;
  zoomed.translation = {3, 4};
  EXPECT_EQ(ProjectionOf(zoomed).ToPlane(1, 2, 3),
            ProjectionOf(Looking(60, 30, 240)).ToPlane(1, 2, 3));
  EXPECT_TRUE(HaveSameProjection(zoomed, Looking(60, 30, 240)));
  EXPECT_NE(zoomed, Looking(60, 30, 240));
}

TEST(AddDegrees, StaysWithinATurnAndCleansRounding) {
  EXPECT_EQ(AddDegrees(350, 20), 10);
  EXPECT_EQ(AddDegrees(-350, -20), -10);
  EXPECT_EQ(AddDegrees(90, 270), 0);
  EXPECT_EQ(AddDegrees(0, 89.99999999999999), 90);
  EXPECT_EQ(AddDegrees(0.25, 0.5), 0.75);
  EXPECT_FALSE(std::signbit(AddDegrees(90, -90)));
}

}  // namespace
}  // namespace qelhost
