#include "Frame.h"
#include "TestData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qelhost {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Frame, TurnsAboutTheMiddleOfTheDataItFirstShows) {
  Frame frame;
  frame.Show(MakeData(3, 5, 7));
  EXPECT_THAT(frame.view.origin, ElementsAre(1, 2, 3));
  EXPECT_EQ(frame.plotType, PlotType_Cartesian3D);
  EXPECT_EQ(frame.view.magnification, 1);
}

TEST(Frame, ProjectsFlatDataOntoTheirOwnXAndY) {
  Frame frame;
  frame.Show(MakeData(3, 5, 1));
  EXPECT_EQ(frame.plotType, PlotType_Cartesian2D);
  EXPECT_THAT(frame.FixedProjection().ToPlane(2, 4, 0), ElementsAre(2, 4, 0));
}

TEST(Frame, KeepsItsProjectionUntilItIsFixedAgain) {
  Frame frame;
  frame.Show(MakeData(3, 3, 3));
  frame.view.psiDeg = 90;
  EXPECT_THAT(frame.FixedProjection().ToPlane(1, 1, 2), ElementsAre(0, 0, 1));
  frame.FixProjection();
  EXPECT_THAT(frame.FixedProjection().ToPlane(1, 1, 2), ElementsAre(0, 1, 0));
}

struct Step {
  LgIndex_t strand;
  double time;
};

DataSetPtr StepsOf(const std::vector<Step>& steps) {
  std::vector<BlockEntry> blocks;
  for (const Step& step : steps) {
    blocks.push_back({"block", MakeBlock(2, 2, 2), step.strand, step.time});
  }
  return std::make_shared<DataSet>("test", blocks, nullptr);
}

TEST(Frame, ShowsOfEachStrandTheLatestStepThatIsNotAfterTheTime) {
  Frame frame;
  frame.Show(StepsOf({{0, 0}, {1, 1}, {1, 2}, {2, 1.5}}));
  EXPECT_EQ(frame.solutionTime, 1);
  EXPECT_THAT(frame.ZonesAt(0.5, false), ElementsAre(1, 2, 4));
  EXPECT_THAT(frame.ZonesAt(1.75, false), ElementsAre(1, 2, 4));
  EXPECT_THAT(frame.ZonesAt(2, false), ElementsAre(1, 3, 4));
  EXPECT_THAT(frame.ZonesAt(2, true), ElementsAre(1, 2, 3, 4));
}

TEST(FrameList, KnowsItsFramesByNumberAndId) {
  FrameList frames;
  EXPECT_EQ(frames.Active(), nullptr);
  const Frame& first = frames.Add();
  const Frame& second = frames.Add();
  EXPECT_EQ(frames.Active(), &second);
  EXPECT_TRUE(frames.Activate(first.Id()));
  EXPECT_FALSE(frames.Activate(-1));
  EXPECT_EQ(frames.Active(), &first);
  EXPECT_EQ(frames.At(2), &second);
  EXPECT_EQ(frames.At(0), nullptr);
  EXPECT_EQ(frames.At(3), nullptr);
  EXPECT_THAT(first.ZonesAt(0, false), IsEmpty());
  frames.Clear();
  EXPECT_EQ(frames.Active(), nullptr);
}

}  // namespace
}  // namespace qelhost
