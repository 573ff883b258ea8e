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

using Brick = std::array<LgIndex_t, 8>;

/// The brick of a lattice cell, corners 1 to 4 around the bottom; repeated where a dimension is
/// absent.
Brick BrickOf(const std::array<LgIndex_t, 3>& n, LgIndex_t i, LgIndex_t j, LgIndex_t k) {
  const auto node = [&n](LgIndex_t a, LgIndex_t b, LgIndex_t c) {
    return 1 + std::min(a, n[0] - 1) + std::min(b, n[1] - 1) * n[0] +
           std::min(c, n[2] - 1) * n[0] * n[1];
  };
  return {{node(i, j, k), node(i + 1, j, k), node(i + 1, j + 1, k), node(i, j + 1, k),
           node(i, j, k + 1), node(i + 1, j, k + 1), node(i + 1, j + 1, k + 1),
           node(i, j + 1, k + 1)}};
}

using Pieces = std::vector<Corners>;

/// The middle of a lattice cell, as a piece names it.
constexpr LgIndex_t kMiddle = 8;

/// Which corners of a lattice cell's brick, from 0, each element of a type takes.
const Pieces& PiecesOf(QelZoneType_e type) {
  static const std::map<QelZoneType_e, Pieces> pieces = {
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

const Pieces& PiecesOf(Collapse to) {
  static const std::map<Collapse, Pieces> pieces = {
      {Collapse::Wedge, {{0, 1, 2, 2, 4, 5, 6, 6}, {0, 2, 3, 3, 4, 6, 7, 7}}},
      {Collapse::Pyramid,
       {{0, 3, 2, 1, 8, 8, 8, 8},
        {4, 5, 6, 7, 8, 8, 8, 8},
        {0, 1, 5, 4, 8, 8, 8, 8},
        {1, 2, 6, 5, 8, 8, 8, 8},
        {2, 3, 7, 6, 8, 8, 8, 8},
        {3, 0, 4, 7, 8, 8, 8, 8}}},
      {Collapse::Tetra,
       {{0, 1, 3, 3, 4, 4, 4, 4},
        {1, 2, 3, 3, 6, 6, 6, 6},
        {1, 3, 4, 4, 6, 6, 6, 6},
        {1, 4, 5, 5, 6, 6, 6, 6},
        {3, 4, 6, 6, 7, 7, 7, 7}}}};
  return pieces.at(to);
}

/// The corner on the other side in i. Five tetrahedra fit those of the next cell only when every
/// other cell is mirrored.
constexpr std::array<LgIndex_t, 9> kMirrored = {{1, 0, 3, 2, 5, 4, 7, 6, kMiddle}};

Pieces Mirrored(Pieces pieces) {
  for (Corners& piece : pieces) {
    for (LgIndex_t& corner : piece) corner = kMirrored[static_cast<std::size_t>(corner)];
  }
  return pieces;
}

Corners Take(const Brick& brick, const Corners& piece) {
  Corners taken;
  for (const LgIndex_t corner : piece) taken.push_back(brick[static_cast<std::size_t>(corner)]);
  return taken;
}

std::vector<Point> LatticePoints(const std::array<LgIndex_t, 3>& n) {
  std::vector<Point> points;
  points.reserve(static_cast<std::size_t>(n[0]) * static_cast<std::size_t>(n[1]) *
                 static_cast<std::size_t>(n[2]));
  for (LgIndex_t k = 0; k < n[2]; ++k) {
    for (LgIndex_t j = 0; j < n[1]; ++j) {
      for (LgIndex_t i = 0; i < n[0]; ++i) {
        points.push_back({static_cast<double>(i), static_cast<double>(j), static_cast<double>(k)});
      }
    }
  }
  return points;
}

/// Calls take(i, j, k) for each cell of the lattice, i fastest.
template <class Function>
void ForEachCell(const std::array<LgIndex_t, 3>& n, const Function& take) {
  for (LgIndex_t k = 0; k < CellsAlong(n[2]); ++k) {
    for (LgIndex_t j = 0; j < CellsAlong(n[1]); ++j) {
      for (LgIndex_t i = 0; i < CellsAlong(n[0]); ++i) take(i, j, k);
    }
  }
}

/// Cuts every cell into the pieces; where asked, mirrors them in every other cell.
void AddElements(const Pieces& pieces, bool alternates, Mesh& mesh) {
  const Pieces mirrored = alternates ? Mirrored(pieces) : pieces;
  const bool hasMiddle = pieces.front().back() == kMiddle;
  const auto cells = static_cast<std::size_t>(mesh.CellCount());
  mesh.elements.Reserve(cells * pieces.size(), pieces.front().size());
  ForEachCell(mesh.ijk, [&](LgIndex_t i, LgIndex_t j, LgIndex_t k) {
    const Brick brick = BrickOf(mesh.ijk, i, j, k);
    std::array<LgIndex_t, kMiddle + 1> nodes{};
    std::copy(brick.begin(), brick.end(), nodes.begin());
    if (hasMiddle) {
      mesh.points.push_back({i + 0.5, j + 0.5, k + 0.5});
      nodes[kMiddle] = mesh.NodeCount();
    }
    for (const Corners& piece : (i + j + k) % 2 == 0 ? pieces : mirrored) {
      std::array<LgIndex_t, 8> element{};
      for (std::size_t corner = 0; corner < piece.size(); ++corner) {
        element[corner] = nodes[static_cast<std::size_t>(piece[corner])];
      }
      mesh.elements.push_back(element.data(), piece.size());
    }
  });
}

class FaceCollector {
 public:
  void Add(const Corners& nodes, LgIndex_t element, StampedVector<Face>& faces) {
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

void AddFaces(const Pieces& pieces, Mesh& mesh) {
  FaceCollector collector;
  ForEachCell(mesh.ijk, [&](LgIndex_t i, LgIndex_t j, LgIndex_t k) {
    const Brick brick = BrickOf(mesh.ijk, i, j, k);
    ++mesh.faceBasedElementCount;
    for (const Corners& piece : pieces) {
      collector.Add(Take(brick, piece), mesh.faceBasedElementCount, mesh.faces);
    }
  });
}

}  // namespace

LgIndex_t Mesh::CellCount() const {
  if (type == ZoneType_Ordered) {
    return CellsAlong(ijk[0]) * CellsAlong(ijk[1]) * CellsAlong(ijk[2]);
  }
  if (IsFaceBased()) return faceBasedElementCount;
  return static_cast<LgIndex_t>(elements.size());
}

std::vector<LgIndex_t> Mesh::Corners(LgIndex_t cell) const {
  if (type == ZoneType_Ordered) return OrderedCorners(ijk, cell);
  if (!IsFaceBased()) return elements[static_cast<std::size_t>(cell - 1)];
  std::set<LgIndex_t> nodes;
  const NumberLists& facesOf = Derived().facesOfElements;
  for (LgIndex_t n = 1; n <= facesOf.CountOf(cell); ++n) {
    const Face& face = faces[static_cast<std::size_t>(facesOf.At(cell, n) - 1)];
    nodes.insert(face.nodes.begin(), face.nodes.end());
  }
  return {nodes.begin(), nodes.end()};
}

const Topology& Mesh::Derived() const {
  if (m_topology == nullptr || !m_topology->IsOf(*this)) {
    m_topology = std::make_shared<const Topology>(*this);
  }
  return *m_topology;
}

Mesh MakeLattice(QelZoneType_e type, LgIndex_t nx, LgIndex_t ny, LgIndex_t nz) {
  Mesh mesh;
  mesh.ijk = {nx + 1, ny + 1, nz + 1};
  mesh.points = LatticePoints(mesh.ijk);
  if (type != ZoneType_Ordered) {
    if (type == ZoneType_FEPolygon || type == ZoneType_FEPolyhedron) {
      AddFaces(PiecesOf(type), mesh);
    } else {
      AddElements(PiecesOf(type), type == ZoneType_FETetra, mesh);
    }
  }
  mesh.type = type;
  return mesh;
}

Mesh MakeCollapsedBricks(Collapse to, LgIndex_t nx, LgIndex_t ny, LgIndex_t nz) {
  Mesh mesh;
  mesh.ijk = {nx + 1, ny + 1, nz + 1};
  mesh.points = LatticePoints(mesh.ijk);
  AddElements(PiecesOf(to), to == Collapse::Tetra, mesh);
  mesh.type = ZoneType_FEBrick;
  return mesh;
}

}  // namespace fakehost
