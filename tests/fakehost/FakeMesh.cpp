#include "FakeData.h"

#include <algorithm>
#include <map>
#include <set>

namespace fakehost {

namespace {

using Corners = std::vector<LgIndex_t>;

LgIndex_t CellsAlong(LgIndex_t nodes) { return std::max<LgIndex_t>(nodes - 1, 1); }

Corners OrderedCorners(const std::array<LgIndex_t, 3>& n, LgIndex_t cell) {
  const LgIndex_t cI = CellsAlong(n[0]);
  const LgIndex_t cJ = CellsAlong(n[1]);
  const LgIndex_t i = (cell - 1) % cI;
  const LgIndex_t j = (cell - 1) / cI % cJ;
  const LgIndex_t k = (cell - 1) / (cI * cJ);
  Corners corners;
  for (LgIndex_t dk = 0; dk <= (n[2] > 1 ? 1 : 0); ++dk) {
    for (LgIndex_t dj = 0; dj <= (n[1] > 1 ? 1 : 0); ++dj) {
      for (LgIndex_t di = 0; di <= (n[0] > 1 ? 1 : 0); ++di) {
        corners.push_back(1 + i + di + (j + dj) * n[0] + (k + dk) * n[0] * n[1]);
      }
    }
  }
  return corners;
}

/// The brick of a lattice cell, corners 1 to 4 around the bottom; repeated where a dimension is
/// absent.
Corners BrickOf(const std::array<LgIndex_t, 3>& n, LgIndex_t i, LgIndex_t j, LgIndex_t k) {
  const auto node = [&n](LgIndex_t a, LgIndex_t b, LgIndex_t c) {
    return 1 + std::min(a, n[0] - 1) + std::min(b, n[1] - 1) * n[0] +
           std::min(c, n[2] - 1) * n[0] * n[1];
  };
  return {
      node(i, j, k),     node(i + 1, j, k),     node(i + 1, j + 1, k),     node(i, j + 1, k),
      node(i, j, k + 1), node(i + 1, j, k + 1), node(i + 1, j + 1, k + 1), node(i, j + 1, k + 1)};
}

/// Which corners of a lattice cell's brick each element of a type takes.
const std::vector<Corners>& PiecesOf(QelZoneType_e type) {
  static const std::map<QelZoneType_e, std::vector<Corners>> pieces = {
      {ZoneType_FELineSeg, {{0, 1}}},
      {ZoneType_FETriangle, {{0, 1, 2}, {0, 2, 3}}},
      {ZoneType_FEQuad, {{0, 1, 2, 3}}},
      {ZoneType_FEBrick, {{0, 1, 2, 3, 4, 5, 6, 7}}},
      {ZoneType_FETetra, {{0, 1, 3, 4}, {1, 2, 3, 6}, {1, 3, 4, 6}, {1, 4, 5, 6}, {3, 4, 6, 7}}},
      // Faces of the one element of each lattice cell.
      {ZoneType_FEPolygon, {{0, 1}, {1, 2}, {2, 3}, {3, 0}}},
      {ZoneType_FEPolyhedron,
       {{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4}, {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}}}};
  return pieces.at(type);
}

Corners Take(const Corners& brick, const Corners& piece) {
  Corners taken;
  for (const LgIndex_t corner : piece) taken.push_back(brick[static_cast<std::size_t>(corner)]);
  return taken;
}

class FaceCollector {
 public:
  void Add(const Corners& nodes, LgIndex_t element, std::vector<Face>& faces) {
    Corners key = nodes;
    std::sort(key.begin(), key.end());
    const auto [known, isNew] = m_faceOf.emplace(key, faces.size());
    if (isNew) {
      faces.push_back({nodes, element, 0});
    } else {
      faces[known->second].right = element;
    }
  }

 private:
  std::map<Corners, std::size_t> m_faceOf;
};

}  // namespace

LgIndex_t Mesh::CellCount() const {
  if (type == ZoneType_Ordered) {
    return CellsAlong(ijk[0]) * CellsAlong(ijk[1]) * CellsAlong(ijk[2]);
  }
  if (type == ZoneType_FEPolygon || type == ZoneType_FEPolyhedron) return faceBasedElementCount;
  return static_cast<LgIndex_t>(elements.size());
}

std::vector<LgIndex_t> Mesh::Corners(LgIndex_t cell) const {
  if (type == ZoneType_Ordered) return OrderedCorners(ijk, cell);
  if (type != ZoneType_FEPolygon && type != ZoneType_FEPolyhedron) {
    return elements.at(static_cast<std::size_t>(cell - 1));
  }
  std::set<LgIndex_t> nodes;
  for (const Face& face : faces) {
    if (face.left == cell || face.right == cell) nodes.insert(face.nodes.begin(), face.nodes.end());
  }
  return {nodes.begin(), nodes.end()};
}

Mesh MakeLattice(QelZoneType_e type, LgIndex_t nx, LgIndex_t ny, LgIndex_t nz) {
  Mesh mesh;
  mesh.type = type;
  mesh.ijk = {nx + 1, ny + 1, nz + 1};
  for (LgIndex_t k = 0; k <= nz; ++k) {
    for (LgIndex_t j = 0; j <= ny; ++j) {
      for (LgIndex_t i = 0; i <= nx; ++i) {
        mesh.points.push_back(
            {static_cast<double>(i), static_cast<double>(j), static_cast<double>(k)});
      }
    }
  }
  if (type == ZoneType_Ordered) return mesh;
  const bool isFaceBased = type == ZoneType_FEPolygon || type == ZoneType_FEPolyhedron;
  FaceCollector collector;
  for (LgIndex_t k = 0; k < std::max<LgIndex_t>(nz, 1); ++k) {
    for (LgIndex_t j = 0; j < std::max<LgIndex_t>(ny, 1); ++j) {
      for (LgIndex_t i = 0; i < std::max<LgIndex_t>(nx, 1); ++i) {
        const std::vector<LgIndex_t> brick = BrickOf(mesh.ijk, i, j, k);
        if (isFaceBased) ++mesh.faceBasedElementCount;
        for (const std::vector<LgIndex_t>& piece : PiecesOf(type)) {
          if (isFaceBased) {
            collector.Add(Take(brick, piece), mesh.faceBasedElementCount, mesh.faces);
          } else {
            mesh.elements.push_back(Take(brick, piece));
          }
        }
      }
    }
  }
  return mesh;
}

}  // namespace fakehost
