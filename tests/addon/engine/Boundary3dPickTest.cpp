// Picking in a box and in a sphere through the whole add-on: what is picked, and undo.
#include "Boundary3dPick.h"

namespace {

using fakehost::Boundary3dPick;
using fakehost::kAdd5;
using fakehost::kCubeRow;
using fakehost::kSphereRow;
using fakehost::MakeLattice;
using fakehost::StoredType;
using qelvane::qelutiltools::HostLock;
using qelvane::qelutiltools::Selvane;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

INSTANTIATE_TEST_SUITE_P(Kinds, Boundary3dPick, ::testing::Values(kCubeRow, kSphereRow),
                         [](const auto& row) { return std::string(row.param.name); });

// Picking --------------------------------------------------------------------------------------

TEST_P(Boundary3dPick, AreaFollowsTheRule) {
  PlayWell(GetParam().line);
  PlayWell("ALTERAREA VARIABLE=\"c\" MODIFIER=\"+1\" RULE=ALLINSIDE");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(11, 20, 30, 40));
  PlayWell("ALTERAREA MODIFIER=\"+100\" RULE=ANYINSIDE");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(111, 120, 30, 40));
  PlayWell("ALTERAREA MODIFIER=\"+1000\" RULE=ANYOUTSIDE");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(111, 1120, 1030, 1040));
  PlayWell("ALTERAREA MODIFIER=\"+10000\" RULE=ALLOUTSIDE");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(111, 1120, 11030, 11040));
}

TEST_P(Boundary3dPick, NodesHeedTheSideAlone) {
  PlayWell(GetParam().line);
  for (const char* const rule : {"ANYINSIDE", "ALLINSIDE"}) {
    PlayWell(std::string("ALTERAREA VARIABLE=\"n\" MODIFIER=\"=-1\" RULE=") + rule);
    std::vector<double> expected;
    for (int node = 1; node <= 20; ++node) expected.push_back((node - 1) % 5 < 2 ? -1 : node);
    EXPECT_EQ(host.ValuesOf(1, n), expected) << rule;
  }
}

TEST_P(Boundary3dPick, AreaTakesTheActiveZonesOfTheSolutionTime) {
  const auto addZone = [this](double first) {
    const LgIndex_t zone = host.AddZone(MakeLattice(ZoneType_FEBrick, 1, 1, 1));
    fakehost::Values& values = *host.ValuesAt(zone, c);
    values.location = ValueLocation_CellCentered;
    values.storage = std::make_shared<fakehost::Storage>(StoredType::Double, 1);
    values.storage->Set(0, first);
    return zone;
  };
  const LgIndex_t taken = addZone(1);
  const LgIndex_t hidden = addZone(2);
  host.ZoneAt(hidden)->isActive = false;
  const LgIndex_t later = addZone(3);
  host.ZoneAt(later)->strand = 1;
  host.ZoneAt(later)->solutionTime = 7.0;
  const LgIndex_t now = addZone(4);
  host.ZoneAt(now)->strand = 1;
  PlayWell(GetParam().line);
  PlayWell(kAdd5);
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(15, 20, 30, 40));
  EXPECT_THAT(host.ValuesOf(taken, c), ElementsAre(6));
  EXPECT_THAT(host.ValuesOf(hidden, c), ElementsAre(2));
  EXPECT_THAT(host.ValuesOf(later, c), ElementsAre(3));
  EXPECT_THAT(host.ValuesOf(now, c), ElementsAre(9));
}

TEST_P(Boundary3dPick, ZoneOfTheBoundaryIsNeverChanged) {
  PlayWell(GetParam().line);
  const std::vector<double> before = AllValues(2);
  ASSERT_FALSE(before.empty());
  for (const char* const rule : {"ANYINSIDE", "ANYOUTSIDE", "ALLINSIDE", "ALLOUTSIDE"}) {
    for (const char* const var : {"X", "Y", "Z", "n", "c"}) {
      PlayWell(std::string("ALTERAREA VARIABLE=\"") + var + "\" MODIFIER=\"+0.001\" RULE=" + rule);
    }
  }
  PlayWell("ALTERAREA VARIABLE=\"X\" MODIFIER=\"+1\" RULE=ANYOUTSIDE");
  EXPECT_EQ(AllValues(2), before);
  PlayWell("BLANKAREA RULE=ANYOUTSIDE");
  PlayWell("UNDOBLANK");
  EXPECT_EQ(AllValues(2), before);
  EXPECT_EQ(host.ValuesAt(2, 6)->storage, nullptr) << "no blanks are made for it";
}

TEST_P(Boundary3dPick, PicksHideCellsAndLeaveOutWhatIsHidden) {
  PlayWell(GetParam().line);
  PlayWell("BLANKAREA RULE=ANYINSIDE");
  EXPECT_THAT(host.ValuesOf(1, 6), ElementsAre(1, 1, 0, 0));
  host.ActiveFrame().blanking.include = true;
  EXPECT_TRUE(host.IsBlankedCell(1, 1));
  EXPECT_FALSE(host.IsBlankedCell(BoundaryZone(), 1));
  // And what is hidden is left out of an alteration.
  PlayWell("ALTERAREA VARIABLE=\"c\" MODIFIER=\"+5\" RULE=ANYINSIDE");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20, 30, 40));
  PlayWell("ALTERAREA VARIABLE=\"c\" MODIFIER=\"+5\" RULE=ALLOUTSIDE");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20, 35, 45));
}

TEST_P(Boundary3dPick, SharedVariableIsUnsharedBeforeTheFirstWrite) {
  const LgIndex_t second = host.AddZone(MakeLattice(ZoneType_FEBrick, 4, 1, 1));
  host.ValuesAt(second, c)->location = ValueLocation_CellCentered;
  host.Share(1, second, c);
  host.ZoneAt(second)->isActive = false;
  PlayWell(GetParam().line);
  PlayWell(kAdd5);
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(15, 20, 30, 40));
  EXPECT_THAT(host.ValuesOf(second, c), ElementsAre(10, 20, 30, 40));
}

TEST_P(Boundary3dPick, NothingIsPickedUnlessTheBoundaryIsDefinedIn3D) {
  constexpr char kUndefined[] = "3D pick boundary not defined for ALTER/BLANK AREA command";
  host.ActiveFrame().plotType = PlotType_Cartesian2D;
  // Chosen where it could not be placed.
  EXPECT_FALSE(Session().SetPickKind(GetParam().kind, true));
  host.ActiveFrame().plotType = PlotType_Cartesian3D;
  EXPECT_EQ(PlayBadly(kAdd5), kUndefined);
  EXPECT_EQ(PlayBadly("BLANKAREA"), kUndefined);
  // Defined, and shown in 2D.
  PlayWell(GetParam().line);
  host.ActiveFrame().plotType = PlotType_Cartesian2D;
  EXPECT_EQ(PlayBadly(kAdd5), kUndefined);
  EXPECT_FALSE(Session().ApplyArea(false));
  host.ActiveFrame().plotType = PlotType_Cartesian3D;
  PlayWell(kAdd5);
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(15, 20, 30, 40));
}

TEST_P(Boundary3dPick, WaitMessageAndDataLoadSurroundThePick) {
  PlayWell(GetParam().line);
  host.calls.clear();
  PlayWell(kAdd5);
  std::vector<std::string> calls;
  for (const fakehost::CallRecord& call : host.calls) {
    if (call.function == "QelUtilPleaseWait" || call.function == "QelUtilDataLoadBegin" ||
        call.function == "QelUtilDataLoadEnd" || call.function == "QelUtilZoneGetRelevant") {
      calls.push_back(call.function + " " + call.arguments);
    }
  }
  ASSERT_EQ(calls.size(), 5u);
  EXPECT_EQ(calls[0], "QelUtilPleaseWait \"Applying changes...\", true");
  EXPECT_EQ(calls[1], "QelUtilDataLoadBegin ");
  EXPECT_EQ(calls[3], "QelUtilDataLoadEnd ");
  EXPECT_EQ(calls[4], "QelUtilPleaseWait \"Applying changes...\", false");
}

TEST_P(Boundary3dPick, WaitMessageAndDataLoadEndAlsoWithAnError) {
  for (const char* const function :
       {"QelUtilZoneGetRelevant", "QelUtilDataValueGetWritableNativeRef",
        "QelUtilDataValueGetReadableNLRef", "QelUtilDataNodeGetReadableRef"}) {
    PlayWell(GetParam().line);
    host.waitHistory.clear();
    host.FailCall(function, 1);
    PlayBadly(kAdd5);
    ASSERT_TRUE(host.WasFaultHit());
    EXPECT_THAT(host.waitHistory, ElementsAre("Applying changes...")) << function;
    EXPECT_THAT(host.waitMessages, IsEmpty()) << function;
    EXPECT_EQ(host.dataLoadDepth, 0) << function;
    EXPECT_EQ(host.LockDepth(), 0) << function;
  }
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20, 30, 40));
}

TEST_P(Boundary3dPick, ApplyingRecordsTheBoundaryAndUpdatesTheZone) {
  PlayWell(GetParam().line);
  PlayWell(kAdd5);
  host.isRecording = true;
  ASSERT_TRUE(Session().ApplyArea(false));
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(20, 20, 30, 40));
  ASSERT_EQ(host.recordedLines.size(), 1u);
  EXPECT_EQ(host.recordedLines[0].rfind(
                std::string("Marquell ") + std::string(GetParam().line).substr(0, 10), 0),
            0u);
  EXPECT_EQ(host.idleQueue.size(), 1u);
}

// Undo -----------------------------------------------------------------------------------------

TEST_P(Boundary3dPick, UndoTakesTheAlterationBack) {
  PlayWell(GetParam().line);
  PlayWell(kAdd5);
  PlayWell("UNDOALTER");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20, 30, 40));
  EXPECT_EQ(PlayBadly("UNDOALTER"), "Macro failed to perform Undo");
}

TEST_P(Boundary3dPick, UsersUndoTakesTheAlterationBack) {
  PlayWell(GetParam().line);
  PlayWell(kAdd5);
  EXPECT_TRUE(Session().UndoLastAlter(false));
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20, 30, 40));
  EXPECT_FALSE(Session().IsUndoAvailable());
}

TEST_P(Boundary3dPick, LineThatIsInForceAlreadyKeepsUndo) {
  PlayWell(GetParam().line);
  PlayWell(kAdd5);
  PlayWell(GetParam().line);
  PlayWell("UNDOALTER");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20, 30, 40));
}

TEST_P(Boundary3dPick, LineWithAnotherShapeDiscardsUndo) {
  PlayWell(GetParam().line);
  PlayWell(kAdd5);
  PlayWell(GetParam().elsewhere);
  EXPECT_EQ(PlayBadly("UNDOALTER"), "Macro failed to perform Undo");
  PlayWell(GetParam().line);
  EXPECT_EQ(PlayBadly("UNDOALTER"), "Macro failed to perform Undo");
}

TEST_P(Boundary3dPick, LineOfAnotherKindDiscardsUndo) {
  PlayWell(GetParam().line);
  PlayWell(kAdd5);
  PlayWell(GetParam().otherLine);
  PlayWell(GetParam().line);
  EXPECT_EQ(PlayBadly("UNDOALTER"), "Macro failed to perform Undo");
}

TEST_P(Boundary3dPick, RecordedUndoPlaysBackToTheSameValues) {
  host.isRecording = true;
  {
    const HostLock lock;
    PlayWell(GetParam().line);
    host.recordedLines.clear();
    Selvane& session = Session();
    session.SetAlterVariable(c);
    ASSERT_TRUE(session.ParseModifier("+5"));
    ASSERT_TRUE(session.ApplyArea(false));
    session.RecordArea();
    ASSERT_TRUE(session.UndoLastAlter(false));
    session.RecordUndoAlter();
  }
  host.isRecording = false;
  const std::vector<std::string> lines = host.recordedLines;
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[2], lines[0]) << "the undo's own boundary";
  for (const std::string& line : lines) PlayWell(line.substr(std::string("Marquell ").size()));
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20, 30, 40));
}

}  // namespace
