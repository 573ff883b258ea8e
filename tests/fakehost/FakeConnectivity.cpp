// Node maps, node-to-element maps, face neighbours, face maps. A handle stands for its zone.
#include "FakeCall.h"

#include <algorithm>
#include <map>
#include <set>

namespace fakehost {
struct MapHandle {
  LgIndex_t zone = 0;
  QelUniqueID_t dataSet = 0;
};
}  // namespace fakehost

struct QelNodeMap : fakehost::MapHandle {};
struct QelNodeToElemMap : fakehost::MapHandle {};
struct QelFaceNeighbors : fakehost::MapHandle {};
struct QelElemToFaceMap : fakehost::MapHandle {};
struct QelFaceMap : fakehost::MapHandle {};

namespace fakehost {

namespace {

using Corners = std::vector<LgIndex_t>;

bool HasNodeMap(const Mesh& mesh) {
  return mesh.type >= ZoneType_FETriangle && mesh.type <= ZoneType_FELineSeg;
}
bool IsFaceBased(const Mesh& mesh) {
  return mesh.type == ZoneType_FEPolygon || mesh.type == ZoneType_FEPolyhedron;
}
bool IsFiniteElement(const Mesh& mesh) { return mesh.type != ZoneType_Ordered; }

/// One store of live handles a type; a zone's handle is made once.
template <class Handle>
std::vector<std::unique_ptr<Handle>>& HandlesOf() {
  static auto* const handles = new std::vector<std::unique_ptr<Handle>>();
  return *handles;
}

template <class Handle>
Handle* HandleFor(LgIndex_t zone, bool (*applies)(const Mesh&)) {
  const Zone* const found = Host().ZoneAt(zone);
  if (found == nullptr || !applies(found->mesh)) return nullptr;
  auto handle = std::make_unique<Handle>();
  handle->zone = zone;
  handle->dataSet = Host().ActiveData()->id;
  HandlesOf<Handle>().push_back(std::move(handle));
  return HandlesOf<Handle>().back().get();
}

/// The mesh behind a handle; null, reported, when the handle is none of the host's or stale.
template <class Handle>
Mesh* MeshOf(const Handle* handle, const char* function) {
  for (const auto& known : HandlesOf<Handle>()) {
    if (known.get() != handle) continue;
    const DataSet* const data = Host().ActiveData();
    Zone* const zone = Host().ZoneAt(handle->zone);
    if (zone != nullptr && data->id == handle->dataSet) return &zone->mesh;
  }
  Host().Report(std::string(function) + " got a null, stale or foreign handle");
  return nullptr;
}

template <class T>
const T* AtOrNull(const std::vector<T>& items, LgIndex_t index) {
  if (index < 1 || index > static_cast<LgIndex_t>(items.size())) return nullptr;
  return &items[static_cast<std::size_t>(index - 1)];
}

LgIndex_t NumberAt(const std::vector<LgIndex_t>& items, LgIndex_t index) {
  const LgIndex_t* const item = AtOrNull(items, index);
  return item == nullptr ? 0 : *item;
}

Corners ElementsAround(const Mesh& mesh, LgIndex_t node) {
  Corners elements;
  for (LgIndex_t element = 1; element <= mesh.CellCount(); ++element) {
    const Corners corners = mesh.Corners(element);
    if (std::find(corners.begin(), corners.end(), node) != corners.end()) {
      elements.push_back(element);
    }
  }
  return elements;
}

Corners FacesOf(const Mesh& mesh, LgIndex_t element) {
  Corners faces;
  for (std::size_t face = 0; face < mesh.faces.size(); ++face) {
    if (mesh.faces[face].left == element || mesh.faces[face].right == element) {
      faces.push_back(static_cast<LgIndex_t>(face + 1));
    }
  }
  return faces;
}

/// The corners of each local face, counted from 1.
const std::vector<Corners>& LocalFaces(QelZoneType_e type) {
  static const std::map<QelZoneType_e, std::vector<Corners>> faces = {
      {ZoneType_FETriangle, {{1, 2}, {2, 3}, {3, 1}}},
      {ZoneType_FEQuad, {{1, 2}, {2, 3}, {3, 4}, {4, 1}}},
      {ZoneType_FETetra, {{1, 2, 3}, {1, 2, 4}, {1, 3, 4}, {2, 3, 4}}},
      {ZoneType_FEBrick,
       {{1, 4, 5, 8}, {2, 3, 6, 7}, {1, 2, 5, 6}, {3, 4, 7, 8}, {1, 2, 3, 4}, {5, 6, 7, 8}}},
      {ZoneType_FELineSeg, {{1}, {2}}}};
  return faces.at(type);
}

LgIndex_t NeighbourCount(const Mesh& mesh, LgIndex_t element, const Corners& face) {
  const Corners& corners = mesh.elements[static_cast<std::size_t>(element - 1)];
  std::set<LgIndex_t> nodes;
  for (const LgIndex_t corner : face) nodes.insert(corners[static_cast<std::size_t>(corner - 1)]);
  // A face that collapses to less than a face counts as having a neighbour.
  const std::size_t least = std::min<std::size_t>(face.size(), 3);
  if (nodes.size() < least) return 1;
  LgIndex_t count = 0;
  for (std::size_t other = 0; other < mesh.elements.size(); ++other) {
    if (static_cast<LgIndex_t>(other + 1) == element) continue;
    const std::set<LgIndex_t> theirs(mesh.elements[other].begin(), mesh.elements[other].end());
    if (std::includes(theirs.begin(), theirs.end(), nodes.begin(), nodes.end())) ++count;
  }
  return count;
}

}  // namespace

void ForgetMaps() {
  HandlesOf<QelNodeMap>().clear();
  HandlesOf<QelNodeToElemMap>().clear();
  HandlesOf<QelFaceNeighbors>().clear();
  HandlesOf<QelElemToFaceMap>().clear();
  HandlesOf<QelFaceMap>().clear();
}

}  // namespace fakehost

using namespace fakehost;

QelNodeMap* QelUtilDataNodeGetReadableRef(LgIndex_t zone) {
  return Fails(__func__, zone) ? nullptr : HandleFor<QelNodeMap>(zone, HasNodeMap);
}

QelNodeMap* QelUtilDataNodeGetWritableRef(LgIndex_t zone) {
  return Fails(__func__, zone) ? nullptr : HandleFor<QelNodeMap>(zone, HasNodeMap);
}

LgIndex_t QelUtilDataNodeGetByRef(const QelNodeMap* map, LgIndex_t element, LgIndex_t corner) {
  Note(__func__, map, element, corner);
  const Mesh* const mesh = MeshOf(map, __func__);
  const Corners* const corners = mesh == nullptr ? nullptr : AtOrNull(mesh->elements, element);
  return corners == nullptr ? 0 : NumberAt(*corners, corner);
}

void QelUtilDataNodeSetByRef(QelNodeMap* map, LgIndex_t element, LgIndex_t corner, LgIndex_t node) {
  Note(__func__, map, element, corner, node);
  Mesh* const mesh = MeshOf(map, __func__);
  if (mesh == nullptr || AtOrNull(mesh->elements, element) == nullptr) return;
  Corners& corners = mesh->elements[static_cast<std::size_t>(element - 1)];
  if (AtOrNull(corners, corner) != nullptr) corners[static_cast<std::size_t>(corner - 1)] = node;
}

QelNodeToElemMap* QelUtilDataNodeToElemMapGetReadableRef(LgIndex_t zone) {
  return Fails(__func__, zone) ? nullptr : HandleFor<QelNodeToElemMap>(zone, IsFiniteElement);
}

LgIndex_t QelUtilDataNodeToElemMapGetNumElems(const QelNodeToElemMap* map, LgIndex_t node) {
  Note(__func__, map, node);
  const Mesh* const mesh = MeshOf(map, __func__);
  return mesh == nullptr ? 0 : static_cast<LgIndex_t>(ElementsAround(*mesh, node).size());
}

LgIndex_t QelUtilDataNodeToElemMapGetElem(const QelNodeToElemMap* map, LgIndex_t node,
                                          LgIndex_t n) {
  Note(__func__, map, node, n);
  const Mesh* const mesh = MeshOf(map, __func__);
  return mesh == nullptr ? 0 : NumberAt(ElementsAround(*mesh, node), n);
}

QelFaceNeighbors* QelUtilDataFaceNbrGetReadableRef(LgIndex_t zone) {
  return Fails(__func__, zone) ? nullptr : HandleFor<QelFaceNeighbors>(zone, HasNodeMap);
}

LgIndex_t QelUtilDataFaceNbrGetNumNByRef(const QelFaceNeighbors* nbr, LgIndex_t element,
                                         LgIndex_t face) {
  Note(__func__, nbr, element, face);
  const Mesh* const mesh = MeshOf(nbr, __func__);
  if (mesh == nullptr || AtOrNull(mesh->elements, element) == nullptr) return 0;
  const Corners* const local = AtOrNull(LocalFaces(mesh->type), face);
  return local == nullptr ? 0 : NeighbourCount(*mesh, element, *local);
}

QelElemToFaceMap* QelUtilDataElemGetReadableRef(LgIndex_t zone) {
  return Fails(__func__, zone) ? nullptr : HandleFor<QelElemToFaceMap>(zone, IsFaceBased);
}

LgIndex_t QelUtilDataElemGetNumFaces(const QelElemToFaceMap* map, LgIndex_t element) {
  Note(__func__, map, element);
  const Mesh* const mesh = MeshOf(map, __func__);
  return mesh == nullptr ? 0 : static_cast<LgIndex_t>(FacesOf(*mesh, element).size());
}

LgIndex_t QelUtilDataElemGetFace(const QelElemToFaceMap* map, LgIndex_t element, LgIndex_t n) {
  Note(__func__, map, element, n);
  const Mesh* const mesh = MeshOf(map, __func__);
  return mesh == nullptr ? 0 : NumberAt(FacesOf(*mesh, element), n);
}

QelFaceMap* QelUtilDataFaceMapGetReadableRef(LgIndex_t zone) {
  return Fails(__func__, zone) ? nullptr : HandleFor<QelFaceMap>(zone, IsFaceBased);
}

LgIndex_t QelUtilDataFaceMapGetLeftElem(const QelFaceMap* map, LgIndex_t face) {
  Note(__func__, map, face);
  const Mesh* const mesh = MeshOf(map, __func__);
  const Face* const found = mesh == nullptr ? nullptr : AtOrNull(mesh->faces, face);
  return found == nullptr ? 0 : found->left;
}

LgIndex_t QelUtilDataFaceMapGetRightElem(const QelFaceMap* map, LgIndex_t face) {
  Note(__func__, map, face);
  const Mesh* const mesh = MeshOf(map, __func__);
  const Face* const found = mesh == nullptr ? nullptr : AtOrNull(mesh->faces, face);
  return found == nullptr ? 0 : found->right;
}

LgIndex_t QelUtilDataFaceMapGetNFaceNodes(const QelFaceMap* map, LgIndex_t face) {
  Note(__func__, map, face);
  const Mesh* const mesh = MeshOf(map, __func__);
  const Face* const found = mesh == nullptr ? nullptr : AtOrNull(mesh->faces, face);
  return found == nullptr ? 0 : static_cast<LgIndex_t>(found->nodes.size());
}

LgIndex_t QelUtilDataFaceMapGetFaceNode(const QelFaceMap* map, LgIndex_t face, LgIndex_t n) {
  Note(__func__, map, face, n);
  const Mesh* const mesh = MeshOf(map, __func__);
  const Face* const found = mesh == nullptr ? nullptr : AtOrNull(mesh->faces, face);
  return found == nullptr ? 0 : NumberAt(found->nodes, n);
}
