// Values, projection and threads as the host shows them to add-ons that use them in bulk.
#include "ApiTesting.h"
#include "Extensions.h"
#include "Host.h"

#include "qelvane/Extensions.h"
#include "qelvane/QelUtil.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <vector>

namespace qelhost {
namespace {

template <class Service>
const Service& Offered(const char* id) {
  return *static_cast<const Service*>(QelUtilExtensionGet(id));
}

const QelBulkAccess_s& Access() { return Offered<QelBulkAccess_s>(QEL_EXTENSION_BULK_ACCESS); }

class BulkAccessTest : public ::testing::Test {
 protected:
  void SetUp() override { CloseEverything(); }
  void TearDown() override { CloseEverything(); }

  QelFieldSpan_s span{};
};

double At(const QelFieldSpan_s& span, std::int64_t index) {
  const char* const place = static_cast<const char*>(span.first) + index * span.stride;
  return span.type == FieldDataType_Float ? *reinterpret_cast<const float*>(place)
                                          : *reinterpret_cast<const double*>(place);
}

TEST_F(BulkAccessTest, ShowsEveryValueWhereItLies) {
  ShowBricks(3, 2, 2);
  for (LgIndex_t var = 1; var <= 4; ++var) {
    const QelFieldData* const field = QelUtilDataValueGetReadableNLRef(1, var);
    ASSERT_TRUE(Access().fieldSpan(field, &span)) << var;
    ASSERT_EQ(span.count, 12) << var;
    for (LgIndex_t node = 1; node <= 12; ++node) {
      EXPECT_EQ(At(span, node - 1), QelUtilDataValueGetByRef(field, node)) << var << " " << node;
    }
  }
}

TEST_F(BulkAccessTest, ShowsNoneOfWhatIsComputedOrUnknown) {
  ShowImage();
  EXPECT_FALSE(Access().fieldSpan(QelUtilDataValueGetReadableNLRef(1, 1), &span));
  EXPECT_FALSE(Access().fieldSpan(nullptr, &span));
  EXPECT_FALSE(Access().fieldSpan(reinterpret_cast<const QelFieldData*>(&span), &span));
  ShowElements();
  const QelFieldData* const average = QelUtilDataValueGetReadableNLRef(1, 4);
  EXPECT_FALSE(Access().fieldSpan(average, &span)) << "cells seen at nodes";
  EXPECT_FALSE(Access().fieldSpan(QelUtilDataValueGetWritableNativeRef(1, 4), nullptr));
}

TEST_F(BulkAccessTest, ValuesWrittenThroughASpanCountOnceTheHostIsTold) {
  ShowBricks(2, 2, 2);
  double min = 0.0;
  double max = 0.0;
  QelUtilVarGetMinMax(4, &min, &max);
  ASSERT_EQ(max, 7);
  ASSERT_TRUE(Access().fieldSpan(QelUtilDataValueGetWritableNativeRef(1, 4), &span));
  ASSERT_EQ(span.type, FieldDataType_Float);
  static_cast<float*>(span.first)[3] = 40.0F;
  QelUtilStateChanged(StateChange_VarsAltered, 0);
  QelUtilVarGetMinMax(4, &min, &max);
  EXPECT_EQ(max, 40);
  EXPECT_GT(Host::Instance().frames.Active()->Data()->Writes(4).changed, 0);

  static_cast<float*>(span.first)[3] = 50.0F;
  Offered<QelProgress_s>(QEL_EXTENSION_PROGRESS).changed(1, 4, 1);
  QelUtilVarGetMinMax(4, &min, &max);
  EXPECT_EQ(max, 50);
}

TEST_F(BulkAccessTest, ValuesOnlyReadThroughASpanStayUnaltered) {
  ShowBricks(2, 2, 2);
  ASSERT_TRUE(Access().fieldSpan(QelUtilDataValueGetReadableNLRef(1, 4), &span));
  QelUtilStateChanged(StateChange_VarsAltered, 0);
  EXPECT_EQ(Host::Instance().frames.Active()->Data()->Writes().writes, 0);
}

TEST_F(BulkAccessTest, WritesAreCountedOneByOneWhileAReportIsWanted) {
  ShowBricks(2, 2, 2);
  Host::Instance().watch.Start();
  QelFieldData* const p = QelUtilDataValueGetWritableNativeRef(1, 4);
  EXPECT_FALSE(Access().fieldSpan(p, &span));
  EXPECT_TRUE(Access().fieldSpan(QelUtilDataValueGetReadableNLRef(1, 1), &span));
  Host::Instance().watch.Finish();
  EXPECT_TRUE(Access().fieldSpan(p, &span));
}

TEST_F(BulkAccessTest, TheProjectionIsThatOfThePositions) {
  ShowBricks(3, 3, 3);
  for (const double turn : {0.0, 33.0, 90.0, -217.5}) {
    View& view = Host::Instance().frames.Active()->view;
    view.psiDeg = turn;
    view.alphaDeg = 2 * turn;
    view.thetaDeg = 0.5 * turn;
    view.origin = {1.0 / 3, -2.5, 0.1 * turn};
    ASSERT_TRUE(QelUtilSetupTransformations());
    std::array<double, 16> m{};
    ASSERT_TRUE(Access().projection(m.data()));
    for (const std::array<double, 3>& p :
         {std::array<double, 3>{0, 0, 0}, {0.1, -7.3, 1e6}, {1e-9, 3, 1.0 / 3}}) {
      std::array<double, 3> grid{};
      QelUtilConvert3DPositionToGrid(p[0], p[1], p[2], &grid[0], &grid[1], &grid[2]);
      for (std::size_t row = 0; row < 3; ++row) {
        const double* const r = &m[4 * row];
        EXPECT_EQ(r[0] * p[0] + r[1] * p[1] + r[2] * p[2] + r[3], grid[row]) << turn << " " << row;
      }
    }
    EXPECT_EQ(std::vector<double>(m.begin() + 12, m.end()), (std::vector<double>{0, 0, 0, 1}));
  }
}

TEST_F(BulkAccessTest, NothingIsShownWithoutAFrame) {
  std::array<double, 16> m{};
  EXPECT_FALSE(Access().projection(m.data()));
  ShowBricks(2, 2, 2);
  EXPECT_FALSE(Access().projection(nullptr));
}

struct RangeRow {
  std::int64_t first;
  std::int64_t last;
  std::int64_t grain;
};

class ForRange : public ::testing::TestWithParam<RangeRow> {};

struct Covered {
  RangeRow row;
  std::vector<std::atomic<int>> times;
  std::atomic<bool> areAligned{true};
};

TEST_P(ForRange, CoversEveryItemOnceInWholeGrains) {
  const RangeRow row = GetParam();
  Covered covered{row, std::vector<std::atomic<int>>(static_cast<std::size_t>(row.last)), {true}};
  Offered<QelParallel_s>(QEL_EXTENSION_PARALLEL)
      .forRange(
          row.first, row.last, row.grain,
          [](std::int64_t first, std::int64_t last, void* context) {
            auto& seen = *static_cast<Covered*>(context);
            if ((first - seen.row.first) % seen.row.grain != 0) seen.areAligned = false;
            for (std::int64_t i = first; i < last; ++i) ++seen.times[static_cast<std::size_t>(i)];
          },
          &covered);
  EXPECT_TRUE(covered.areAligned);
  for (std::int64_t i = 0; i < row.last; ++i) {
    EXPECT_EQ(covered.times[static_cast<std::size_t>(i)], i >= row.first ? 1 : 0) << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Ranges, ForRange,
                         ::testing::Values(RangeRow{0, 10000, 64}, RangeRow{128, 5001, 64},
                                           RangeRow{3, 4, 64}, RangeRow{5, 5, 1},
                                           RangeRow{0, 1000, 1}, RangeRow{7, 1000, 999}));

TEST(ForRangeAlone, ServesAtLeastOneWorkerAndNoBody) {
  const auto& parallel = Offered<QelParallel_s>(QEL_EXTENSION_PARALLEL);
  EXPECT_GE(parallel.workers(), 1);
  parallel.forRange(0, 10, 1, nullptr, nullptr);
}

TEST(Withholding, HidesAnExtensionUntilItIsGivenAgain) {
  WithholdExtension(QEL_EXTENSION_PARALLEL, true);
  EXPECT_EQ(QelUtilExtensionGet(QEL_EXTENSION_PARALLEL), nullptr);
  EXPECT_NE(QelUtilExtensionGet(QEL_EXTENSION_BULK_ACCESS), nullptr);
  WithholdExtension(QEL_EXTENSION_PARALLEL, false);
  EXPECT_NE(QelUtilExtensionGet(QEL_EXTENSION_PARALLEL), nullptr);
}

}  // namespace
}  // namespace qelhost
