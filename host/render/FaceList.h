// Faces to draw, and how lists of them are made by several threads.
#pragma once

#include <vtkSMPTools.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace qelhost {

/// Faces by their nodes, in order around each, with the cell that each belongs to. A face of two
/// nodes is a line. Everything counts from 0.
struct FaceList {
  std::vector<std::int32_t> offsets{0};  ///< one more than there are faces, into nodes
  std::vector<std::int32_t> nodes;
  std::vector<std::int32_t> cells;

  std::int64_t Count() const { return static_cast<std::int64_t>(cells.size()); }
  const std::int32_t* Begin(std::int64_t face) const { return nodes.data() + offsets[face]; }
  int Size(std::int64_t face) const { return offsets[face + 1] - offsets[face]; }

  /// Ends the face whose nodes were appended.
  void Finish(std::int64_t cell) {
    offsets.push_back(static_cast<std::int32_t>(nodes.size()));
    cells.push_back(static_cast<std::int32_t>(cell));
  }
  /// Takes back the nodes that were appended to no face yet.
  void Abandon() { nodes.resize(static_cast<std::size_t>(offsets.back())); }
};

/// One list of many, in their order.
FaceList Joined(const std::vector<FaceList>& pieces);

/// Calls add(first, last, list) for ranges of [0, count), on several threads, and joins what they
/// add in the order of the ranges.
template <class Add>
FaceList GatherFaces(std::int64_t count, const Add& add) {
  constexpr std::int64_t kGrain = 1 << 15;  // a multiple of 64: ranges end between words of bits
  const std::int64_t pieceCount = (count + kGrain - 1) / kGrain;
  std::vector<FaceList> pieces(static_cast<std::size_t>(pieceCount));
  vtkSMPTools::For(0, pieceCount, 1, [&](std::int64_t begin, std::int64_t end) {
    for (std::int64_t n = begin; n < end; ++n) {
      add(n * kGrain, std::min(count, (n + 1) * kGrain), pieces[static_cast<std::size_t>(n)]);
    }
  });
  return Joined(pieces);
}

}  // namespace qelhost
