#include "Connectivity.h"

#include <vtkCellType.h>

#include <algorithm>
#include <array>

namespace {

/// The distinct nodes of a face, ascending.
struct FaceNodes {
  std::array<std::int64_t, 4> nodes{};
  int count = 0;
};

FaceNodes NodesOfFace(const QelNodeMap& map, const qelhost::FaceTable& table, std::int64_t element,
                      int face) {
  FaceNodes result;
  for (int i = 0; i < table.cornersPerFace; ++i) {
    const std::int64_t node = map.Node(element, table.corners[face][i]);
    int place = 0;
    while (place < result.count && result.nodes[place] < node) ++place;
    if (place < result.count && result.nodes[place] == node) continue;
    for (int n = result.count; n > place; --n) result.nodes[n] = result.nodes[n - 1];
    result.nodes[place] = node;
    ++result.count;
  }
  return result;
}

bool SameNodes(const FaceNodes& a, const FaceNodes& b) {
  return a.count == b.count &&
         std::equal(a.nodes.begin(), a.nodes.begin() + a.count, b.nodes.begin());
}

/// The fewest distinct nodes that still make a face of the type.
int LeastNodes(const qelhost::FaceTable& table) { return std::min(table.cornersPerFace, 3); }

}  // namespace

bool QelNodeMap::SetNode(std::int64_t element, int corner, std::int64_t newNode) {
  if (!writable || element < 0 || element >= elementCount || corner < 0 ||
      corner >= nodesPerElement || newNode < 0 || newNode >= nodeCount) {
    return false;
  }
  const std::int64_t slot = element * nodesPerElement + corner;
  if (wide) {
    static_cast<std::int64_t*>(nodes)[slot] = newNode;
  } else {
    static_cast<std::int32_t*>(nodes)[slot] = static_cast<std::int32_t>(newNode);
  }
  return true;
}

LgIndex_t QelFaceNeighbors::Count(std::int64_t element, int face) const {
  const qelhost::FaceTable& table = qelhost::LocalFaces(nodes->zoneType);
  if (face < 0 || face >= table.faceCount) return 0;
  const FaceNodes wanted = NodesOfFace(*nodes, table, element, face);
  if (wanted.count < LeastNodes(table)) return 1;
  // A neighbour stands around every node of the face, so the node with the fewest elements will do.
  std::int64_t rarest = wanted.nodes[0];
  for (int i = 1; i < wanted.count; ++i) {
    if (elements->Count(wanted.nodes[i]) < elements->Count(rarest)) rarest = wanted.nodes[i];
  }
  LgIndex_t count = 0;
  for (std::int64_t n = 0; n < elements->Count(rarest); ++n) {
    const LgIndex_t other = elements->Element(rarest, n);
    if (other == element) continue;
    for (int f = 0; f < table.faceCount; ++f) {
      if (SameNodes(wanted, NodesOfFace(*nodes, table, other, f))) {
        ++count;
        break;
      }
    }
  }
  return count;
}

namespace qelhost {
namespace {

template <class Index>
std::int64_t PlainNode(const QelNodeMap& map, std::int64_t element, int corner) {
  return static_cast<const Index*>(map.nodes)[element * map.nodesPerElement + corner];
}

int TypeBySize(std::int64_t size) {
  return size == 2 ? VTK_LINE : size == 3 ? VTK_TRIANGLE : VTK_QUAD;
}

template <class Index>
std::int64_t ShapedNode(const QelNodeMap& map, std::int64_t element, int corner) {
  const std::int64_t blockCell =
      map.cellOfElement != nullptr ? map.cellOfElement[element] : map.firstBlockCell + element;
  const Index* offset = static_cast<const Index*>(map.offsets) + (blockCell - map.arrayStart);
  const int type =
      map.cellTypes != nullptr ? map.cellTypes[blockCell] : TypeBySize(offset[1] - offset[0]);
  return static_cast<const Index*>(map.nodes)[offset[0] + (*map.tables[type])[corner]];
}

/// Whether the elements are all cells of the array, of one size and with corners in VTK's order, so
/// that a node's place follows from the element's number alone.
bool IsPlain(const QelNodeMap& map) {
  if (map.cellOfElement != nullptr || map.firstBlockCell != map.arrayStart) return false;
  if (map.elementCount == 0 || map.cells->GetNumberOfCells() != map.elementCount) return false;
  if (map.cells->IsHomogeneous() != map.nodesPerElement) return false;
  if (map.cellTypes == nullptr) return true;
  static constexpr std::array<signed char, 8> kStraight{0, 1, 2, 3, 4, 5, 6, 7};
  std::array<bool, 256> isStraight{};
  for (std::size_t type = 0; type < isStraight.size(); ++type) {
    const auto* table = map.tables[type];
    isStraight[type] =
        table != nullptr &&
        std::equal(table->begin(), table->begin() + map.nodesPerElement, kStraight.begin());
  }
  for (LgIndex_t i = 0; i < map.elementCount; ++i) {
    if (!isStraight[map.cellTypes[map.firstBlockCell + i]]) return false;
  }
  return true;
}

}  // namespace

void ResolveNodeMap(QelNodeMap& map) {
  map.nodesPerElement = NodesPerElement(map.zoneType);
  for (int type = 0; type < static_cast<int>(map.tables.size()); ++type) {
    map.tables[type] = CornerTable(map.zoneType, ShapeOfVtkCell(type));
  }
  map.wide = map.cells->IsStorage64Bit();
  if (map.wide) {
    map.offsets = map.cells->GetOffsetsArray64()->GetPointer(0);
    map.nodes = map.cells->GetConnectivityArray64()->GetPointer(0);
  } else {
    map.offsets = map.cells->GetOffsetsArray32()->GetPointer(0);
    map.nodes = map.cells->GetConnectivityArray32()->GetPointer(0);
  }
  map.plain = IsPlain(map);
  if (map.plain) {
    map.node = map.wide ? PlainNode<std::int64_t> : PlainNode<std::int32_t>;
  } else {
    map.node = map.wide ? ShapedNode<std::int64_t> : ShapedNode<std::int32_t>;
  }
}

QelNodeToElemMap BuildNodeToElemMap(const QelNodeMap& map) {
  QelNodeToElemMap result;
  result.offsets.assign(static_cast<std::size_t>(map.nodeCount) + 1, 0);
  const int corners = map.nodesPerElement;
  const auto forEachNodeOnce = [&map, corners](auto&& visit) {
    std::array<std::int64_t, 8> nodes{};
    for (std::int64_t element = 0; element < map.elementCount; ++element) {
      for (int corner = 0; corner < corners; ++corner) {
        const std::int64_t node = map.Node(element, corner);
        nodes[corner] = node;
        const auto end = nodes.begin() + corner;
        if (std::find(nodes.begin(), end, node) == end) visit(element, node);
      }
    }
  };
  forEachNodeOnce([&result](std::int64_t, std::int64_t node) { ++result.offsets[node + 1]; });
  for (std::size_t i = 1; i < result.offsets.size(); ++i)
    result.offsets[i] += result.offsets[i - 1];
  result.elements.resize(static_cast<std::size_t>(result.offsets.back()));
  // Filling moves each start to its end, which is the next node's start.
  std::vector<std::int64_t>& place = result.offsets;
  forEachNodeOnce([&](std::int64_t element, std::int64_t node) {
    result.elements[place[node]++] = static_cast<LgIndex_t>(element);
  });
  for (std::size_t i = place.size() - 1; i > 0; --i) place[i] = place[i - 1];
  place[0] = 0;
  return result;
}

}  // namespace qelhost
