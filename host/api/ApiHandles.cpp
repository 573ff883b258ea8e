#include "ApiHandles.h"

#include <algorithm>
#include <limits>
#include <unordered_set>
#include <utility>

namespace qelhost {

QelFieldData* ReferenceTable::HandOutField(const DataSetPtr& data, Zone* zone,
                                           QelFieldData* field) {
  if (field != nullptr) Keep(field, {data, zone, true});
  return field;
}

void ReferenceTable::Keep(const void* reference, Owner owner) {
  m_latest = nullptr;
  if (m_references.size() >= m_sweepSize) Sweep();
  m_references[reference] = std::move(owner);
}

void ReferenceTable::Sweep() {
  for (auto entry = m_references.begin(); entry != m_references.end();) {
    entry = entry->second.data.expired() ? m_references.erase(entry) : std::next(entry);
  }
  // Not again before as many have come as there are: many good ones are not looked through often.
  constexpr std::size_t kFewest = 1024;
  m_sweepSize = std::max(kFewest, 2 * m_references.size());
}

bool ReferenceTable::Search(const void* reference) const {
  if (reference == nullptr) return false;
  if (reference != m_latest) {
    const auto found = m_references.find(reference);
    if (found == m_references.end()) return false;
    m_latest = reference;
    m_latestOwner = &found->second;
  }
  return !m_latestOwner->data.expired();
}

void ReferenceTable::ForgetReplacedFields(const Zone& zone) {
  m_latest = nullptr;
  std::unordered_set<const void*> held;
  for (const Field& field : zone.fields) {
    held.insert(field.view.get());
    held.insert(field.atNodes.get());
  }
  for (auto entry = m_references.begin(); entry != m_references.end();) {
    const Owner& owner = entry->second;
    const bool isGone = owner.zone == &zone && owner.isField && held.count(entry->first) == 0;
    entry = isGone ? m_references.erase(entry) : std::next(entry);
  }
}

Zone* ReferenceTable::ForgetDerivedMaps(const QelNodeMap* map) {
  const auto found = m_references.find(map);
  if (found == m_references.end()) return nullptr;
  m_latest = nullptr;
  Zone* const zone = found->second.zone;
  for (auto entry = m_references.begin(); entry != m_references.end();) {
    const bool isDerived =
        entry->second.zone == zone && !entry->second.isField && entry->first != map;
    entry = isDerived ? m_references.erase(entry) : std::next(entry);
  }
  return zone;
}

void ReferenceTable::ForgetZone(const Zone* zone) {
  m_latest = nullptr;
  for (auto entry = m_references.begin(); entry != m_references.end();) {
    entry = entry->second.zone == zone ? m_references.erase(entry) : std::next(entry);
  }
}

Handles theHandles;

bool IndicesOf(const QelSet* set, std::vector<LgIndex_t>& indices) {
  if (!TheHandles().sets.Has(set)) return false;
  for (const SetIndex_t member : set->members) {
    if (member > std::numeric_limits<LgIndex_t>::max()) return false;
    indices.push_back(static_cast<LgIndex_t>(member));
  }
  return true;
}

}  // namespace qelhost
