#include "BoxTurn.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace marquell::workbench {
namespace {

Triple Column(const std::array<double, 16>& m, std::size_t column) {
  return {m[column], m[4 + column], m[8 + column]};
}

void ExpectSameBox(const TurnedBox& a, const TurnedBox& b, double slack) {
  const auto ma = MatrixOf(a);
  const auto mb = MatrixOf(b);
  for (std::size_t n = 0; n < ma.size(); ++n) EXPECT_NEAR(ma[n], mb[n], slack) << n;
}

TEST(BoxTurn, ABoxThatIsNotTurnedIsItsCornerAndSize) {
  const TurnedBox box{{1, 2, 3}, {4, 5, 6}, {0, 0, 0}};
  const auto m = MatrixOf(box);
  EXPECT_EQ(Column(m, 3), (Triple{1, 2, 3}));
  EXPECT_EQ(Column(m, 0), (Triple{4, 0, 0}));
  EXPECT_EQ(Column(m, 2), (Triple{0, 0, 6}));
}

TEST(BoxTurn, AQuarterTurnAboutZBringsXToY) {
  const auto m = MatrixOf({{0, 0, 0}, {2, 1, 1}, {0, 0, 90}});
  EXPECT_NEAR(m[4], 2.0, 1e-12);  // The edge along x now rises in y.
  EXPECT_NEAR(m[0], 0.0, 1e-12);
}

TEST(BoxTurn, EdgesGiveBackTheBoxThatTheyCameFrom) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> angle(-180.0, 180.0);
  std::uniform_real_distribution<double> length(0.01, 10.0);
  for (int n = 0; n < 2000; ++n) {
    const TurnedBox box{{angle(random), angle(random), angle(random)},
                        {length(random), length(random), length(random)},
                        {angle(random), angle(random), angle(random)}};
    const auto m = MatrixOf(box);
    ExpectSameBox(box, BoxOf(box.anchor, Column(m, 0), Column(m, 1), Column(m, 2)), 1e-9);
  }
}

TEST(BoxTurn, AnglesAreKeptWhereTheyAreSmall) {
  const TurnedBox box{{0, 0, 0}, {1, 1, 1}, {10, -20, 30}};
  const auto m = MatrixOf(box);
  const TurnedBox back = BoxOf(box.anchor, Column(m, 0), Column(m, 1), Column(m, 2));
  EXPECT_NEAR(back.rotationDeg[0], 10, 1e-9);
  EXPECT_NEAR(back.rotationDeg[1], -20, 1e-9);
  EXPECT_NEAR(back.rotationDeg[2], 30, 1e-9);
}

TEST(BoxTurn, UprightBoxesComeBackToo) {
  for (const double y : {90.0, -90.0}) {
    const TurnedBox box{{1, 1, 1}, {1, 2, 3}, {25, y, 40}};
    const auto m = MatrixOf(box);
    ExpectSameBox(box, BoxOf(box.anchor, Column(m, 0), Column(m, 1), Column(m, 2)), 1e-7);
  }
}

TEST(BoxTurn, LeftHandedEdgesCoverTheSameSpace) {
  const TurnedBox box = BoxOf({0, 0, 1}, {1, 0, 0}, {0, 1, 0}, {0, 0, -1});
  ExpectSameBox(box, {{0, 0, 0}, {1, 1, 1}, {0, 0, 0}}, 1e-12);
}

}  // namespace
}  // namespace marquell::workbench
