#pragma once

#include "qelvane/Types.h"

#include <array>
#include <cstdint>
#include <utility>
#include <vector>

namespace fakehost {

struct Mesh;

/// A list of numbers for each of many items, in one plain run. Items and places count from 1.
class NumberLists {
 public:
  NumberLists() : m_starts{0} {}
  /// Pairs of an item and a number of its list; sorts them and leaves each out but once.
  NumberLists(LgIndex_t itemCount, std::vector<std::pair<LgIndex_t, LgIndex_t>> pairs);

  /// The lists' lengths come first: Expect for each entry, Start, then Append in any order.
  explicit NumberLists(LgIndex_t itemCount)
      : m_starts(static_cast<std::size_t>(itemCount) + 2, 0) {}
  void Expect(LgIndex_t item) { ++m_starts[static_cast<std::size_t>(item) + 1]; }
  void Start();
  void Append(LgIndex_t item, LgIndex_t number) {
    m_numbers[static_cast<std::size_t>(m_starts[static_cast<std::size_t>(item)]++)] = number;
  }

  LgIndex_t ItemCount() const;
  LgIndex_t CountOf(LgIndex_t item) const;          ///< 0 for an item that there is not
  LgIndex_t At(LgIndex_t item, LgIndex_t n) const;  ///< 0 for a place that there is not
  const LgIndex_t* begin(LgIndex_t item) const;
  const LgIndex_t* end(LgIndex_t item) const;

 private:
  std::vector<std::int64_t> m_starts;  ///< item i: from [i - 1] to before [i], once appended
  std::vector<LgIndex_t> m_numbers;
};

/// What follows from a mesh's connectivity.
struct Topology {
  explicit Topology(const Mesh& mesh);
  bool IsOf(const Mesh& mesh) const;

  NumberLists cellsAroundNodes;  ///< ascending, each once; ordered zones too
  NumberLists facesOfElements;   ///< face-based zones

 private:
  std::uint64_t m_elementStamp;
  std::uint64_t m_faceStamp;
  QelZoneType_e m_type;
  std::array<LgIndex_t, 3> m_ijk;
  LgIndex_t m_nodeCount;
  LgIndex_t m_cellCount;
};

/// How many other elements have the face; a face that is less than a face has one. 0 for an
/// element or face that there is not.
LgIndex_t FaceNeighbourCount(const Mesh& mesh, LgIndex_t element, LgIndex_t face);

}  // namespace fakehost
