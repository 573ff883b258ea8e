#include "EngineTest.h"

namespace {

using fakehost::FakeHost;
using fakehost::MakeLattice;
using qelvane::qelutiltools::PickKind;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

struct ChoiceRow {
  const char* rule;
  void (*draw)(FakeHost& host);
  const char* message;
};

QelGeomID_t Draw(FakeHost& host, QelGeomType_e type) {
  return host.AddGeometry({0, type, {0, 0, 0}, 1, 1, {}});
}

class BadGeometry : public fakehost::EngineTest, public ::testing::WithParamInterface<ChoiceRow> {
 protected:
  void SetUp() override {
    Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
    GetParam().draw(host);
    Session().SetPickKind(PickKind::Rectangle, true);
    Session().SetAlterVariable(c);
    Session().ParseModifier("+1");
  }
};

TEST_P(BadGeometry, IsExplainedAndNothingChanges) {
  EXPECT_FALSE(Session().ApplyArea(false));
  ASSERT_THAT(host.messageBoxes, SizeIs(1));
  EXPECT_EQ(host.messageBoxes[0].text, GetParam().message);
  EXPECT_EQ(host.messageBoxes[0].kind, 0);
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20));
}

TEST_P(BadGeometry, IsNotExplainedInABatchRun) {
  host.isBatch = true;
  EXPECT_FALSE(Session().ApplyArea(false));
  EXPECT_THAT(host.messageBoxes, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Codes, BadGeometry,
    ::testing::Values(
        ChoiceRow{"None", [](FakeHost&) {},
                  "No geometries exist that can be used to define the pick area."},
        ChoiceRow{"OneEllipse", [](FakeHost& host) { Draw(host, GeomType_Ellipse); },
                  "Selected geometry is a type that is not supported for defining the pick area."},
        ChoiceRow{"SelectedEllipse",
                  [](FakeHost& host) {
                    Draw(host, GeomType_Circle);
                    host.SelectGeometry(Draw(host, GeomType_Ellipse));
                  },
                  "Selected geometry is a type that is not supported for defining the pick area."},
        ChoiceRow{
            "TwoAndNoneSelected",
            [](FakeHost& host) {
              Draw(host, GeomType_Circle);
              Draw(host, GeomType_Rectangle);
            },
            "When multiple geometries exist in a frame, you must\nselect a single geometry to be "
            "used to define the pick area."},
        ChoiceRow{"TwoAndBothSelected",
                  [](FakeHost& host) {
                    host.SelectGeometry(Draw(host, GeomType_Circle));
                    host.SelectGeometry(Draw(host, GeomType_Rectangle));
                  },
                  "Only one geometry may be selected for defining the pick area."},
        ChoiceRow{"AZoneIsSelected",
                  [](FakeHost& host) {
                    Draw(host, GeomType_Circle);
                    Draw(host, GeomType_Rectangle);
                    host.ActiveFrame().pickList.push_back({PickObject_Zone, 0});
                  },
                  "The selected pick object item is not a geometry."}),
    [](const auto& row) { return std::string(row.param.rule); });

class GoodGeometry : public fakehost::EngineTest {};

TEST_F(GoodGeometry, TheSelectedOneOfSeveralIsUsedAndRecorded) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  host.isRecording = true;
  host.AddGeometry({0, GeomType_Rectangle, {50, 50, 0}, 1, 1, {}});
  host.SelectGeometry(host.AddGeometry({0, GeomType_Square, {-1, -1, 0}, 2.5, 0, {}}));
  Session().SetAlterVariable(c);
  Session().ParseModifier("*1.5");
  EXPECT_TRUE(Session().ApplyArea(false));
  Session().RecordArea();
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(15, 20));
  EXPECT_THAT(host.recordedLines,
              ElementsAre("Marquell PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=2.5 SIZEY=2.5",
                          "Marquell ALTERAREA VARIABLE=\"c\" MODIFIER=\"*1.5\" RULE=ALLINSIDE"));
}

TEST_F(GoodGeometry, ARecordedSequencePlaysBackToTheSameBits) {
  Load(MakeLattice(ZoneType_FETriangle, 6, 6, 0));
  host.paperScale = 2.0;
  host.paperX = 8.0;
  host.paperY = -4.0;
  const std::vector<double> before = host.ValuesOf(1, c);
  host.isRecording = true;
  host.AddGeometry({0, GeomType_Circle, {2.5, 2.5, 0}, 2.25, 0, {}});
  Session().SetPickKind(PickKind::Circle, true);
  Session().SetAlterVariable(c);
  Session().ParseModifier("/3");
  EXPECT_TRUE(Session().ApplyArea(false));
  Session().RecordArea();
  EXPECT_TRUE(Session().ParseModifier("*1.7"));
  EXPECT_TRUE(Session().ApplyArea(false));
  Session().RecordArea();
  host.isRecording = false;
  const std::vector<double> after = host.ValuesOf(1, c);
  EXPECT_NE(after, before);

  for (std::size_t i = 0; i < before.size(); ++i) {
    host.ValuesAt(1, c)->storage->Set(static_cast<std::int64_t>(i), before[i]);
  }
  for (const std::string& line : host.recordedLines) PlayWell(line.substr(9));
  EXPECT_EQ(host.ValuesOf(1, c), after);
}

TEST_F(GoodGeometry, AJournalWithAnUndoPlaysBackToTheSameBits) {
  Load(MakeLattice(ZoneType_FETriangle, 6, 6, 0));
  const std::vector<double> before = host.ValuesOf(1, c);
  host.isRecording = true;
  PlayWell("PICKRECTANGLE ANCHORX=0.5 ANCHORY=0.5 SIZEX=3 SIZEY=4");
  PlayWell("ALTERAREA VARIABLE=\"c\" MODIFIER=\"/3\" RULE=ANYINSIDE");
  PlayWell("ALTERAREA MODIFIER=\"*1.7\"");
  PlayWell("UNDOALTER");
  host.isRecording = false;
  const std::vector<double> after = host.ValuesOf(1, c);
  EXPECT_NE(after, before);

  for (std::size_t i = 0; i < before.size(); ++i) {
    host.ValuesAt(1, c)->storage->Set(static_cast<std::int64_t>(i), before[i]);
  }
  const std::vector<std::string> lines = host.recordedLines;
  EXPECT_THAT(lines, SizeIs(4));
  for (const std::string& line : lines) PlayWell(line.substr(std::string("Marquell ").size()));
  EXPECT_EQ(host.ValuesOf(1, c), after);
}

}  // namespace
