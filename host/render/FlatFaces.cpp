// Zones whose cells are seen themselves: surfaces and lines; and polyhedra, whose zone knows its
// faces.
#include <vtkCellType.h>

#include "ZoneFaces.h"

namespace qelhost {
namespace {

/// Appends the nodes, each once; lines and faces that collapsed to less than they are add nothing.
void AddCell(const std::vector<std::int64_t>& around, std::int64_t cell, std::size_t least,
             FaceList& list) {
  const std::size_t first = list.nodes.size();
  for (const std::int64_t wide : around) {
    const auto node = static_cast<std::int32_t>(wide);
    const auto begin = list.nodes.begin() + static_cast<std::ptrdiff_t>(first);
    if (std::find(begin, list.nodes.end(), node) == list.nodes.end()) list.nodes.push_back(node);
  }
  if (list.nodes.size() - first < least) {
    list.Abandon();
  } else {
    list.Finish(cell);
  }
}

class FlatFaces : public ZoneFaces {
 public:
  explicit FlatFaces(Zone& zone) : m_zone(zone) {
    if (!zone.IsOrdered()) {
      m_isLine = zone.Type() == ZoneType_FELineSeg;
      return;
    }
    int directions = 0;
    for (const LgIndex_t nodes : zone.IJK()) directions += nodes > 1 ? 1 : 0;
    m_isLine = directions < 2;
  }

  FaceList Shown(const ItemBits* hidden) const override {
    return GatherFaces(m_zone.CellCount(),
                       [&](std::int64_t first, std::int64_t last, FaceList& list) {
                         std::vector<std::int64_t> nodes;
                         for (std::int64_t cell = first; cell < last; ++cell) {
                           if (hidden != nullptr && hidden->Has(cell)) continue;
                           m_zone.CellNodes(cell, nodes);
                           PutInOrderAround(cell, nodes);
                           AddCell(nodes, cell, m_isLine ? 2 : 3, list);
                         }
                       });
  }

  std::size_t Bytes() const override { return 0; }

 private:
  /// Cells that list their nodes row by row: those of ordered zones, and pixels among polygons.
  void PutInOrderAround(std::int64_t cell, std::vector<std::int64_t>& nodes) const {
    if (nodes.size() != 4) return;
    const bool isByRows =
        m_zone.IsOrdered() ||
        (m_zone.IsFaceBased() && m_zone.Block()->GetCellType(m_zone.BlockCell(cell)) == VTK_PIXEL);
    if (isByRows) std::swap(nodes[2], nodes[3]);
  }

  Zone& m_zone;
  bool m_isLine = false;
};

class PolyhedronFaces : public ZoneFaces {
 public:
  explicit PolyhedronFaces(Zone& zone) : m_faces(*zone.FaceMap()) {}

  FaceList Shown(const ItemBits* hidden) const override {
    const auto isShown = [hidden](LgIndex_t cell) {
      return cell >= 0 && (hidden == nullptr || !hidden->Has(cell));
    };
    return GatherFaces(
        m_faces.FaceCount(), [&](std::int64_t first, std::int64_t last, FaceList& list) {
          for (std::int64_t face = first; face < last; ++face) {
            const auto n = static_cast<std::size_t>(face);
            const bool isLeftShown = isShown(m_faces.left[n]);
            if (isLeftShown == isShown(m_faces.right[n]) || m_faces.NodeCount(face) < 3) continue;
            for (LgIndex_t i = 0; i < m_faces.NodeCount(face); ++i) {
              list.nodes.push_back(m_faces.Node(face, i));
            }
            list.Finish(isLeftShown ? m_faces.left[n] : m_faces.right[n]);
          }
        });
  }

  std::size_t Bytes() const override { return 0; }

 private:
  const QelFaceMap& m_faces;
};

bool FillsVolume(Zone& zone) {
  const std::array<LgIndex_t, 3> nodes = zone.IJK();
  return std::all_of(nodes.begin(), nodes.end(), [](LgIndex_t count) { return count > 1; });
}

}  // namespace

std::unique_ptr<ZoneFaces> MakeFlatFaces(Zone& zone) { return std::make_unique<FlatFaces>(zone); }

std::unique_ptr<ZoneFaces> MakePolyhedronFaces(Zone& zone) {
  return std::make_unique<PolyhedronFaces>(zone);
}

std::unique_ptr<ZoneFaces> MakeZoneFaces(Zone& zone) {
  switch (zone.Type()) {
    case ZoneType_Ordered:
      return FillsVolume(zone) ? MakeOrderedFaces(zone) : MakeFlatFaces(zone);
    case ZoneType_FETetra:
    case ZoneType_FEBrick:
      return MakeElementFaces(zone);
    case ZoneType_FEPolyhedron:
      return MakePolyhedronFaces(zone);
    default:
      return MakeFlatFaces(zone);
  }
}

}  // namespace qelhost
