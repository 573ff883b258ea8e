#include "UserActions.h"

#include "HostCommands.h"
#include "TestData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qelhost {
namespace {

using ::testing::ElementsAre;

class UserActions : public ::testing::Test {
 protected:
  UserActions() {
    host.ShowDataSet(MakeData(3, 3, 3));
    host.recorder.Start(FirstStateOf(host.frames));
  }
  ~UserActions() override {
    host.recorder.Stop();
    host.CloseAll();
  }
  const Geometry& Drawn() { return *host.frames.Active()->geometries.At(1); }

  Host& host = Host::Instance();
};

struct Row {
  const char* name;
  Geometry geometry;
  const char* command;
};
Geometry Shape(QelGeomType_e type, double x, double y, double a, double b,
               std::vector<std::array<double, 2>> points = {}) {
  Geometry geometry;
  geometry.type = type;
  geometry.anchor = {x, y, 0.0};
  geometry.size = {a, b};
  geometry.points = std::move(points);
  return geometry;
}

TEST_F(UserActions, EveryShapeIsDrawnByItsOwnCommand) {
  const Row rows[] = {
      {"Rectangle", Shape(GeomType_Rectangle, 1, -2, 3, 4.5),
       "$!GEOMETRY RECTANGLE X=1 Y=-2 WIDTH=3 HEIGHT=4.5"},
      {"Square", Shape(GeomType_Square, 0, 0, 1e-7, 0), "$!GEOMETRY SQUARE X=0 Y=0 SIZE=1e-07"},
      {"Circle", Shape(GeomType_Circle, 0.5, 0.25, 2, 0),
       "$!GEOMETRY CIRCLE X=0.5 Y=0.25 RADIUS=2"},
      {"Ellipse", Shape(GeomType_Ellipse, 0, 0, 2, 1),
       "$!GEOMETRY ELLIPSE X=0 Y=0 WIDTH=2 HEIGHT=1"},
      {"Polyline", Shape(GeomType_LineSegs, 1, 2, 0, 0, {{{0, 0}}, {{1.5, 0}}, {{0, -1}}}),
       "$!GEOMETRY POLYLINE X=1 Y=2 POINTS=\"0,0 1.5,0 0,-1\""}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(DrawCommand(row.geometry), row.command);
    Act(host, DrawCommand(row.geometry));
    EXPECT_EQ(Drawn().type, row.geometry.type);
    EXPECT_EQ(Drawn().anchor, row.geometry.anchor);
    EXPECT_EQ(Drawn().size, row.geometry.size);
    EXPECT_EQ(Drawn().points, row.geometry.points);
    Act(host, "$!GEOMETRY DELETE 1");
  }
}

TEST_F(UserActions, WhatIsDrawnByHandHasSixDigits) {
  Act(host, DrawCommand(Shape(GeomType_Circle, 1.0 / 3.0, 2e6 + 0.5, 0.1, 0)));
  EXPECT_EQ(Drawn().anchor[0], 0.333333);
  EXPECT_EQ(Drawn().anchor[1], 2e6);
}

TEST_F(UserActions, AreRecordedOnceAndOnlyWhenTheyWorked) {
  Act(host, "$!TIME 0.5");
  EXPECT_THROW(Act(host, "$!GEOMETRY DELETE 1"), CommandError);
  EXPECT_THROW(Act(host, "$!FROBNICATE"), CommandError);
  Act(host, "$!VIEW PSI=20");
  EXPECT_THAT(host.recorder.Lines(),
              ElementsAre("# marquell journal 1", "$!TIME 0.5", "$!VIEW PSI=20"));
  EXPECT_FALSE(host.lock.IsOn());
}

TEST_F(UserActions, WhatChangedUnsaidIsSaidFirst) {
  host.frames.Active()->solutionTime = 3.0;
  Act(host, "$!VIEW PSI=20");
  EXPECT_THAT(host.recorder.Lines(),
              ElementsAre("# marquell journal 1", "$!TIME 3", "$!VIEW PSI=20"));
}

}  // namespace
}  // namespace qelhost
