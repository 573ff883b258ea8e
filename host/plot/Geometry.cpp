#include "Geometry.h"

#include <algorithm>
#include <utility>

namespace qelhost {

namespace {

template <class Geometries>
auto FindIn(Geometries& geometries, QelGeomID_t id) {
  return std::find_if(geometries.begin(), geometries.end(),
                      [id](const Geometry& geometry) { return geometry.id == id; });
}

}  // namespace

QelGeomID_t GeometryList::Add(Geometry geometry) {
  static QelGeomID_t lastId = 0;
  geometry.id = ++lastId;
  m_geometries.push_back(std::move(geometry));
  return lastId;
}

bool GeometryList::Delete(QelGeomID_t id) {
  const auto found = FindIn(m_geometries, id);
  if (found == m_geometries.end()) return false;
  m_geometries.erase(found);
  return true;
}

Geometry* GeometryList::Find(QelGeomID_t id) {
  const auto found = FindIn(m_geometries, id);
  return found == m_geometries.end() ? nullptr : &*found;
}

const Geometry* GeometryList::Find(QelGeomID_t id) const {
  const auto found = FindIn(m_geometries, id);
  return found == m_geometries.end() ? nullptr : &*found;
}

Geometry* GeometryList::At(LgIndex_t n) {
  if (n < 1 || n > Count()) return nullptr;
  return &m_geometries[static_cast<std::size_t>(n - 1)];
}

QelGeomID_t GeometryList::First() const {
  return m_geometries.empty() ? 0 : m_geometries.front().id;
}

QelGeomID_t GeometryList::After(QelGeomID_t id) const {
  const auto found = FindIn(m_geometries, id);
  if (found == m_geometries.end() || found + 1 == m_geometries.end()) return 0;
  return (found + 1)->id;
}

}  // namespace qelhost
