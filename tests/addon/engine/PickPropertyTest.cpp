// Random picks of areas against the definitions.
#include "FakeHostTest.h"
#include "PickReference.h"

#include <map>

namespace {

using namespace reference;

class PickProperty : public fakehost::FakeHostTest, public ::testing::WithParamInterface<int> {
 protected:
  QelZoneType_e Type() const { return static_cast<QelZoneType_e>(GetParam()); }

  Scene MakeScene(Random& random) {
    host.Reset();
    host.keepsCalls = false;
    const Scene scene = reference::MakeScene(random, Type());
    InitQelAddOn113();
    return scene;
  }

  /// Every value of every zone and variable, changed zones and variables replaced.
  using All = std::map<std::pair<LgIndex_t, LgIndex_t>, Bytes>;
  All AllValues(const Scene& scene) {
    All all;
    const auto varCount = static_cast<LgIndex_t>(host.ActiveData()->varNames.size());
    for (LgIndex_t zone = 1; zone <= scene.zoneCount; ++zone) {
      for (LgIndex_t var = 1; var <= varCount; ++var) all[{zone, var}] = BytesOf(zone, var);
    }
    return all;
  }

  LgIndex_t BlankVariable() {
    const std::vector<std::string>& names = host.ActiveData()->varNames;
    return names.back() == "PICK_BLANK" ? static_cast<LgIndex_t>(names.size()) : 0;
  }

  void BlankArea(const Scene& scene, const Boundary& boundary, int rule) {
    PlayWell(boundary.Line());
    All expected = AllValues(scene);
    const LgIndex_t blankVar = scene.c + 1;
    for (LgIndex_t zone = 1; zone <= scene.zoneCount; ++zone) {
      expected[{zone, blankVar}] = host.ZoneAt(zone)->isActive
                                       ? Blanked(zone, blankVar, rule, NodesInside(boundary, zone))
                                       : BytesOf(zone, blankVar);
    }
    PlayWell(std::string("BLANKAREA RULE=") + kRules[rule]);
    EXPECT_EQ(BlankVariable(), blankVar);
    EXPECT_TRUE(AllValues(scene) == expected) << boundary.Line() << " " << kRules[rule];
  }

  void AlterArea(const Scene& scene, const Boundary& boundary, int rule, const Modifier& modifier) {
    PlayWell(boundary.Line());
    const All before = AllValues(scene);
    All expected = before;
    for (LgIndex_t zone = 1; zone <= scene.zoneCount; ++zone) {
      if (!host.ZoneAt(zone)->isActive) continue;
      expected[{zone, scene.Variable()}] =
          Altered(zone, scene.Variable(), rule, NodesInside(boundary, zone), modifier);
    }
    PlayWell(std::string("ALTERAREA VARIABLE=\"") + scene.VariableName() + "\" MODIFIER=\"" +
             modifier.text + "\" RULE=" + kRules[rule]);
    EXPECT_TRUE(AllValues(scene) == expected) << boundary.Line() << " " << kRules[rule];
    m_changing += expected != before ? 1 : 0;
  }

  int m_changing = 0;  ///< picks that changed something
};

TEST_P(PickProperty, AgreesWithTheDefinitions) {
  constexpr unsigned kSeeds = 400;
  for (unsigned seed = 1; seed <= kSeeds; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(seed * 8 + static_cast<unsigned>(Type()));
    const Scene scene = MakeScene(random);
    // What is hidden by a pick is left out by the next where blanking is on.
    if (random.Below(3) == 0) {
      BlankArea(scene, RandomBoundary(random, scene.is3d), random.Below(4));
    }
    AlterArea(scene, RandomBoundary(random, scene.is3d), random.Below(4), RandomModifier(random));
    if (random.Below(3) == 0) {
      BlankArea(scene, RandomBoundary(random, scene.is3d), random.Below(4));
    }
    host.Deliver(StateChange_NewLayout);
    host.RunIdleQueue();
    if (HasFailure()) return;
  }
  EXPECT_GT(m_changing, static_cast<int>(kSeeds) / 4) << "the scenes show too little";
}

INSTANTIATE_TEST_SUITE_P(ZoneTypes, PickProperty, ::testing::Range(0, 8));

}  // namespace
