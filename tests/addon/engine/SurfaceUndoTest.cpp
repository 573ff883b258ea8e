// Undo of surface picks, and what a fault leaves of one.
#include "SurfaceTest.h"

#include "Controls.h"

#include <map>
#include <stdexcept>

namespace {

using fakehost::FakeHost;
using fakehost::kAlter;
using fakehost::kOffSurface;
using fakehost::kRectangle;
using fakehost::kTryAgain;
using qelvane::qelutiltools::Controls;
using qelvane::qelutiltools::PickKind;
using qelvane::qelutiltools::Selvane;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr char kGone[] = "Unable to perform Undo because geometry has been changed or deleted.";

class SurfaceUndo : public fakehost::SurfaceTest {};

TEST_F(SurfaceUndo, PlayedUndoTakesASurfacePickBackOnce) {
  PlayWell(kRectangle);
  PlayWell(kAlter);
  EXPECT_TRUE(Session().IsUndoAvailable());
  PlayWell("UNDOALTER");
  ExpectNothingChanged();
  EXPECT_EQ(PlayBadly("UNDOALTER"), "Macro failed to perform Undo");
  PlayWell("ALTERSURFACE");
  EXPECT_EQ(host.ValuesOf(1, n)[0], 15.0) << "the modifier still reads +5";
  PlayWell("UNDOALTER");
  ExpectAreasAreWholeAgain();
}

TEST_F(SurfaceUndo, UndoOfAnAreaPickAfterASurfacePickIsThatOfAnArea) {
  PlayWell(kRectangle);
  PlayWell("ALTERSURFACE VARIABLE=\"n\" MODIFIER=\"+5\" ZONE=1 SEEDPOINT=1");
  PlayWell("UNDOALTER");
  PlayWell("ALTERAREA");
  EXPECT_THAT(Changed(1, n), SizeIs(64));
  PlayWell("UNDOALTER");
  ExpectNothingChanged();
}

TEST_F(SurfaceUndo, UndoFromTheDialogUsesTheGeometryOfThePickAndRecordsIt) {
  const QelGeomID_t id = Prepare();
  ClickSeed(1, 1);
  EXPECT_EQ(Session().UndoGeometry(), id);
  host.AddGeometry({0, GeomType_Rectangle, {50, 50, 0}, 1, 1, {}, CoordSys_Grid});
  host.isRecording = true;
  EXPECT_TRUE(Session().UndoLastAlter(false));
  ExpectNothingChanged();
  EXPECT_THAT(host.recordedLines,
              ElementsAre("Marquell PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=9 SIZEY=9"));
  EXPECT_FALSE(Session().IsUndoAvailable());
  EXPECT_EQ(Session().UndoGeometry(), 0);
  EXPECT_FALSE(Session().UndoLastAlter(false)) << "there is one level";
  EXPECT_THAT(host.messageBoxes, IsEmpty());
  host.isRecording = false;
  ExpectAreasAreWholeAgain();
}

TEST_F(SurfaceUndo, UndoFromTheDialogSaysThatTheGeometryIsGone) {
  const QelGeomID_t id = Prepare();
  ClickSeed(1, 1);
  host.DeleteGeometry(id);
  EXPECT_FALSE(Session().UndoLastAlter(false));
  ASSERT_THAT(host.messageBoxes, SizeIs(1));
  EXPECT_EQ(host.messageBoxes[0].text, kGone);
  EXPECT_EQ(host.messageBoxes[0].kind, 0);
  EXPECT_EQ(Changed(1, n), Outside()) << "as it was";
  EXPECT_FALSE(Session().IsUndoAvailable());
  ExpectAreasAreWholeAgain();
}

TEST_F(SurfaceUndo, GoesBySeedAndGeometryOfTheAlterationWhateverWasRefusedSince) {
  Prepare();
  ClickSeed(1, 1);
  host.SelectGeometry(host.AddGeometry(Left()));
  // One within the zone, one beside the area and in another zone.
  ClickSeed(1, 23);
  ClickSeed(2, 4);
  EXPECT_THAT(host.errorBoxes, ElementsAre(kOffSurface, kOffSurface));
  EXPECT_TRUE(Session().UndoLastAlter(false));
  ExpectNothingChanged();
}

TEST_F(SurfaceUndo, PlayedUndoGoesByTheSeedOfTheAlteration) {
  PlayWell(kRectangle);
  PlayWell(kAlter);
  PlayWell("ALTERSURFACE SEEDPOINT=23");
  PlayWell("ALTERSURFACE ZONE=2");
  EXPECT_EQ(Changed(1, n), Outside());
  PlayWell("UNDOALTER");
  ExpectNothingChanged();
  // The seed of the lines is still the one that was given last.
  PlayWell("ALTERSURFACE");
  ExpectNothingChanged();
}

TEST_F(SurfaceUndo, RepeatedPickInUndoFormForgetsTheGeometry) {
  Prepare();
  ClickSeed(1, 1);
  EXPECT_TRUE(Session().ApplySurface(true));
  EXPECT_EQ(host.ValuesOf(1, n)[0], 20.0) << "with the modifier as it is";
  EXPECT_EQ(Session().UndoGeometry(), 0);
  EXPECT_FALSE(Session().IsUndoAvailable());
}

TEST_F(SurfaceUndo, PlayedUndoNeedsNoGeometry) {
  const QelGeomID_t id = Prepare();
  ClickSeed(1, 1);
  host.DeleteGeometry(id);
  PlayWell("UNDOALTER");
  ExpectNothingChanged();
}

TEST_F(SurfaceUndo, AssignmentCannotBeTakenBack) {
  PlayWell(kRectangle);
  PlayWell("ALTERSURFACE VARIABLE=\"n\" MODIFIER=\"=7\" ZONE=1 SEEDPOINT=1");
  EXPECT_FALSE(Session().IsUndoAvailable());
  EXPECT_EQ(PlayBadly("UNDOALTER"), "Macro failed to perform Undo");
}

TEST_F(SurfaceUndo, ButtonFollowsWhatCanBeTakenBack) {
  host.ChooseMenu("Marquell ...");
  Prepare();
  ClickSeed(1, 1);
  const auto lastSetting = [this] {
    const std::string button = std::to_string(Controls.undoAlterButton) + ", ";
    std::string last;
    for (const fakehost::CallRecord& call : host.calls) {
      if (call.function == "QelGUISetSensitivity" && call.arguments.rfind(button, 0) == 0) {
        last = call.arguments.substr(button.size());
      }
    }
    return last;
  };
  EXPECT_EQ(lastSetting(), "true");
  EXPECT_TRUE(Session().UndoLastAlter(false));
  EXPECT_EQ(lastSetting(), "false");
}

// Faults ---------------------------------------------------------------------------------------

/// How often each host call that can fail was made.
std::map<std::string, int> FallibleCalls(const FakeHost& host, std::size_t from) {
  std::map<std::string, int> counts;
  for (std::size_t i = from; i < host.calls.size(); ++i) {
    if (host.calls[i].isFallible) ++counts[host.calls[i].function];
  }
  return counts;
}

struct FaultRow {
  const char* name;
  void (*prepare)(FakeHost& host, Selvane& session);
  void (*run)(FakeHost& host, Selvane& session);
};

void Choose(FakeHost& host, Selvane& session) {
  session.SetPickKind(PickKind::Rectangle, true);
  session.SetAlterVariable(4);
  session.ParseModifier("+5");
  host.AddGeometry({0, GeomType_Rectangle, {-1, -1, 0}, 9, 9, {}, CoordSys_Grid});
}
void ClickOn(FakeHost& host, Selvane&) { host.Probe(true, 1, 1, 1); }

class FaultySurface : public SurfaceUndo, public ::testing::WithParamInterface<FaultRow> {
 protected:
  void Begin() {
    LoadTwo(ZoneType_FEBrick);
    Choose(host, Session());
    GetParam().prepare(host, Session());
    host.isRecording = true;
  }
  void End() {
    host.isRecording = false;
    EXPECT_EQ(host.LockDepth(), 0);
    EXPECT_THAT(host.Misuse(), IsEmpty());
    EXPECT_THAT(host.Leaks(), IsEmpty());
    ExpectAreasAreWholeAgain();
    host.Deliver(StateChange_NewLayout);
  }
};

TEST_P(FaultySurface, LeavesNothingOfThePickBehind) {
  Begin();
  Selvane& session = Session();
  const std::size_t from = host.calls.size();
  GetParam().run(host, session);
  const std::map<std::string, int> counts = FallibleCalls(host, from);
  End();
  ASSERT_GT(counts.size(), 10u);
  constexpr int kMost = 3;
  for (const auto& [function, count] : counts) {
    for (int nth = 1; nth <= std::min(count, kMost); ++nth) {
      SCOPED_TRACE(function + " call " + std::to_string(nth));
      Begin();
      Selvane& again = Session();
      host.FailCall(function, nth);
      GetParam().run(host, again);
      EXPECT_TRUE(host.WasFaultHit());
      for (const std::string& text : host.errorBoxes) {
        EXPECT_TRUE(text == kTryAgain || text == kOffSurface) << text;
      }
      End();
      if (HasFailure()) return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Roads, FaultySurface,
    ::testing::Values(
        FaultRow{"Click", [](FakeHost&, Selvane& session) { session.StartSurfacePick(); }, ClickOn},
        FaultRow{"BlankClick",
                 [](FakeHost&, Selvane& session) {
                   session.EnterBlankMode();
                   session.StartSurfacePick();
                 },
                 ClickOn},
        FaultRow{"Undo",
                 [](FakeHost& host, Selvane& session) {
                   session.StartSurfacePick();
                   ClickOn(host, session);
                 },
                 [](FakeHost&, Selvane& session) {
                   try {
                     session.UndoLastAlter(false);
                   } catch (const std::runtime_error&) {
                     // Its caller's to contain.
                   }
                 }},
        FaultRow{"PlayedLine", [](FakeHost& host, Selvane&) { host.Play(kRectangle); },
                 [](FakeHost& host, Selvane&) { host.Play(kAlter); }},
        FaultRow{"PlayedBlankLine", [](FakeHost& host, Selvane&) { host.Play(kRectangle); },
                 [](FakeHost& host, Selvane&) { host.Play("BLANKSURFACE ZONE=1 SEEDPOINT=1"); }},
        FaultRow{"PlayedUndo",
                 [](FakeHost& host, Selvane&) {
                   host.Play(kRectangle);
                   host.Play(kAlter);
                 },
                 [](FakeHost& host, Selvane&) { host.Play("UNDOALTER"); }}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
