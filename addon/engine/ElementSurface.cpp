#include "SurfaceSearch.h"
#include "SurfaceWalk.h"

#include "qelvane/QelUtil.h"

#include <array>
#include <cstddef>

namespace qelvane::qelutiltools {

namespace {

/// The connectivity of a zone of elements. Everything counts from 1, as the host has it; loops over
/// what a node has count from 0, as there may be as much of it as the host can count.
struct ElementMaps {
  const QelNodeMap* nodes = nullptr;
  const QelNodeToElemMap* elements = nullptr;
  const QelFaceNeighbors* neighbours = nullptr;

  explicit ElementMaps(LgIndex_t zone)
      : nodes(QelUtilDataNodeGetReadableRef(zone)),
        elements(QelUtilDataNodeToElemMapGetReadableRef(zone)),
        neighbours(QelUtilDataFaceNbrGetReadableRef(zone)) {}

  bool AreThere() const { return nodes != nullptr && elements != nullptr && neighbours != nullptr; }
  LgIndex_t ElementCount(LgIndex_t node) const {
    return QelUtilDataNodeToElemMapGetNumElems(elements, node);
  }
  LgIndex_t Element(LgIndex_t node, LgIndex_t n) const {
    return QelUtilDataNodeToElemMapGetElem(elements, node, n);
  }
  LgIndex_t Node(LgIndex_t element, LgIndex_t corner) const {
    return QelUtilDataNodeGetByRef(nodes, element, corner);
  }
  bool HasNeighbour(LgIndex_t element, LgIndex_t face) const {
    return QelUtilDataFaceNbrGetNumNByRef(neighbours, element, face) != 0;
  }
};

LgIndex_t HostNode(std::int64_t node) { return static_cast<LgIndex_t>(node + 1); }

/// A zone of triangles or quadrilaterals, walked from element to element. An element's last corner
/// is never a way out of it, so what hangs on the rest by last corners alone is not reached.
class ElementPatch {
 public:
  struct Cursor {
    LgIndex_t n = 0;         ///< elements done with, in the node's order
    std::int8_t corner = 0;  ///< the last one looked at; 0: the element was not entered yet
  };

  ElementPatch(const ElementMaps& maps, LgIndex_t cornerCount, std::int64_t elementCount)
      : m_maps(maps),
        m_lastCorner(static_cast<std::int8_t>(cornerCount - 1)),
        m_elementCount(elementCount),
        m_visited(elementCount) {}

  bool Next(std::int64_t node, Cursor& cursor, std::int64_t& next) {
    const LgIndex_t elementCount = m_maps.ElementCount(HostNode(node));
    for (; cursor.n < elementCount; ++cursor.n, cursor.corner = 0) {
      const LgIndex_t element = m_maps.Element(HostNode(node), cursor.n + 1);
      // A damaged map may name an element that the zone does not have.
      if (element < 1 || element > m_elementCount) continue;
      if (cursor.corner == 0) {
        if (m_visited.Contains(element - 1)) continue;
        m_visited.Insert(element - 1);
      }
      if (cursor.corner >= m_lastCorner) continue;
      ++cursor.corner;
      next = std::int64_t{m_maps.Node(element, cursor.corner)} - 1;
      return true;
    }
    return false;
  }

 private:
  const ElementMaps& m_maps;
  std::int8_t m_lastCorner;
  std::int64_t m_elementCount;
  InsideSet m_visited;  ///< by element
};

/// The faces of a volume cell, and those that meet at each corner.
struct CellFaces {
  std::int8_t cornerCount;
  std::int8_t nodesPerFace;
  std::array<std::array<std::int8_t, 4>, 6> nodesOfFace;
  std::array<std::array<std::int8_t, 3>, 8> facesAtCorner;
};

constexpr CellFaces kBrick = {
    8,
    4,
    {{{1, 4, 5, 8}, {2, 3, 6, 7}, {1, 2, 5, 6}, {3, 4, 7, 8}, {1, 2, 3, 4}, {5, 6, 7, 8}}},
    {{{1, 3, 5}, {2, 3, 5}, {2, 4, 5}, {1, 4, 5}, {1, 3, 6}, {2, 3, 6}, {2, 4, 6}, {1, 4, 6}}}};

/// Corner 1 names face 1 twice and face 3 never: journals were recorded with the surfaces that this
/// reaches. Line segments are walked by the same table.
constexpr CellFaces kTetrahedron = {4,
                                    3,
                                    {{{1, 2, 3}, {1, 2, 4}, {1, 3, 4}, {2, 3, 4}}},
                                    {{{1, 2, 1}, {1, 2, 4}, {1, 3, 4}, {2, 3, 4}}}};

/// The faces without a neighbour of a zone of volume cells.
class BoundaryFaces {
 public:
  struct Cursor {
    LgIndex_t n = 0;           ///< elements done with, in the node's order
    std::int8_t corner = 1;    ///< of the element
    std::int8_t slot = 0;      ///< of the faces at the corner
    std::int8_t faceNode = 0;  ///< of the face; 0: not known yet whether the face has a neighbour
  };

  BoundaryFaces(const ElementMaps& maps, const CellFaces& faces) : m_maps(maps), m_faces(faces) {}

  bool IsOnSurface(std::int64_t node) const {
    Cursor cursor;
    std::int64_t neighbour = 0;
    return Next(node, cursor, neighbour);
  }

  bool Next(std::int64_t node, Cursor& cursor, std::int64_t& next) const {
    const LgIndex_t hostNode = HostNode(node);
    const LgIndex_t elementCount = m_maps.ElementCount(hostNode);
    for (; cursor.n < elementCount; ++cursor.n, cursor.corner = 1) {
      const LgIndex_t element = m_maps.Element(hostNode, cursor.n + 1);
      // A collapsed cell has the node at several corners; all of them count.
      for (; cursor.corner <= m_faces.cornerCount; ++cursor.corner, cursor.slot = 0) {
        if (m_maps.Node(element, cursor.corner) != hostNode) continue;
        if (NextAtCorner(element, cursor, next)) return true;
      }
    }
    return false;
  }

 private:
  bool NextAtCorner(LgIndex_t element, Cursor& cursor, std::int64_t& next) const {
    const auto& facesHere = m_faces.facesAtCorner[static_cast<std::size_t>(cursor.corner - 1)];
    for (; cursor.slot < static_cast<std::int8_t>(facesHere.size());
         ++cursor.slot, cursor.faceNode = 0) {
      const std::int8_t face = facesHere[static_cast<std::size_t>(cursor.slot)];
      if (cursor.faceNode == 0 && m_maps.HasNeighbour(element, face)) continue;
      if (cursor.faceNode >= m_faces.nodesPerFace) continue;
      const auto& corners = m_faces.nodesOfFace[static_cast<std::size_t>(face - 1)];
      // Node 0 stands for a corner that the element does not have; no set holds it.
      next =
          std::int64_t{m_maps.Node(element, corners[static_cast<std::size_t>(cursor.faceNode)])} -
          1;
      ++cursor.faceNode;
      return true;
    }
    return false;
  }

  const ElementMaps& m_maps;
  const CellFaces& m_faces;
};

}  // namespace

bool SearchElementSurface(LgIndex_t zone, std::int64_t seed, InsideSet& inside) {
  const ElementMaps maps(zone);
  if (!maps.AreThere()) return false;
  const QelZoneType_e type = QelUtilZoneGetType(zone);
  if (type == ZoneType_FETriangle || type == ZoneType_FEQuad) {
    LgIndex_t elementCount = 0;
    QelUtilZoneGetIJK(zone, nullptr, &elementCount, nullptr);
    ElementPatch patch(maps, type == ZoneType_FETriangle ? 3 : 4, elementCount);
    KeepReached(patch, seed, inside);
    return true;
  }
  const BoundaryFaces faces(maps, type == ZoneType_FEBrick ? kBrick : kTetrahedron);
  if (!faces.IsOnSurface(seed)) return false;
  KeepReached(faces, seed, inside);
  return true;
}

}  // namespace qelvane::qelutiltools
