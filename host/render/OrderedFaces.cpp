#include "VolumeFaces.h"

namespace qelhost {
namespace {

/// Cells of a block of nodes; neighbours follow from the indices.
class OrderedCells {
 public:
  static constexpr int kFaceCount = 6;

  explicit OrderedCells(Zone& zone) : m_count(zone.CellCount()) {
    const std::array<LgIndex_t, 3> nodes = zone.IJK();
    std::int64_t nodeStep = 1;
    std::int64_t cellStep = 1;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      m_cells[axis] = nodes[axis] - 1;
      m_nodeStep[axis] = nodeStep;
      m_cellStep[axis] = cellStep;
      nodeStep *= nodes[axis];
      cellStep *= m_cells[axis];
    }
  }

  std::int64_t CellCount() const { return m_count; }
  std::size_t Bytes() const { return 0; }

  /// Faces in pairs, low and high, along I, J and K.
  std::int32_t Neighbour(std::int64_t cell, int face) const {
    const auto axis = static_cast<std::size_t>(face / 2);
    const std::int64_t index = cell / m_cellStep[axis] % m_cells[axis];
    if (face % 2 == 0) {
      return index == 0 ? kNoNeighbour : static_cast<std::int32_t>(cell - m_cellStep[axis]);
    }
    return index + 1 == m_cells[axis] ? kNoNeighbour
                                      : static_cast<std::int32_t>(cell + m_cellStep[axis]);
  }

  void AddFace(std::int64_t cell, int face, std::int64_t owner, FaceList& list) const {
    const auto axis = static_cast<std::size_t>(face / 2);
    const std::int64_t across = m_nodeStep[(axis + 1) % 3];
    const std::int64_t along = m_nodeStep[(axis + 2) % 3];
    std::int64_t node = face % 2 == 0 ? 0 : m_nodeStep[axis];
    for (std::size_t n = 0; n < 3; ++n) {
      node += cell / m_cellStep[n] % m_cells[n] * m_nodeStep[n];
    }
    for (const std::int64_t corner : {node, node + across, node + across + along, node + along}) {
      list.nodes.push_back(static_cast<std::int32_t>(corner));
    }
    list.Finish(owner);
  }

 private:
  std::int64_t m_count;
  std::array<std::int64_t, 3> m_cells{};
  std::array<std::int64_t, 3> m_cellStep{};
  std::array<std::int64_t, 3> m_nodeStep{};
};

}  // namespace

std::unique_ptr<ZoneFaces> MakeOrderedFaces(Zone& zone) {
  return std::make_unique<VolumeFaces<OrderedCells>>(OrderedCells(zone));
}

}  // namespace qelhost
