// The faces seen of cells that fill a volume, whatever tells which cells are neighbours.
#pragma once

#include <utility>
#include <vector>

#include "ZoneFaces.h"

namespace qelhost {

constexpr std::int32_t kNoNeighbour = -1;
constexpr std::int32_t kNoFace = -2;  ///< collapsed to a line or a point

/// Cells says of each cell: CellCount(), kFaceCount, Neighbour(cell, face) and AddFace(cell, face,
/// owner, list), which appends the face as one of the owner's.
template <class Cells>
class VolumeFaces : public ZoneFaces {
 public:
  explicit VolumeFaces(Cells cells) : m_cells(std::move(cells)), m_outside(FindOutside()) {}

  FaceList Shown(const ItemBits* hidden) const override {
    if (hidden == nullptr) return ShownOutside(nullptr);
    std::vector<FaceList> both;
    both.push_back(ShownOutside(hidden));
    both.push_back(Uncovered(*hidden));
    return Joined(both);
  }

  std::size_t Bytes() const override {
    return m_cells.Bytes() + m_outside.capacity() * sizeof(Outside);
  }

 private:
  struct Outside {
    std::int32_t cell;
    std::int32_t face;
  };

  std::vector<Outside> FindOutside() const {
    constexpr std::int64_t kGrain = 1 << 16;
    const std::int64_t count = m_cells.CellCount();
    const std::int64_t pieceCount = (count + kGrain - 1) / kGrain;
    std::vector<std::vector<Outside>> pieces(static_cast<std::size_t>(pieceCount));
    vtkSMPTools::For(0, pieceCount, 1, [&](std::int64_t begin, std::int64_t end) {
      for (std::int64_t n = begin; n < end; ++n) {
        const std::int64_t last = std::min(count, (n + 1) * kGrain);
        for (std::int64_t cell = n * kGrain; cell < last; ++cell) {
          for (int face = 0; face < Cells::kFaceCount; ++face) {
            if (m_cells.Neighbour(cell, face) != kNoNeighbour) continue;
            pieces[static_cast<std::size_t>(n)].push_back({static_cast<std::int32_t>(cell), face});
          }
        }
      }
    });
    std::vector<Outside> all;
    for (const auto& piece : pieces) all.insert(all.end(), piece.begin(), piece.end());
    all.shrink_to_fit();
    return all;
  }

  FaceList ShownOutside(const ItemBits* hidden) const {
    return GatherFaces(static_cast<std::int64_t>(m_outside.size()),
                       [&](std::int64_t first, std::int64_t last, FaceList& list) {
                         for (std::int64_t n = first; n < last; ++n) {
                           const auto [cell, face] = m_outside[static_cast<std::size_t>(n)];
                           if (hidden != nullptr && hidden->Has(cell)) continue;
                           m_cells.AddFace(cell, face, cell, list);
                         }
                       });
  }

  /// The faces between a hidden cell and one that is shown, found from the cells of which there are
  /// fewer.
  FaceList Uncovered(const ItemBits& hidden) const {
    std::int64_t hiddenCount = 0;
    for (const std::uint64_t word : hidden.words) hiddenCount += __builtin_popcountll(word);
    const bool isFromHidden = 2 * hiddenCount <= m_cells.CellCount();
    const std::uint64_t inverted = isFromHidden ? 0 : ~std::uint64_t{0};
    return GatherFaces(
        m_cells.CellCount(), [&](std::int64_t first, std::int64_t last, FaceList& list) {
          for (std::int64_t start = first; start < last; start += 64) {
            std::uint64_t left = hidden.words[static_cast<std::size_t>(start / 64)] ^ inverted;
            if (last - start < 64) left &= (std::uint64_t{1} << (last - start)) - 1;
            for (; left != 0; left &= left - 1) {
              AddUncovered(start + __builtin_ctzll(left), isFromHidden, hidden, list);
            }
          }
        });
  }

  void AddUncovered(std::int64_t cell, bool isHidden, const ItemBits& hidden,
                    FaceList& list) const {
    for (int face = 0; face < Cells::kFaceCount; ++face) {
      const std::int32_t other = m_cells.Neighbour(cell, face);
      if (other < 0 || hidden.Has(other) == isHidden) continue;
      m_cells.AddFace(cell, face, isHidden ? other : cell, list);
    }
  }

  Cells m_cells;
  std::vector<Outside> m_outside;
};

}  // namespace qelhost
