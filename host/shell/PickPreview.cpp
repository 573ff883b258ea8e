#include "PickPreview.h"

#include "Host.h"

#include <algorithm>

namespace qelhost {

namespace {

std::int64_t CountOf(const ItemBits& items) {
  std::int64_t count = 0;
  for (const std::uint64_t word : items.words) count += __builtin_popcountll(word);
  return count;
}

struct Candidate {
  QelValueLocation_e location;
  LgIndex_t count;
};

/// Where the target's values may be, the fewer first: an add-on answers only when there are bits
/// for all of its target's values, so the first that it answers is right. With as many cells as
/// nodes nobody can tell, and cells are taken.
std::vector<Candidate> CandidatesOf(const Zone& zone) {
  std::vector<Candidate> candidates = {{ValueLocation_CellCentered, zone.CellCount()},
                                       {ValueLocation_Nodal, zone.NodeCount()}};
  std::stable_sort(candidates.begin(), candidates.end(),
                   [](const Candidate& a, const Candidate& b) { return a.count < b.count; });
  if (candidates[0].count == candidates[1].count) candidates.pop_back();
  return candidates;
}

bool Ask(QelPickQuery_pf query, LgIndex_t zoneNum, const Zone& zone, PickedInZone& answer) {
  for (const Candidate& candidate : CandidatesOf(zone)) {
    if (candidate.count == 0) continue;
    ItemBits items(candidate.count);
    if (!query(zoneNum, items.words.data(), items.count)) continue;
    answer = {zoneNum, candidate.location, std::move(items), 0};
    answer.count = CountOf(answer.items);
    return true;
  }
  return false;
}

std::vector<LgIndex_t> ZonesToAsk(const Frame& frame) {
  std::vector<LgIndex_t> zones;
  for (const LgIndex_t zoneNum : frame.ZonesAt(frame.solutionTime, false)) {
    const Zone& zone = *frame.Data()->FindZone(zoneNum);
    if (zone.active && zone.IsFromFile()) zones.push_back(zoneNum);
  }
  return zones;
}

void AskAbout(Host& host, LgIndex_t zoneNum, const Zone& zone, PickPreview& preview) {
  for (const QelPickQuery_pf query : host.pickQueries) {
    PickedInZone answer;
    if (!Ask(query, zoneNum, zone, answer)) continue;
    preview.isReady = true;
    if (answer.count == 0) return;
    const bool isAtCells = answer.location == ValueLocation_CellCentered;
    (isAtCells ? preview.cellCount : preview.nodeCount) += answer.count;
    preview.zones.push_back(std::move(answer));
    return;
  }
}

/// Groups of three digits, blanks between.
std::string Grouped(std::int64_t count) {
  std::string text = std::to_string(count);
  for (std::size_t place = text.size(); place > 3;) {
    place -= 3;
    text.insert(place, " ");
  }
  return text;
}

std::string Counted(std::int64_t count, const std::string& what) {
  return Grouped(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace

PickPreview AskForPick(Host& host) {
  PickPreview preview;
  const Frame* const frame = host.frames.Active();
  if (frame == nullptr || frame->Data() == nullptr || host.lock.IsOn()) return preview;
  // Held: an add-on that is asked may do anything.
  const DataSetPtr data = frame->Data();
  for (const LgIndex_t zoneNum : ZonesToAsk(*frame)) {
    AskAbout(host, zoneNum, *data->FindZone(zoneNum), preview);
  }
  return preview;
}

std::string Describe(const PickPreview& preview) {
  if (!preview.isReady) return {};
  if (preview.zones.empty()) return "nothing";
  const std::string zones =
      " in " + Counted(static_cast<std::int64_t>(preview.zones.size()), "zone");
  if (preview.nodeCount == 0) return Counted(preview.cellCount, "cell") + zones;
  if (preview.cellCount == 0) return Counted(preview.nodeCount, "node") + zones;
  return Counted(preview.cellCount, "cell") + " and " + Counted(preview.nodeCount, "node") + zones;
}

}  // namespace qelhost
