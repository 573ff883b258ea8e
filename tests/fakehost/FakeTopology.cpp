#include "FakeTopology.h"

#include "FakeData.h"

#include <algorithm>

namespace fakehost {

namespace {

constexpr LgIndex_t kMaxFaceCorners = 4;
constexpr LgIndex_t kMaxFaces = 6;

/// The local faces of an element type, by corners from 1; 0 where a face has no more.
struct FaceTable {
  LgIndex_t faceCount;
  LgIndex_t cornersPerFace;
  LgIndex_t corners[kMaxFaces][kMaxFaceCorners];
};

// In the order of the zone types, from ordered zones, which have none.
constexpr FaceTable kFaceTables[] = {
    {0, 0, {}},
    {3, 2, {{1, 2}, {2, 3}, {3, 1}}},
    {4, 2, {{1, 2}, {2, 3}, {3, 4}, {4, 1}}},
    {4, 3, {{1, 2, 3}, {1, 2, 4}, {1, 3, 4}, {2, 3, 4}}},
    {6, 4, {{1, 4, 5, 8}, {2, 3, 6, 7}, {1, 2, 5, 6}, {3, 4, 7, 8}, {1, 2, 3, 4}, {5, 6, 7, 8}}},
    {2, 1, {{1}, {2}}}};

/// The distinct nodes of a face, ascending.
struct FaceNodes {
  FaceNodes(const FaceTable& table, LgIndex_t face, const LgIndex_t* elementNodes) {
    for (LgIndex_t i = 0; i < table.cornersPerFace; ++i) {
      Add(elementNodes[table.corners[face - 1][i] - 1]);
    }
  }
  void Add(LgIndex_t node) {
    LgIndex_t* const end = nodes.data() + count;
    LgIndex_t* const at = std::lower_bound(nodes.data(), end, node);
    if (at != end && *at == node) return;
    std::copy_backward(at, end, end + 1);
    *at = node;
    ++count;
  }
  bool operator==(const FaceNodes& other) const {
    return count == other.count &&
           std::equal(nodes.begin(), nodes.begin() + count, other.nodes.begin());
  }
  std::array<LgIndex_t, kMaxFaceCorners> nodes{};
  std::ptrdiff_t count = 0;
};

/// Sorts out quickly most of the elements that meet a face in a node or an edge alone.
bool HasAll(const FaceNodes& face, const LgIndex_t* nodes, std::size_t corners) {
  return std::all_of(face.nodes.begin(), face.nodes.begin() + face.count, [&](LgIndex_t node) {
    return std::find(nodes, nodes + corners, node) != nodes + corners;
  });
}

/// True for the first corner of the element at its node.
bool IsFirstAt(const LgIndex_t* nodes, std::size_t corner) {
  return std::find(nodes, nodes + corner, nodes[corner]) == nodes + corner;
}

NumberLists AroundNodesOfElements(const Mesh& mesh) {
  NumberLists lists(mesh.NodeCount());
  const std::size_t corners = mesh.elements.CornerCount();
  const auto forEach = [&](const auto& take) {
    for (std::size_t element = 0; element < mesh.elements.size(); ++element) {
      const auto nodes = mesh.elements.NodesOf(element);
      for (std::size_t corner = 0; corner < corners; ++corner) {
        const LgIndex_t node = nodes[corner];
        if (node < 1 || node > mesh.NodeCount() || !IsFirstAt(nodes.data(), corner)) continue;
        take(node, static_cast<LgIndex_t>(element + 1));
      }
    }
  };
  forEach([&lists](LgIndex_t node, LgIndex_t) { lists.Expect(node); });
  lists.Start();
  forEach([&lists](LgIndex_t node, LgIndex_t element) { lists.Append(node, element); });
  return lists;
}

NumberLists AroundNodesOfOrdered(const Mesh& mesh) {
  NumberLists lists(mesh.NodeCount());
  for (LgIndex_t cell = 1; cell <= mesh.CellCount(); ++cell) {
    for (const LgIndex_t node : mesh.Corners(cell)) lists.Expect(node);
  }
  lists.Start();
  for (LgIndex_t cell = 1; cell <= mesh.CellCount(); ++cell) {
    for (const LgIndex_t node : mesh.Corners(cell)) lists.Append(node, cell);
  }
  return lists;
}

NumberLists AroundNodesOfFaces(const Mesh& mesh) {
  std::vector<std::pair<LgIndex_t, LgIndex_t>> pairs;
  for (const Face& face : mesh.faces) {
    for (const LgIndex_t node : face.nodes) {
      for (const LgIndex_t element : {face.left, face.right}) {
        if (element > 0) pairs.emplace_back(node, element);
      }
    }
  }
  return {mesh.NodeCount(), std::move(pairs)};
}

NumberLists FacesOfElements(const Mesh& mesh) {
  std::vector<std::pair<LgIndex_t, LgIndex_t>> pairs;
  LgIndex_t number = 0;
  for (const Face& face : mesh.faces) {
    ++number;
    for (const LgIndex_t element : {face.left, face.right}) {
      if (element > 0) pairs.emplace_back(element, number);
    }
  }
  return {mesh.CellCount(), std::move(pairs)};
}

}  // namespace

NumberLists::NumberLists(LgIndex_t itemCount, std::vector<std::pair<LgIndex_t, LgIndex_t>> pairs)
    : NumberLists(itemCount) {
  std::sort(pairs.begin(), pairs.end());
  pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
  const auto isForeign = [itemCount](const auto& pair) {
    return pair.first < 1 || pair.first > itemCount;
  };
  pairs.erase(std::remove_if(pairs.begin(), pairs.end(), isForeign), pairs.end());
  for (const auto& [item, number] : pairs) Expect(item);
  Start();
  for (const auto& [item, number] : pairs) Append(item, number);
}

void NumberLists::Start() {
  for (std::size_t i = 1; i < m_starts.size(); ++i) m_starts[i] += m_starts[i - 1];
  m_numbers.resize(static_cast<std::size_t>(m_starts.back()));
}

LgIndex_t NumberLists::ItemCount() const { return static_cast<LgIndex_t>(m_starts.size()) - 2; }

LgIndex_t NumberLists::CountOf(LgIndex_t item) const {
  return static_cast<LgIndex_t>(end(item) - begin(item));
}

LgIndex_t NumberLists::At(LgIndex_t item, LgIndex_t n) const {
  return n < 1 || n > CountOf(item) ? 0 : begin(item)[n - 1];
}

const LgIndex_t* NumberLists::begin(LgIndex_t item) const {
  if (item < 1 || item > ItemCount()) return nullptr;
  return m_numbers.data() + m_starts[static_cast<std::size_t>(item - 1)];
}

const LgIndex_t* NumberLists::end(LgIndex_t item) const {
  if (item < 1 || item > ItemCount()) return nullptr;
  return m_numbers.data() + m_starts[static_cast<std::size_t>(item)];
}

Topology::Topology(const Mesh& mesh)
    : m_elementStamp(mesh.elements.Stamp()),
      m_faceStamp(mesh.faces.Stamp()),
      m_type(mesh.type),
      m_ijk(mesh.ijk),
      m_nodeCount(mesh.NodeCount()),
      m_cellCount(mesh.CellCount()) {
  if (mesh.IsFaceBased()) {
    cellsAroundNodes = AroundNodesOfFaces(mesh);
    facesOfElements = FacesOfElements(mesh);
  } else {
    cellsAroundNodes =
        mesh.type == ZoneType_Ordered ? AroundNodesOfOrdered(mesh) : AroundNodesOfElements(mesh);
  }
}

bool Topology::IsOf(const Mesh& mesh) const {
  return m_elementStamp == mesh.elements.Stamp() && m_faceStamp == mesh.faces.Stamp() &&
         m_type == mesh.type && m_ijk == mesh.ijk && m_nodeCount == mesh.NodeCount() &&
         m_cellCount == mesh.CellCount();
}

LgIndex_t FaceNeighbourCount(const Mesh& mesh, LgIndex_t element, LgIndex_t face) {
  if (!mesh.HasNodeMap() || element < 1 || element > mesh.CellCount()) return 0;
  const FaceTable& table = kFaceTables[mesh.type];
  if (face < 1 || face > table.faceCount) return 0;
  const auto nodesOf = [&mesh](LgIndex_t of) {
    return mesh.elements.NodesOf(static_cast<std::size_t>(of - 1));
  };
  const FaceNodes wanted(table, face, nodesOf(element).data());
  if (wanted.count < std::min<LgIndex_t>(table.cornersPerFace, 3)) return 1;
  LgIndex_t count = 0;
  const NumberLists& around = mesh.Derived().cellsAroundNodes;
  const LgIndex_t* const last = around.end(wanted.nodes[0]);
  for (const LgIndex_t* other = around.begin(wanted.nodes[0]); other != last; ++other) {
    if (*other == element) continue;
    const auto nodes = nodesOf(*other);
    if (!HasAll(wanted, nodes.data(), mesh.elements.CornerCount())) continue;
    for (LgIndex_t theirs = 1; theirs <= table.faceCount; ++theirs) {
      if (!(FaceNodes(table, theirs, nodes.data()) == wanted)) continue;
      ++count;
      break;
    }
  }
  return count;
}

}  // namespace fakehost
