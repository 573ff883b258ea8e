// Faces of tetrahedra and bricks: a table of the neighbour at each face, four bytes a face.
#include <limits>

#include "VolumeFaces.h"

namespace qelhost {
namespace {

/// A face's distinct nodes, ascending; the places past the last hold -1.
struct FaceKey {
  std::array<std::int32_t, 4> nodes{-1, -1, -1, -1};
  int count = 0;

  void Add(std::int32_t node) {
    int place = count;
    while (place > 0 && nodes[place - 1] > node) --place;
    if (place > 0 && nodes[place - 1] == node) return;
    for (int n = count; n > place; --n) nodes[n] = nodes[n - 1];
    nodes[place] = node;
    ++count;
  }
};

/// Waits for the second cell at each face, for faces whose lowest node lies in a range. What was
/// found leaves its place to the next, so that what waits stays small where numbering is local.
class FaceMatcher {
 public:
  struct Claim {
    std::int32_t cell;
    std::int32_t face;
  };

  FaceMatcher(std::int64_t firstNode, std::int64_t lastNode)
      : m_firstNode(firstNode),
        m_waiting(static_cast<std::size_t>(lastNode - firstNode), kNobody) {}

  /// The claim that this one meets; the cell is -1 when it has to wait.
  Claim Meet(const FaceKey& key, Claim claim) {
    std::uint32_t& newest = m_waiting[static_cast<std::size_t>(key.nodes[0] - m_firstNode)];
    for (std::uint32_t* link = &newest; *link != kNobody; link = &m_entries[*link].next) {
      Entry& entry = m_entries[*link];
      if (entry.others[0] == key.nodes[1] && entry.others[1] == key.nodes[2] &&
          entry.others[2] == key.nodes[3] && entry.claim.cell != claim.cell) {
        const std::uint32_t found = *link;
        *link = entry.next;
        entry.next = m_free;
        m_free = found;
        return entry.claim;
      }
    }
    newest = Place({{key.nodes[1], key.nodes[2], key.nodes[3]}, claim, newest});
    return {-1, 0};
  }

 private:
  static constexpr std::uint32_t kNobody = std::numeric_limits<std::uint32_t>::max();
  struct Entry {
    std::array<std::int32_t, 3> others;
    Claim claim;
    std::uint32_t next;
  };

  std::uint32_t Place(const Entry& entry) {
    if (m_free == kNobody) {
      m_entries.push_back(entry);
      return static_cast<std::uint32_t>(m_entries.size() - 1);
    }
    const std::uint32_t place = m_free;
    m_free = m_entries[place].next;
    m_entries[place] = entry;
    return place;
  }

  std::int64_t m_firstNode;
  std::vector<std::uint32_t> m_waiting;  ///< by lowest node, less the first
  std::vector<Entry> m_entries;
  std::uint32_t m_free = kNobody;
};

template <int FaceCount, int Corners>
struct ElementShape;
template <>
struct ElementShape<4, 4> {
  static constexpr int kFaces[4][3] = {{0, 1, 3}, {1, 2, 3}, {2, 0, 3}, {0, 2, 1}};
};
template <>
struct ElementShape<6, 8> {
  static constexpr int kFaces[6][4] = {{0, 4, 7, 3}, {1, 2, 6, 5}, {0, 1, 5, 4},
                                       {3, 7, 6, 2}, {0, 3, 2, 1}, {4, 5, 6, 7}};
};

template <int FaceCount, int CornerCount>
class Elements {
 public:
  static constexpr int kFaceCount = FaceCount;
  using Shape = ElementShape<FaceCount, CornerCount>;
  using Corners = std::array<std::int32_t, CornerCount>;

  explicit Elements(Zone& zone)
      : m_map(zone.NodeMap()),
        m_count(zone.CellCount()),
        m_neighbours(static_cast<std::size_t>(m_count) * FaceCount, kNoNeighbour) {
    FindNeighbours(zone.NodeCount());
  }

  std::int64_t CellCount() const { return m_count; }
  std::size_t Bytes() const { return m_neighbours.capacity() * sizeof(std::int32_t); }
  std::int32_t Neighbour(std::int64_t cell, int face) const {
    return m_neighbours[Slot(cell, face)];
  }

  void AddFace(std::int64_t cell, int face, std::int64_t owner, FaceList& list) const {
    const Corners corners = CornersOf(cell);
    const auto first = static_cast<std::size_t>(list.offsets.back());
    for (const int corner : Shape::kFaces[face]) {
      const std::int32_t node = corners[static_cast<std::size_t>(corner)];
      const auto begin = list.nodes.begin() + static_cast<std::ptrdiff_t>(first);
      if (std::find(begin, list.nodes.end(), node) == list.nodes.end()) list.nodes.push_back(node);
    }
    list.Finish(owner);
  }

 private:
  static std::size_t Slot(std::int64_t cell, int face) {
    return static_cast<std::size_t>(cell) * FaceCount + static_cast<std::size_t>(face);
  }

  Corners CornersOf(std::int64_t cell) const {
    Corners corners;
    if (m_map->plain && !m_map->wide) {
      const auto* nodes = static_cast<const std::int32_t*>(m_map->nodes) + cell * CornerCount;
      std::copy(nodes, nodes + CornerCount, corners.begin());
      return corners;
    }
    for (int n = 0; n < CornerCount; ++n) {
      corners[static_cast<std::size_t>(n)] = static_cast<std::int32_t>(m_map->Node(cell, n));
    }
    return corners;
  }

  /// Ranges of lowest nodes go to the threads; each looks at all cells and takes its own faces.
  void FindNeighbours(std::int64_t nodeCount) {
    const std::int64_t threads = std::max(1, vtkSMPTools::GetEstimatedNumberOfThreads());
    const std::int64_t ranges = m_count < 10000 ? 1 : threads;
    vtkSMPTools::For(0, ranges, 1, [&](std::int64_t begin, std::int64_t end) {
      for (std::int64_t n = begin; n < end; ++n) {
        FindNeighbours(n * nodeCount / ranges, (n + 1) * nodeCount / ranges);
      }
    });
  }

  void FindNeighbours(std::int64_t firstNode, std::int64_t lastNode) {
    FaceMatcher matcher(firstNode, lastNode);
    for (std::int64_t cell = 0; cell < m_count; ++cell) {
      const Corners corners = CornersOf(cell);
      const auto [low, high] = std::minmax_element(corners.begin(), corners.end());
      if (*low >= lastNode || *high < firstNode) continue;
      for (int face = 0; face < FaceCount; ++face) {
        FaceKey key;
        for (const int corner : Shape::kFaces[face]) {
          key.Add(corners[static_cast<std::size_t>(corner)]);
        }
        if (key.nodes[0] < firstNode || key.nodes[0] >= lastNode) continue;
        if (key.count < 3) {
          m_neighbours[Slot(cell, face)] = kNoFace;
          continue;
        }
        const auto other = matcher.Meet(key, {static_cast<std::int32_t>(cell), face});
        if (other.cell < 0) continue;
        m_neighbours[Slot(cell, face)] = other.cell;
        m_neighbours[Slot(other.cell, other.face)] = static_cast<std::int32_t>(cell);
      }
    }
  }

  const QelNodeMap* m_map;
  std::int64_t m_count;
  std::vector<std::int32_t> m_neighbours;
};

}  // namespace

std::unique_ptr<ZoneFaces> MakeElementFaces(Zone& zone) {
  if (zone.Type() == ZoneType_FETetra) {
    return std::make_unique<VolumeFaces<Elements<4, 4>>>(Elements<4, 4>(zone));
  }
  return std::make_unique<VolumeFaces<Elements<6, 8>>>(Elements<6, 8>(zone));
}

}  // namespace qelhost
