// Node maps, node-to-element maps, face neighbours, face maps. A handle stands for its zone.
#include "FakeCall.h"

#include <unordered_map>

namespace fakehost {
struct MapHandle {
  QelUniqueID_t zone = 0;
};
}  // namespace fakehost

struct QelNodeMap : fakehost::MapHandle {};
struct QelNodeToElemMap : fakehost::MapHandle {};
struct QelFaceNeighbors : fakehost::MapHandle {};
struct QelElemToFaceMap : fakehost::MapHandle {};
struct QelFaceMap : fakehost::MapHandle {};

namespace fakehost {

namespace {

bool HasNodeMap(const Mesh& mesh) { return mesh.HasNodeMap(); }
bool IsFaceBased(const Mesh& mesh) { return mesh.IsFaceBased(); }
bool IsFiniteElement(const Mesh& mesh) { return mesh.type != ZoneType_Ordered; }

/// The handles of a type; a zone's is made once.
template <class Handle>
struct Handles {
  std::unordered_map<QelUniqueID_t, std::unique_ptr<Handle>> ofZone;
  std::unordered_map<const Handle*, QelUniqueID_t> zoneOf;
};

template <class Handle>
Handles<Handle>& HandlesOf() {
  static auto* const handles = new Handles<Handle>();
  return *handles;
}

template <class Handle>
Handle* HandleFor(LgIndex_t zone, bool (*applies)(const Mesh&)) {
  const Zone* const found = Host().ZoneAt(zone);
  if (found == nullptr || !applies(found->mesh)) return nullptr;
  Handles<Handle>& handles = HandlesOf<Handle>();
  std::unique_ptr<Handle>& handle = handles.ofZone[found->id];
  if (handle == nullptr) {
    handle = std::make_unique<Handle>();
    handle->zone = found->id;
    handles.zoneOf[handle.get()] = found->id;
  }
  return handle.get();
}

/// The mesh behind a handle; null, reported, when the handle is none of the host's or stale.
template <class Handle>
Mesh* MeshOf(const Handle* handle, const char* function) {
  const auto& zoneOf = HandlesOf<Handle>().zoneOf;
  const auto known = zoneOf.find(handle);
  Zone* const zone = known == zoneOf.end() ? nullptr : Host().ZoneWithId(known->second);
  if (zone != nullptr) return &zone->mesh;
  Host().Report(std::string(function) + " got a null, stale or foreign handle");
  return nullptr;
}

bool IsIn(LgIndex_t index, std::size_t count) {
  return index >= 1 && index <= static_cast<LgIndex_t>(count);
}

LgIndex_t NumberAt(const std::vector<LgIndex_t>& items, LgIndex_t index) {
  return IsIn(index, items.size()) ? items[static_cast<std::size_t>(index - 1)] : 0;
}

const Face* FaceAt(const Mesh* mesh, LgIndex_t face) {
  if (mesh == nullptr || !IsIn(face, mesh->faces.size())) return nullptr;
  return &mesh->faces[static_cast<std::size_t>(face - 1)];
}

template <class Handle>
void Forget() {
  HandlesOf<Handle>() = Handles<Handle>();
}

}  // namespace

NodesBehind NodesOfMap(const QelNodeMap* map, const char* function) {
  const Mesh* const mesh = MeshOf(map, function);
  return mesh == nullptr ? NodesBehind() : NodesBehind{mesh, map->zone};
}

void ForgetMaps() {
  Forget<QelNodeMap>();
  Forget<QelNodeToElemMap>();
  Forget<QelFaceNeighbors>();
  Forget<QelElemToFaceMap>();
  Forget<QelFaceMap>();
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
  if (Fails(__func__, map, element, corner)) return 0;
  const Mesh* const mesh = MeshOf(map, __func__);
  if (mesh == nullptr || !IsIn(element, mesh->elements.size())) return 0;
  if (!IsIn(corner, mesh->elements.CornerCount())) return 0;
  return mesh->elements.NodeAt(static_cast<std::size_t>(element - 1),
                               static_cast<std::size_t>(corner - 1));
}

void QelUtilDataNodeSetByRef(QelNodeMap* map, LgIndex_t element, LgIndex_t corner, LgIndex_t node) {
  Note(__func__, map, element, corner, node);
  Mesh* const mesh = MeshOf(map, __func__);
  if (mesh == nullptr || !IsIn(element, mesh->elements.size())) return;
  if (!IsIn(corner, mesh->elements.CornerCount()) || !IsIn(node, mesh->points.size())) return;
  mesh->elements.SetNode(static_cast<std::size_t>(element - 1),
                         static_cast<std::size_t>(corner - 1), node);
}

QelNodeToElemMap* QelUtilDataNodeToElemMapGetReadableRef(LgIndex_t zone) {
  return Fails(__func__, zone) ? nullptr : HandleFor<QelNodeToElemMap>(zone, IsFiniteElement);
}

LgIndex_t QelUtilDataNodeToElemMapGetNumElems(const QelNodeToElemMap* map, LgIndex_t node) {
  if (Fails(__func__, map, node)) return 0;
  const Mesh* const mesh = MeshOf(map, __func__);
  return mesh == nullptr ? 0 : mesh->Derived().cellsAroundNodes.CountOf(node);
}

LgIndex_t QelUtilDataNodeToElemMapGetElem(const QelNodeToElemMap* map, LgIndex_t node,
                                          LgIndex_t n) {
  if (Fails(__func__, map, node, n)) return 0;
  const Mesh* const mesh = MeshOf(map, __func__);
  return mesh == nullptr ? 0 : mesh->Derived().cellsAroundNodes.At(node, n);
}

QelFaceNeighbors* QelUtilDataFaceNbrGetReadableRef(LgIndex_t zone) {
  return Fails(__func__, zone) ? nullptr : HandleFor<QelFaceNeighbors>(zone, HasNodeMap);
}

LgIndex_t QelUtilDataFaceNbrGetNumNByRef(const QelFaceNeighbors* nbr, LgIndex_t element,
                                         LgIndex_t face) {
  if (Fails(__func__, nbr, element, face)) return 0;
  const Mesh* const mesh = MeshOf(nbr, __func__);
  return mesh == nullptr ? 0 : FaceNeighbourCount(*mesh, element, face);
}

QelElemToFaceMap* QelUtilDataElemGetReadableRef(LgIndex_t zone) {
  return Fails(__func__, zone) ? nullptr : HandleFor<QelElemToFaceMap>(zone, IsFaceBased);
}

LgIndex_t QelUtilDataElemGetNumFaces(const QelElemToFaceMap* map, LgIndex_t element) {
  if (Fails(__func__, map, element)) return 0;
  const Mesh* const mesh = MeshOf(map, __func__);
  return mesh == nullptr ? 0 : mesh->Derived().facesOfElements.CountOf(element);
}

LgIndex_t QelUtilDataElemGetFace(const QelElemToFaceMap* map, LgIndex_t element, LgIndex_t n) {
  if (Fails(__func__, map, element, n)) return 0;
  const Mesh* const mesh = MeshOf(map, __func__);
  return mesh == nullptr ? 0 : mesh->Derived().facesOfElements.At(element, n);
}

QelFaceMap* QelUtilDataFaceMapGetReadableRef(LgIndex_t zone) {
  return Fails(__func__, zone) ? nullptr : HandleFor<QelFaceMap>(zone, IsFaceBased);
}

LgIndex_t QelUtilDataFaceMapGetLeftElem(const QelFaceMap* map, LgIndex_t face) {
  if (Fails(__func__, map, face)) return 0;
  const Face* const found = FaceAt(MeshOf(map, __func__), face);
  return found == nullptr ? 0 : found->left;
}

LgIndex_t QelUtilDataFaceMapGetRightElem(const QelFaceMap* map, LgIndex_t face) {
  if (Fails(__func__, map, face)) return 0;
  const Face* const found = FaceAt(MeshOf(map, __func__), face);
  return found == nullptr ? 0 : found->right;
}

LgIndex_t QelUtilDataFaceMapGetNFaceNodes(const QelFaceMap* map, LgIndex_t face) {
  if (Fails(__func__, map, face)) return 0;
  const Face* const found = FaceAt(MeshOf(map, __func__), face);
  return found == nullptr ? 0 : static_cast<LgIndex_t>(found->nodes.size());
}

LgIndex_t QelUtilDataFaceMapGetFaceNode(const QelFaceMap* map, LgIndex_t face, LgIndex_t n) {
  if (Fails(__func__, map, face, n)) return 0;
  const Face* const found = FaceAt(MeshOf(map, __func__), face);
  return found == nullptr ? 0 : NumberAt(found->nodes, n);
}
