#include "ViewMotion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace qelhost {
namespace {

using Matrix = std::array<double, 9>;

double LargestDifference(const Matrix& a, const Matrix& b) {
  double largest = 0.0;
  for (std::size_t n = 0; n < a.size(); ++n) largest = std::max(largest, std::fabs(a[n] - b[n]));
  return largest;
}

Matrix RotationOf(double psi, double alpha, double theta) {
  View view;
  view.psiDeg = psi;
  view.alphaDeg = alpha;
  view.thetaDeg = theta;
  return ProjectionOf(view).rotation;
}

TEST(ViewMotion, AnglesOfARotationGiveItAgain) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> angle(-360.0, 360.0);
  for (int round = 0; round < 20000; ++round) {
    View before;
    before.psiDeg = angle(random);
    before.thetaDeg = angle(random);
    const Matrix rotation = RotationOf(angle(random), angle(random), angle(random));
    const View view = WithRotation(before, rotation);
    ASSERT_LT(LargestDifference(ProjectionOf(view).rotation, rotation), 1e-12) << round;
  }
}

TEST(ViewMotion, AlmostAlongZTheRotationIsStillThatExactly) {
  std::mt19937 random(2);
  std::uniform_real_distribution<double> angle(-360.0, 360.0);
  for (const double psi : {1e-3, 1e-6, 1e-8, 1e-10, 1e-13, 1e-16}) {
    for (const double side : {0.0, 180.0}) {
      for (int round = 0; round < 200; ++round) {
        const Matrix rotation = RotationOf(side + psi, angle(random), angle(random));
        const View view = WithRotation(View(), rotation);
        ASSERT_LT(LargestDifference(ProjectionOf(view).rotation, rotation), 1e-12)
            << side << " + " << psi;
      }
    }
  }
}

TEST(ViewMotion, AlongZThetaIsKept) {
  View before;
  before.thetaDeg = 25.0;
  for (const double psi : {0.0, 180.0}) {
    const View view = WithRotation(before, RotationOf(psi, 50.0, 70.0));
    EXPECT_NEAR(view.thetaDeg, 25.0, 1e-9);
    EXPECT_EQ(view.psiDeg, psi);
  }
}

TEST(ViewMotion, PsiKeepsItsSign) {
  View before;
  before.psiDeg = -30.0;
  EXPECT_LT(WithRotation(before, RotationOf(-40.0, 10.0, 20.0)).psiDeg, 0.0);
  before.psiDeg = 30.0;
  EXPECT_GT(WithRotation(before, RotationOf(-40.0, 10.0, 20.0)).psiDeg, 0.0);
}

TEST(ViewMotion, TurningMovesWhatIsInFrontTheWayOfThePointer) {
  View view;
  view.psiDeg = 40.0;
  view.alphaDeg = 15.0;
  view.thetaDeg = 5.0;
  // The data point that lies straight before the viewer.
  const Matrix& r = ProjectionOf(view).rotation;
  const auto seen = [&](const View& turned) {
    return ProjectionOf(turned).ToPlane(r[6], r[7], r[8]);
  };
  const auto right = seen(Turned(view, 10.0, 0.0));
  EXPECT_NEAR(right[0], std::sin(10.0 * 0.017453292519943295), 1e-12);
  EXPECT_NEAR(right[1], 0.0, 1e-12);
  const auto up = seen(Turned(view, 0.0, 10.0));
  EXPECT_NEAR(up[0], 0.0, 1e-12);
  EXPECT_NEAR(up[1], std::sin(10.0 * 0.017453292519943295), 1e-12);
}

TEST(ViewMotion, NothingElseOfTheViewChanges) {
  View view;
  view.origin = {1.0, 2.0, 3.0};
  view.magnification = 4.0;
  view.translation = {5.0, 6.0};
  const View turned = Turned(view, 30.0, 20.0);
  EXPECT_EQ(turned.origin, view.origin);
  EXPECT_EQ(turned.magnification, view.magnification);
  EXPECT_EQ(turned.translation, view.translation);
}

}  // namespace
}  // namespace qelhost
