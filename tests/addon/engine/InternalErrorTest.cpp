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

/// The text of a failed call as a pattern, with the place that follows it.
std::string AssertText(const std::string& call) {
  std::string pattern = "Assert failed: ";
  for (const char letter : call) {
    if (std::string("()*+?.[]{}|^$\\").find(letter) != std::string::npos) pattern += '\\';
    pattern += letter;
  }
  return pattern + " \\([A-Za-z]+ [0-9]+\\)";
}

struct PlayedRow {
  const char* name;
  const char* before;   ///< played well first; empty: nothing
  const char* command;  ///< fails
  const char* function;
  int nth;
  const char* call;
};

void PrintTo(const PlayedRow& row, std::ostream* out) { *out << row.name; }

class PlayedError : public fakehost::EngineTest, public ::testing::WithParamInterface<PlayedRow> {};

TEST_P(PlayedError, IsTheCommandsText) {
  const PlayedRow& row = GetParam();
  Load(MakeLattice(ZoneType_FEQuad, 2, 2, 0), PlotType_Cartesian3D);
  if (*row.before != '\0') PlayWell(row.before);
  host.FailCall(row.function, row.nth);
  EXPECT_THAT(PlayBadly(row.command), MatchesRegex(AssertText(row.call)));
  EXPECT_TRUE(host.errorBoxes.empty()) << "an error of a played command shows no box";
}

constexpr char kRectangle[] = "PICKRECTANGLE ANCHORX=-9 ANCHORY=-9 SIZEX=20 SIZEY=20";
constexpr char kAlterCells[] = "ALTERAREA VARIABLE=\"c\" MODIFIER=\"+1\"";
constexpr char kAlterCell[] = "ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"+1\" ZONE=1 ELEMENT=1";

INSTANTIATE_TEST_SUITE_P(
    Calls, PlayedError,
    ::testing::Values(
        PlayedRow{"RectangleMode", "", kRectangle, "QelUtilMouseSetMode", 1,
                  "QelUtilMouseSetMode(Mouse_GeomRectangle)"},
        PlayedRow{"CircleMode", "", "PICKCIRCLE ANCHORX=0 ANCHORY=0 RADIUS=1",
                  "QelUtilMouseSetMode", 1, "QelUtilMouseSetMode(Mouse_GeomCircle)"},
        PlayedRow{"PolygonMode", "", "PICKPOLYGON CORNERS=\"0,0,4,0,0,4\"", "QelUtilMouseSetMode",
                  1, "QelUtilMouseSetMode(Mouse_GeomPolyline)"},
        PlayedRow{"RelevantZones", kRectangle, kAlterCells, "QelUtilZoneGetRelevant", 1,
                  "QelUtilZoneGetRelevant(solutionTime, FALSE, &relevantZones)"},
        PlayedRow{"WritableReference", kRectangle, kAlterCells,
                  "QelUtilDataValueGetWritableNativeRef", 1,
                  "fieldDataPtr = QelUtilDataValueGetWritableNativeRef(zoneNum, varNum)"},
        PlayedRow{"NodeMap", kRectangle, kAlterCells, "QelUtilDataNodeGetReadableRef", 1,
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
  PlayWell(kRectangle);
  PlayWell(kAlterCells);
  ASSERT_EQ(written.size(), 1u);
  EXPECT_EQ(written[0].zone, 1);
  EXPECT_EQ(written[0].var, c);
  EXPECT_EQ(written[0].count, 4);
}

}  // namespace
