#include "RoughFaces.h"

#include <cmath>
#include <limits>

namespace qelhost {
namespace {

/// Numbers cubes as they are met.
class CubeNumbers {
 public:
  CubeNumbers() : m_slots(1 << 12, kEmpty) {}

  /// The number of the cube; a new one is the count of those before.
  std::int32_t Of(std::uint64_t cube) {
    // Points that follow each other mostly lie together.
    if (cube == m_last) return m_lastNumber;
    m_last = cube;
    return m_lastNumber = NumberOf(cube);
  }

 private:
  static constexpr std::int32_t kEmpty = -1;

  std::int32_t NumberOf(std::uint64_t cube) {
    if (2 * m_cubes.size() >= m_slots.size()) Grow();
    const std::size_t slot = Find(cube);
    if (m_slots[slot] == kEmpty) {
      m_slots[slot] = static_cast<std::int32_t>(m_cubes.size());
      m_cubes.push_back(cube);
    }
    return m_slots[slot];
  }

  std::size_t Find(std::uint64_t cube) const {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t slot = (cube * 0x9e3779b97f4a7c15ULL >> 20) & mask;
    while (m_slots[slot] != kEmpty && m_cubes[static_cast<std::size_t>(m_slots[slot])] != cube) {
      slot = (slot + 1) & mask;
    }
    return slot;
  }

  void Grow() {
    m_slots.assign(2 * m_slots.size(), kEmpty);
    for (std::size_t n = 0; n < m_cubes.size(); ++n) {
      m_slots[Find(m_cubes[n])] = static_cast<std::int32_t>(n);
    }
  }

  std::vector<std::int32_t> m_slots;
  std::vector<std::uint64_t> m_cubes;
  std::uint64_t m_last = ~std::uint64_t{0};
  std::int32_t m_lastNumber = kEmpty;
};

constexpr std::int32_t kOutside = -1;

/// For each point the one that stands for all in its cube.
std::vector<std::int32_t> Representatives(const ZoneSurface& surface, const RoughDetail& detail) {
  constexpr double kMostCubes = 1 << 20;  // along one side
  const float* const at = surface.Coordinates();
  std::array<float, 3> low{};
  low.fill(std::numeric_limits<float>::max());
  for (std::int64_t point = 0; point < surface.PointCount(); ++point) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      low[axis] = std::min(low[axis], at[3 * point + static_cast<std::ptrdiff_t>(axis)]);
    }
  }
  const double perUnit = detail.side > 0.0 ? 1.0 / detail.side : 0.0;
  CubeNumbers numbers;
  std::vector<std::int32_t> first;
  std::vector<std::int32_t> representatives(static_cast<std::size_t>(surface.PointCount()),
                                            kOutside);
  for (std::int64_t point = 0; point < surface.PointCount(); ++point) {
    const float* const place = at + 3 * point;
    bool isInside = true;
    for (std::size_t axis = 0; axis < 2; ++axis) {
      const double coordinate = place[axis] + surface.Middle()[axis];
      isInside = isInside && coordinate >= detail.low[axis] && coordinate <= detail.high[axis];
    }
    if (!isInside) continue;
    std::uint64_t cube = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const double cubes = (double{place[axis]} - low[axis]) * perUnit;
      const bool isNumber = cubes >= 0.0 && cubes < kMostCubes;
      cube = cube << 20 | (isNumber ? static_cast<std::uint64_t>(cubes) : 0);
    }
    const auto number = static_cast<std::size_t>(numbers.Of(cube));
    if (number == first.size()) first.push_back(static_cast<std::int32_t>(point));
    representatives[static_cast<std::size_t>(point)] = first[number];
  }
  return representatives;
}

}  // namespace

FaceList RoughFaces(const ZoneSurface& surface, const RoughDetail& detail) {
  const std::vector<std::int32_t> representatives = Representatives(surface, detail);
  const FaceList& faces = surface.Faces();
  return GatherFaces(faces.Count(), [&](std::int64_t begin, std::int64_t end, FaceList& list) {
    for (std::int64_t face = begin; face < end; ++face) {
      const std::size_t first = list.nodes.size();
      const std::size_t least = faces.Size(face) == 2 ? 2 : 3;
      for (int n = 0; n < faces.Size(face); ++n) {
        const auto corner = static_cast<std::size_t>(faces.Begin(face)[n]);
        if (representatives[corner] == kOutside) {
          list.nodes.resize(first);
          break;
        }
        const std::int32_t node = surface.NodeOf(representatives[corner]);
        const auto own = list.nodes.begin() + static_cast<std::ptrdiff_t>(first);
        if (std::find(own, list.nodes.end(), node) == list.nodes.end()) list.nodes.push_back(node);
      }
      if (list.nodes.size() - first < least) {
        list.Abandon();
      } else {
        list.Finish(faces.cells[static_cast<std::size_t>(face)]);
      }
    }
  });
}

}  // namespace qelhost
