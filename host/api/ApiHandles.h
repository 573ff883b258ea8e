#pragma once

#include "Host.h"

#include "qelvane/Types.h"

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <variant>
#include <vector>

/// What the contract's own handles point to.
struct QelSet {
  std::set<SetIndex_t> members;
};

struct QelView {
  qelhost::View view;
};

struct QelArgList {
  using Value = std::variant<LgIndex_t, double, std::string, const void*, const QelSet*, ArbParam_t,
                             ArbParam_t*, double*>;
  std::map<std::string, Value> values;
};

namespace qelhost {

/// Handles of one kind that the host gave and that were not given back. Looking one up by address
/// is what lets a stale or foreign handle be refused instead of followed.
template <class T>
class HandleTable {
 public:
  T* Make(T value = T()) {
    auto owned = std::make_unique<T>(std::move(value));
    T* const handle = owned.get();
    m_handles[handle] = std::move(owned);
    return handle;
  }
  bool Release(const T* handle) { return m_handles.erase(handle) > 0; }
  bool Has(const T* handle) const { return m_handles.count(handle) > 0; }
  std::size_t Count() const { return m_handles.size(); }

 private:
  std::unordered_map<const T*, std::unique_ptr<T>> m_handles;
};

/// References into zones that were handed out: fields and connectivity maps. One that its zone no
/// longer holds is refused.
class ReferenceTable {
  struct Owner {
    std::weak_ptr<DataSet> data;
    Zone* zone = nullptr;
    bool isField = false;
  };

 public:
  QelFieldData* HandOutField(const DataSetPtr& data, Zone* zone, QelFieldData* field);
  template <class Map>
  Map* HandOutMap(const DataSetPtr& data, Zone* zone, Map* map) {
    if (map != nullptr) Keep(map, {data, zone, false});
    return map;
  }
  bool Has(const void* reference) const { return IsLatest(reference) || Search(reference); }
  /// Whether it is the one that was asked for last, and is good: a pick asks for the same one
  /// millions of times. Inline, and calls nothing.
  bool IsLatest(const void* reference) const {
    return reference == m_latest && m_latest != nullptr && !m_latestOwner->data.expired();
  }
  /// Forgets those fields of a zone that it no longer holds, after its storage changed.
  void ForgetReplacedFields(const Zone& zone);
  /// Forgets the other maps of the zone that the node map belongs to, which follow from it, and
  /// answers the zone; null when the map is unknown.
  Zone* ForgetDerivedMaps(const QelNodeMap* map);
  /// Forgets everything of a zone, before it goes.
  void ForgetZone(const Zone* zone);

 private:
  void Keep(const void* reference, Owner owner);
  bool Search(const void* reference) const;
  /// Forgets what belongs to data sets that are gone.
  void Sweep();

  std::unordered_map<const void*, Owner> m_references;
  std::size_t m_sweepSize = 1024;  ///< at which it is worth looking for them
  mutable const void* m_latest = nullptr;
  mutable const Owner* m_latestOwner = nullptr;
};

/// Every handle of the process.
struct Handles {
  HandleTable<QelSet> sets;
  HandleTable<QelArgList> lists;
  HandleTable<QelView> views;
  ReferenceTable references;
};
extern Handles theHandles;
inline Handles& TheHandles() { return theHandles; }

/// The argument of that name and type; null when the list holds none.
template <class T>
const T* FindArgument(const QelArgList* list, const char* name) {
  if (!TheHandles().lists.Has(list)) return nullptr;
  const auto value = list->values.find(name);
  return value == list->values.end() ? nullptr : std::get_if<T>(&value->second);
}

/// The members of a set as indices; false when the handle is no set, or one is no index.
bool IndicesOf(const QelSet* set, std::vector<LgIndex_t>& indices);

/// The active frame's data set; null when there is none.
inline DataSetPtr ActiveData(const Host& host) {
  const Frame* const frame = host.frames.Active();
  return frame == nullptr ? nullptr : frame->Data();
}

/// A zone of it, from 1; null when there is none.
inline Zone* ActiveZone(const Host& host, LgIndex_t zone) {
  const DataSetPtr data = ActiveData(host);
  return data == nullptr ? nullptr : data->FindZone(zone);
}

}  // namespace qelhost
