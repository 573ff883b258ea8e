#include "GeometryDrawing.h"

#include <gtest/gtest.h>

namespace marquell::workbench {
namespace {

TEST(GeometryDrawing, OutlinesAreFoundWithinReachAndTheLastOneWins) {
  qelhost::GeometryList list;
  list.Add(*DraggedGeometry(Mouse_GeomRectangle, {0, 0}, {4, 2}));
  list.Add(*DraggedGeometry(Mouse_GeomCircle, {4, 1}, {5, 1}));
  EXPECT_EQ(GeometryAt(list, {2, 2.05}, 0.1), 1);
  EXPECT_EQ(GeometryAt(list, {5.02, 1}, 0.1), 2);
  EXPECT_EQ(GeometryAt(list, {4, 0}, 0.1), 2);  // Where both pass.
  EXPECT_EQ(GeometryAt(list, {2, 1}, 0.1), 0);  // Inside is not on it.
  EXPECT_EQ(GeometryAt(list, {2, 2.2}, 0.1), 0);
}

TEST(GeometryDrawing, AnEllipseIsAboutItsCentre) {
  qelhost::GeometryList list;
  list.Add(*DraggedGeometry(Mouse_GeomEllipse, {1, 1}, {3, 2}));
  EXPECT_EQ(GeometryAt(list, {3, 1}, 0.01), 1);
  EXPECT_EQ(GeometryAt(list, {1, 2}, 0.01), 1);
  EXPECT_EQ(GeometryAt(list, {-1, 1}, 0.01), 1);
}

TEST(GeometryDrawing, NothingIsDrawnWithoutExtent) {
  for (const QelMouseMode_e mode :
       {Mouse_GeomRectangle, Mouse_GeomSquare, Mouse_GeomCircle, Mouse_GeomEllipse}) {
    EXPECT_FALSE(DraggedGeometry(mode, {1, 1}, {1, 1})) << mode;
  }
  EXPECT_FALSE(DraggedGeometry(Mouse_GeomRectangle, {1, 1}, {1, 2}));
  EXPECT_FALSE(DraggedGeometry(Mouse_Select, {1, 1}, {2, 2}));
}

TEST(GeometryDrawing, PolygonsAreRelativeToTheirFirstCorner) {
  const qelhost::Geometry polygon = PolygonOf({{1, 2}, {3, 2}, {3, 5}});
  EXPECT_EQ(polygon.anchor[0], 1.0);
  EXPECT_EQ(polygon.points[0], (std::array<double, 2>{0, 0}));
  EXPECT_EQ(polygon.points[2], (std::array<double, 2>{2, 3}));
}

TEST(GeometryDrawing, MovesAreWrittenAsAJournalCarriesThem) {
  EXPECT_EQ(MoveCommand(3, 0.123456789, -2e-7), "$!GEOMETRY MOVE 3 X=0.123457 Y=-2e-07");
}

}  // namespace
}  // namespace marquell::workbench
