#include "EngineTest.h"

namespace {

using fakehost::MakeLattice;
using fakehost::StoredType;
using qelvane::qelutiltools::PickKind;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr char kClickedNode[] =
    "You have chosen a cell centered variable\n  but have clicked on a node.\n\nWhen identifying "
    "a cell, do not hold down the\n  CTRL key during selection.";
constexpr char kClickedCell[] =
    "You have chosen a nodal variable\n  but have clicked on a cell.\n\nTo identify a node, hold "
    "down the\n  CTRL key during selection.";

class Probe : public fakehost::EngineTest {
 protected:
  void SetUp() override {
    Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
    host.isRecording = true;
    Session().SetPickKind(PickKind::Element, true);
    Session().ParseModifier("+5");
  }
};

TEST_F(Probe, InstallsItsCallbackWithThePrompt) {
  EXPECT_EQ(host.probeInstruction, "Click on the Cell to be blanked");
  EXPECT_EQ(host.mouseMode, Mouse_Probe);
}

TEST_F(Probe, PlainClickAltersTheCellAndRecordsIt) {
  Session().SetAlterVariable(c);
  host.Probe(false, 1, 2, 3);
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 25));
  EXPECT_THAT(host.recordedLines,
              ElementsAre("Marquell ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"+5\" ZONE=1 ELEMENT=2"));
}

TEST_F(Probe, CtrlClickAltersTheNodeAndRecordsIt) {
  Session().SetAlterVariable(n);
  host.Probe(true, 1, 2, 3);
  EXPECT_THAT(host.ValuesOf(1, n), ElementsAre(1, 2, 8, 4, 5, 6));
  EXPECT_THAT(host.recordedLines,
              ElementsAre("Marquell ALTERELEMENT VARIABLE=\"n\" MODIFIER=\"+5\" ZONE=1 ELEMENT=3"));
}

TEST_F(Probe, CtrlClickOnACellVariableIsExplained) {
  Session().SetAlterVariable(c);
  host.Probe(true, 1, 1, 1);
  ASSERT_THAT(host.messageBoxes, SizeIs(1));
  EXPECT_EQ(host.messageBoxes[0].text, kClickedNode);
  EXPECT_EQ(host.messageBoxes[0].kind, 2);
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20));
  EXPECT_THAT(host.recordedLines, IsEmpty());
  EXPECT_EQ(host.mouseMode, Mouse_Probe);
}

TEST_F(Probe, PlainClickOnANodalVariableIsExplained) {
  Session().SetAlterVariable(n);
  host.Probe(false, 1, 1, 1);
  ASSERT_THAT(host.messageBoxes, SizeIs(1));
  EXPECT_EQ(host.messageBoxes[0].text, kClickedCell);
  EXPECT_EQ(host.messageBoxes[0].kind, 2);
  EXPECT_THAT(host.ValuesOf(1, n), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST_F(Probe, AClickOutsideAnythingDoesNothing) {
  Session().SetAlterVariable(c);
  const std::size_t noticesBefore = host.notices.size();
  host.Probe(false, 1, 0, 0);
  host.Probe(false, 0, 1, 1);
  host.Probe(false, 1, 3, 1);
  host.Probe(false, 1, 2147483647, 1);
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20));
  EXPECT_EQ(host.notices.size(), noticesBefore);
  EXPECT_THAT(host.recordedLines, IsEmpty());
  EXPECT_THAT(host.messageBoxes, IsEmpty());
  EXPECT_THAT(host.errorBoxes, IsEmpty());
}

TEST_F(Probe, AnInternalErrorShowsItsOwnText) {
  Session().SetAlterVariable(c);
  host.FailCall("QelUtilDataValueGetWritableNativeRef", 1);
  host.Probe(false, 1, 1, 1);
  EXPECT_THAT(host.errorBoxes, ElementsAre("Failed to select a cell. Please try again."));
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20));
}

class MacroElement : public fakehost::EngineTest {};

TEST_F(MacroElement, ReportsTheChangedZoneAndVariable) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  PlayWell("ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"*2\" ZONE=1 ELEMENT=2");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 40));
  ASSERT_THAT(host.notices, SizeIs(1));
  EXPECT_EQ(host.notices[0].change, StateChange_VarsAltered);
  EXPECT_THAT(host.notices[0].zones, ElementsAre(1));
  EXPECT_THAT(host.notices[0].vars, ElementsAre(c));
}

TEST_F(MacroElement, NumberIsANodeForANodalVariable) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  PlayWell("ALTERELEMENT VARIABLE=\"n\" MODIFIER=\"=7\" ZONE=1 ELEMENT=6");
  EXPECT_THAT(host.ValuesOf(1, n), ElementsAre(1, 2, 3, 4, 5, 7));
}

TEST_F(MacroElement, LeavesTheMouseModeAlone) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  host.mouseMode = Mouse_Zoom;
  PlayWell("ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"*2\" ZONE=1 ELEMENT=2");
  EXPECT_EQ(host.mouseMode, Mouse_Zoom);
  EXPECT_EQ(host.CallCount("QelUtilProbeInstallCallback"), 0);
}

TEST_F(MacroElement, PassiveVariableIsRefused) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  host.MakePassive(1, c);
  EXPECT_EQ(PlayBadly("ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"*2\" ZONE=1 ELEMENT=2"),
            "Error during execution of ALTERELEMENT operation");
}

TEST_F(MacroElement, ComputedValuesAreRefused) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  host.ValuesAt(1, 1)->isWritable = false;
  EXPECT_EQ(PlayBadly("ALTERELEMENT VARIABLE=\"X\" MODIFIER=\"*2\" ZONE=1 ELEMENT=2"),
            "Error during execution of ALTERELEMENT operation");
}

struct ConversionRow {
  StoredType type;
  const char* modifier;
  double expected;
};

class Conversion : public fakehost::EngineTest,
                   public ::testing::WithParamInterface<ConversionRow> {};

TEST_P(Conversion, IsTheHosts) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0), PlotType_Cartesian2D, GetParam().type);
  PlayWell(std::string("ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"") + GetParam().modifier +
           "\" ZONE=1 ELEMENT=1");
  EXPECT_EQ(host.ValuesOf(1, c).at(0), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Types, Conversion,
                         ::testing::Values(ConversionRow{StoredType::Float, "*0.1", 1.0},
                                           ConversionRow{StoredType::Int32, "+0.5", 11},
                                           ConversionRow{StoredType::Int32, "=-2.5", -3},
                                           ConversionRow{StoredType::Int16, "=40000", 32767},
                                           ConversionRow{StoredType::Byte, "=-5", 0},
                                           ConversionRow{StoredType::Byte, "=300", 255},
                                           ConversionRow{StoredType::Int64, "*2", 20},
                                           ConversionRow{StoredType::UInt16, "=70000", 65535},
                                           ConversionRow{StoredType::Int8, "=-200", -128}));

TEST_F(MacroElement, AlterVariableNumbersAreClamped) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  Session().SetAlterVariable(0);
  EXPECT_EQ(Session().AlterVariable(), 1);
  Session().SetAlterVariable(-7);
  EXPECT_EQ(Session().AlterVariable(), 1);
  Session().SetAlterVariable(99);
  EXPECT_EQ(Session().AlterVariable(), c);
}

TEST_F(MacroElement, ContourFollowsTheVariableOnlyWhenAsked) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  Session().SetAlterVariable(n);
  EXPECT_EQ(host.ActiveFrame().contourVar, 0);
  Session().SetSyncContours(true);
  EXPECT_EQ(host.ActiveFrame().contourVar, n);
  PlayWell("ALTERELEMENT VARIABLE=\"c\" ZONE=1 ELEMENT=1");
  EXPECT_EQ(host.ActiveFrame().contourVar, c);
  PlayBadly("ALTERELEMENT VARIABLE=\"none\" ZONE=1 ELEMENT=1");
  EXPECT_EQ(Session().AlterVariable(), c);
}

}  // namespace
