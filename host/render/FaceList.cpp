#include "FaceList.h"

namespace qelhost {

FaceList Joined(const std::vector<FaceList>& pieces) {
  std::vector<std::size_t> firstFace(pieces.size() + 1, 0), firstNode(pieces.size() + 1, 0);
  for (std::size_t n = 0; n < pieces.size(); ++n) {
    firstFace[n + 1] = firstFace[n] + pieces[n].cells.size();
    firstNode[n + 1] = firstNode[n] + pieces[n].nodes.size();
  }
  FaceList all;
  all.cells.resize(firstFace.back());
  all.nodes.resize(firstNode.back());
  all.offsets.resize(firstFace.back() + 1);
  all.offsets.back() = static_cast<std::int32_t>(firstNode.back());
  vtkSMPTools::For(
      0, static_cast<vtkIdType>(pieces.size()), 1, [&](vtkIdType begin, vtkIdType end) {
        for (auto n = static_cast<std::size_t>(begin); n < static_cast<std::size_t>(end); ++n) {
          const FaceList& piece = pieces[n];
          const auto shift = static_cast<std::int32_t>(firstNode[n]);
          std::copy(piece.cells.begin(), piece.cells.end(), all.cells.data() + firstFace[n]);
          std::copy(piece.nodes.begin(), piece.nodes.end(), all.nodes.data() + firstNode[n]);
          std::transform(piece.offsets.begin(), piece.offsets.end() - 1,
                         all.offsets.data() + firstFace[n],
                         [shift](std::int32_t offset) { return offset + shift; });
        }
      });
  return all;
}

}  // namespace qelhost
