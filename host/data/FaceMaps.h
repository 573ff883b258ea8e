// Face-based connectivity of polygonal and polyhedral zones. Everything counts from 0 here.
#pragma once

#include <cstdint>
#include <vector>

#include "Connectivity.h"
#include "qelvane/Types.h"

/// Faces of the zone: of polyhedra each polygon once, of polygons each edge once. A face that
/// more than two elements claim appears again for each further pair.
struct QelFaceMap {
  std::vector<std::int64_t> offsets{0};  ///< faceCount + 1, into nodes
  std::vector<LgIndex_t> nodes;
  std::vector<LgIndex_t> left;   ///< the element that listed the face first
  std::vector<LgIndex_t> right;  ///< -1: none
  LgIndex_t FaceCount() const { return static_cast<LgIndex_t>(left.size()); }
  LgIndex_t NodeCount(std::int64_t face) const {
    return static_cast<LgIndex_t>(offsets[face + 1] - offsets[face]);
  }
  LgIndex_t Node(std::int64_t face, std::int64_t n) const { return nodes[offsets[face] + n]; }
};

/// The faces of each element, in the element's own order.
struct QelElemToFaceMap {
  std::vector<std::int64_t> offsets{0};  ///< elementCount + 1, into faces
  std::vector<LgIndex_t> faces;
  LgIndex_t ElementCount() const { return static_cast<LgIndex_t>(offsets.size()) - 1; }
  LgIndex_t FaceCount(std::int64_t element) const {
    return static_cast<LgIndex_t>(offsets[element + 1] - offsets[element]);
  }
  LgIndex_t Face(std::int64_t element, std::int64_t n) const { return faces[offsets[element] + n]; }
};

namespace qelhost {

/// Takes the faces of one element after the other and finds those that were there before.
class FaceCollector {
 public:
  explicit FaceCollector(LgIndex_t nodeCount);
  void AddFace(const LgIndex_t* nodes, int count);
  void FinishElement();
  QelFaceMap faceMap;
  QelElemToFaceMap elementMap;

 private:
  bool IsSameFace(LgIndex_t face, const LgIndex_t* sorted, int count);
  std::vector<LgIndex_t> m_newestFaceOfNode;  ///< by a face's smallest node
  std::vector<LgIndex_t> m_olderFace;
  std::vector<LgIndex_t> m_sorted, m_sortedOther;
};

QelNodeToElemMap BuildNodeToElemMap(const QelFaceMap& faces, const QelElemToFaceMap& elements,
                                    LgIndex_t nodeCount);

}  // namespace qelhost
