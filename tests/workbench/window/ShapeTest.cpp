// Box and sphere, dragged in the plot and typed in the dialog.
#include <QLineEdit>
#include <QTest>

#include <gmock/gmock.h>

#include "BoxTurn.h"
#include "Desk.h"

namespace marquell::workbench {
namespace {

class ShapeTest : public testing::Test {
 protected:
  void SetUp() override {
    desk.OpenExample("part/gmsh_part.vtu");
    desk.Choose("alongZ");
    desk.Choose("addOn:Marquell ...");
    desk.ChooseFrom("Choose variable to pick and alter", "phi");
    desk.Type("Define modifier for picked notes/cells", "*2");
    // A new box is larger than the data.
    for (int notch = 0; notch < 6; ++notch) desk.Wheel(desk.At(0, 0), -1);
  }

  double Field(const QString& name) {
    const QLineEdit* const field = desk.Field(name);
    return field == nullptr ? 1e300 : field->text().toDouble();
  }

  /// The fields of the box say what the handles show.
  void ExpectBoxAgrees() {
    const qelhost::ShownShape& shape = desk.host().shape;
    ASSERT_TRUE(shape.isShown);
    const char* const names[][3] = {{"Anchor X", "Anchor Y", "Anchor Z"},
                                    {"Size X", "Size Y", "Size Z"},
                                    {"Rotate X", "Rotate Y", "Rotate Z"}};
    const std::array<double, 3> values[] = {shape.anchor, shape.size, shape.rotationDeg};
    for (std::size_t row = 0; row < 3; ++row) {
      for (std::size_t axis = 0; axis < 3; ++axis) {
        EXPECT_NEAR(Field(names[row][axis]), values[row][axis],
                    1e-5 * (1.0 + std::abs(values[row][axis])))
            << names[row][axis];
      }
    }
  }

  /// A point of the data as the plot's pixel.
  QPoint PixelOf(const Triple& at) {
    const auto plane = qelhost::ProjectionOf(desk.Frame().view).ToPlane(at[0], at[1], at[2]);
    return desk.At(plane[0], plane[1]);
  }

  Desk desk;
};

TEST_F(ShapeTest, TheBoxIsMovedByItsMiddleHandle) {
  desk.Press("Define pick area using a cube");
  ExpectBoxAgrees();
  const qelhost::ShownShape before = desk.host().shape;
  const Triple middle{before.anchor[0] + before.size[0] / 2, before.anchor[1] + before.size[1] / 2,
                      before.anchor[2] + before.size[2] / 2};
  const QPoint from = PixelOf(middle);
  // Seen along Z the handle of the upper face lies over the middle one; from a corner it does not.
  desk.Choose("corner");
  const QPoint at = PixelOf(middle);
  desk.Drag(at, at + QPoint(40, 0));
  Q_UNUSED(from)
  const qelhost::ShownShape after = desk.host().shape;
  EXPECT_NE(before.anchor, after.anchor);
  for (std::size_t axis = 0; axis < 3; ++axis) {
    EXPECT_NEAR(before.size[axis], after.size[axis], 1e-4 * before.size[axis]);
  }
  ExpectBoxAgrees();
}

TEST_F(ShapeTest, AFaceOfTheBoxSizesIt) {
  desk.Press("Define pick area using a cube");
  const qelhost::ShownShape before = desk.host().shape;
  const QPoint face =
      PixelOf({before.anchor[0] + before.size[0], before.anchor[1] + before.size[1] / 2,
               before.anchor[2] + before.size[2] / 2});
  desk.Drag(face, face + QPoint(30, 0));
  const qelhost::ShownShape after = desk.host().shape;
  EXPECT_GT(after.size[0], before.size[0] * 1.02);
  EXPECT_NEAR(after.size[1], before.size[1], 1e-4 * before.size[1]);
  EXPECT_NEAR(after.anchor[0], before.anchor[0], 1e-4 * before.size[0]);
  ExpectBoxAgrees();
}

TEST_F(ShapeTest, DraggingBesideHandlesTurnsTheBox) {
  desk.Press("Define pick area using a cube");
  const qelhost::ShownShape before = desk.host().shape;
  // On a face, away from its handle.
  const QPoint face =
      PixelOf({before.anchor[0] + before.size[0] * 0.75, before.anchor[1] + before.size[1] * 0.75,
               before.anchor[2] + before.size[2]});
  desk.Drag(face, face + QPoint(25, 10));
  EXPECT_NE(before.rotationDeg, desk.host().shape.rotationDeg);
  ExpectBoxAgrees();
}

TEST_F(ShapeTest, TypedNumbersMoveTheHandles) {
  desk.Press("Define pick area using a cube");
  desk.Type("Size X", "12.5");
  EXPECT_EQ(desk.host().shape.size[0], 12.5);
  desk.Type("Rotate Z", "30");
  EXPECT_EQ(desk.host().shape.rotationDeg[2], 30.0);
  ExpectBoxAgrees();
}

TEST_F(ShapeTest, TheSphereIsSizedByItsSurface) {
  desk.Press("Define pick area using a sphere");
  const qelhost::ShownShape before = desk.host().shape;
  ASSERT_TRUE(before.isShown);
  ASSERT_EQ(before.kind, Shape_Sphere);
  const QPoint rim =
      PixelOf({before.anchor[0] + 0.9 * before.size[0], before.anchor[1], before.anchor[2]});
  const QPoint wider =
      PixelOf({before.anchor[0] + 1.3 * before.size[0], before.anchor[1], before.anchor[2]});
  desk.Drag(rim, wider);
  const qelhost::ShownShape after = desk.host().shape;
  EXPECT_NEAR(after.size[0], 1.3 * before.size[0], 0.03 * before.size[0]);
  for (std::size_t axis = 0; axis < 3; ++axis) {
    EXPECT_NEAR(after.anchor[axis], before.anchor[axis], 1e-5 * before.size[0]);
  }
  EXPECT_NEAR(Field("Radius"), after.size[0], 1e-5 * after.size[0]);
  EXPECT_NEAR(Field("Center X"), after.anchor[0], 1e-5 * (1 + std::abs(after.anchor[0])));
}

TEST_F(ShapeTest, TheSphereIsMovedByItsMiddle) {
  desk.Press("Define pick area using a sphere");
  const qelhost::ShownShape before = desk.host().shape;
  const QPoint middle = PixelOf(before.anchor);
  desk.Drag(middle, middle + QPoint(40, 0));
  const qelhost::ShownShape after = desk.host().shape;
  EXPECT_GT(after.anchor[0], before.anchor[0]);
  EXPECT_NEAR(after.size[0], before.size[0], 1e-5 * before.size[0]);
  EXPECT_NEAR(Field("Center X"), after.anchor[0], 1e-5 * (1 + std::abs(after.anchor[0])));
}

TEST_F(ShapeTest, HandlesGoWithTheTool) {
  desk.Press("Define pick area using a cube");
  EXPECT_TRUE(desk.host().shape.isShown);
  desk.Press("Define pick area using a rectangle");
  EXPECT_FALSE(desk.host().shape.isShown);
  desk.Press("Define pick area using a cube");
  EXPECT_TRUE(desk.host().shape.isShown);
  EXPECT_TRUE(desk.window().Files().Close());
  EXPECT_FALSE(desk.host().shape.isShown);
}

TEST_F(ShapeTest, TheCountFollowsTheBoxWhileItIsDragged) {
  desk.Press("Define pick area using a cube");
  desk.Settle();
  const QString before = desk.Label("counted");
  EXPECT_FALSE(before.isEmpty());
  desk.Type("Size X", "1.5");
  desk.Settle();
  EXPECT_NE(desk.Label("counted"), before);
}

}  // namespace
}  // namespace marquell::workbench
