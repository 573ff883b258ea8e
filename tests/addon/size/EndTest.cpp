// What decides, alters and walks, asked about the last nodes and cells of zones with 2147483647 of
// them: no pass goes over what lies before.
#include "Bits.h"
#include "FakeHostTest.h"
#include "HostLock.h"
#include "PointColumns.h"
#include "SparseZone.h"
#include "SurfaceSearch.h"
#include "TakenItems.h"
#include "WritePath.h"

#include "qelvane/Extensions.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace {

using namespace qelvane::qelutiltools;
using namespace sparse;
using fakehost::StoredType;

/// So many words at the end are looked at.
constexpr std::int64_t kWords = 3;

struct EndRow {
  std::string name;
  Size size;
  int reached;  ///< of the far nodes, from the last one over the surface
};

void PrintTo(const EndRow& row, std::ostream* out) { *out << row.name; }

class EndTest : public fakehost::FakeHostTest {
 protected:
  void Load(const Size& size) {
    host.AddFrame(PlotType_Cartesian2D);
    host.keepsCalls = false;
    const bool isLine = size.type == ZoneType_FELineSeg;
    host.AddZone(fakehost::MakeLattice(size.type, 2, isLine ? 0 : 2, isLine ? 0 : 2));
    const auto zero = [](LgIndex_t, LgIndex_t) { return 0.0; };
    host.AddVariable("n", ValueLocation_Nodal, StoredType::Byte, zero);
    host.AddVariable("c", ValueLocation_CellCentered, StoredType::Byte, zero);
    InitQelAddOn113();
    m_lock = std::make_unique<HostLock>();
    m_zone = std::make_unique<SparseZone>(size);
  }

  void TearDown() override {
    m_stage.reset();
    m_lock.reset();
    FakeHostTest::TearDown();
  }

  HostServices Show(Shown shown) {
    m_stage.reset();
    m_stage = std::make_unique<Stage>(*m_zone, shown);
    HostServices services = AskHostServices();
    services.progress = nullptr;
    return services;
  }

  std::int64_t NodeCount() const { return m_zone->HasSize().nodeCount; }
  std::int64_t CellCount() const { return m_zone->HasSize().cellCount; }

  InsideSet FarNodes() const {
    InsideSet inside(NodeCount());
    for (std::int64_t node = NodeCount() - 3; node < NodeCount(); ++node) inside.Insert(node);
    return inside;
  }

  bool IsCellTaken(PickRule rule, std::int64_t cell) const {
    const std::vector<std::int64_t> corners = m_zone->Corners(cell);
    const auto isOnSide = [&](std::int64_t node) {
      return m_zone->IsFar(node) != TakesOutside(rule);
    };
    return NeedsAllCorners(rule) ? std::all_of(corners.begin(), corners.end(), isOnSide)
                                 : std::any_of(corners.begin(), corners.end(), isOnSide);
  }

  /// The last words of a decision, bit for bit.
  template <class IsTaken>
  void ExpectLastWords(const TakenItems& taken, std::int64_t count, IsTaken isTaken) {
    ASSERT_EQ(taken.count, count);
    std::vector<std::uint64_t> words(kWords);
    const std::int64_t first = WordsFor(count) - kWords;
    taken.decide(first, kWords, words.data());
    for (std::int64_t item = first * kBitsPerWord; item < count; ++item) {
      const std::int64_t bit = item - first * kBitsPerWord;
      const std::uint64_t word = words[static_cast<std::size_t>(bit / kBitsPerWord)];
      ASSERT_EQ((word >> (bit % kBitsPerWord)) & 1, isTaken(item) ? 1U : 0U) << item;
    }
  }

  std::unique_ptr<HostLock> m_lock;
  std::unique_ptr<SparseZone> m_zone;
  std::unique_ptr<Stage> m_stage;
};

// What depends on the type of the zone ---------------------------------------------------------

class EndOfZone : public EndTest, public ::testing::WithParamInterface<EndRow> {
 protected:
  void SetUp() override { Load(GetParam().size); }
};

TEST_P(EndOfZone, HasItsSize) {
  Show(Shown::ByAccessors);
  const ZoneSize size = SizeOfZone(1);
  EXPECT_EQ(size.nodeCount, NodeCount());
  EXPECT_EQ(size.cellCount, CellCount());
}

TEST_P(EndOfZone, HasItsCellsDecided) {
  const InsideSet inside = FarNodes();
  for (const Shown shown : {Shown::ByAccessors, Shown::BySpans}) {
    const HostServices services = Show(shown);
    for (const PickRule rule :
         {PickRule::AnyInside, PickRule::AnyOutside, PickRule::AllInside, PickRule::AllOutside}) {
      SCOPED_TRACE(static_cast<int>(rule));
      ExpectLastWords(TakenCells(1, rule, inside, false, services), CellCount(),
                      [&](std::int64_t cell) { return IsCellTaken(rule, cell); });
    }
  }
}

TEST_P(EndOfZone, IsWalkedFromItsLastNode) {
  Show(Shown::ByAccessors);
  InsideSet inside = FarNodes();
  ASSERT_TRUE(SearchSurface(1, static_cast<LgIndex_t>(NodeCount()), inside));
  for (std::int64_t n = 0; n < 4; ++n) {
    EXPECT_EQ(inside.Contains(NodeCount() - 1 - n), n < GetParam().reached) << n;
  }
  EXPECT_FALSE(SearchSurface(1, 1, inside)) << "the first node is not inside";
}

Size Elements(QelZoneType_e type) { return {type, {}, kMost, kMost}; }

INSTANTIATE_TEST_SUITE_P(Zones, EndOfZone,
                         ::testing::Values(EndRow{"Line", OrderedSize(2147483647, 1, 1), 3},
                                           EndRow{"Plane", OrderedSize(46340, 1, 46341), 3},
                                           EndRow{"Block", OrderedSize(1290, 1290, 1290), 3},
                                           EndRow{"Triangles", Elements(ZoneType_FETriangle), 2},
                                           EndRow{"Quads", Elements(ZoneType_FEQuad), 3},
                                           EndRow{"Tetras", Elements(ZoneType_FETetra), 3},
                                           EndRow{"Bricks", Elements(ZoneType_FEBrick), 3},
                                           EndRow{"Lines", Elements(ZoneType_FELineSeg), 2},
                                           EndRow{"Polygons", Elements(ZoneType_FEPolygon), 2},
                                           EndRow{"Polyhedra", Elements(ZoneType_FEPolyhedron), 3}),
                         [](const auto& row) { return row.param.name; });

// What does not ----------------------------------------------------------------------------------

class EndOfLine : public EndTest {
 protected:
  void SetUp() override { Load(OrderedSize(2147483647, 1, 1)); }

  void ExpectHidden(Shown shown) {
    const InsideSet inside = FarNodes();
    const HostServices services = Show(shown);
    ExpectLastWords(TakenNodes(1, PickRule::AllInside, inside, true, services), NodeCount(),
                    [&](std::int64_t node) {
                      return m_zone->IsFar(node) && !SparseZone::IsHidden(node, NodeCount());
                    });
  }
};

TEST_F(EndOfLine, HasItsNodesDecided) {
  const InsideSet inside = FarNodes();
  const HostServices services = Show(Shown::ByAccessors);
  ExpectLastWords(TakenNodes(1, PickRule::AllInside, inside, false, services), NodeCount(),
                  [&](std::int64_t node) { return m_zone->IsFar(node); });
  ExpectLastWords(TakenNodes(1, PickRule::AnyOutside, inside, false, services), NodeCount(),
                  [&](std::int64_t node) { return !m_zone->IsFar(node); });
}

TEST_F(EndOfLine, LeavesOutTheNodesThatTheHostSaysAreHidden) { ExpectHidden(Shown::ByAccessors); }
TEST_F(EndOfLine, LeavesOutTheNodesThatTheHostShowsAsHidden) { ExpectHidden(Shown::BySpans); }

TEST_F(EndOfLine, HasItsPlacesRead) {
  for (const Shown shown : {Shown::ByAccessors, Shown::BySpans}) {
    const HostServices services = Show(shown);
    const auto columnOf = [&](LgIndex_t var) {
      const QelFieldData* const field = QelUtilDataValueGetReadableNLRef(1, var);
      FieldColumn column(field, QelUtilDataValueRefGetGetFunc(field));
      QelFieldSpan_s span{};
      if (services.bulk != nullptr && services.bulk->fieldSpan(field, &span)) {
        EXPECT_TRUE(column.UseSpan(span, NodeCount()));
      }
      return column;
    };
    const PointColumns columns(columnOf(1), columnOf(2), NodeCount());
    const PointBox box({{{0.5, 1.5}, {-1, 1}, {-1, 1}}});
    PointBlock scratch;
    const std::int64_t words = WordsFor(NodeCount());
    for (std::int64_t word = words - kWords; word < words; ++word) {
      const std::uint64_t expected =
          WordOf(word, NodeCount(), [&](std::int64_t node) { return m_zone->IsFar(node); });
      EXPECT_EQ(columns.InBox(word, box, scratch), expected) << word;
    }
  }
}

TEST_F(EndOfLine, HasItsValuesAltered) {
  for (const LgIndex_t var : {SparseZone::kNodal, SparseZone::kAtCells}) {
    const std::int64_t count = m_zone->Variable(var).count;
    const std::int64_t lastWord = WordsFor(count) - 1;
    // The last item, the last but two, and items that there are not.
    const std::int64_t last = (count - 1) % kBitsPerWord;
    const TakenItems taken = {
        count, [=](std::int64_t first, std::int64_t wordCount, std::uint64_t* words) {
          std::fill_n(words, wordCount, 0);
          if (first + wordCount <= lastWord) return;
          words[lastWord - first] = std::uint64_t{1} << last | std::uint64_t{1} << (last - 2) |
                                    ~LowestBits(static_cast<int>(last) + 1);
        }};
    double expected = 0.0;
    for (const Shown shown : {Shown::ByAccessors, Shown::BySpans}) {
      const HostServices services = Show(shown);
      const FieldWriter writer{1, var, var == SparseZone::kAtCells,
                               QelUtilDataValueGetWritableNativeRef(1, var)};
      EXPECT_EQ(AlterTaken(writer, {ValueModifier::kAdd, 3.0}, taken, services), 2);
      expected += 3.0;
      EXPECT_EQ(m_zone->Variable(var).Get(count - 1), expected);
      EXPECT_EQ(m_zone->Variable(var).Get(count - 2), 0.0);
      EXPECT_EQ(m_zone->Variable(var).Get(count - 3), expected);
      EXPECT_EQ(m_zone->Variable(var).Get(0), 0.0);
      AlterValue(writer, {ValueModifier::kAssign, 7.0}, static_cast<LgIndex_t>(count));
      EXPECT_EQ(m_zone->Variable(var).Get(count - 1), 7.0);
      m_zone->Variable(var).Set(count - 1, expected);
    }
  }
}

}  // namespace
