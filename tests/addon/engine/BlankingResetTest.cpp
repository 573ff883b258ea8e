// What a reset leaves of what was hidden.
#include "BlankTest.h"

namespace {

using fakehost::kBlank3;
using fakehost::kEverywhere;
using fakehost::MakeLattice;
using fakehost::PickBlanking;
using fakehost::StoredType;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(PickBlanking, ResetWithoutTheVariableDoesNothing) {
  LoadTwo();
  host.notices.clear();
  PlayWell("UNDOBLANK");
  EXPECT_EQ(BlankVariable(), 0);
  EXPECT_THAT(host.notices, IsEmpty());
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(11, 12, 13, 14));
}

TEST_F(PickBlanking, ResetLeavesTheVariableWithAllValues0) {
  LoadTwo();
  PlayWell(kEverywhere);
  PlayWell("BLANKAREA");
  ASSERT_THAT(Blanks(1), Each(1.0));
  host.notices.clear();
  PlayWell("UNDOBLANK ZONE=7");
  EXPECT_THAT(Blanks(1), ElementsAre(0, 0, 0, 0));
  EXPECT_THAT(Blanks(2), ElementsAre(0, 0, 0, 0));
  EXPECT_THAT(ZonesReported(6), ElementsAre(1, 2));
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(11, 12, 13, 14));
  EXPECT_TRUE(Session().IsBlankMode());
}

TEST_F(PickBlanking, ResetSetsAZonesValuesAtOnce) {
  LoadTwo();
  PlayWell(kBlank3);
  PlayWell("BLANKELEMENT ZONE=2 ELEMENT=1");
  host.calls.clear();
  PlayWell("UNDOBLANK");
  std::vector<std::string> writes;
  for (const fakehost::CallRecord& call : host.calls) {
    if (call.function == "QelUtilDataValueArraySetByRef") writes.push_back(call.arguments);
  }
  EXPECT_THAT(writes, ElementsAre("handle, 1, 4", "handle, 1, 4"));
  EXPECT_EQ(host.CallCount("QelUtilDataValueSetByRef"), 0);
}

TEST_F(PickBlanking, ResetKeepsToTheZonesThatAPickWouldChange) {
  LoadTwo();
  host.AddZone(MakeLattice(ZoneType_FEQuad, 1, 1, 0));
  PlayWell(kBlank3);
  PlayWell("BLANKELEMENT ZONE=2 ELEMENT=1");
  host.ZoneAt(1)->isActive = false;
  host.ZoneAt(2)->strand = 1;
  host.ZoneAt(2)->solutionTime = 5.0;
  host.notices.clear();
  PlayWell("UNDOBLANK");
  EXPECT_THAT(Blanks(1), ElementsAre(0, 0, 1, 0));
  EXPECT_THAT(Blanks(2), ElementsAre(1, 0, 0, 0));
  EXPECT_THAT(ZonesReported(6), ElementsAre(3)) << "its values are made by the reset";
  EXPECT_THAT(Blanks(3), ElementsAre(0));
}

TEST_F(PickBlanking, ResetInAlterModeSetsTheAlterVariableTo0AndReportsTheBlanks) {
  LoadTwo();
  PlayWell(kBlank3);
  PlayWell("ALTERELEMENT VARIABLE=\"n\" MODIFIER=\"+5\" ZONE=1 ELEMENT=1");
  host.notices.clear();
  PlayWell("UNDOBLANK");
  EXPECT_THAT(host.ValuesOf(1, n), Each(0.0));
  EXPECT_THAT(host.ValuesOf(2, n), Each(0.0));
  EXPECT_THAT(Blanks(1), ElementsAre(0, 0, 1, 0)) << "the blanks stay";
  EXPECT_THAT(ZonesReported(6), ElementsAre(1, 2)) << "and are what is reported";
  EXPECT_FALSE(Session().IsBlankMode()) << "the mode is not switched";
}

TEST_F(PickBlanking, ResetInAlterModeLeavesPassiveZonesOut) {
  LoadTwo();
  PlayWell(kBlank3);
  PlayWell("ALTERELEMENT VARIABLE=\"n\" MODIFIER=\"+5\" ZONE=1 ELEMENT=1");
  host.MakePassive(2, n);
  host.notices.clear();
  PlayWell("UNDOBLANK");
  EXPECT_THAT(host.ValuesOf(1, n), Each(0.0));
  EXPECT_THAT(ZonesReported(6), ElementsAre(1));
}

TEST_F(PickBlanking, ResetOfASharedVariableTouchesNoZoneThatIsNotReset) {
  LoadTwo();
  host.AddVariable("PICK_BLANK", ValueLocation_CellCentered, StoredType::Byte,
                   [](LgIndex_t, LgIndex_t) { return 1.0; });
  host.Share(1, 2, 6);
  PlayWell(kBlank3);
  host.Share(1, 2, 6);
  host.ZoneAt(2)->isActive = false;
  PlayWell("UNDOBLANK");
  EXPECT_THAT(Blanks(1), Each(0.0));
  EXPECT_THAT(Blanks(2), Each(1.0));
}

class ResetType : public PickBlanking, public ::testing::WithParamInterface<StoredType> {};

TEST_P(ResetType, LeavesWhole0s) {
  LoadTwo();
  const LgIndex_t var = host.AddVariable("v", ValueLocation_Nodal, GetParam(),
                                         [](LgIndex_t, LgIndex_t node) { return 10.0 + node; });
  PlayWell(kBlank3);
  PlayWell("ALTERELEMENT VARIABLE=\"v\" MODIFIER=\"+1\" ZONE=1 ELEMENT=1");
  PlayWell("UNDOBLANK");
  EXPECT_THAT(host.ValuesOf(1, var), ElementsAre(0, 0, 0, 0, 0, 0, 0, 0, 0));
}

INSTANTIATE_TEST_SUITE_P(Types, ResetType,
                         ::testing::Values(StoredType::Float, StoredType::Double, StoredType::Int32,
                                           StoredType::Int16, StoredType::Byte, StoredType::Int64,
                                           StoredType::Int8, StoredType::UInt64));

}  // namespace
