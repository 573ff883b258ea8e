// Random searches over surfaces, and whole surface picks, against a plain recursion.
#include "EngineTest.h"
#include "PickReference.h"
#include "SurfaceReference.h"
#include "SurfaceSearch.h"

#include <map>

namespace {

using fakehost::Collapse;
using fakehost::Mesh;
using namespace reference;
using qelvane::qelutiltools::HostLock;
using qelvane::qelutiltools::InsideSet;
using qelvane::qelutiltools::PickKind;
using qelvane::qelutiltools::SearchSurface;

class RandomSearch : public fakehost::EngineTest {
 protected:
  void Show(const Mesh& mesh) {
    host.Reset();
    host.keepsCalls = false;
    host.AddFrame(PlotType_Cartesian3D);
    host.AddZone(mesh);
    InitQelAddOn113();
  }

  /// Searches the one zone from random seeds in random sets, some thin and some nearly full.
  void TryRandomSets(Random& random) {
    const Mesh& mesh = host.ZoneAt(1)->mesh;
    for (int round = 0; round < 12; ++round) {
      const int density = 20 + random.Below(81);
      Nodes nodes;
      for (LgIndex_t node = 1; node <= mesh.NodeCount(); ++node) {
        if (random.Below(100) < density) nodes.insert(node);
      }
      const LgIndex_t seed = 1 + random.Below(mesh.NodeCount());
      InsideSet inside(mesh.NodeCount());
      for (const LgIndex_t node : nodes) inside.Insert(node - 1);
      const bool isDone = SearchSurface(1, seed, inside);
      Nodes left;
      for (LgIndex_t node = 1; node <= mesh.NodeCount(); ++node) {
        if (inside.Contains(node - 1)) left.insert(node);
      }
      const std::optional<Nodes> reached = Reached(mesh, seed, nodes);
      ASSERT_EQ(isDone, reached.has_value()) << "from " << seed;
      ASSERT_EQ(left, reached.value_or(nodes)) << "from " << seed;
      m_refused += isDone ? 0 : 1;
      m_cutShort += isDone && left.size() < nodes.size() ? 1 : 0;
    }
  }

  int m_refused = 0;   ///< of the searches so far
  int m_cutShort = 0;  ///< those that reached some of the set
};

class SurfaceProperty : public RandomSearch, public ::testing::WithParamInterface<int> {
 protected:
  QelZoneType_e Type() const { return static_cast<QelZoneType_e>(GetParam()); }
};

TEST_P(SurfaceProperty, ReachesInLatticesWhatTheRecursionReaches) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(seed * 8 + static_cast<unsigned>(Type()));
    Show(RandomMesh(random, Type()));
    TryRandomSets(random);
    if (HasFailure()) return;
  }
  EXPECT_GT(m_refused, 0);
  EXPECT_GT(m_cutShort, 0);
}

/// Elements over whatever nodes: sharing faces or edges or a node, folded, doubled, collapsed.
Mesh RandomSoup(Random& random, QelZoneType_e type) {
  static const std::map<QelZoneType_e, int> cornerCounts = {{ZoneType_FETriangle, 3},
                                                            {ZoneType_FEQuad, 4},
                                                            {ZoneType_FETetra, 4},
                                                            {ZoneType_FEBrick, 8},
                                                            {ZoneType_FELineSeg, 2}};
  Mesh mesh;
  mesh.type = type;
  const int nodeCount = 4 + random.Below(9);
  mesh.points.resize(static_cast<std::size_t>(nodeCount));
  const int elementCount = 1 + random.Below(8);
  if (!mesh.IsFaceBased()) {
    for (int element = 0; element < elementCount; ++element) {
      std::vector<LgIndex_t> corners;
      for (int corner = 0; corner < cornerCounts.at(type); ++corner) {
        corners.push_back(1 + random.Below(nodeCount));
      }
      mesh.elements.push_back(corners);
    }
    return mesh;
  }
  mesh.faceBasedElementCount = elementCount;
  for (int count = 1 + random.Below(12); count > 0; --count) {
    fakehost::Face face;
    const int corners = type == ZoneType_FEPolygon ? 2 : 3 + random.Below(3);
    for (int corner = 0; corner < corners; ++corner) {
      face.nodes.push_back(1 + random.Below(nodeCount));
    }
    face.left = random.Below(elementCount + 1);
    face.right = random.Below(elementCount + 1);
    mesh.faces.push_back(face);
  }
  return mesh;
}

/// Of zones whose cells name their nodes or faces.
class SoupProperty : public SurfaceProperty {};

TEST_P(SoupProperty, ReachesInAnyConnectivityWhatTheRecursionReaches) {
  for (unsigned seed = 1; seed <= 200; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(seed * 8 + static_cast<unsigned>(Type()));
    Show(RandomSoup(random, Type()));
    TryRandomSets(random);
    if (HasFailure()) return;
  }
}

TEST_F(RandomSearch, ReachesInCollapsedBricksWhatTheRecursionReaches) {
  for (unsigned seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(seed);
    for (const Collapse to : {Collapse::Wedge, Collapse::Pyramid, Collapse::Tetra}) {
      Show(fakehost::MakeCollapsedBricks(to, 1 + random.Below(3), 1 + random.Below(3),
                                         1 + random.Below(3)));
      TryRandomSets(random);
    }
    if (HasFailure()) return;
  }
}

// Whole picks ----------------------------------------------------------------------------------

constexpr char kMissesSurface[] =
    "The seed point must be inside the pick geometry\n and on a boundary surface.\n\nNote that a "
    "face may be visible but not necessarily\n on a boundary surface.  This happens when "
    "neighboring\n cells are either blanked or in a different zone.";

struct SurfaceChoice {
  Boundary boundary;
  int rule = 0;
  LgIndex_t zone = 0;
  LgIndex_t seed = 0;
};

class SurfacePickProperty : public SurfaceProperty {
 protected:
  SurfaceChoice RandomPick(Random& random, const Scene& scene) {
    SurfaceChoice pick;
    pick.boundary = RandomBoundary(random, false);
    pick.rule = random.Below(4);
    pick.zone = 1 + random.Below(scene.zoneCount);
    const std::vector<bool> inside = NodesInside(pick.boundary, pick.zone);
    pick.seed = 1 + random.Below(static_cast<int>(inside.size()));
    // Seeds are mostly where they have to be.
    for (int tries = 0; tries < 20 && !inside[static_cast<std::size_t>(pick.seed - 1)]; ++tries) {
      pick.seed = 1 + random.Below(static_cast<int>(inside.size()));
    }
    return pick;
  }

  /// The nodes that count as inside; none when the seed is refused.
  std::optional<std::vector<bool>> NodesReached(const SurfaceChoice& pick) {
    const std::vector<bool> inside = NodesInside(pick.boundary, pick.zone);
    Nodes nodes;
    for (std::size_t node = 0; node < inside.size(); ++node) {
      if (inside[node]) nodes.insert(static_cast<LgIndex_t>(node + 1));
    }
    const std::optional<Nodes> reached = Reached(host.ZoneAt(pick.zone)->mesh, pick.seed, nodes);
    if (!reached) return std::nullopt;
    std::vector<bool> counted(inside.size());
    for (const LgIndex_t node : *reached) counted[static_cast<std::size_t>(node - 1)] = true;
    return counted;
  }

  std::vector<Bytes> AllValues(const Scene& scene) {
    std::vector<Bytes> all;
    for (LgIndex_t zone = 1; zone <= scene.zoneCount; ++zone) {
      for (LgIndex_t var = 1; var <= scene.c; ++var) all.push_back(BytesOf(zone, var));
    }
    return all;
  }
  static std::size_t PlaceOf(const Scene& scene, LgIndex_t zone, LgIndex_t var) {
    return static_cast<std::size_t>((zone - 1) * scene.c + var - 1);
  }

  void Play(const SurfaceChoice& pick, const Scene& scene, const Modifier& modifier) {
    PlayWell(pick.boundary.Line());
    PlayWell(std::string("ALTERSURFACE VARIABLE=\"") + scene.VariableName() + "\" MODIFIER=\"" +
             modifier.text + "\" ZONE=" + std::to_string(pick.zone) +
             " SEEDPOINT=" + std::to_string(pick.seed) + " RULE=" + kRules[pick.rule]);
  }

  /// The same by hand.
  void Click(const SurfaceChoice& pick, const Scene& scene, const Modifier& modifier) {
    static constexpr PickKind kKinds[] = {PickKind::Rectangle, PickKind::Circle, PickKind::Polygon};
    EXPECT_TRUE(Session().SetPickKind(kKinds[static_cast<int>(pick.boundary.shape)], true));
    Session().SetAlterVariable(scene.Variable());
    EXPECT_TRUE(Session().ParseModifier(modifier.text));
    Session().SetPickRule(pick.rule % 2 == 1, pick.rule >= 2);
    host.AddGeometry(pick.boundary.Drawn());
    EXPECT_TRUE(Session().StartSurfacePick());
    host.Probe(true, pick.zone, 1, pick.seed);
  }
};

TEST_P(SurfacePickProperty, AltersWhatTheDefinitionsSay) {
  constexpr unsigned kSeeds = 300;
  int refused = 0;
  int changing = 0;
  for (unsigned seed = 1; seed <= kSeeds; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(seed * 8 + static_cast<unsigned>(Type()));
    host.Reset();
    host.keepsCalls = false;
    const Scene scene = MakeScene(random, Type());
    InitQelAddOn113();
    const SurfaceChoice pick = RandomPick(random, scene);
    const Modifier& modifier = RandomModifier(random);
    const std::vector<Bytes> before = AllValues(scene);
    std::vector<Bytes> expected = before;
    const std::optional<std::vector<bool>> reached = NodesReached(pick);
    const bool isPassive = BytesOf(pick.zone, scene.Variable()).empty();
    if (reached) {
      expected[PlaceOf(scene, pick.zone, scene.Variable())] =
          Altered(pick.zone, scene.Variable(), pick.rule, *reached, modifier);
    } else {
      ++refused;
    }
    if (random.Flip()) {
      Play(pick, scene, modifier);
    } else {
      Click(pick, scene, modifier);
      if (reached || isPassive) {
        EXPECT_THAT(host.errorBoxes, ::testing::IsEmpty());
      } else {
        EXPECT_THAT(host.errorBoxes, ::testing::ElementsAre(kMissesSurface));
      }
    }
    EXPECT_TRUE(AllValues(scene) == expected) << pick.boundary.Line() << " zone " << pick.zone
                                              << " seed " << pick.seed << " " << kRules[pick.rule];
    changing += expected != before ? 1 : 0;
    host.Deliver(StateChange_NewLayout);
    if (HasFailure()) return;
  }
  EXPECT_GT(refused, 0);
  EXPECT_GT(changing, static_cast<int>(kSeeds) / 4) << "the scenes show too little";
}

TEST_P(SurfacePickProperty, HidesWhatTheDefinitionsSay) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(seed * 8 + static_cast<unsigned>(Type()));
    host.Reset();
    host.keepsCalls = false;
    const Scene scene = MakeScene(random, Type());
    InitQelAddOn113();
    const LgIndex_t blankVar = scene.c + 1;
    const std::vector<Bytes> untouched = AllValues(scene);
    for (int round = 0; round < 2; ++round) {
      const SurfaceChoice pick = RandomPick(random, scene);
      std::vector<Bytes> expected;
      for (LgIndex_t zone = 1; zone <= scene.zoneCount; ++zone) {
        expected.push_back(BytesOf(zone, blankVar));
      }
      // A refused seed leaves values, if none were there, all 0.
      const std::vector<bool> nothing(host.ZoneAt(pick.zone)->mesh.points.size());
      constexpr int kAnyInside = 0;
      const std::optional<std::vector<bool>> reached = NodesReached(pick);
      expected[static_cast<std::size_t>(pick.zone - 1)] =
          reached ? Blanked(pick.zone, blankVar, pick.rule, *reached)
                  : Blanked(pick.zone, blankVar, kAnyInside, nothing);
      PlayWell(pick.boundary.Line());
      PlayWell("BLANKSURFACE ZONE=" + std::to_string(pick.zone) +
               " SEEDPOINT=" + std::to_string(pick.seed) + " RULE=" + kRules[pick.rule]);
      for (LgIndex_t zone = 1; zone <= scene.zoneCount; ++zone) {
        EXPECT_EQ(BytesOf(zone, blankVar), expected[static_cast<std::size_t>(zone - 1)]);
      }
    }
    EXPECT_TRUE(AllValues(scene) == untouched);
    host.Deliver(StateChange_NewLayout);
    if (HasFailure()) return;
  }
}

TEST_P(SurfacePickProperty, UndoPutsBackWhatAnAdditionChanged) {
  static const Modifier addition = {"+1.5", [](double value) { return value + 1.5; }};
  for (unsigned seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(seed * 8 + static_cast<unsigned>(Type()));
    host.Reset();
    Load(RandomMesh(random, Type()), PlotType_Cartesian3D);
    const Scene scene{true, random.Flip(), 1, n, c};
    const SurfaceChoice pick = RandomPick(random, scene);
    const std::vector<Bytes> before = AllValues(scene);
    if (random.Flip()) {
      Play(pick, scene, addition);
      const bool isChanged = AllValues(scene) != before;
      EXPECT_EQ(host.Play("UNDOALTER").isDone, isChanged);
    } else {
      Click(pick, scene, addition);
      const bool isChanged = AllValues(scene) != before;
      EXPECT_EQ(Session().UndoLastAlter(false), isChanged);
    }
    EXPECT_TRUE(AllValues(scene) == before);
    host.Deliver(StateChange_NewLayout);
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(ZoneTypes, SurfaceProperty, ::testing::Range(0, 8));
INSTANTIATE_TEST_SUITE_P(ZoneTypes, SoupProperty, ::testing::Range(1, 8));
INSTANTIATE_TEST_SUITE_P(ZoneTypes, SurfacePickProperty, ::testing::Range(0, 8));

}  // namespace
