// Random sessions come out the same, bit by bit and word by word, whatever the host offers.
#include "ExtensionSession.h"
#include "FakeHostTest.h"

#include <array>
#include <string>
#include <vector>

namespace {

using extension::Offer;
using extension::Outcome;
using extension::PlayLines;
using extension::PlaySession;
using fakehost::MakeLattice;
using fakehost::Mesh;
using fakehost::Service;
using fakehost::SpanVariant;
using fakehost::StoredType;
using reference::Random;

/// What shows that sessions compared something.
struct Tally {
  int changingSteps = 0;
  int spansShown = 0;
  int rangeRuns = 0;
};

SpanVariant RandomVariant(Random& random) {
  SpanVariant variant;
  variant.isInterleaved = random.Flip();
  variant.hasPoints = random.Flip();
  variant.isPartial = random.Below(3) == 0;
  variant.isWide = random.Flip();
  variant.startsAtZero = random.Flip();
  variant.isBent = random.Below(4) == 0;
  return variant;
}

/// All combinations of the three but none of them.
std::vector<Offer> AllOffers(Random& random) {
  constexpr Service kServices[] = {Service::Bulk, Service::Parallel, Service::Progress};
  std::vector<Offer> offers;
  for (unsigned combination = 1; combination < 8; ++combination) {
    Offer offer;
    for (unsigned service = 0; service < 3; ++service) {
      if ((combination >> service & 1U) != 0) offer.services.push_back(kServices[service]);
    }
    if (offer.Has(Service::Bulk)) offer.variant = RandomVariant(random);
    offers.push_back(offer);
  }
  return offers;
}

class ExtensionProperty : public fakehost::FakeHostTest {
 protected:
  /// Ends the session as closing everything does, and looks for what it left.
  void EndSession() {
    host.Deliver(StateChange_NewLayout);
    host.RunIdleQueue();
    EXPECT_THAT(host.Misuse(), ::testing::IsEmpty());
    EXPECT_THAT(host.Leaks(), ::testing::IsEmpty());
    EXPECT_FALSE(host.HasDamagedGaps()) << "something was written between values";
  }

  static void ExpectSame(const Outcome& with, const Outcome& without) {
    EXPECT_EQ(with.events, without.events);
    ASSERT_EQ(with.values.size(), without.values.size());
    for (std::size_t i = 0; i < with.values.size(); ++i) {
      EXPECT_TRUE(with.values[i] == without.values[i]) << "column " << i;
    }
  }

  /// Plays a session, play(offer), without anything and with each offer.
  template <class Play>
  void Compare(const std::vector<Offer>& offers, Tally& tally, const Play& play) {
    const Outcome without = play(Offer());
    EndSession();
    EXPECT_EQ(without.spansShown + without.rangeRuns, 0);
    tally.changingSteps += without.changingSteps;
    std::vector<std::string> progress;
    for (const Offer& offer : offers) {
      SCOPED_TRACE(offer.Name() + "\n" + without.steps);
      const Outcome with = play(offer);
      EndSession();
      ExpectSame(with, without);
      if (offer.Has(Service::Progress)) {
        if (progress.empty()) progress = with.progress;
        EXPECT_EQ(with.progress, progress);
      }
      tally.spansShown += with.spansShown;
      tally.rangeRuns += with.rangeRuns;
      if (HasFailure()) return;
    }
  }
};

class SmallSessions : public ExtensionProperty, public ::testing::WithParamInterface<int> {};

TEST_P(SmallSessions, ComeOutTheSameWhateverIsOffered) {
  constexpr unsigned kSeeds = 60;
  Tally tally;
  for (unsigned seed = 1; seed <= kSeeds; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(seed);
    Compare(AllOffers(random), tally, [&](const Offer& offer) {
      return PlaySession(static_cast<QelZoneType_e>(GetParam()), seed, offer);
    });
    if (HasFailure()) return;
  }
  EXPECT_GT(tally.changingSteps, static_cast<int>(kSeeds)) << "the sessions show too little";
  EXPECT_GT(tally.spansShown, static_cast<int>(kSeeds));
}

INSTANTIATE_TEST_SUITE_P(ZoneTypes, SmallSessions, ::testing::Range(0, 8));

struct LargeRow {
  const char* name;
  QelZoneType_e type;
  std::array<LgIndex_t, 3> cells;
  StoredType coordinates;
  StoredType values;
  bool hides = false;
};

/// Sessions on a zone so large that work on it is handed to the host's threads.
class LargeSessions : public ExtensionProperty, public ::testing::WithParamInterface<LargeRow> {};

std::vector<std::string> LargeLines() {
  return {"PICKCUBE ANCHORX=3.3 ANCHORY=3 ANCHORZ=-1 SIZEX=50 SIZEY=20.1 SIZEZ=30",
          "ALTERAREA VARIABLE=\"c\" MODIFIER=\"+3.5\" RULE=ALLINSIDE",
          "ALTERAREA VARIABLE=\"n\" MODIFIER=\"*0.3\" RULE=ANYOUTSIDE",
          "PICKCUBE ANCHORX=30 ANCHORY=9 ANCHORZ=-1 SIZEX=50 SIZEY=40 SIZEZ=30 ROTATEZ=33",
          "ALTERAREA VARIABLE=\"c\" MODIFIER=\"-7\" RULE=ANYINSIDE",
          "PICKSPHERE ANCHORX=20 ANCHORY=30 ANCHORZ=0 RADIUS=30",
          "ALTERAREA VARIABLE=\"c\" MODIFIER=\"/3\" RULE=ALLOUTSIDE",
          "PICKPOLYGON CORNERS=\"-40,-30,40,-35,0,0,45,50,-9,20\"",
          "ALTERAREA VARIABLE=\"n\" MODIFIER=\"=5\" RULE=ANYINSIDE",
          "BLANKAREA RULE=ANYINSIDE"};
}

TEST_P(LargeSessions, ComeOutTheSameOnThreads) {
  SpanVariant scattered;
  scattered.isInterleaved = scattered.isWide = scattered.startsAtZero = true;
  SpanVariant points;
  points.hasPoints = true;
  SpanVariant partial;
  partial.isPartial = true;
  const std::vector<Offer> offers = {
      {{Service::Bulk, Service::Parallel}, {}},
      {{Service::Bulk, Service::Parallel, Service::Progress}, scattered},
      {{Service::Bulk, Service::Parallel}, points},
      {{Service::Bulk, Service::Parallel}, partial}};
  const auto& cells = GetParam().cells;
  const Mesh mesh = MakeLattice(GetParam().type, cells[0], cells[1], cells[2]);
  Tally tally;
  Compare(offers, tally, [&](const Offer& offer) {
    return PlayLines(mesh, GetParam().coordinates, GetParam().values, LargeLines(),
                     GetParam().hides, offer);
  });
  EXPECT_EQ(tally.changingSteps, 1);
  EXPECT_GT(tally.rangeRuns, 4);
}

INSTANTIATE_TEST_SUITE_P(
    ZoneTypes, LargeSessions,
    ::testing::Values(
        LargeRow{"Ordered", ZoneType_Ordered, {64, 64, 64}, StoredType::Float, StoredType::Float},
        LargeRow{"Sheet", ZoneType_Ordered, {512, 512, 0}, StoredType::Double, StoredType::Int16},
        LargeRow{
            "Triangles", ZoneType_FETriangle, {512, 512, 0}, StoredType::Float, StoredType::Double},
        LargeRow{
            "Quads", ZoneType_FEQuad, {512, 512, 0}, StoredType::Int32, StoredType::Int32, true},
        LargeRow{"Bricks", ZoneType_FEBrick, {64, 64, 64}, StoredType::Float, StoredType::Int64}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
