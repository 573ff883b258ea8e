#include "SurfaceSearch.h"
#include "SurfaceWalk.h"

#include "qelvane/QelUtil.h"

namespace qelvane::qelutiltools {

namespace {

/// The faces of a zone of polygons (their edges) or polyhedra. Everything counts from 1, as the
/// host has it; loops count from 0, as there may be as much as the host can count.
class Faces {
 public:
  struct Cursor {
    LgIndex_t n = 0;         ///< elements done with, in the node's order
    LgIndex_t slot = 0;      ///< faces done with, in the element's order
    LgIndex_t faceNode = 0;  ///< the last one given; 0: the face was not looked at yet
  };

  /// Walks over faces with an element on one side alone.
  explicit Faces(LgIndex_t zone)
      : m_elements(QelUtilDataNodeToElemMapGetReadableRef(zone)),
        m_facesOfElement(QelUtilDataElemGetReadableRef(zone)),
        m_faceMap(QelUtilDataFaceMapGetReadableRef(zone)) {}

  void WalkOverAll() { m_walksBoundary = false; }

  bool AreThere() const {
    return m_elements != nullptr && m_facesOfElement != nullptr && m_faceMap != nullptr;
  }

  bool Next(std::int64_t node, Cursor& cursor, std::int64_t& next) const {
    const auto hostNode = static_cast<LgIndex_t>(node + 1);
    const LgIndex_t elementCount = QelUtilDataNodeToElemMapGetNumElems(m_elements, hostNode);
    for (; cursor.n < elementCount; ++cursor.n, cursor.slot = 0) {
      const LgIndex_t element = QelUtilDataNodeToElemMapGetElem(m_elements, hostNode, cursor.n + 1);
      const LgIndex_t faceCount = QelUtilDataElemGetNumFaces(m_facesOfElement, element);
      for (; cursor.slot < faceCount; ++cursor.slot, cursor.faceNode = 0) {
        const LgIndex_t face = QelUtilDataElemGetFace(m_facesOfElement, element, cursor.slot + 1);
        if (cursor.faceNode == 0 && !IsWalkedAt(face, hostNode)) continue;
        if (cursor.faceNode >= QelUtilDataFaceMapGetNFaceNodes(m_faceMap, face)) continue;
        ++cursor.faceNode;
        next = std::int64_t{QelUtilDataFaceMapGetFaceNode(m_faceMap, face, cursor.faceNode)} - 1;
        return true;
      }
    }
    return false;
  }

 private:
  bool IsWalkedAt(LgIndex_t face, LgIndex_t node) const {
    if (m_walksBoundary && QelUtilDataFaceMapGetLeftElem(m_faceMap, face) != 0 &&
        QelUtilDataFaceMapGetRightElem(m_faceMap, face) != 0) {
      return false;
    }
    const LgIndex_t nodeCount = QelUtilDataFaceMapGetNFaceNodes(m_faceMap, face);
    for (LgIndex_t n = 0; n < nodeCount; ++n) {
      if (QelUtilDataFaceMapGetFaceNode(m_faceMap, face, n + 1) == node) return true;
    }
    return false;
  }

  const QelNodeToElemMap* m_elements;
  const QelElemToFaceMap* m_facesOfElement;
  const QelFaceMap* m_faceMap;
  bool m_walksBoundary = true;
};

}  // namespace

bool SearchFaceMapSurface(LgIndex_t zone, std::int64_t seed, InsideSet& inside) {
  Faces faces(zone);
  if (!faces.AreThere()) return false;
  Faces::Cursor cursor;
  std::int64_t neighbour = 0;
  if (!faces.Next(seed, cursor, neighbour)) return false;

  // Polygons are a surface themselves, so every edge of theirs lies in it; only the seed has to be
  // on the rim.
  if (QelUtilZoneGetType(zone) == ZoneType_FEPolygon) faces.WalkOverAll();
  KeepReached(faces, seed, inside);
  return true;
}

}  // namespace qelvane::qelutiltools
