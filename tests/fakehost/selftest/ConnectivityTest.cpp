#include "SelfTest.h"

#include <algorithm>

namespace {

using fakehost::Collapse;
using fakehost::MakeCollapsedBricks;
using fakehost::MakeLattice;
using fakehost::Mesh;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Connect : public fakehost::SelfTest {
 protected:
  LgIndex_t Load(const Mesh& mesh) {
    if (!host.HasFrame()) host.AddFrame(PlotType_Cartesian3D);
    return host.AddZone(mesh);
  }
  std::vector<LgIndex_t> Neighbours(LgIndex_t zone, LgIndex_t element, LgIndex_t faceCount) {
    const QelFaceNeighbors* const map = QelUtilDataFaceNbrGetReadableRef(zone);
    std::vector<LgIndex_t> counts;
    for (LgIndex_t face = 1; face <= faceCount; ++face) {
      counts.push_back(QelUtilDataFaceNbrGetNumNByRef(map, element, face));
    }
    return counts;
  }
  std::vector<LgIndex_t> Around(LgIndex_t zone, LgIndex_t node) {
    const QelNodeToElemMap* const map = QelUtilDataNodeToElemMapGetReadableRef(zone);
    std::vector<LgIndex_t> elements;
    for (LgIndex_t n = 1; n <= QelUtilDataNodeToElemMapGetNumElems(map, node); ++n) {
      elements.push_back(QelUtilDataNodeToElemMapGetElem(map, node, n));
    }
    return elements;
  }
  /// How many faces of a zone of types 1 to 5 have no neighbour.
  int BoundaryFaces(LgIndex_t zone, LgIndex_t faceCount) {
    int count = 0;
    for (LgIndex_t element = 1; element <= host.ZoneAt(zone)->mesh.CellCount(); ++element) {
      const std::vector<LgIndex_t> counts = Neighbours(zone, element, faceCount);
      count += static_cast<int>(std::count(counts.begin(), counts.end(), 0));
    }
    return count;
  }
};

TEST_F(Connect, NumbersTheFacesOfABrick) {
  const LgIndex_t zone = Load(MakeLattice(ZoneType_FEBrick, 2, 2, 2));
  EXPECT_THAT(Neighbours(zone, 1, 7), ElementsAre(0, 1, 0, 1, 0, 1, 0));
  EXPECT_THAT(Neighbours(zone, 8, 6), ElementsAre(1, 0, 1, 0, 1, 0));
  EXPECT_THAT(Neighbours(zone, 9, 6), Each(0));
}

TEST_F(Connect, NumbersTheFacesOfTheOtherTypes) {
  EXPECT_THAT(Neighbours(Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0)), 1, 5),
              ElementsAre(0, 1, 0, 0, 0));
  EXPECT_THAT(Neighbours(Load(MakeLattice(ZoneType_FETriangle, 1, 1, 0)), 1, 4),
              ElementsAre(0, 0, 1, 0));
  EXPECT_THAT(Neighbours(Load(MakeLattice(ZoneType_FELineSeg, 3, 0, 0)), 1, 3),
              ElementsAre(0, 1, 0));
  Mesh tetras;
  tetras.type = ZoneType_FETetra;
  tetras.points.resize(5);
  tetras.elements = {{1, 2, 3, 4}, {5, 2, 3, 4}};
  EXPECT_THAT(Neighbours(Load(tetras), 1, 5), ElementsAre(0, 0, 0, 1, 0));
}

TEST_F(Connect, LetsTetrahedraMeetFaceToFace) {
  const LgIndex_t zone = Load(MakeLattice(ZoneType_FETetra, 3, 2, 2));
  // Two triangles on each of the lattice's outer squares.
  EXPECT_EQ(BoundaryFaces(zone, 4), 2 * 2 * (3 * 2 + 3 * 2 + 2 * 2));
}

TEST_F(Connect, TakesACollapsedFaceForOneWithANeighbour) {
  const int outer = 2 * (3 * 2 + 3 * 2 + 2 * 2);
  const LgIndex_t wedges = Load(MakeCollapsedBricks(Collapse::Wedge, 3, 2, 2));
  // Bottom and top are cut in two, the sides are not.
  EXPECT_EQ(BoundaryFaces(wedges, 6), outer + 2 * 3 * 2);
  EXPECT_THAT(Neighbours(wedges, 1, 6), ElementsAre(1, 1, 0, 1, 0, 1));
  const LgIndex_t pyramids = Load(MakeCollapsedBricks(Collapse::Pyramid, 3, 2, 2));
  EXPECT_EQ(BoundaryFaces(pyramids, 6), outer);
  const LgIndex_t tetras = Load(MakeCollapsedBricks(Collapse::Tetra, 3, 2, 2));
  EXPECT_EQ(BoundaryFaces(tetras, 6), 2 * outer);
}

TEST_F(Connect, CountsNeighboursBeyondBlanking) {
  const LgIndex_t zone = Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  host.ActiveFrame().blanking.include = true;
  host.ActiveFrame().blanking.constraints[1] = {
      true, 1, 0, BlankRelOp_GreaterThanOrEqual, ConstraintOp2Mode_UseConstant, 1.0};
  ASSERT_FALSE(QelUtilBlankingCheckFECell(zone, 2));
  EXPECT_THAT(Neighbours(zone, 1, 4), ElementsAre(0, 1, 0, 0));
}

TEST_F(Connect, ListsElementsAroundANodeAscendingAndOnce) {
  const LgIndex_t quads = Load(MakeLattice(ZoneType_FEQuad, 2, 2, 0));
  EXPECT_THAT(Around(quads, 5), ElementsAre(1, 2, 3, 4));
  EXPECT_THAT(Around(quads, 10), IsEmpty());
  const LgIndex_t wedges = Load(MakeCollapsedBricks(Collapse::Wedge, 1, 1, 1));
  EXPECT_THAT(Around(wedges, 4), ElementsAre(1, 2));  // repeated in the first
  EXPECT_THAT(Around(Load(MakeLattice(ZoneType_FEPolyhedron, 2, 1, 1)), 2), ElementsAre(1, 2));
  const QelNodeToElemMap* const map = QelUtilDataNodeToElemMapGetReadableRef(quads);
  EXPECT_EQ(QelUtilDataNodeToElemMapGetElem(map, 5, 5), 0);
  EXPECT_EQ(QelUtilDataNodeToElemMapGetElem(map, 5, 0), 0);
}

TEST_F(Connect, GivesEachMapToItsZoneTypesAlone) {
  const LgIndex_t ordered = Load(MakeLattice(ZoneType_Ordered, 2, 2, 2));
  const LgIndex_t brick = Load(MakeLattice(ZoneType_FEBrick, 1, 1, 1));
  const LgIndex_t polygon = Load(MakeLattice(ZoneType_FEPolygon, 1, 1, 0));
  const std::vector<LgIndex_t> zones = {ordered, brick, polygon, 99};
  std::vector<std::string> given;
  for (const LgIndex_t zone : zones) {
    std::string maps;
    if (QelUtilDataNodeGetReadableRef(zone) != nullptr) maps += "nodes ";
    if (QelUtilDataNodeGetWritableRef(zone) != nullptr) maps += "writable ";
    if (QelUtilDataNodeToElemMapGetReadableRef(zone) != nullptr) maps += "around ";
    if (QelUtilDataFaceNbrGetReadableRef(zone) != nullptr) maps += "neighbours ";
    if (QelUtilDataElemGetReadableRef(zone) != nullptr) maps += "faces ";
    if (QelUtilDataFaceMapGetReadableRef(zone) != nullptr) maps += "face nodes ";
    given.push_back(maps);
  }
  EXPECT_THAT(given,
              ElementsAre("", "nodes writable around neighbours ", "around faces face nodes ", ""));
}

TEST_F(Connect, TellsWhatLiesOnEitherSideOfAFace) {
  const LgIndex_t zone = Load(MakeLattice(ZoneType_FEPolygon, 2, 1, 0));
  const QelElemToFaceMap* const faces = QelUtilDataElemGetReadableRef(zone);
  const QelFaceMap* const map = QelUtilDataFaceMapGetReadableRef(zone);
  ASSERT_EQ(QelUtilDataElemGetNumFaces(faces, 2), 4);
  const LgIndex_t between = QelUtilDataElemGetFace(faces, 2, 1);
  EXPECT_EQ(between, 2);
  EXPECT_EQ(QelUtilDataFaceMapGetLeftElem(map, between), 1);
  EXPECT_EQ(QelUtilDataFaceMapGetRightElem(map, between), 2);
  EXPECT_EQ(QelUtilDataFaceMapGetRightElem(map, 1), 0);
  EXPECT_EQ(QelUtilDataFaceMapGetNFaceNodes(map, between), 2);
  EXPECT_EQ(QelUtilDataFaceMapGetFaceNode(map, between, 2), 5);
  EXPECT_EQ(QelUtilDataFaceMapGetFaceNode(map, between, 3), 0);
  EXPECT_EQ(QelUtilDataElemGetFace(faces, 2, 5), 0);
}

TEST_F(Connect, FollowsChangesOfTheNodeMap) {
  const LgIndex_t zone = Load(MakeLattice(ZoneType_FELineSeg, 2, 0, 0));
  EXPECT_THAT(Around(zone, 2), ElementsAre(1, 2));
  QelNodeMap* const nodes = QelUtilDataNodeGetWritableRef(zone);
  QelUtilDataNodeSetByRef(nodes, 2, 1, 3);
  EXPECT_THAT(Around(zone, 2), ElementsAre(1));
  EXPECT_EQ(QelUtilDataNodeGetByRef(nodes, 2, 1), 3);
  EXPECT_EQ(QelUtilDataNodeGetByRef(nodes, 2, 3), 0);
  EXPECT_EQ(QelUtilDataNodeGetByRef(nodes, 3, 1), 0);
  QelUtilDataNodeSetByRef(nodes, 2, 1, 4);  // no such node
  EXPECT_EQ(QelUtilDataNodeGetByRef(nodes, 2, 1), 3);
}

TEST_F(Connect, FollowsChangesThatATestMakesToFaces) {
  const LgIndex_t zone = Load(MakeLattice(ZoneType_FEPolygon, 2, 1, 0));
  const QelElemToFaceMap* const faces = QelUtilDataElemGetReadableRef(zone);
  host.ZoneAt(zone)->mesh.faces[1].right = 0;
  EXPECT_EQ(QelUtilDataElemGetNumFaces(faces, 2), 3);
}

TEST_F(Connect, CarriesFourMillionNodes) {
  host.keepsCalls = false;
  constexpr LgIndex_t kSide = 158;
  const LgIndex_t zone = Load(MakeLattice(ZoneType_FEBrick, kSide, kSide, kSide));
  LgIndex_t nodes = 0;
  LgIndex_t elements = 0;
  LgIndex_t corners = 0;
  QelUtilZoneGetIJK(zone, &nodes, &elements, &corners);
  EXPECT_GT(nodes, 4000000);
  EXPECT_EQ(corners, 8);
  EXPECT_THAT(Neighbours(zone, 1, 6), ElementsAre(0, 1, 0, 1, 0, 1));
  EXPECT_THAT(Neighbours(zone, elements, 6), ElementsAre(1, 0, 1, 0, 1, 0));
}

}  // namespace
