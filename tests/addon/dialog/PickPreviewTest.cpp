// What the host is told an apply would write, and when it is told that there is nothing to apply.
#include "DialogTest.h"
#include "HostLock.h"
#include "SessionRegistry.h"

#include <algorithm>
#include <vector>

namespace {

using fakehost::DialogTest;
using fakehost::Geometry;
using fakehost::MakeLattice;
using fakehost::PickAnswer;
using fakehost::Service;
using fakehost::StoredType;
using qelvane::qelutiltools::ControlIds;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr LgIndex_t kOnSurfaceOnly = 2;

/// A block of 3 x 3 x 3 bricks: 64 nodes, 27 cells.
class PickPreview : public DialogTest {
 protected:
  void SetUp() override {
    host.OfferAlso(Service::PickQuery);
    DialogTest::SetUp();
    host.isRecording = true;
  }

  void ChooseVariable(LgIndex_t var) { ASSERT_TRUE(host.Choose(Ids().variableMenu, var)); }

  /// Inside of it are the nodes with x and y up to 1, and one column of cells.
  void DrawCorner() { host.DrawGeometry(RectangleUpTo(1.0)); }

  bool IsAnswered(LgIndex_t zone = 1) { return host.AskPick(zone, 64).isAnswered; }

  /// The items, from 1, that would be written.
  std::vector<LgIndex_t> Items(LgIndex_t zone, std::int64_t bitCount) {
    const PickAnswer answer = host.AskPick(zone, bitCount);
    EXPECT_TRUE(answer.isAnswered);
    std::vector<LgIndex_t> items;
    for (std::size_t i = 0; i < answer.items.size(); ++i) {
      if (answer.items[i]) items.push_back(static_cast<LgIndex_t>(i + 1));
    }
    return items;
  }
};

TEST_F(PickPreview, IsOfferedOnceAndOnlyWhereTheHostKnowsOfIt) {
  EXPECT_NE(host.pickQuery, nullptr);
  host.Reset();
  host.OfferExtensions({});
  InitQelAddOn113();
  EXPECT_EQ(host.pickQuery, nullptr);
}

TEST_F(PickPreview, ShowsTheCellsOfACellCentredVariable) {
  ChooseVariable(c);
  DrawCorner();
  EXPECT_THAT(Items(1, 27), ElementsAre(1, 10, 19));
}

TEST_F(PickPreview, ShowsTheNodesOfANodalVariable) {
  ChooseVariable(n);
  DrawCorner();
  EXPECT_THAT(Items(1, 64),
              ElementsAre(1, 2, 5, 6, 17, 18, 21, 22, 33, 34, 37, 38, 49, 50, 53, 54));
}

TEST_F(PickPreview, FollowsTheRule) {
  ChooseVariable(c);
  DrawCorner();
  ASSERT_TRUE(host.Choose(Ids().anyAllMenu, 1));
  EXPECT_THAT(Items(1, 27), SizeIs(12));
  ASSERT_TRUE(host.Choose(Ids().insideOutsideMenu, 2));
  EXPECT_THAT(Items(1, 27), SizeIs(24));
}

TEST_F(PickPreview, IsRefusedWhenThereAreMoreValuesThanBits) {
  ChooseVariable(n);
  DrawCorner();
  EXPECT_FALSE(host.AskPick(1, 27).isAnswered);
  EXPECT_FALSE(host.AskPick(1, 63).isAnswered);
  EXPECT_FALSE(host.AskPick(1, 0).isAnswered);
  EXPECT_THAT(host.AskPick(1, 63).items, Each(false));
  EXPECT_TRUE(host.AskPick(1, 64).isAnswered);
}

TEST_F(PickPreview, LeavesBitsBeyondTheValuesUnset) {
  ChooseVariable(c);
  DrawCorner();
  EXPECT_THAT(Items(1, 200), ElementsAre(1, 10, 19));
}

TEST_F(PickPreview, IsRefusedForWhatIsNoPlaceOrNoZone) {
  ChooseVariable(n);
  DrawCorner();
  std::uint64_t word = 7;
  EXPECT_FALSE(host.pickQuery(1, nullptr, 64));
  EXPECT_FALSE(host.pickQuery(1, &word, -1));
  EXPECT_EQ(word, 7U);
  EXPECT_FALSE(IsAnswered(0));
  EXPECT_FALSE(IsAnswered(-1));
  EXPECT_FALSE(IsAnswered(2));
}

TEST_F(PickPreview, IsNothingWithoutABoundary) {
  ChooseVariable(n);
  EXPECT_FALSE(IsAnswered());
  DrawCorner();
  EXPECT_TRUE(IsAnswered());
  host.DeleteGeometry(host.ActiveFrame().geometries[0].id);
  EXPECT_FALSE(IsAnswered());
}

TEST_F(PickPreview, IsNothingBeforeAVariableIsChosen) {
  DrawCorner();
  EXPECT_FALSE(IsAnswered());
}

TEST_F(PickPreview, IsNothingWhileItIsOpenWhichGeometryIsMeant) {
  ChooseVariable(c);
  DrawCorner();
  host.DrawGeometry(RectangleUpTo(9.0));
  EXPECT_FALSE(IsAnswered());
  EXPECT_THAT(host.messageBoxes, IsEmpty());
  host.SelectGeometry(host.ActiveFrame().geometries[1].id);
  EXPECT_THAT(Items(1, 27), SizeIs(27));
}

TEST_F(PickPreview, IsNothingForAnEllipse) {
  ChooseVariable(c);
  Geometry ellipse = RectangleUpTo(9.0);
  ellipse.type = GeomType_Ellipse;
  host.AddGeometry(ellipse);
  EXPECT_FALSE(IsAnswered());
  EXPECT_THAT(host.messageBoxes, IsEmpty());
}

TEST_F(PickPreview, IsNothingWhileASeedIsNeeded) {
  ChooseVariable(c);
  DrawCorner();
  ASSERT_TRUE(host.ChooseRadio(Ids().surfaceRadioBox, kOnSurfaceOnly));
  EXPECT_FALSE(IsAnswered());
  ASSERT_TRUE(host.Press(Ids().applyButton));
  EXPECT_FALSE(IsAnswered());
  ASSERT_TRUE(host.ChooseRadio(Ids().surfaceRadioBox, 1));
  EXPECT_TRUE(IsAnswered());
}

TEST_F(PickPreview, IsNothingForSingleElements) {
  ChooseVariable(c);
  DrawCorner();
  ASSERT_TRUE(host.Switch(Ids().elementTool, true));
  EXPECT_FALSE(IsAnswered());
}

TEST_F(PickPreview, OfABoxNeedsItsZoneAndNoSeed) {
  ChooseVariable(c);
  ASSERT_TRUE(host.ChooseRadio(Ids().surfaceRadioBox, kOnSurfaceOnly));
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  EXPECT_THAT(Items(1, 27), SizeIs(27));
  const LgIndex_t box = host.ZoneNamed("PICKING_CUBE");
  EXPECT_THAT(Items(box, 8), IsEmpty()) << "the zone that shows it is not picked";
  host.ZoneAt(box)->name = "renamed";
  EXPECT_FALSE(IsAnswered());
}

TEST_F(PickPreview, OfABoxFollowsWhatWasJustTyped) {
  ChooseVariable(c);
  ASSERT_TRUE(host.Switch(Ids().sphereTool, true));
  ASSERT_TRUE(host.EnterText(Ids().radiusField, "1.5"));
  const std::size_t queued = host.idleQueue.size();
  EXPECT_THAT(Items(1, 27), ElementsAre(14)) << "the middle cell";
  EXPECT_EQ(host.idleQueue.size(), queued);
}

TEST_F(PickPreview, OfABoxIsNothingOnceThePlotIsFlat) {
  ChooseVariable(c);
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  host.ActiveFrame().plotType = PlotType_Cartesian2D;
  EXPECT_FALSE(IsAnswered());
}

/// A box that is placed anew has no angles, which its transforms learn when apply updates it.
TEST_F(PickPreview, OfABoxPlacedAnewForgetsOldAngles) {
  ChooseVariable(c);
  host.ActiveFrame().view.magnification = 2.0;
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  ASSERT_TRUE(host.EnterText(Ids().rotateXField, "45"));
  ASSERT_TRUE(host.EnterText(Ids().anchorYField, "1.5"));
  ASSERT_TRUE(host.EnterText(Ids().anchorZField, "1.5"));
  ASSERT_TRUE(host.EnterText(Ids().anchorXField, "1000"));
  host.RunIdleQueue();
  ASSERT_TRUE(host.Switch(Ids().cubeTool, false));
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  ASSERT_EQ(TextOf(Ids().rotateXField), "0");
  EXPECT_THAT(Items(1, 27), SizeIs(27));
  ASSERT_FALSE(Session().Cube().FillsItsBox()) << "a question updates nothing";
  ASSERT_TRUE(host.EnterText(Ids().modifierField, "=-1"));
  ASSERT_TRUE(host.Press(Ids().applyButton));
  EXPECT_THAT(host.ValuesOf(1, c), Each(-1.0));
}

TEST_F(PickPreview, HasNoItemsInZonesThatAreLeftAlone) {
  host.AddZone(MakeLattice(ZoneType_FEBrick, 1, 1, 1));
  ChooseVariable(n);
  DrawCorner();
  EXPECT_THAT(Items(2, 8), IsEmpty()) << "the variable is passive there";
  host.ZoneAt(1)->isActive = false;
  EXPECT_THAT(Items(1, 64), IsEmpty());
  host.ZoneAt(1)->isActive = true;
  host.ZoneAt(1)->strand = 1;
  host.ZoneAt(1)->solutionTime = 1.0;
  host.ZoneAt(2)->strand = 1;
  EXPECT_THAT(Items(1, 64), IsEmpty()) << "another time step is shown";
}

TEST_F(PickPreview, LeavesOutWhatIsHiddenWhileAltering) {
  ChooseVariable(c);
  DrawCorner();
  host.ActiveFrame().blanking.constraints[1] = {
      true, c, 0, BlankRelOp_EqualTo, ConstraintOp2Mode_UseConstant, 100.0};
  host.ActiveFrame().blanking.cellMode = BlankCellMode_PrimaryValue;
  EXPECT_THAT(Items(1, 27), ElementsAre(1, 19));
  host.SwitchBlanking(false);
  EXPECT_THAT(Items(1, 27), ElementsAre(1, 10, 19));
}

// Blanking ---------------------------------------------------------------------------------------

class BlankPreview : public PickPreview {
 protected:
  void SetUp() override {
    PickPreview::SetUp();
    DrawCorner();
    ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
    blankVar = c + 1;
    ASSERT_EQ(host.ActiveData()->varNames.back(), "PICK_BLANK");
  }
  bool IsPassive() { return host.ValuesAt(1, blankVar)->storage == nullptr; }
  LgIndex_t blankVar = 0;
};

TEST_F(BlankPreview, CountsWhatAPassiveVariableWouldGet) {
  ASSERT_TRUE(IsPassive());
  EXPECT_FALSE(host.AskPick(1, 26).isAnswered);
  EXPECT_THAT(Items(1, 27), ElementsAre(1, 10, 19));
  EXPECT_TRUE(IsPassive()) << "a question makes no values";
  ASSERT_TRUE(host.Press(Ids().applyButton));
  EXPECT_FALSE(IsPassive());
  EXPECT_THAT(Items(1, 27), ElementsAre(1, 10, 19)) << "hidden cells are hidden once more";
}

TEST_F(BlankPreview, ShowsCellsAlsoWhileTheVariableIsGone) {
  fakehost::DataSet& data = *host.ActiveData();
  data.varNames.pop_back();
  for (fakehost::Zone& zone : data.zones) zone.vars.pop_back();
  EXPECT_THAT(Items(1, 27), ElementsAre(1, 10, 19));
  EXPECT_THAT(data.varNames, SizeIs(5)) << "a question makes no variable";
}

TEST_F(BlankPreview, FollowsThePage) {
  ASSERT_TRUE(host.TurnTo(Ids().tab, 1));
  ChooseVariable(n);
  EXPECT_FALSE(host.AskPick(1, 27).isAnswered) << "nodes are altered";
  ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
  EXPECT_TRUE(host.AskPick(1, 27).isAnswered);
}

// When there is no dialog to press apply in
// --------------------------------------------------------

class PreviewOf : public PickPreview {
 protected:
  void SetUp() override {
    PickPreview::SetUp();
    ChooseVariable(c);
    DrawCorner();
    ASSERT_TRUE(IsAnswered());
  }
};

TEST_F(PreviewOf, AClosedDialogIsNothing) {
  host.CloseWindow(Ids().dialog);
  EXPECT_FALSE(IsAnswered());
  host.ChooseMenu("Marquell ...");
  EXPECT_TRUE(IsAnswered());
}

TEST_F(PreviewOf, ADialogThatAPlayedLineDroppedIsNothing) {
  host.Play("VIEWXY");
  ASSERT_FALSE(host.IsDialogUp());
  EXPECT_FALSE(IsAnswered());
}

TEST_F(PreviewOf, ALinePlotIsNothing) {
  host.ActiveFrame().plotType = PlotType_Line;
  EXPECT_FALSE(IsAnswered());
}

TEST_F(PreviewOf, AFrameThatTheDialogHasNotFollowedYetIsNothing) {
  host.AddFrame(PlotType_Cartesian3D);
  host.AddZone(MakeLattice(ZoneType_FEBrick, 3, 3, 3));
  for (const char* name : {"n", "c"}) {
    host.AddVariable(name, name[0] == 'n' ? ValueLocation_Nodal : ValueLocation_CellCentered,
                     StoredType::Double, [](LgIndex_t, LgIndex_t) { return 0.0; });
  }
  host.AddGeometry(RectangleUpTo(1.0));
  host.activeFrame = 0;
  host.SwitchFrame(1);
  EXPECT_FALSE(IsAnswered());
  host.SwitchFrame(0);
  host.RunIdleQueue();
  EXPECT_TRUE(IsAnswered());
}

TEST_F(PreviewOf, AnEmptyFrameIsNothing) {
  host.AddFrame(PlotType_Cartesian3D);
  EXPECT_FALSE(IsAnswered());
}

TEST_F(PreviewOf, EverythingClosedIsNothing) {
  host.CloseAll();
  EXPECT_FALSE(IsAnswered());
  EXPECT_THAT(host.errorBoxes, IsEmpty());
}

TEST_F(PreviewOf, WhatCannotBeReadIsNothingAndShowsNoBox) {
  constexpr const char* kCalls[] = {"QelUtilDataValueGetReadableNLRef",
                                    "QelUtilDataValueRefGetGetFunc",
                                    "QelUtilDataNodeGetReadableRef",
                                    "QelUtilZoneGetRelevant",
                                    "QelUtilSetupTransformations",
                                    "QelGUIDialogIsUp",
                                    "QelUtilGeomIsValid"};
  for (const char* call : kCalls) {
    SCOPED_TRACE(call);
    host.FailCall(call, 1);
    std::vector<std::uint64_t> bits(1, ~std::uint64_t{0});
    EXPECT_FALSE(host.pickQuery(1, bits.data(), 27));
    EXPECT_TRUE(host.WasFaultHit());
    EXPECT_EQ(bits[0], ~std::uint64_t{0} << 27) << "all that was asked for is defined";
    EXPECT_TRUE(IsAnswered());
  }
  EXPECT_THAT(host.errorBoxes, IsEmpty());
  EXPECT_THAT(host.messageBoxes, IsEmpty());
}

TEST_F(PreviewOf, KeepsTheUndoUsable) {
  ASSERT_TRUE(host.EnterText(Ids().modifierField, "+5"));
  const std::vector<double> before = host.ValuesOf(1, c);
  ASSERT_TRUE(host.Press(Ids().applyButton));
  EXPECT_TRUE(IsAnswered());
  EXPECT_TRUE(IsSensitive(Ids().undoAlterButton));
  ASSERT_TRUE(host.Press(Ids().undoAlterButton));
  EXPECT_EQ(host.ValuesOf(1, c), before);
}

TEST_F(PreviewOf, APolygonIsAnsweredAnewWhenItIsAnother) {
  Geometry polygon;
  polygon.type = GeomType_LineSegs;
  polygon.points = {{-1, -1, 0}, {1.5, -1, 0}, {1.5, 1.5, 0}, {-1, 1.5, 0}};
  host.ActiveFrame().geometries.clear();
  host.DrawGeometry(polygon);
  EXPECT_THAT(Items(1, 27), ElementsAre(1, 10, 19));
  EXPECT_THAT(Items(1, 27), ElementsAre(1, 10, 19));
  host.ActiveFrame().geometries[0].points[1].x = 2.5;
  host.ActiveFrame().geometries[0].points[2].x = 2.5;
  EXPECT_THAT(Items(1, 27), ElementsAre(1, 2, 10, 11, 19, 20));
  host.ActiveFrame().geometries[0].points.resize(2);
  EXPECT_FALSE(IsAnswered());
}

}  // namespace
