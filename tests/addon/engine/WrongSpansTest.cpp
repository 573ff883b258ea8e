// Spans that do not fit what the host says elsewhere, and fields shorter than their zone: nothing
// is read or written by them.
#include "EngineTest.h"
#include "HostLock.h"
#include "SurfaceSearch.h"
#include "TakenItems.h"
#include "WritePath.h"

#include "qelvane/Extensions.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace qelvane::qelutiltools;
using fakehost::MakeLattice;
using ::testing::ElementsAre;

/// What the host shows as nodes: room for any span of the test's zone, and none of its nodes.
std::array<std::int64_t, 64> strayNodes;
QelNodeSpan_s shownNodes;

bool ShowNodes(const QelNodeMap*, QelNodeSpan_s* span) {
  *span = shownNodes;
  return true;
}
const QelBulkAccess_s kNodesAlone = {nullptr, ShowNodes, nullptr, nullptr, nullptr};

struct SpanRow {
  std::string name;
  std::function<void(QelNodeSpan_s& span)> spoil;
};
void PrintTo(const SpanRow& row, std::ostream* out) { *out << row.name; }

class WrongNodeSpan : public fakehost::EngineTest, public ::testing::WithParamInterface<SpanRow> {
 protected:
  void SetUp() override {
    Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
    strayNodes.fill(1000);
    // As it would be right but for the nodes.
    shownNodes = {strayNodes.data(), 8, 1, 4, 2};
  }

  std::uint64_t CellsWithANodeInside(const QelBulkAccess_s* bulk) {
    const HostLock lock;
    InsideSet inside(6);
    inside.Insert(0);
    HostServices services;
    services.bulk = bulk;
    const TakenItems taken = TakenCells(1, PickRule::AnyInside, inside, false, services);
    std::uint64_t word = 0;
    taken.decide(0, 1, &word);
    return word;
  }
};

TEST_P(WrongNodeSpan, IsNotUsed) {
  const std::uint64_t asked = CellsWithANodeInside(nullptr);
  EXPECT_EQ(asked, 1U);
  EXPECT_EQ(CellsWithANodeInside(&kNodesAlone), 0U) << "the right span would not be used either";
  GetParam().spoil(shownNodes);
  EXPECT_EQ(CellsWithANodeInside(&kNodesAlone), asked);
}

INSTANTIATE_TEST_SUITE_P(
    Spans, WrongNodeSpan,
    ::testing::Values(SpanRow{"Nowhere", [](QelNodeSpan_s& span) { span.first = nullptr; }},
                      SpanRow{"OddWidth", [](QelNodeSpan_s& span) { span.indexWidth = 3; }},
                      SpanRow{"NoWidth", [](QelNodeSpan_s& span) { span.indexWidth = 0; }},
                      SpanRow{"FewerCorners", [](QelNodeSpan_s& span) { --span.nodesPerElement; }},
                      SpanRow{"MoreCorners", [](QelNodeSpan_s& span) { ++span.nodesPerElement; }},
                      SpanRow{"FewerCells", [](QelNodeSpan_s& span) { --span.count; }},
                      SpanRow{"MoreCells", [](QelNodeSpan_s& span) { ++span.count; }}),
    [](const auto& row) { return row.param.name; });

class ShortField : public fakehost::EngineTest {};

TEST_F(ShortField, OfInsideNodesDecidesNoCellOfAGridAndBeginsNoWalk) {
  Load(MakeLattice(ZoneType_Ordered, 2, 1, 0));
  const HostLock lock;
  InsideSet inside(5);
  inside.Insert(0);
  EXPECT_EQ(TakenCells(1, PickRule::AnyInside, inside, false, {}).count, 0);
  EXPECT_FALSE(SearchSurface(1, 1, inside));
  InsideSet whole(6);
  whole.Insert(0);
  EXPECT_EQ(TakenCells(1, PickRule::AnyInside, whole, false, {}).count, 2);
  EXPECT_TRUE(SearchSurface(1, 1, whole));
}

TEST_F(ShortField, IsNotRunOver) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  const HostLock lock;
  const TakenItems taken = {70, [](std::int64_t, std::int64_t wordCount, std::uint64_t* words) {
                              std::fill_n(words, wordCount, ~std::uint64_t{0});
                            }};
  const FieldWriter writer{1, c, true, QelUtilDataValueGetWritableNativeRef(1, c)};
  EXPECT_EQ(AlterTaken(writer, {ValueModifier::kAdd, 1.0}, taken, AskHostServices()), 2);
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(11, 21));
}

}  // namespace
