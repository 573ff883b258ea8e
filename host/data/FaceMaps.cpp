#include "FaceMaps.h"

#include <algorithm>

namespace qelhost {

FaceCollector::FaceCollector(LgIndex_t nodeCount)
    : m_newestFaceOfNode(static_cast<std::size_t>(nodeCount), -1) {}

bool FaceCollector::IsSameFace(LgIndex_t face, const LgIndex_t* sorted, int count) {
  if (faceMap.NodeCount(face) != count) return false;
  const auto first = faceMap.nodes.begin() + faceMap.offsets[face];
  m_sortedOther.assign(first, first + count);
  std::sort(m_sortedOther.begin(), m_sortedOther.end());
  return std::equal(m_sortedOther.begin(), m_sortedOther.end(), sorted);
}

void FaceCollector::AddFace(const LgIndex_t* nodes, int count) {
  if (count <= 0) return;
  const LgIndex_t element = elementMap.ElementCount();
  m_sorted.assign(nodes, nodes + count);
  std::sort(m_sorted.begin(), m_sorted.end());
  LgIndex_t& newest = m_newestFaceOfNode[m_sorted.front()];
  for (LgIndex_t face = newest; face >= 0; face = m_olderFace[face]) {
    if (faceMap.right[face] >= 0 || faceMap.left[face] == element) continue;
    if (!IsSameFace(face, m_sorted.data(), count)) continue;
    faceMap.right[face] = element;
    elementMap.faces.push_back(face);
    return;
  }
  const LgIndex_t face = faceMap.FaceCount();
  faceMap.nodes.insert(faceMap.nodes.end(), nodes, nodes + count);
  faceMap.offsets.push_back(static_cast<std::int64_t>(faceMap.nodes.size()));
  faceMap.left.push_back(element);
  faceMap.right.push_back(-1);
  m_olderFace.push_back(newest);
  newest = face;
  elementMap.faces.push_back(face);
}

void FaceCollector::FinishElement() {
  elementMap.offsets.push_back(static_cast<std::int64_t>(elementMap.faces.size()));
}

QelNodeToElemMap BuildNodeToElemMap(const QelFaceMap& faces, const QelElemToFaceMap& elements,
                                    LgIndex_t nodeCount) {
  QelNodeToElemMap result;
  result.offsets.assign(static_cast<std::size_t>(nodeCount) + 1, 0);
  std::vector<LgIndex_t> lastElement;
  const auto forEachNodeOnce = [&](auto&& visit) {
    lastElement.assign(static_cast<std::size_t>(nodeCount), -1);
    for (LgIndex_t element = 0; element < elements.ElementCount(); ++element) {
      for (LgIndex_t f = 0; f < elements.FaceCount(element); ++f) {
        const LgIndex_t face = elements.Face(element, f);
        for (LgIndex_t n = 0; n < faces.NodeCount(face); ++n) {
          const LgIndex_t node = faces.Node(face, n);
          if (lastElement[node] == element) continue;
          lastElement[node] = element;
          visit(element, node);
        }
      }
    }
  };
  forEachNodeOnce([&result](LgIndex_t, LgIndex_t node) { ++result.offsets[node + 1]; });
  for (std::size_t i = 1; i < result.offsets.size(); ++i)
    result.offsets[i] += result.offsets[i - 1];
  result.elements.resize(static_cast<std::size_t>(result.offsets.back()));
  std::vector<std::int64_t> place(result.offsets.begin(), result.offsets.end() - 1);
  forEachNodeOnce(
      [&](LgIndex_t element, LgIndex_t node) { result.elements[place[node]++] = element; });
  return result;
}

}  // namespace qelhost
