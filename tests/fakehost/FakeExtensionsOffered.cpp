// What an add-on offers to the host, and the shape that the user drags for it.
#include "FakeCall.h"
#include "FakeExtensions.h"

#include "qelvane/Extensions.h"

#include <algorithm>

namespace fakehost {

namespace {

/// Takes what is offered; a second offer would be one too many.
template <class Function>
void Take(const char* what, Function& place, Function offered) {
  if (offered == nullptr) Host().Report(std::string(what) + " was offered as null");
  if (place != nullptr) Host().Report(std::string(what) + " was offered twice");
  place = offered;
}

void OfferPickQuery(QelPickQuery_pf query) {
  Note("offer of a pick query");
  Take("a pick query", Host().pickQuery, query);
}

void OfferHistory(void (*valuesRestored)()) {
  Note("offer of a history function");
  Take("a history function", Host().valuesRestored, valuesRestored);
}

std::array<double, 3> Three(const double* numbers) {
  if (numbers != nullptr) return {numbers[0], numbers[1], numbers[2]};
  Host().Report("a shape was shown without its numbers");
  return {};
}

void ShowShape(QelShape_e kind, const double anchor[3], const double size[3],
               const double rotationDeg[3], QelShapeChanged_pf changed) {
  Note("show", static_cast<int>(kind));
  if (kind != Shape_Box && kind != Shape_Sphere) Host().Report("a shape of no kind was shown");
  if (changed == nullptr) Host().Report("a shape was shown that nobody lets change");
  Host().shapeCalls.push_back({true, kind, Three(anchor), Three(size), Three(rotationDeg)});
  Host().shapeChanged = changed;
}

void HideShape() {
  Note("hide");
  if (!Host().IsShapeShown()) Host().Report("a shape was taken away that was not there");
  Host().shapeCalls.push_back({});
  Host().shapeChanged = nullptr;
}

const QelPickQuery_s kPickQuery = {OfferPickQuery};
const QelHistory_s kHistory = {OfferHistory};
const QelShapeHandles_s kShapeHandles = {ShowShape, HideShape};

constexpr std::int64_t kBitsPerWord = 64;

bool BitAt(const std::vector<std::uint64_t>& words, std::int64_t bit) {
  return (words[static_cast<std::size_t>(bit / kBitsPerWord)] >> (bit % kBitsPerWord) & 1) != 0;
}

}  // namespace

const void* PickQueryService() { return &kPickQuery; }
const void* ShapeHandlesService() { return &kShapeHandles; }
const void* HistoryService() { return &kHistory; }

PickAnswer FakeHost::AskPick(LgIndex_t zone, std::int64_t bitCount) {
  PickAnswer answer;
  if (pickQuery == nullptr) return answer;
  // Asked twice over different bits: what was there before must make no difference to those that
  // were asked for, and must stay around them.
  const auto wordCount = static_cast<std::size_t>(bitCount / kBitsPerWord + 2);
  std::vector<std::uint64_t> overZeros(wordCount, 0);
  std::vector<std::uint64_t> overOnes(wordCount, ~std::uint64_t{0});
  const int depth = LockDepth();
  const int hitsBefore = faultHits;
  answer.isAnswered = pickQuery(zone, overZeros.data(), bitCount);
  const bool isAnsweredAgain = pickQuery(zone, overOnes.data(), bitCount);
  // A refused call reaches one of the two alone.
  const bool areAlike = hitsBefore == faultHits;
  if (areAlike && isAnsweredAgain != answer.isAnswered) {
    Report("the same question had two answers");
  }
  if (LockDepth() != depth) Report("the pick query left the lock unbalanced");
  for (std::int64_t bit = 0; bit < static_cast<std::int64_t>(wordCount) * kBitsPerWord; ++bit) {
    if (bit >= bitCount) {
      if (BitAt(overZeros, bit) || !BitAt(overOnes, bit)) Report("a bit too many was written");
    } else if (areAlike && BitAt(overZeros, bit) != BitAt(overOnes, bit)) {
      Report("a bit was left as it was");
    } else if (!isAnsweredAgain && BitAt(overOnes, bit)) {
      Report("a bit was set without an answer");
    } else {
      answer.items.push_back(BitAt(overZeros, bit));
    }
  }
  return answer;
}

bool FakeHost::DragShape(const std::array<double, 3>& anchor, const std::array<double, 3>& size,
                         const std::array<double, 3>& rotationDeg) {
  if (!IsShapeShown() || shapeChanged == nullptr) return false;
  const int depth = LockDepth();
  shapeChanged(anchor.data(), size.data(), rotationDeg.data());
  if (LockDepth() != depth) Report("the change of a shape left the lock unbalanced");
  return true;
}

bool FakeHost::TellOfRestoredValues() {
  if (valuesRestored == nullptr) return false;
  const int depth = LockDepth();
  valuesRestored();
  if (LockDepth() != depth) Report("the history function left the lock unbalanced");
  return true;
}

}  // namespace fakehost
