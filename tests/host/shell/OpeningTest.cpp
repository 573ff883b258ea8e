// What add-ons hear when data sets are shown and closed.
#include "FileError.h"
#include "Host.h"
#include "TestData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qelhost {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

/// One row a notice: its code, the style parameter, and what an add-on sees at that moment.
std::vector<std::string> heardTexts;
std::vector<std::string> owners;

void Listen(QelStateChange_t change) {
  Host& host = Host::Instance();
  const Frame* const frame = host.frames.Active();
  const std::string* const style = host.notices.StyleParameter(1);
  const bool hasData = frame != nullptr && frame->Data() != nullptr;
  const int plotType = frame == nullptr ? 0 : static_cast<int>(frame->plotType);
  heardTexts.push_back(std::to_string(change) + (style == nullptr ? "" : ' ' + *style) +
                       (hasData ? " data " : " no-data ") + std::to_string(plotType));
  owners.push_back(host.lock.Owner());
}

class Opening : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { Host::Instance().notices.AddCallback(Listen); }
  void SetUp() override {
    Host::Instance().CloseAll();
    heardTexts.clear();
    owners.clear();
  }
  Host& host = Host::Instance();
};

/// Whether each notice that shows another plot type or another "has data" than the last style
/// notice of the plot type is followed by such a style notice at once.
bool EveryChangeIsAnnounced(std::string known) {
  for (std::size_t i = 0; i < heardTexts.size(); ++i) {
    const std::string seen = heardTexts[i].substr(
        heardTexts[i].find("PLOTTYPE") == std::string::npos ? heardTexts[i].find(' ')
                                                            : heardTexts[i].find("PLOTTYPE") + 8);
    const bool isStyle = heardTexts[i].rfind("7 PLOTTYPE", 0) == 0;
    if (!isStyle && seen != known &&
        (i + 1 == heardTexts.size() || heardTexts[i + 1] != "7 PLOTTYPE" + seen)) {
      return false;
    }
    known = seen;
  }
  return true;
}

TEST_F(Opening, TheFirstDataSetAnnouncesFrameDataAndPlotType) {
  host.ShowDataSet(MakeData(2, 2, 2));
  EXPECT_TRUE(EveryChangeIsAnnounced(" no-data 0")) << ::testing::PrintToString(heardTexts);
  EXPECT_EQ(heardTexts.back(), "7 PLOTTYPE data 1");
  EXPECT_THAT(owners, Each("Workbench"));
  EXPECT_FALSE(host.lock.IsOn());
}

TEST_F(Opening, ASecondDataSetOfTheSamePlotTypeIsAnnouncedWhereverItShows) {
  host.ShowDataSet(MakeData(2, 2, 2));
  heardTexts.clear();
  host.ShowDataSet(MakeData(2, 2, 2));
  EXPECT_TRUE(EveryChangeIsAnnounced(" data 1")) << ::testing::PrintToString(heardTexts);
}

TEST_F(Opening, ADataSetOfAnotherPlotTypeIsAnnouncedWhereverItShows) {
  host.ShowDataSet(MakeData(2, 2, 2));
  heardTexts.clear();
  host.ShowDataSet(MakeData(2, 2, 1));
  EXPECT_TRUE(EveryChangeIsAnnounced(" data 1")) << ::testing::PrintToString(heardTexts);
}

TEST_F(Opening, AFrameIsFlatWhenEveryZoneIsFlatInZ) {
  EXPECT_EQ(host.ShowDataSet(MakeData(3, 2, 1)).plotType, PlotType_Cartesian2D);
  EXPECT_EQ(host.ShowDataSet(MakeData(3, 1, 2)).plotType, PlotType_Cartesian3D);
}

TEST_F(Opening, ClosingEverythingSendsNewLayoutThenFrameDeleted) {
  host.ShowDataSet(MakeData(2, 2, 2));
  heardTexts.clear();
  host.CloseAll();
  EXPECT_THAT(heardTexts, ElementsAre("9 no-data 0", "6 no-data 0"));
  EXPECT_EQ(host.frames.Count(), 0);
}

TEST_F(Opening, AFileThatCannotBeReadLeavesEverythingAsItWas) {
  Frame& before = host.ShowDataSet(MakeData(2, 2, 2));
  heardTexts.clear();
  EXPECT_THROW(host.OpenFile("/nowhere/none.vtu"), FileError);
  EXPECT_EQ(host.frames.Active(), &before);
  EXPECT_EQ(host.frames.Count(), 1);
  EXPECT_THAT(heardTexts, ElementsAre());
  EXPECT_FALSE(host.lock.IsOn());
}

}  // namespace
}  // namespace qelhost
