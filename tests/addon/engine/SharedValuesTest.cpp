// Values that zones share are taken apart only when one of them is altered.
#include "EngineTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace fakehost;
using testing::ElementsAre;

/// Two lines of two cells that share c at cells and n at nodes.
class SharedValues : public FakeHostTest {
 protected:
  SharedValues() {
    host.AddFrame(PlotType_Cartesian2D);
    for (int zone = 0; zone < 2; ++zone) host.AddZone(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
    m_c = host.AddVariable("c", ValueLocation_CellCentered, StoredType::Double,
                           [](LgIndex_t, LgIndex_t cell) { return 10.0 * cell; });
    host.Share(1, 2, m_c);
    InitQelAddOn113();
  }

  int BranchCount() const { return host.CallCount("QelUtilDataValueBranchShared"); }

  LgIndex_t m_c = 0;
};

TEST_F(SharedValues, AreTakenApartForOneElement) {
  PlayWell("ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"+1\" ZONE=2 ELEMENT=1");
  EXPECT_THAT(host.ValuesOf(2, m_c), ElementsAre(11, 20));
  EXPECT_THAT(host.ValuesOf(1, m_c), ElementsAre(10, 20));
  EXPECT_EQ(BranchCount(), 1);
}

TEST_F(SharedValues, StaySharedWhenTheElementDoesNotExist) {
  PlayBadly("ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"+1\" ZONE=2 ELEMENT=3");
  EXPECT_EQ(BranchCount(), 0);
}

TEST_F(SharedValues, AreTakenApartOnceForAnArea) {
  PlayWell("PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=9 SIZEY=9");
  PlayWell("ALTERAREA VARIABLE=\"c\" MODIFIER=\"+1\" RULE=ALLINSIDE");
  EXPECT_THAT(host.ValuesOf(1, m_c), ElementsAre(11, 21));
  EXPECT_THAT(host.ValuesOf(2, m_c), ElementsAre(11, 21)) << "each zone's own, altered once";
  EXPECT_EQ(BranchCount(), 1);
}

}  // namespace
