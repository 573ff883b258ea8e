// What is drawn over the data.
#include <gtest/gtest.h>

#include "SceneTesting.h"

namespace rendertests {
namespace {

TEST(Highlight, ShowsCellsInTheAccentColour) {
  Frame frame;
  ShowMeshes(frame, {WithValues(Image(10, 10, 0))});
  PlotLook look = LookAt(frame, "n");
  look.variable = 0;
  Canvas canvas(kWidth, kHeight);
  const Pixels plain = canvas.Draw(frame, look);
  ZoneHighlight highlight{1, ValueLocation_CellCentered, ItemBits(100)};
  for (std::int64_t cell = 0; cell < 100; cell += 10)
    highlight.items.Add(cell);  // the first column
  canvas.scene.SetHighlight({highlight});
  const Pixels marked = canvas.Draw(frame, look);
  const auto differs = [&](double gridX, double gridY) {
    const auto [x, y] = canvas.scene.PixelAt(gridX, gridY);
    return Distance(plain.At(x, y), marked.At(x, y)) > 60;
  };
  EXPECT_TRUE(differs(0.5, 0.4));
  EXPECT_TRUE(differs(0.5, 9.6));
  EXPECT_FALSE(differs(1.5, 5.0));
  EXPECT_GT(marked.CountNear({255, 89, 0}, 60), 200) << "the outline";
  EXPECT_EQ(plain.CountNear({255, 89, 0}, 60), 0);
  canvas.scene.SetHighlight({});
  EXPECT_EQ(canvas.Draw(frame, look).rgb, plain.rgb);
}

TEST(Highlight, LeavesOutHiddenCellsAndInactiveZones) {
  Frame frame;
  ShowMeshes(frame, {WithValues(Image(10, 10, 0))});
  const PlotLook look = LookAt(frame, "n");
  Canvas canvas(kWidth, kHeight);
  ZoneHighlight highlight{1, ValueLocation_CellCentered, ItemBits(100)};
  highlight.items.Add(9);  // from X = 9 to 10
  canvas.scene.SetHighlight({highlight});
  EXPECT_GT(canvas.Draw(frame, look).CountNear({255, 89, 0}, 60), 20);
  HideWhere(frame, 'X', 8.5);
  EXPECT_EQ(canvas.Draw(frame, look).CountNear({255, 89, 0}, 60), 0);
  frame.styles.blanking.include = false;
  EXPECT_GT(canvas.Draw(frame, look).CountNear({255, 89, 0}, 60), 20);
  frame.Data()->FindZone(1)->active = false;
  EXPECT_EQ(canvas.Draw(frame, look).CountNear({255, 89, 0}, 60), 0);
}

TEST(Highlight, ShowsNodesAsPoints) {
  Frame frame;
  ShowMeshes(frame, {WithValues(Image(10, 10, 0))});
  const PlotLook look = LookAt(frame, "n");
  Canvas canvas(kWidth, kHeight);
  ZoneHighlight highlight{1, ValueLocation_Nodal, ItemBits(121)};
  highlight.items.Add(60);  // the middle
  canvas.scene.SetHighlight({highlight});
  const Pixels marked = canvas.Draw(frame, look);
  const auto [x, y] = canvas.scene.PixelAt(5.0, 5.0);
  EXPECT_LT(Distance(marked.At(x, y), {255, 89, 0}), 30);
  EXPECT_LT(marked.CountNear({255, 89, 0}, 30), 100);
}

TEST(Overlay, ShowsTheGeometryThatIsDrawnAndTheSelectedOne) {
  Frame frame;
  ShowMeshes(frame, {WithValues(Image(10, 10, 0))});
  const PlotLook look = LookAt(frame, "n");
  Canvas canvas(kWidth, kHeight);
  Geometry rectangle;
  rectangle.type = GeomType_Rectangle;
  rectangle.anchor = {2.0, 2.0, 0.0};
  rectangle.size = {4.0, 3.0};
  canvas.scene.SetRubberBand(rectangle);
  EXPECT_GT(canvas.Draw(frame, look).CountNear({255, 89, 0}, 40), 100);
  canvas.scene.SetRubberBand({});
  EXPECT_EQ(canvas.Draw(frame, look).CountNear({255, 89, 0}, 40), 0);
  const Pixel geometryColour = {217, 26, 140};
  const QelGeomID_t id = frame.geometries.Add(rectangle);
  const int plain = canvas.Draw(frame, look).CountNear(geometryColour, 30);
  EXPECT_GT(plain, 100);
  canvas.scene.SetSelectedGeometry(id);
  EXPECT_GT(canvas.Draw(frame, look).CountNear(geometryColour, 30), plain + 150);
}

}  // namespace
}  // namespace rendertests
