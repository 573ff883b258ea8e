// Host calls that must not fail, and do: the text says which call it was, and nothing is left open.
#include "EngineTest.h"
#include "GeometryChoice.h"

#include "qelvane/Extensions.h"

#include <functional>
#include <stdexcept>

namespace {

using fakehost::MakeLattice;
using qelvane::qelutiltools::PickKind;
using qelvane::qelutiltools::Selvane;
using ::testing::MatchesRegex;

constexpr char kAnyFile[] = "[A-Za-z]+";

/// The text of a failed call as a pattern, with the place that follows it.
std::string AssertText(const std::string& call, const std::string& file = kAnyFile) {
  std::string pattern = "Assert failed: ";
  for (const char letter : call) {
    if (std::string("()*+?.[]{}|^$\\").find(letter) != std::string::npos) pattern += '\\';
    pattern += letter;
  }
  return pattern + " \\(" + file + " [0-9]+\\)";
}

struct PlayedRow {
  const char* name;
  const char* before;   ///< played well first; empty: nothing
  const char* command;  ///< fails
  const char* function;
  int nth;
  const char* call;
  const char* file = kAnyFile;  ///< that the call stands in
};

void PrintTo(const PlayedRow& row, std::ostream* out) { *out << row.name; }

class PlayedError : public fakehost::EngineTest, public ::testing::WithParamInterface<PlayedRow> {};

TEST_P(PlayedError, IsTheCommandsText) {
  const PlayedRow& row = GetParam();
  Load(MakeLattice(ZoneType_FEQuad, 2, 2, 0), PlotType_Cartesian3D);
  if (*row.before != '\0') PlayWell(row.before);
  host.FailCall(row.function, row.nth);
  EXPECT_THAT(PlayBadly(row.command), MatchesRegex(AssertText(row.call, row.file)));
  EXPECT_TRUE(host.errorBoxes.empty()) << "an error of a played command shows no box";
}

constexpr char kRectangleCommand[] = "PICKRECTANGLE ANCHORX=-9 ANCHORY=-9 SIZEX=20 SIZEY=20";
constexpr char kAlterCells[] = "ALTERAREA VARIABLE=\"c\" MODIFIER=\"+1\"";
constexpr char kAlterCell[] = "ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"+1\" ZONE=1 ELEMENT=1";

INSTANTIATE_TEST_SUITE_P(
    Calls, PlayedError,
    ::testing::Values(
        PlayedRow{"RectangleMode", "", kRectangleCommand, "QelUtilMouseSetMode", 1,
                  "QelUtilMouseSetMode(Mouse_GeomRectangle)"},
        PlayedRow{"CircleMode", "", "PICKCIRCLE ANCHORX=0 ANCHORY=0 RADIUS=1",
                  "QelUtilMouseSetMode", 1, "QelUtilMouseSetMode(Mouse_GeomCircle)"},
        PlayedRow{"PolygonMode", "", "PICKPOLYGON CORNERS=\"0,0,4,0,0,4\"", "QelUtilMouseSetMode",
                  1, "QelUtilMouseSetMode(Mouse_GeomPolyline)"},
        PlayedRow{"RelevantZones", kRectangleCommand, kAlterCells, "QelUtilZoneGetRelevant", 1,
                  "QelUtilZoneGetRelevant(solutionTime, FALSE, &relevantZones)"},
        PlayedRow{"WritableReference", kRectangleCommand, kAlterCells,
                  "QelUtilDataValueGetWritableNativeRef", 1,
                  "fieldDataPtr = QelUtilDataValueGetWritableNativeRef(zoneNum, varNum)"},
        PlayedRow{"NodeMap", kRectangleCommand, kAlterCells, "QelUtilDataNodeGetReadableRef", 1,
                  "nodeMap = QelUtilDataNodeGetReadableRef(zoneNum)"},
        PlayedRow{"DataSetInfo", "", kAlterCell, "QelUtilDataSetGetInfo", 1,
                  "QelUtilDataSetGetInfo(NULL, &numZones, NULL)"},
        PlayedRow{"ZoneSet", "", kAlterCell, "QelUtilSetAlloc", 1,
                  "zoneSet = QelUtilSetAlloc(FALSE)"},
        PlayedRow{"VariableSet", "", kAlterCell, "QelUtilSetAlloc", 2,
                  "varSet = QelUtilSetAlloc(FALSE)"},
        PlayedRow{"ZoneMember", "", kAlterCell, "QelUtilSetAddMember", 1,
                  "QelUtilSetAddMember(zoneSet, static_cast<SetIndex_t>(zoneNum), FALSE)"},
        PlayedRow{"VariableMember", "", kAlterCell, "QelUtilSetAddMember", 2,
                  "QelUtilSetAddMember(varSet, static_cast<SetIndex_t>( varNum), FALSE)"},
        PlayedRow{"NoticeList", "", kAlterCell, "QelUtilArgListAlloc", 1,
                  "argList = QelUtilArgListAlloc()"},
        PlayedRow{"NoticeCode", "", kAlterCell, "QelUtilArgListAppendInt", 1,
                  "QelUtilArgListAppendInt(argList, SV_STATECHANGE, StateChange_VarsAltered)"},
        PlayedRow{"NoticeZones", "", kAlterCell, "QelUtilArgListAppendSet", 1,
                  "QelUtilArgListAppendSet(argList, SV_ZONELIST, zoneSet)"},
        PlayedRow{"NoticeVariables", "", kAlterCell, "QelUtilArgListAppendSet", 2,
                  "QelUtilArgListAppendSet(argList, SV_VARLIST, varSet)"}),
    [](const auto& row) { return std::string(row.param.name); });

constexpr char kBlankCell[] = "BLANKELEMENT ZONE=1 ELEMENT=1";
constexpr char kBlank[] = "PickBlanking";

INSTANTIATE_TEST_SUITE_P(
    Blanking, PlayedError,
    ::testing::Values(
        PlayedRow{"List", "", kBlankCell, "QelUtilArgListAlloc", 1,
                  "argList = QelUtilArgListAlloc()", kBlank},
        PlayedRow{"Name", "", kBlankCell, "QelUtilArgListAppendString", 1,
                  "QelUtilArgListAppendString (argList, SV_NAME, BLANKVAR)", kBlank},
        PlayedRow{"Types", "", kBlankCell, "QelUtilArgListAppendArray", 1,
                  "QelUtilArgListAppendArray (argList, SV_VARDATATYPE, static_cast<void "
                  "*>(typeList) )",
                  kBlank},
        PlayedRow{"Locations", "", kBlankCell, "QelUtilArgListAppendArray", 2,
                  "QelUtilArgListAppendArray (argList, SV_VALUELOCATION, static_cast<void "
                  "*>(locList) )",
                  kBlank},
        PlayedRow{"Deferred", "", kBlankCell, "QelUtilArgListAppendInt", 1,
                  "QelUtilArgListAppendInt (argList, SV_DEFERVARCREATION, "
                  "static_cast<LgIndex_t>(TRUE) )",
                  kBlank},
        PlayedRow{"VariableSet", "", kBlankCell, "QelUtilSetAlloc", 1,
                  "varList = QelUtilSetAlloc(FALSE)", kBlank},
        PlayedRow{"VariableMember", "", kBlankCell, "QelUtilSetAddMember", 1,
                  "QelUtilSetAddMember(varList, static_cast<SetIndex_t>(varNum) , FALSE)", kBlank},
        PlayedRow{"ConstraintList", "", kBlankCell, "QelUtilArgListAlloc", 2,
                  "argList = QelUtilArgListAlloc()", "Utilities"},
        PlayedRow{"ConstraintNumber", "", kBlankCell, "QelUtilArgListAppendInt", 2,
                  "QelUtilArgListAppendInt(argList, SV_OFFSET1, constraintNum)", "Utilities"},
        PlayedRow{"Cutoff", "", kBlankCell, "QelUtilArgListAppendDouble", 1,
                  "QelUtilArgListAppendDouble(argList, SV_DVALUE, valCutoff)", "Utilities"},
        PlayedRow{"Values", "", kBlankCell, "QelUtilDataValueAlloc", 1,
                  "QelUtilDataValueAlloc(zoneNum, varNum)", "WritePath"},
        PlayedRow{"ResetNotice", kBlankCell, "UNDOBLANK", "QelUtilArgListAppendSet", 1,
                  "QelUtilArgListAppendSet(argList, SV_ZONELIST, zoneSet)", "Utilities"},
        PlayedRow{"ResetZones", kBlankCell, "UNDOBLANK", "QelUtilZoneGetRelevant", 1,
                  "QelUtilZoneGetRelevant(solutionTime, FALSE, &relevantZones)", "AreaPick"}),
    [](const auto& row) { return std::string(row.param.name); });

constexpr char kCubeCommand[] = "PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=-1 SIZEX=1 SIZEY=1 SIZEZ=2";
constexpr char kSphereCommand[] = "PICKSPHERE ANCHORX=1 ANCHORY=1 ANCHORZ=0 RADIUS=1";

INSTANTIATE_TEST_SUITE_P(
    Boundaries, PlayedError,
    ::testing::Values(
        PlayedRow{"CubeMode", "", kCubeCommand, "QelUtilMouseSetMode", 1,
                  "QelUtilMouseSetMode(Mouse_Select)", "Selvane"},
        PlayedRow{"CubeZone", "", kCubeCommand, "QelUtilDataSetAddZone", 1,
                  "QelUtilDataSetAddZone(CUBEZONENAME, iMax, 1, 1, ZoneType_FEBrick, NULL)",
                  "ClippingCube"},
        PlayedRow{"CubeRemoval", kCubeCommand, kSphereCommand, "QelUtilDataSetDeleteZone", 1,
                  "QelUtilDataSetDeleteZone(zoneSet)", "PickBoundary3d"},
        PlayedRow{"SphereZone", "", kSphereCommand, "QelUtilCreateSphericalZone", 1,
                  "QelUtilCreateSphericalZone(12, 12, m_anchor.x, m_anchor.y, m_anchor.z - "
                  "radius, radius, FieldDataType_Invalid)",
                  "ClippingSphere"},
        PlayedRow{"SphereRemoval", kSphereCommand, kRectangleCommand, "QelUtilDataSetDeleteZone", 1,
                  "QelUtilDataSetDeleteZone(zoneSet)", "PickBoundary3d"},
        PlayedRow{"ActiveFrame", "", kCubeCommand, "QelUtilFrameActivateByUniqueID", 1,
                  "QelUtilFrameActivateByUniqueID(currentFrameId)", "PickBoundary3d"},
        PlayedRow{"CoordinateX", kCubeCommand, kAlterCells, "QelUtilDataValueGetReadableNLRef", 1,
                  "fieldX = QelUtilDataValueGetReadableNLRef(zoneNum, xVar)", "PickBoundary3d"},
        PlayedRow{"CoordinateZ", kSphereCommand, kAlterCells, "QelUtilDataValueGetReadableNLRef", 3,
                  "fieldZ = QelUtilDataValueGetReadableNLRef(zoneNum, zVar)", "PickBoundary3d"}),
    [](const auto& row) { return std::string(row.param.name); });

struct SessionRow {
  const char* name;
  std::function<void(Selvane&)> operation;
  const char* function;
  const char* call;
};

void PrintTo(const SessionRow& row, std::ostream* out) { *out << row.name; }

class SessionError : public fakehost::EngineTest,
                     public ::testing::WithParamInterface<SessionRow> {};

TEST_P(SessionError, NamesTheCall) {
  const SessionRow& row = GetParam();
  Load(MakeLattice(ZoneType_FEQuad, 2, 2, 0));
  host.isRecording = true;
  Selvane& session = Session();
  session.SetAlterVariable(c);
  host.FailCall(row.function, 1);
  try {
    row.operation(session);
    FAIL() << row.function << " failed and nobody said so";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(std::string(error.what()), MatchesRegex(AssertText(row.call)));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Operations, SessionError,
    ::testing::Values(
        SessionRow{"SelectMode", [](Selvane& s) { s.SetPickKind(PickKind::None, true); },
                   "QelUtilMouseSetMode", "QelUtilMouseSetMode(Mouse_Select)"},
        SessionRow{"Probe", [](Selvane& s) { s.SetPickKind(PickKind::Element, true); },
                   "QelUtilProbeInstallCallback",
                   "QelUtilProbeInstallCallback(SelvaneCellCallback, \"Click on the Cell to be "
                   "blanked\")"},
        SessionRow{"VariableName", [](Selvane& s) { s.RecordAlterElement(); }, "QelUtilVarGetName",
                   "QelUtilVarGetName(m_alterVar, &varName)"},
        SessionRow{"Record", [](Selvane& s) { s.RecordUndoAlter(); },
                   "QelUtilMacroRecordAddOnCommand",
                   "QelUtilMacroRecordAddOnCommand(ADDON_NAME, strFinalCommand.c_str())"},
        SessionRow{"RawRecord",
                   [](Selvane& s) { s.RecordView(qelvane::qelutiltools::StandardView::XY); },
                   "QelUtilMacroRecordRawCommand",
                   "QelUtilMacroRecordRawCommand(\"$!VIEW FITSURFACES\\n\")"},
        SessionRow{"BlankingOn", [](Selvane& s) { s.RecordBlankingInclude(true); },
                   "QelUtilMacroRecordRawCommand",
                   "QelUtilMacroRecordRawCommand(\"$!BLANKING VALUE{INCLUDE = YES\")"},
        SessionRow{"BlankingOff", [](Selvane& s) { s.RecordBlankingInclude(false); },
                   "QelUtilMacroRecordRawCommand",
                   "QelUtilMacroRecordRawCommand(\"$!BLANKING VALUE{INCLUDE = NO\")"},
        SessionRow{"Redraw",
                   [](Selvane& s) { s.RecordView(qelvane::qelutiltools::StandardView::XY); },
                   "QelUtilRedraw", "QelUtilRedraw(TRUE)"}),
    [](const auto& row) { return std::string(row.param.name); });

class EngineExtras : public fakehost::EngineTest {};

TEST_F(EngineExtras, PickGeometryArmsTheNextGeometry) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 2, 0));
  ASSERT_FALSE(qelvane::qelutiltools::IsGeometryArmed());
  PlayWell("PICKGEOMETRY");
  EXPECT_TRUE(qelvane::qelutiltools::IsGeometryArmed());
  qelvane::qelutiltools::SetGeometryArmed(false);
}

struct Written {
  LgIndex_t zone;
  LgIndex_t var;
  std::int64_t count;
};
std::vector<Written> written;

const QelProgress_s kProgress = {[](double) {},
                                 [](LgIndex_t zone, LgIndex_t var, std::int64_t count) {
                                   written.push_back({zone, var, count});
                                 }};

TEST_F(EngineExtras, ProgressHearsHowManyValuesAZoneGot) {
  written.clear();
  Load(MakeLattice(ZoneType_FEQuad, 2, 2, 0));
  host.extensions[QEL_EXTENSION_PROGRESS] = &kProgress;
  PlayWell(kRectangleCommand);
  PlayWell(kAlterCells);
  ASSERT_EQ(written.size(), 1u);
  EXPECT_EQ(written[0].zone, 1);
  EXPECT_EQ(written[0].var, c);
  EXPECT_EQ(written[0].count, 4);
}

}  // namespace
