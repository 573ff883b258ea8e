// What an add-on offers to the host in memory, and how strict the host is about it.
#include "SelfTest.h"

#include "qelvane/Extensions.h"

#include <algorithm>

namespace {

using fakehost::PickAnswer;
using fakehost::Service;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

template <class Members>
const Members& OfferedService(const char* id) {
  return *static_cast<const Members*>(QelUtilExtensionGet(id));
}

class OfferedServices : public fakehost::SelfTest {
 protected:
  OfferedServices() {
    for (const Service service : {Service::PickQuery, Service::ShapeHandles, Service::History}) {
      host.OfferAlso(service);
    }
  }
  static void OfferQuery(QelPickQuery_pf query) {
    OfferedService<QelPickQuery_s>(QEL_EXTENSION_PICK_QUERY).offer(query);
  }
  static const QelShapeHandles_s& Handles() {
    return OfferedService<QelShapeHandles_s>(QEL_EXTENSION_SHAPE_HANDLES);
  }
  /// Forgets an offence that was wanted.
  void StartAnew() {
    host.Reset();
    QelUtilLockOn();
  }
};

TEST_F(OfferedServices, AreWithheldOneByOne) {
  for (const Service service : {Service::PickQuery, Service::ShapeHandles, Service::History}) {
    host.Withhold(service);
  }
  for (const char* id :
       {QEL_EXTENSION_PICK_QUERY, QEL_EXTENSION_SHAPE_HANDLES, QEL_EXTENSION_HISTORY}) {
    EXPECT_EQ(QelUtilExtensionGet(id), nullptr) << id;
  }
  EXPECT_THAT(fakehost::ServicesNamed("query,handles,history").first,
              ElementsAre(Service::PickQuery, Service::ShapeHandles, Service::History));
}

TEST_F(OfferedServices, AnswerNothingThatNobodyOffered) {
  EXPECT_FALSE(host.AskPick(1, 8).isAnswered);
  EXPECT_FALSE(host.TellOfRestoredValues());
  EXPECT_FALSE(host.DragShape({}, {}, {}));
}

bool SetsOddBits(LgIndex_t, std::uint64_t* bits, std::int64_t bitCount) {
  for (std::int64_t bit = 0; bit < bitCount; ++bit) {
    const std::uint64_t mask = std::uint64_t{1} << (bit % 64);
    bits[bit / 64] = bit % 2 == 1 ? bits[bit / 64] | mask : bits[bit / 64] & ~mask;
  }
  return true;
}
bool LeavesBits(LgIndex_t, std::uint64_t*, std::int64_t) { return true; }
bool SetsABitTooMany(LgIndex_t zone, std::uint64_t* bits, std::int64_t bitCount) {
  return SetsOddBits(zone, bits, bitCount + 1);
}
bool ChangesItsMind(LgIndex_t zone, std::uint64_t* bits, std::int64_t bitCount) {
  static bool isAnswered = false;
  SetsOddBits(zone, bits, bitCount);
  return isAnswered = !isAnswered;
}
bool KeepsTheLock(LgIndex_t zone, std::uint64_t* bits, std::int64_t bitCount) {
  QelUtilLockOn();
  return SetsOddBits(zone, bits, bitCount);
}

TEST_F(OfferedServices, ShowTheBitsOfAnAnswer) {
  OfferQuery(SetsOddBits);
  const PickAnswer answer = host.AskPick(1, 67);
  EXPECT_TRUE(answer.isAnswered);
  ASSERT_THAT(answer.items, SizeIs(67));
  EXPECT_EQ(std::count(answer.items.begin(), answer.items.end(), true), 33);
  EXPECT_TRUE(answer.items[1]);
  EXPECT_THAT(host.Misuse(), IsEmpty());
}

TEST_F(OfferedServices, ReportBadAnswers) {
  for (const QelPickQuery_pf query : {LeavesBits, SetsABitTooMany, ChangesItsMind, KeepsTheLock}) {
    StartAnew();
    host.OfferAlso(Service::PickQuery);
    OfferQuery(query);
    host.AskPick(1, 66);
    EXPECT_FALSE(host.Misuse().empty());
  }
  StartAnew();
}

TEST_F(OfferedServices, ReportBadOffers) {
  OfferQuery(SetsOddBits);
  EXPECT_THAT(host.Misuse(), IsEmpty());
  OfferQuery(SetsOddBits);
  EXPECT_THAT(host.Misuse(), SizeIs(1));
  OfferedService<QelHistory_s>(QEL_EXTENSION_HISTORY).offer(nullptr);
  EXPECT_THAT(host.Misuse(), SizeIs(2));
  StartAnew();
}

double draggedTo = 0.0;
void NoteDrag(const double anchor[3], const double[3], const double[3]) { draggedTo = anchor[2]; }

TEST_F(OfferedServices, KeepTheShapeUntilItIsTakenAway) {
  const double numbers[3] = {1.0, 2.0, 3.0};
  Handles().show(Shape_Sphere, numbers, numbers, numbers, NoteDrag);
  EXPECT_TRUE(host.IsShapeShown());
  EXPECT_THAT(host.shapeCalls.back().anchor, ElementsAre(1.0, 2.0, 3.0));
  EXPECT_TRUE(host.DragShape({4.0, 5.0, 6.0}, {}, {}));
  EXPECT_EQ(draggedTo, 6.0);
  Handles().hide();
  EXPECT_FALSE(host.IsShapeShown());
  EXPECT_FALSE(host.DragShape({}, {}, {}));
  EXPECT_THAT(host.Misuse(), IsEmpty());
}

TEST_F(OfferedServices, ReportBadShapes) {
  const double numbers[3] = {1.0, 2.0, 3.0};
  Handles().hide();
  EXPECT_THAT(host.Misuse(), SizeIs(1)) << "there was none";
  Handles().show(Shape_Box, nullptr, numbers, numbers, NoteDrag);
  EXPECT_THAT(host.Misuse(), SizeIs(2));
  Handles().show(static_cast<QelShape_e>(2), numbers, numbers, numbers, nullptr);
  EXPECT_THAT(host.Misuse(), SizeIs(4));
  StartAnew();
}

}  // namespace
