// What the host in memory offers beyond the interface, and how strict it is about its use.
#include "SelfTest.h"

#include "qelvane/Extensions.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstring>
#include <limits>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>

namespace {

using fakehost::MakeLattice;
using fakehost::Service;
using fakehost::SpanVariant;
using fakehost::StoredType;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

template <class Members>
const Members& Offered(const char* id) {
  return *static_cast<const Members*>(QelUtilExtensionGet(id));
}
const QelBulkAccess_s& Bulk() { return Offered<QelBulkAccess_s>(QEL_EXTENSION_BULK_ACCESS); }
const QelParallel_s& Parallel() { return Offered<QelParallel_s>(QEL_EXTENSION_PARALLEL); }

constexpr const char* kIds[] = {QEL_EXTENSION_BULK_ACCESS, QEL_EXTENSION_PARALLEL,
                                QEL_EXTENSION_PROGRESS};

SpanVariant Interleaved() {
  SpanVariant variant;
  variant.isInterleaved = true;
  return variant;
}

SpanVariant Partial() {
  SpanVariant variant;
  variant.isPartial = true;
  return variant;
}

class Extensions : public fakehost::SelfTest {
 protected:
  /// A host that offers all three and shows a zone of bricks.
  void Show(const SpanVariant& variant) {
    host.OfferExtensions({Service::Bulk, Service::Parallel, Service::Progress}, variant);
    host.AddFrame(PlotType_Cartesian3D);
    host.AddZone(MakeLattice(ZoneType_FEBrick, 3, 2, 2));
  }
  /// Forgets an offence that was wanted.
  void StartAnew() {
    host.Reset();
    QelUtilLockOn();
  }
};

double ValueAt(const QelFieldSpan_s& span, std::int64_t index) {
  const char* const at = static_cast<const char*>(span.first) + index * span.stride;
  const auto as = [at](auto value) {
    std::memcpy(&value, at, sizeof value);
    return static_cast<double>(value);
  };
  switch (span.type) {
    case FieldDataType_Float:
      return as(float{});
    case FieldDataType_Double:
      return as(double{});
    case FieldDataType_Int32:
      return as(std::int32_t{});
    case FieldDataType_Int16:
      return as(std::int16_t{});
    case FieldDataType_Byte:
      return as(std::uint8_t{});
    case FieldDataType_Int64:
      return as(std::int64_t{});
    default:
      return std::numeric_limits<double>::quiet_NaN();
  }
}

// What is offered ------------------------------------------------------------------------------

TEST_F(Extensions, OnlyWhatWasChosenIsOfferedUntilTheNextReset) {
  host.OfferExtensions({});
  for (const char* id : kIds) EXPECT_EQ(QelUtilExtensionGet(id), nullptr) << id;
  host.OfferExtensions({Service::Bulk, Service::Progress});
  EXPECT_NE(QelUtilExtensionGet(QEL_EXTENSION_BULK_ACCESS), nullptr);
  EXPECT_EQ(QelUtilExtensionGet(QEL_EXTENSION_PARALLEL), nullptr);
  EXPECT_NE(QelUtilExtensionGet(QEL_EXTENSION_PROGRESS), nullptr);
  host.OfferExtensions({Service::Parallel});
  EXPECT_EQ(QelUtilExtensionGet(QEL_EXTENSION_BULK_ACCESS), nullptr);
  EXPECT_NE(QelUtilExtensionGet(QEL_EXTENSION_PARALLEL), nullptr);
}

TEST(ExtensionNames, SayServicesAndHowSpansAreKept) {
  const auto [services, variant] = fakehost::ServicesNamed("bulk:interleaved+zero,progress");
  EXPECT_THAT(services, ElementsAre(Service::Bulk, Service::Progress));
  EXPECT_TRUE(variant.isInterleaved);
  EXPECT_TRUE(variant.startsAtZero);
  EXPECT_FALSE(variant.isPartial || variant.isWide || variant.isBent);
  EXPECT_THAT(fakehost::ServicesNamed("").first, IsEmpty());
  EXPECT_TRUE(fakehost::ServicesNamed("bulk:partial").second.isPartial);
  EXPECT_TRUE(fakehost::ServicesNamed("bulk:points").second.hasPoints);
  EXPECT_TRUE(fakehost::ServicesNamed("bulk:wide").second.isWide);
  EXPECT_TRUE(fakehost::ServicesNamed("bulk:bent").second.isBent);
  for (const char* text : {"bulky", "bulk:broad", "parallel:wide", "bulk;parallel"}) {
    EXPECT_THROW(fakehost::ServicesNamed(text), std::invalid_argument) << text;
  }
}

// Spans of values ------------------------------------------------------------------------------

TEST_F(Extensions, SpansShowWhatGettersAnswerInEveryTypeThatHasACode) {
  for (const bool isInterleaved : {false, true}) {
    StartAnew();
    SpanVariant variant;
    variant.isInterleaved = isInterleaved;
    Show(variant);
    for (int type = 0; type < 10; ++type) {
      const auto stored = static_cast<StoredType>(type);
      const LgIndex_t var =
          host.AddVariable("v" + std::to_string(type), ValueLocation_Nodal, stored,
                           [](LgIndex_t, LgIndex_t node) { return 3.0 * node; });
      QelFieldData* const field = QelUtilDataValueGetWritableNativeRef(1, var);
      QelFieldSpan_s span{};
      const bool hasCode = fakehost::CodeOf(stored) != FieldDataType_Invalid;
      ASSERT_EQ(Bulk().fieldSpan(field, &span), hasCode) << type;
      if (!hasCode) continue;
      const std::size_t size = fakehost::SizeOf(stored);
      EXPECT_EQ(span.type, fakehost::CodeOf(stored));
      EXPECT_EQ(span.stride, static_cast<std::int64_t>((isInterleaved ? 3 : 1) * size));
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(span.first) % size, 0u) << "not aligned";
      ASSERT_EQ(span.count, host.ZoneAt(1)->mesh.NodeCount());
      for (LgIndex_t node = 1; node <= span.count; ++node) {
        ASSERT_EQ(ValueAt(span, node - 1), QelUtilDataValueGetByRef(field, node)) << type;
      }
      QelUtilDataValueSetByRef(field, 2, 77.0);
      EXPECT_EQ(ValueAt(span, 1), 77.0) << "it is no copy";
      const std::array<unsigned char, 16> bytes{};
      QelUtilDataValueArraySetByRef(field, 2, 2, bytes.data());
      EXPECT_EQ(ValueAt(span, 0), 3.0);
      EXPECT_EQ(ValueAt(span, 1), 0.0);
      EXPECT_EQ(ValueAt(span, 2), 0.0);
      EXPECT_EQ(ValueAt(span, 3), 12.0);
    }
    EXPECT_FALSE(host.HasDamagedGaps());
  }
}

TEST_F(Extensions, PointsLieSideBySideAndAreCopiedWhole) {
  SpanVariant points;
  points.hasPoints = true;
  Show(points);
  std::array<QelFieldSpan_s, 3> spans{};
  for (std::size_t axis = 0; axis < spans.size(); ++axis) {
    QelFieldData* const field =
        QelUtilDataValueGetWritableNativeRef(1, static_cast<LgIndex_t>(axis) + 1);
    ASSERT_TRUE(Bulk().fieldSpan(field, &spans[axis]));
    EXPECT_EQ(spans[axis].stride, 24);
    EXPECT_EQ(spans[axis].first, static_cast<double*>(spans[0].first) + axis);
  }
  const fakehost::Point& last = host.ZoneAt(1)->mesh.points.back();
  EXPECT_EQ(ValueAt(spans[0], spans[0].count - 1), last.x);
  EXPECT_EQ(ValueAt(spans[1], spans[1].count - 1), last.y);
  EXPECT_EQ(ValueAt(spans[2], spans[2].count - 1), last.z);
  const fakehost::Storage copy = *host.ValuesAt(1, 2)->storage;
  host.ValuesAt(1, 2)->storage->Set(0, 8.0);
  EXPECT_EQ(ValueAt(spans[1], 0), 8.0);
  EXPECT_EQ(copy.Get(0), 0.0);
}

TEST_F(Extensions, WritingBetweenValuesIsFound) {
  Show(Interleaved());
  QelFieldSpan_s span{};
  ASSERT_TRUE(Bulk().fieldSpan(QelUtilDataValueGetWritableNativeRef(1, 1), &span));
  static_cast<double*>(span.first)[0] = 5.0;
  EXPECT_FALSE(host.HasDamagedGaps());
  static_cast<double*>(span.first)[1] = 5.0;
  EXPECT_TRUE(host.HasDamagedGaps());
  StartAnew();
  EXPECT_THAT(host.Misuse(), SizeIs(1)) << "nor does a reset hide it";
  StartAnew();
}

TEST_F(Extensions, PartialVariantRefusesSomeFieldsAndZones) {
  Show(Partial());
  host.AddZone(MakeLattice(ZoneType_FEBrick, 1, 1, 1));
  QelFieldSpan_s span{};
  std::array<std::array<bool, 3>, 2> isShown{};
  for (LgIndex_t zone = 1; zone <= 2; ++zone) {
    for (LgIndex_t var = 1; var <= 3; ++var) {
      isShown[static_cast<std::size_t>(zone - 1)][static_cast<std::size_t>(var - 1)] =
          Bulk().fieldSpan(QelUtilDataValueGetReadableNLRef(zone, var), &span);
    }
  }
  EXPECT_THAT(isShown[0], ElementsAre(true, false, true));
  EXPECT_THAT(isShown[1], ElementsAre(false, true, true));
  QelNodeSpan_s nodes{};
  EXPECT_TRUE(Bulk().nodeMapSpan(QelUtilDataNodeGetReadableRef(1), &nodes));
  EXPECT_FALSE(Bulk().nodeMapSpan(QelUtilDataNodeGetReadableRef(2), &nodes));
  const std::uint64_t* bits = nullptr;
  std::int64_t count = 0;
  EXPECT_TRUE(Bulk().blankedCells(1, &bits, &count));
  EXPECT_FALSE(Bulk().blankedCells(2, &bits, &count));
  EXPECT_FALSE(Bulk().blankedNodes(2, &bits, &count));
  EXPECT_FALSE(Bulk().blankedNodes(3, &bits, &count)) << "there is none";
}

TEST_F(Extensions, ForeignAndStaleHandlesAreMisuse) {
  Show({});
  QelFieldSpan_s span{};
  EXPECT_FALSE(Bulk().fieldSpan(nullptr, &span));
  EXPECT_FALSE(Bulk().nodeMapSpan(nullptr, nullptr));
  EXPECT_FALSE(Bulk().projection(nullptr));
  host.Share(1, 1, 1);
  const QelFieldData* const field = QelUtilDataValueGetReadableNLRef(1, 1);
  ASSERT_TRUE(QelUtilDataValueBranchShared(1, 1));
  EXPECT_FALSE(Bulk().fieldSpan(field, &span));
  EXPECT_THAT(host.Misuse(), SizeIs(4));
  StartAnew();
}

// Nodes, projection, bits ----------------------------------------------------------------------

TEST_F(Extensions, NodeSpansShowEveryFormOfTheSameNodes) {
  for (const bool isWide : {false, true}) {
    for (const bool startsAtZero : {false, true}) {
      StartAnew();
      SpanVariant variant;
      variant.isWide = isWide;
      variant.startsAtZero = startsAtZero;
      Show(variant);
      const QelNodeMap* const map = QelUtilDataNodeGetReadableRef(1);
      QelNodeSpan_s span{};
      ASSERT_TRUE(Bulk().nodeMapSpan(map, &span));
      EXPECT_EQ(span.indexWidth, isWide ? 8 : 4);
      EXPECT_EQ(span.indexBase, startsAtZero ? 0 : 1);
      EXPECT_EQ(span.nodesPerElement, 8);
      ASSERT_EQ(span.count, 12);
      for (LgIndex_t i = 0; i < 8 * 12; ++i) {
        const std::int64_t number = isWide ? static_cast<const std::int64_t*>(span.first)[i]
                                           : static_cast<const std::int32_t*>(span.first)[i];
        ASSERT_EQ(number - span.indexBase + 1, QelUtilDataNodeGetByRef(map, i / 8 + 1, i % 8 + 1));
      }
    }
  }
}

TEST_F(Extensions, NodesKeepTheirFormWhenTheyAreSet) {
  SpanVariant variant;
  variant.isWide = true;
  variant.startsAtZero = true;
  Show(variant);
  QelUtilDataNodeSetByRef(QelUtilDataNodeGetWritableRef(1), 2, 3, 5);
  QelNodeSpan_s span{};
  ASSERT_TRUE(Bulk().nodeMapSpan(QelUtilDataNodeGetReadableRef(1), &span));
  EXPECT_EQ(static_cast<const std::int64_t*>(span.first)[10], 4);
  EXPECT_EQ(QelUtilDataNodeGetByRef(QelUtilDataNodeGetReadableRef(1), 2, 3), 5);
}

TEST_F(Extensions, ProjectionIsThatOfThePositionsUnlessItIsBent) {
  Show({});
  host.ActiveFrame().view = {31.0, -77.5, 12.25, 1.0, {1.0 / 3, -2.5, 0.7}};
  std::array<double, 16> m{};
  ASSERT_TRUE(Bulk().projection(m.data()));
  const std::array<double, 3> p{0.1, -7.3, 1e6};
  std::array<double, 3> grid{};
  QelUtilConvert3DPositionToGrid(p[0], p[1], p[2], &grid[0], &grid[1], &grid[2]);
  for (std::size_t row = 0; row < 3; ++row) {
    EXPECT_EQ(m[4 * row] * p[0] + m[4 * row + 1] * p[1] + m[4 * row + 2] * p[2] + m[4 * row + 3],
              grid[row]);
  }
  EXPECT_THAT(std::vector<double>(m.begin() + 12, m.end()), ElementsAre(0, 0, 0, 1));
  SpanVariant bent;
  bent.isBent = true;
  host.OfferExtensions({Service::Bulk}, bent);
  EXPECT_FALSE(Bulk().projection(m.data()));
}

TEST_F(Extensions, BitsSayWhatIsBlankedUntilAValueIsSet) {
  Show({});
  host.ActiveFrame().blanking.include = true;
  host.ActiveFrame().blanking.constraints[1] = {
      true, 1, 0, BlankRelOp_LessThan, ConstraintOp2Mode_UseConstant, 1.5};
  const std::uint64_t* bits = nullptr;
  std::int64_t count = 0;
  ASSERT_TRUE(Bulk().blankedNodes(1, &bits, &count));
  ASSERT_EQ(count, host.ZoneAt(1)->mesh.NodeCount());
  std::vector<bool> isBlanked;
  for (LgIndex_t node = 1; node <= count; ++node) {
    const std::int64_t at = node - 1;
    isBlanked.push_back(((bits[at / 64] >> (at % 64)) & 1) != 0);
    EXPECT_EQ(isBlanked.back(), !QelUtilBlankingCheckDataPoint(1, node)) << node;
  }
  EXPECT_THAT(isBlanked, Contains(true));
  EXPECT_THAT(isBlanked, Contains(false));
  const std::uint64_t before = bits[0];
  QelUtilDataValueSetByRef(QelUtilDataValueGetWritableNativeRef(1, 2), 1, 9.0);
  EXPECT_EQ(bits[0], ~before) << "who still reads them gets what is wrong";

  ASSERT_TRUE(Bulk().blankedCells(1, &bits, &count));
  ASSERT_EQ(count, 12);
  for (LgIndex_t cell = 1; cell <= count; ++cell) {
    EXPECT_EQ(((bits[0] >> (cell - 1)) & 1) != 0, !QelUtilBlankingCheckFECell(1, cell)) << cell;
  }
}

// Threads --------------------------------------------------------------------------------------

/// What a call of forRange ran.
struct Ran {
  std::mutex mutex;
  std::condition_variable hasThread;
  std::vector<std::pair<std::int64_t, std::int64_t>> ranges;
  std::set<std::thread::id> threads;
};

/// The first body on each thread waits for the other threads, which have to come.
void RunRanges(std::int64_t first, std::int64_t last, std::int64_t grain, Ran& ran) {
  const auto body = [](std::int64_t from, std::int64_t to, void* context) {
    auto* const all = static_cast<Ran*>(context);
    std::unique_lock<std::mutex> guard(all->mutex);
    all->ranges.emplace_back(from, to);
    all->threads.insert(std::this_thread::get_id());
    all->hasThread.notify_all();
    all->hasThread.wait_for(guard, std::chrono::seconds(10),
                            [all] { return all->threads.size() == 3; });
  };
  Parallel().forRange(first, last, grain, body, &ran);
}

TEST_F(Extensions, RangesCoverAllInWholeGrainsScrambledOnThreeThreads) {
  Show({});
  Ran ran;
  RunRanges(5, 1000, 64, ran);
  EXPECT_EQ(Parallel().workers(), 3);
  EXPECT_GT(ran.ranges.size(), 4u);
  EXPECT_FALSE(std::is_sorted(ran.ranges.begin(), ran.ranges.end()));
  EXPECT_THAT(ran.threads, SizeIs(3));
  EXPECT_EQ(ran.threads.count(std::this_thread::get_id()), 0u);
  std::sort(ran.ranges.begin(), ran.ranges.end());
  std::int64_t next = 5;
  for (const auto& [first, last] : ran.ranges) {
    EXPECT_EQ(first, next);
    EXPECT_EQ((first - 5) % 64, 0);
    EXPECT_GT(last, first);
    next = last;
  }
  EXPECT_EQ(next, 1000);
  Ran none;
  RunRanges(7, 7, 64, none);
  EXPECT_THAT(none.ranges, IsEmpty());
}

TEST_F(Extensions, BodiesThatCallTheHostOrThrowAreMisuse) {
  Show({});
  const QelFieldData* field = QelUtilDataValueGetReadableNLRef(1, 1);
  struct Context {
    const QelFieldData* field;
    QelFieldGet_pf get;
  } context{field, QelUtilDataValueRefGetGetFunc(field)};
  const auto callsHost = [](std::int64_t, std::int64_t, void* given) {
    const auto* const with = static_cast<const Context*>(given);
    QelUtilDataValueGetByRef(with->field, 1);
    with->get(with->field, 0);
    QelUtilLockIsOn();
  };
  Parallel().forRange(0, 1, 1, callsHost, &context);
  EXPECT_THAT(host.Misuse(),
              ElementsAre("QelUtilDataValueGetByRef was called by a body of forRange",
                          "the raw getter was called by a body of forRange",
                          "QelUtilLockIsOn was called by a body of forRange"));
  StartAnew();
  Show({});
  const auto throws = [](std::int64_t, std::int64_t, void*) { throw std::runtime_error("no"); };
  Parallel().forRange(0, 1, 1, throws, nullptr);
  EXPECT_THAT(host.Misuse(), ElementsAre("a body of forRange let an exception out"));
  StartAnew();
}

TEST_F(Extensions, ThreadsWithoutSpansAreMisuse) {
  host.OfferExtensions({Service::Parallel});
  Ran ran;
  RunRanges(0, 100, 1, ran);
  EXPECT_THAT(host.Misuse(), ElementsAre("forRange was called though no values are shown"));
  StartAnew();
}

// Progress -------------------------------------------------------------------------------------

TEST_F(Extensions, ProgressIsKeptAndWhatCannotBeIsMisuse) {
  Show({});
  const auto& progress = Offered<QelProgress_s>(QEL_EXTENSION_PROGRESS);
  progress.report(0.5);
  progress.changed(1, 2, 36);
  ASSERT_THAT(host.progress, SizeIs(2));
  EXPECT_EQ(host.progress[0].fraction, 0.5);
  EXPECT_EQ(host.progress[1].zone, 1);
  EXPECT_EQ(host.progress[1].var, 2);
  EXPECT_EQ(host.progress[1].count, 36);
  EXPECT_THAT(host.Misuse(), IsEmpty());
  progress.report(1.5);
  progress.report(std::nan(""));
  progress.changed(1, 2, 37);
  progress.changed(1, 9, 1);
  EXPECT_THAT(host.Misuse(), SizeIs(4));
  StartAnew();
}

}  // namespace
