// A journal recorded while a run plays one gives the same data when it is played.
#include "CompareData.h"
#include "DataFiles.h"
#include "Meshes.h"
#include "ProgramRun.h"

namespace clitest {

namespace {

class Record : public ProgramTest {
 protected:
  Record() { WriteData(Path("in.vtu"), MixedVolume()); }
};

TEST_F(Record, PlaysBackToTheSameBits) {
  WriteText(
      "edits.journal",
      Journal(
          {"$!VIEW PSI=40 ALPHA=-25 THETA=10", "$!BLANKING VALUE{INCLUDE = NO",
           "Marquell PICKPOLYGON CORNERS=\"-1.5, -1\",\"1.25, -1.5\",\"0.5, 0.25\",\"-1, 1.75\"",
           "Marquell ALTERAREA VARIABLE=\"T\" MODIFIER=\"*1.1\" RULE=ANYINSIDE",
           "Marquell ALTERAREA VARIABLE=\"S_3\" MODIFIER=\"/3\" RULE=ALLOUTSIDE",
           "Marquell UNDOALTER", "# a comment stays out",
           "Marquell PICKCIRCLE ANCHORX=0.25 ANCHORY=0.25 RADIUS=1.5",
           "Marquell ALTERAREA VARIABLE=\"id\" MODIFIER=\"+100\" RULE=ALLINSIDE",
           "Marquell ALTERELEMENT VARIABLE=\"U_Z\" MODIFIER=\"=0.125\" ZONE=1 ELEMENT=5"}));

  const Outcome first =
      Run({"run", "edits.journal", "in.vtu", "-o", "first.vtu", "--record", "recorded.journal"});
  ASSERT_EQ(first.exitCode, 0) << first.err;
  const Outcome second = Run({"run", "recorded.journal", "in.vtu", "-o", "second.vtu"});
  ASSERT_EQ(second.exitCode, 0) << second.err;

  EXPECT_EQ(ReadText("recorded.journal").rfind("# marquell journal 1\n", 0), 0u);
  EXPECT_FALSE(IsSameData(ReadData(Path("in.vtu")), ReadData(Path("first.vtu"))));
  EXPECT_TRUE(IsSameData(ReadData(Path("first.vtu")), ReadData(Path("second.vtu"))));
}

TEST_F(Record, OfUndoAndRedoPlaysBackToTheSameBits) {
  const std::string alterT = "Marquell ALTERAREA VARIABLE=\"T\" MODIFIER=\"=0.1\" RULE=ANYINSIDE";
  const std::string alterId = "Marquell ALTERAREA VARIABLE=\"id\" MODIFIER=\"+100\" RULE=ALLINSIDE";
  const std::string circle = "Marquell PICKCIRCLE ANCHORX=0.25 ANCHORY=0.25 RADIUS=1.5";
  WriteText("long.journal",
            Journal({circle, alterT, "$!UNDO", alterT, alterId, "$!UNDO", "$!UNDO", "$!REDO",
                     "Marquell ALTERAREA VARIABLE=\"T\" MODIFIER=\"*2\" RULE=ANYINSIDE",
                     "Marquell UNDOALTER", "$!UNDO", "$!UNDO", "Marquell BLANKAREA RULE=ALLINSIDE",
                     "$!UNDO", "$!REDO"}));
  WriteText("short.journal", Journal({circle, alterT, "Marquell BLANKAREA RULE=ALLINSIDE"}));
  const Outcome undone =
      Run({"run", "long.journal", "in.vtu", "-o", "long.vtu", "--record", "again.journal"});
  ASSERT_EQ(undone.exitCode, 0) << undone.err;
  const Outcome plain = Run({"run", "short.journal", "in.vtu", "-o", "short.vtu"});
  ASSERT_EQ(plain.exitCode, 0) << plain.err;
  const Outcome again =
      Run({"run", "again.journal", "in.vtu", "-o", "again.vtu", "--report", "report.json"});
  ASSERT_EQ(again.exitCode, 0) << again.err;
  EXPECT_FALSE(IsSameData(ReadData(Path("in.vtu")), ReadData(Path("short.vtu"))));
  EXPECT_TRUE(IsSameData(ReadData(Path("short.vtu")), ReadData(Path("long.vtu"))));
  EXPECT_TRUE(IsSameData(ReadData(Path("long.vtu")), ReadData(Path("again.vtu"))));
  EXPECT_EQ(ReadText("again.journal"), ReadText("long.journal"));
}

TEST_F(Record, OfMoreUndoThanThereWasStopsAtTheLine) {
  WriteText("edits.journal",
            Journal({"Marquell ALTERELEMENT VARIABLE=\"T\" MODIFIER=\"+1\" ZONE=1 ELEMENT=1",
                     "$!UNDO", "$!UNDO"}));
  const Outcome outcome = Run({"run", "edits.journal", "in.vtu", "-o", "out.vtu"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(IsOneLineWith(outcome.err, {"edits.journal:4", "$!UNDO", "nothing to undo"}));
}

TEST_F(Record, HoldsThePlayedLinesWordForWordAndNoFailedOne) {
  const std::vector<std::string> lines = {
      "marquell NOTHING",
      "Marquell   ALTERELEMENT  VARIABLE=\"T\"  MODIFIER=\"+1\" ZONE=1 ELEMENT=1", "$!view  FIT"};
  WriteText("edits.journal", Journal(lines));
  const Outcome outcome = Run({"run", "edits.journal", "in.vtu", "-o", "out.vtu", "--keep-going",
                               "--record", "recorded.journal"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(ReadText("recorded.journal"), Journal({lines[1], lines[2]}));
}

TEST_F(Record, NeverReplacesAJournalUnasked) {
  WriteText("edits.journal", Journal({"$!VIEW FIT"}));
  const Outcome outcome =
      Run({"run", "edits.journal", "in.vtu", "-o", "out.vtu", "--record", "edits.journal"});
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_TRUE(IsOneLineWith(outcome.err, {"edits.journal"}));
  EXPECT_EQ(ReadText("edits.journal"), Journal({"$!VIEW FIT"}));
  EXPECT_FALSE(std::filesystem::exists(Path("out.vtu")));
}

}  // namespace

}  // namespace clitest
