// What the tests of the box share.
#pragma once

#include "BoundaryTest.h"

#include <vector>

namespace fakehost {

using ClippingCube = Boundary3dTest;

inline constexpr char kUpright[] =
    "PICKCUBE ANCHORX=0.5 ANCHORY=1 ANCHORZ=1.5 SIZEX=1 SIZEY=1.25 SIZEZ=2";

inline void ExpectNodes(const std::vector<Point>& nodes, const std::vector<Point>& expected) {
  ASSERT_EQ(nodes.size(), expected.size());
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    EXPECT_NEAR(nodes[i].x, expected[i].x, 1e-12) << "node " << i + 1;
    EXPECT_NEAR(nodes[i].y, expected[i].y, 1e-12) << "node " << i + 1;
    EXPECT_NEAR(nodes[i].z, expected[i].z, 1e-12) << "node " << i + 1;
  }
}

/// The corners of an upright box in node order.
inline std::vector<Point> BoxNodes(double x0, double y0, double z0, double x1, double y1,
                                   double z1) {
  return {{x0, y0, z0}, {x0, y1, z0}, {x1, y1, z0}, {x1, y0, z0},
          {x0, y0, z1}, {x0, y1, z1}, {x1, y1, z1}, {x1, y0, z1}};
}

}  // namespace fakehost
