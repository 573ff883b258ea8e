#include "SurfaceReference.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <vector>

namespace reference {

namespace {

using fakehost::Face;
using fakehost::Mesh;
using Corners = std::vector<LgIndex_t>;

bool Has(const Corners& nodes, LgIndex_t node) {
  return std::find(nodes.begin(), nodes.end(), node) != nodes.end();
}

/// Visits a node and, one call deeper each, all that it leads to.
class Recursion {
 public:
  using WaysOn = std::function<Corners(LgIndex_t node)>;

  Recursion(const Nodes& inside, WaysOn waysOn) : m_inside(inside), m_waysOn(std::move(waysOn)) {}

  void Visit(LgIndex_t node) {
    m_reached.insert(node);
    for (const LgIndex_t next : m_waysOn(node)) {
      if (m_inside.count(next) != 0 && m_reached.count(next) == 0) Visit(next);
    }
  }
  const Nodes& Reached() const { return m_reached; }

 private:
  const Nodes& m_inside;
  WaysOn m_waysOn;
  Nodes m_reached;
};

// Triangles and quadrilaterals: an element that was entered is never entered again, so the ways on
// have to be given one at a time.

class ElementRecursion {
 public:
  ElementRecursion(const Mesh& mesh, const Nodes& inside) : m_mesh(mesh), m_inside(inside) {}

  void Visit(LgIndex_t node) {
    m_reached.insert(node);
    for (std::size_t element = 0; element < m_mesh.elements.size(); ++element) {
      const Corners corners = m_mesh.elements[element];
      if (!Has(corners, node) || !m_visited.insert(element).second) continue;
      for (std::size_t corner = 0; corner + 1 < corners.size(); ++corner) {
        const LgIndex_t next = corners[corner];
        if (m_inside.count(next) != 0 && m_reached.count(next) == 0) Visit(next);
      }
    }
  }
  const Nodes& Reached() const { return m_reached; }

 private:
  const Mesh& m_mesh;
  const Nodes& m_inside;
  Nodes m_reached;
  std::set<std::size_t> m_visited;
};

// Tetrahedra, bricks and line segments ---------------------------------------------------------

struct Cell {
  std::vector<Corners> faces;          ///< their corners
  std::vector<Corners> facesAtCorner;  ///< from 1
};

const Cell kTetrahedron = {{{1, 2, 3}, {1, 2, 4}, {1, 3, 4}, {2, 3, 4}},
                           {{1, 2, 1}, {1, 2, 4}, {1, 3, 4}, {2, 3, 4}}};
const Cell kBrick = {
    {{1, 4, 5, 8}, {2, 3, 6, 7}, {1, 2, 5, 6}, {3, 4, 7, 8}, {1, 2, 3, 4}, {5, 6, 7, 8}},
    {{1, 3, 5}, {2, 3, 5}, {2, 4, 5}, {1, 4, 5}, {1, 3, 6}, {2, 3, 6}, {2, 4, 6}, {1, 4, 6}}};

class BoundaryFaces {
 public:
  explicit BoundaryFaces(const Mesh& mesh)
      : m_mesh(mesh), m_cell(mesh.type == ZoneType_FEBrick ? kBrick : kTetrahedron) {
    for (std::size_t element = 0; element < mesh.elements.size(); ++element) {
      for (LgIndex_t face = 1; face <= FaceCount(); ++face) {
        m_owners[FaceNodes(element, face)].insert(element);
      }
    }
  }

  /// The nodes of the faces without a neighbour at the node; with 0 where a corner is missing.
  Corners WaysOn(LgIndex_t node) const {
    Corners ways;
    for (std::size_t element = 0; element < m_mesh.elements.size(); ++element) {
      for (std::size_t corner = 0; corner < m_cell.facesAtCorner.size(); ++corner) {
        if (NodeAt(element, static_cast<LgIndex_t>(corner + 1)) != node) continue;
        for (const LgIndex_t face : m_cell.facesAtCorner[corner]) {
          if (HasNeighbour(element, face)) continue;
          for (const LgIndex_t of : m_cell.faces[static_cast<std::size_t>(face - 1)]) {
            ways.push_back(NodeAt(element, of));
          }
        }
      }
    }
    return ways;
  }

 private:
  LgIndex_t NodeAt(std::size_t element, LgIndex_t corner) const {
    const Corners corners = m_mesh.elements[element];
    const auto at = static_cast<std::size_t>(corner - 1);
    return at < corners.size() ? corners[at] : 0;
  }

  bool HasNeighbour(std::size_t element, LgIndex_t face) const {
    const bool isLine = m_mesh.type == ZoneType_FELineSeg;
    if (isLine && face > 2) return false;
    const Nodes wanted = FaceNodes(element, face);
    // A face of a volume that collapsed to an edge or a point is none to walk on.
    if (!isLine && wanted.size() < 3) return true;
    return m_owners.at(wanted).size() > 1;
  }

  LgIndex_t FaceCount() const {
    return m_mesh.type == ZoneType_FELineSeg ? 2 : static_cast<LgIndex_t>(m_cell.faces.size());
  }

  /// As the host counts faces: those of a line segment are its ends.
  Nodes FaceNodes(std::size_t element, LgIndex_t face) const {
    if (m_mesh.type == ZoneType_FELineSeg) return {NodeAt(element, face)};
    Nodes nodes;
    for (const LgIndex_t corner : m_cell.faces[static_cast<std::size_t>(face - 1)]) {
      nodes.insert(NodeAt(element, corner));
    }
    return nodes;
  }

  const Mesh& m_mesh;
  const Cell& m_cell;
  std::map<Nodes, std::set<std::size_t>> m_owners;  ///< the elements that have the face
};

// Polygons and polyhedra -----------------------------------------------------------------------

bool IsBoundary(const Face& face) { return (face.left == 0) != (face.right == 0); }

Corners WaysOverFaces(const Mesh& mesh, LgIndex_t node, bool onlyBoundary) {
  Corners ways;
  for (const Face& face : mesh.faces) {
    if (face.left == 0 && face.right == 0) continue;
    if (!Has(face.nodes, node) || (onlyBoundary && !IsBoundary(face))) continue;
    ways.insert(ways.end(), face.nodes.begin(), face.nodes.end());
  }
  return ways;
}

// Ordered zones --------------------------------------------------------------------------------

/// The cell faces on the six sides of the index block. In a dimension of one node a face has that
/// one alone.
std::vector<Corners> SideFaces(const std::array<LgIndex_t, 3>& n) {
  std::vector<Corners> faces;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const std::size_t a = (axis + 1) % 3;
    const std::size_t b = (axis + 2) % 3;
    for (const LgIndex_t side : {0, n[axis] - 1}) {
      for (LgIndex_t u = 0; u < std::max(n[a] - 1, 1); ++u) {
        for (LgIndex_t v = 0; v < std::max(n[b] - 1, 1); ++v) {
          Corners face;
          for (const LgIndex_t du : {0, 1}) {
            for (const LgIndex_t dv : {0, 1}) {
              std::array<LgIndex_t, 3> at{};
              at[axis] = side;
              at[a] = std::min(u + du, n[a] - 1);
              at[b] = std::min(v + dv, n[b] - 1);
              face.push_back(1 + at[0] + n[0] * (at[1] + n[1] * at[2]));
            }
          }
          faces.push_back(face);
        }
      }
    }
  }
  return faces;
}

std::optional<Nodes> Walk(LgIndex_t seed, const Nodes& inside, bool isOnSurface,
                          Recursion::WaysOn waysOn) {
  if (!isOnSurface) return std::nullopt;
  Recursion recursion(inside, std::move(waysOn));
  recursion.Visit(seed);
  return recursion.Reached();
}

}  // namespace

std::optional<Nodes> Reached(const Mesh& mesh, LgIndex_t seed, const Nodes& inside) {
  if (inside.count(seed) == 0) return std::nullopt;
  switch (mesh.type) {
    case ZoneType_Ordered: {
      const std::vector<Corners> faces = SideFaces(mesh.ijk);
      const auto waysOn = [&faces](LgIndex_t node) {
        Corners ways;
        for (const Corners& face : faces) {
          if (Has(face, node)) ways.insert(ways.end(), face.begin(), face.end());
        }
        return ways;
      };
      return Walk(seed, inside, !waysOn(seed).empty(), waysOn);
    }
    case ZoneType_FETriangle:
    case ZoneType_FEQuad: {
      ElementRecursion recursion(mesh, inside);
      recursion.Visit(seed);
      return recursion.Reached();
    }
    case ZoneType_FETetra:
    case ZoneType_FEBrick:
    case ZoneType_FELineSeg: {
      const BoundaryFaces faces(mesh);
      return Walk(seed, inside, !faces.WaysOn(seed).empty(),
                  [&faces](LgIndex_t node) { return faces.WaysOn(node); });
    }
    default: {
      const bool onlyBoundary = mesh.type == ZoneType_FEPolyhedron;
      return Walk(seed, inside, !WaysOverFaces(mesh, seed, true).empty(),
                  [&](LgIndex_t node) { return WaysOverFaces(mesh, node, onlyBoundary); });
    }
  }
}

}  // namespace reference
