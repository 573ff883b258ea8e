#include "ApiTesting.h"

#include "qelvane/QelUtil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace qelhost {
namespace {

using ::testing::ElementsAre;

class Connectivity : public ::testing::Test {
 protected:
  void SetUp() override { CloseEverything(); }
  void TearDown() override { CloseEverything(); }
};

std::vector<LgIndex_t> CornersOf(const QelNodeMap* map, LgIndex_t element, LgIndex_t count) {
  std::vector<LgIndex_t> nodes;
  for (LgIndex_t corner = 1; corner <= count; ++corner) {
    nodes.push_back(QelUtilDataNodeGetByRef(map, element, corner));
  }
  return nodes;
}

std::vector<LgIndex_t> ElementsOf(const QelNodeToElemMap* map, LgIndex_t node) {
  std::vector<LgIndex_t> elements;
  for (LgIndex_t n = 1; n <= QelUtilDataNodeToElemMapGetNumElems(map, node); ++n) {
    elements.push_back(QelUtilDataNodeToElemMapGetElem(map, node, n));
  }
  return elements;
}

TEST_F(Connectivity, OfTwoBricksCountsFromOne) {
  ShowBricks(3, 2, 2);
  const QelNodeMap* const nodes = QelUtilDataNodeGetReadableRef(1);
  EXPECT_THAT(CornersOf(nodes, 2, 9), ElementsAre(2, 3, 6, 5, 8, 9, 12, 11, 0));
  EXPECT_EQ(QelUtilDataNodeGetByRef(nodes, 0, 1), 0);
  EXPECT_EQ(QelUtilDataNodeGetByRef(nodes, 3, 1), 0);
  const QelNodeToElemMap* const elements = QelUtilDataNodeToElemMapGetReadableRef(1);
  EXPECT_THAT(ElementsOf(elements, 1), ElementsAre(1));
  EXPECT_THAT(ElementsOf(elements, 2), ElementsAre(1, 2));
  EXPECT_EQ(QelUtilDataNodeToElemMapGetElem(elements, 2, 3), 0);
  EXPECT_EQ(QelUtilDataNodeToElemMapGetNumElems(elements, 13), 0);
  const QelFaceNeighbors* const neighbours = QelUtilDataFaceNbrGetReadableRef(1);
  const std::vector<LgIndex_t> ofFirst = {0, 1, 0, 0, 0, 0, 0};
  for (LgIndex_t face = 1; face <= 7; ++face) {
    EXPECT_EQ(QelUtilDataFaceNbrGetNumNByRef(neighbours, 1, face), ofFirst[face - 1]) << face;
  }
  EXPECT_EQ(QelUtilDataFaceNbrGetNumNByRef(neighbours, 2, 1), 1);
  EXPECT_EQ(QelUtilDataElemGetReadableRef(1), nullptr);
  EXPECT_EQ(QelUtilDataFaceMapGetReadableRef(1), nullptr);
}

TEST_F(Connectivity, OfAFileIsNotWritable) {
  ShowBricks(2, 2, 2);
  EXPECT_EQ(QelUtilDataNodeGetWritableRef(1), nullptr);
  QelNodeMap* const nodes = QelUtilDataNodeGetReadableRef(1);
  QelUtilDataNodeSetByRef(nodes, 1, 1, 5);
  EXPECT_EQ(QelUtilDataNodeGetByRef(nodes, 1, 1), 1);
}

TEST_F(Connectivity, ThatIsWrittenIsSeenInTheMapsThatFollowFromIt) {
  ShowBricks(2, 2, 2);
  ASSERT_TRUE(QelUtilDataSetAddZone("added", 6, 2, 0, ZoneType_FETriangle, nullptr));
  QelNodeMap* const nodes = QelUtilDataNodeGetWritableRef(2);
  ASSERT_NE(nodes, nullptr);
  const LgIndex_t corners[2][3] = {{1, 2, 3}, {4, 5, 6}};
  for (LgIndex_t element = 1; element <= 2; ++element) {
    for (LgIndex_t corner = 1; corner <= 3; ++corner) {
      QelUtilDataNodeSetByRef(nodes, element, corner, corners[element - 1][corner - 1]);
    }
  }
  EXPECT_THAT(ElementsOf(QelUtilDataNodeToElemMapGetReadableRef(2), 2), ElementsAre(1));
  const QelFaceNeighbors* const before = QelUtilDataFaceNbrGetReadableRef(2);
  EXPECT_EQ(QelUtilDataFaceNbrGetNumNByRef(before, 1, 2), 0);
  QelUtilDataNodeSetByRef(nodes, 2, 1, 3);
  QelUtilDataNodeSetByRef(nodes, 2, 2, 2);
  EXPECT_THAT(ElementsOf(QelUtilDataNodeToElemMapGetReadableRef(2), 2), ElementsAre(1, 2));
  EXPECT_EQ(QelUtilDataFaceNbrGetNumNByRef(QelUtilDataFaceNbrGetReadableRef(2), 1, 2), 1);
  for (const LgIndex_t bad : {0, -2147483647 - 1, 2147483647}) {
    QelUtilDataNodeSetByRef(nodes, bad, 1, 1);
    QelUtilDataNodeSetByRef(nodes, 1, bad, 1);
    QelUtilDataNodeSetByRef(nodes, 1, 1, bad);
  }
  EXPECT_THAT(CornersOf(nodes, 1, 3), ElementsAre(1, 2, 3));
}

TEST_F(Connectivity, OfAPolyhedronIsItsFaces) {
  ShowPolyhedron();
  EXPECT_EQ(QelUtilDataNodeGetReadableRef(1), nullptr);
  EXPECT_EQ(QelUtilDataFaceNbrGetReadableRef(1), nullptr);
  const QelElemToFaceMap* const elements = QelUtilDataElemGetReadableRef(1);
  const QelFaceMap* const faces = QelUtilDataFaceMapGetReadableRef(1);
  ASSERT_EQ(QelUtilDataElemGetNumFaces(elements, 1), 6);
  EXPECT_EQ(QelUtilDataElemGetFace(elements, 1, 7), 0);
  for (LgIndex_t n = 1; n <= 6; ++n) {
    const LgIndex_t face = QelUtilDataElemGetFace(elements, 1, n);
    EXPECT_EQ(QelUtilDataFaceMapGetNFaceNodes(faces, face), 4);
    EXPECT_EQ(QelUtilDataFaceMapGetFaceNode(faces, face, 5), 0);
    const LgIndex_t left = QelUtilDataFaceMapGetLeftElem(faces, face);
    const LgIndex_t right = QelUtilDataFaceMapGetRightElem(faces, face);
    EXPECT_EQ(left + right, 1) << "the element on one side, nothing on the other";
  }
  EXPECT_THAT(ElementsOf(QelUtilDataNodeToElemMapGetReadableRef(1), 8), ElementsAre(1));
}

TEST_F(Connectivity, AnOrderedZoneHasNone) {
  ShowOrdered(2, 2, 2);
  EXPECT_EQ(QelUtilDataNodeGetReadableRef(1), nullptr);
  EXPECT_EQ(QelUtilDataNodeToElemMapGetReadableRef(1), nullptr);
  EXPECT_EQ(QelUtilDataFaceNbrGetReadableRef(1), nullptr);
  EXPECT_EQ(QelUtilDataElemGetReadableRef(1), nullptr);
  EXPECT_EQ(QelUtilDataFaceMapGetReadableRef(1), nullptr);
}

}  // namespace
}  // namespace qelhost
