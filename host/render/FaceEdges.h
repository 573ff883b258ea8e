// How faces meet at their edges.
#pragma once

#include "FaceList.h"

namespace qelhost {

/// An edge of a face has the number of the corner that it leaves from.
class FaceEdges {
 public:
  static constexpr std::int32_t kAlone = -1;  ///< no other face has this edge
  static constexpr std::int32_t kMany = -2;   ///< more than one other has

  FaceEdges(const FaceList& faces, std::int64_t pointCount);

  /// The other face at the edge, or one of the above.
  std::int32_t Beyond(std::int64_t corner) const {
    return m_beyond[static_cast<std::size_t>(corner)];
  }

 private:
  void FindFaces(const FaceList& faces, std::int64_t firstPoint, std::int64_t lastPoint);

  std::vector<std::int32_t> m_beyond;
};

/// Both ends of each of some edges.
using EdgeList = std::vector<std::int32_t>;

/// Edges that one face alone has, and those where two meet at more than the angle whose cosine is
/// given, whichever way around their corners are listed.
EdgeList SharpEdges(const FaceList& faces, const FaceEdges& edges, const float* points,
                    double cosine);

/// The edges between marked faces and others, and those that one marked face alone has.
EdgeList OutlineOf(const FaceList& faces, const FaceEdges& edges,
                   const std::vector<std::int32_t>& marked, const std::vector<char>& isMarked);

}  // namespace qelhost
