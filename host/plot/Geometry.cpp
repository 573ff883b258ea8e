#include "Geometry.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace qelhost {

namespace {

using Outline = std::vector<std::array<double, 2>>;

Outline EllipseAbout(double x, double y, double halfWidth, double halfHeight) {
  constexpr int kSides = 96;
  constexpr double kTurn = 6.283185307179586;
  Outline outline;
  for (int side = 0; side <= kSides; ++side) {
    const double angle = kTurn * side / kSides;
    outline.push_back({x + halfWidth * std::cos(angle), y + halfHeight * std::sin(angle)});
  }
  return outline;
}

}  // namespace

Outline OutlineOf(const Geometry& geometry) {
  const double x = geometry.anchor[0];
  const double y = geometry.anchor[1];
  const double width = geometry.size[0];
  switch (geometry.type) {
    case GeomType_Rectangle:
    case GeomType_Square: {
      const double height = geometry.type == GeomType_Square ? width : geometry.size[1];
      return {{x, y}, {x + width, y}, {x + width, y + height}, {x, y + height}, {x, y}};
    }
    case GeomType_Circle:
      return EllipseAbout(x, y, width, width);
    case GeomType_Ellipse:
      return EllipseAbout(x, y, 0.5 * width, 0.5 * geometry.size[1]);
    default: {
      Outline outline;
      for (const auto& [px, py] : geometry.points) outline.push_back({x + px, y + py});
      if (outline.size() > 2) outline.push_back(outline.front());
      return outline;
    }
  }
}

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
