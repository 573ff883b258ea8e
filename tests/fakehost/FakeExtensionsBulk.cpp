// Values, nodes, projection and what is blanked, as the host keeps them.
#include "FakeCall.h"
#include "FakeExtensions.h"

#include "qelvane/Extensions.h"

#include <algorithm>
#include <array>
#include <limits>

namespace fakehost {

namespace {

/// The zone's number in the active frame; 0 when it is not there.
LgIndex_t NumberOf(QelUniqueID_t zone) {
  for (LgIndex_t number = 1; Host().ZoneAt(number) != nullptr; ++number) {
    if (Host().ZoneAt(number)->id == zone) return number;
  }
  return 0;
}

bool RefusesField(const FieldBehind& field) {
  constexpr LgIndex_t kOneIn = 3;
  return Host().spans.isPartial && (NumberOf(field.zone) + field.var) % kOneIn == 0;
}

bool RefusesZone(LgIndex_t number) { return Host().spans.isPartial && number % 2 == 0; }

bool HasPlace(const void* answer, const char* function) {
  if (answer == nullptr) Host().Report(std::string(function) + " got no place for its answer");
  return answer != nullptr;
}

bool FieldSpan(const QelFieldData* ref, QelFieldSpan_s* span) {
  if (Fails("fieldSpan", ref) || !HasPlace(span, "fieldSpan")) return false;
  const FieldBehind field = FieldOf(ref, "fieldSpan");
  if (field.storage == nullptr) return false;
  Storage& storage = *field.storage;
  if (CodeOf(storage.type) == FieldDataType_Invalid) return false;
  if (RefusesField(field)) {
    // Who takes this for an answer reads the values from the last to the first.
    const std::int64_t last = storage.count > 0 ? storage.count - 1 : 0;
    *span = {storage.At(last), CodeOf(storage.type), -storage.Stride(), storage.count};
    return false;
  }
  ++Host().spansShown;
  *span = {storage.At(0), CodeOf(storage.type), storage.Stride(), storage.count};
  return true;
}

bool NodeMapSpan(const QelNodeMap* map, QelNodeSpan_s* span) {
  if (Fails("nodeMapSpan", map) || !HasPlace(span, "nodeMapSpan")) return false;
  const NodesBehind nodes = NodesOfMap(map, "nodeMapSpan");
  if (nodes.mesh == nullptr) return false;
  const ElementList& elements = nodes.mesh->elements;
  const bool isRefused = RefusesZone(NumberOf(nodes.zone));
  // What is refused is off by a node.
  const std::int32_t base = isRefused ? 1 - elements.Form().base : elements.Form().base;
  *span = {elements.First(), elements.Form().width, base,
           static_cast<std::int32_t>(elements.CornerCount()),
           static_cast<std::int64_t>(elements.size())};
  return !isRefused;
}

bool ShowProjection(double m[16]) {
  if (Fails("projection") || !HasPlace(m, "projection")) return false;
  std::fill(m, m + 16, 1.0);
  if (!Host().HasFrame() || Host().spans.isBent) return false;
  const std::array<double, 16> matrix = Host().ProjectionMatrix();
  std::copy(matrix.begin(), matrix.end(), m);
  return true;
}

/// The bits last shown of cells and of nodes; those of another zone take their place.
struct ShownBits {
  std::vector<std::uint64_t> words;
  bool areGood = false;
};
std::array<ShownBits, 2> shownBits;

using IsBlanked = bool (FakeHost::*)(LgIndex_t zone, LgIndex_t item);

/// Beyond the last item the bits mean nothing, and are set.
void FillBits(ShownBits& shown, LgIndex_t zone, LgIndex_t itemCount, IsBlanked isBlanked) {
  constexpr LgIndex_t kBitsPerWord = 64;
  shown.words.assign(static_cast<std::size_t>(itemCount / kBitsPerWord + 1), 0);
  for (std::size_t i = 0; i < shown.words.size() * kBitsPerWord; ++i) {
    const auto item = static_cast<LgIndex_t>(i);
    const bool isSet = item >= itemCount || (Host().*isBlanked)(zone, item + 1);
    shown.words[i / kBitsPerWord] |= std::uint64_t{isSet ? 1U : 0U} << (i % kBitsPerWord);
  }
  shown.areGood = true;
}

template <std::size_t place>
bool ShowBits(const char* function, LgIndex_t zone, LgIndex_t (Mesh::*countOf)() const,
              IsBlanked isBlanked, const std::uint64_t** bits, std::int64_t* count) {
  if (Fails(function, zone) || !HasPlace(bits, function) || !HasPlace(count, function))
    return false;
  const Zone* const found = Host().ZoneAt(zone);
  if (found == nullptr) return false;
  const LgIndex_t itemCount = (found->mesh.*countOf)();
  FillBits(shownBits[place], zone, itemCount, isBlanked);
  *bits = shownBits[place].words.data();
  *count = itemCount;
  if (!RefusesZone(zone)) return true;
  SpoilBits();
  return false;
}

bool BlankedCells(LgIndex_t zone, const std::uint64_t** bits, std::int64_t* count) {
  return ShowBits<0>("blankedCells", zone, &Mesh::CellCount, &FakeHost::IsBlankedCell, bits, count);
}

bool BlankedNodes(LgIndex_t zone, const std::uint64_t** bits, std::int64_t* count) {
  return ShowBits<1>("blankedNodes", zone, &Mesh::NodeCount, &FakeHost::IsBlankedNode, bits, count);
}

const QelBulkAccess_s kBulkAccess = {FieldSpan, NodeMapSpan, ShowProjection, BlankedCells,
                                     BlankedNodes};

}  // namespace

const void* BulkService() { return &kBulkAccess; }

Layout LayoutOf(const SpanVariant& variant, LgIndex_t var) {
  constexpr std::int64_t kLanes = 3;
  return variant.isInterleaved ? Layout{kLanes, var % kLanes} : Layout{};
}

void SpoilBits() {
  for (ShownBits& shown : shownBits) {
    if (!shown.areGood) continue;
    for (std::uint64_t& word : shown.words) word = ~word;
    shown.areGood = false;
  }
}

void ForgetBits() { shownBits = {}; }

}  // namespace fakehost
