// Connectivity. The contract counts from 1, the maps from 0.
#include "ApiGuard.h"
#include "ApiHandles.h"

#include "qelvane/QelUtil.h"

using namespace qelhost;

namespace {

bool IsKnown(const void* map) { return TheHandles().references.Has(map); }

bool IsNumber(LgIndex_t n, std::int64_t count) { return n >= 1 && n <= count; }

/// The same in one comparison: what is below 1 becomes large.
bool IsNumberUpTo(LgIndex_t n, LgIndex_t count) {
  return static_cast<std::uint32_t>(n) - 1U < static_cast<std::uint32_t>(count);
}

/// Hands out what a member function of the zone answers. The contract has no const handles.
template <class Map>
Map* HandOutMap(const char* function, LgIndex_t zone, Map* (*mapOf)(Zone&)) {
  return Guarded<Map*>(function, nullptr, [&](Host& host) -> Map* {
    Zone* const found = ActiveZone(host, zone);
    if (found == nullptr) return nullptr;
    return TheHandles().references.HandOutMap(ActiveData(host), found, mapOf(*found));
  });
}

}  // namespace

QelNodeMap* QelUtilDataNodeGetReadableRef(LgIndex_t zone) {
  return HandOutMap<QelNodeMap>(__func__, zone, [](Zone& z) { return z.NodeMap(); });
}

QelNodeMap* QelUtilDataNodeGetWritableRef(LgIndex_t zone) {
  return HandOutMap<QelNodeMap>(__func__, zone, [](Zone& z) { return z.WritableNodeMap(); });
}

namespace {

LgIndex_t NodeOfKnownMap(const QelNodeMap* map, LgIndex_t element, LgIndex_t corner) {
  return static_cast<LgIndex_t>(map->Node(element - 1, corner - 1) + 1);
}

LgIndex_t SearchMapAndNode(const QelNodeMap* map, LgIndex_t element, LgIndex_t corner) {
  if (!IsKnown(map) || !IsNumber(element, map->elementCount) ||
      !IsNumber(corner, map->nodesPerElement)) {
    return 0;
  }
  return NodeOfKnownMap(map, element, corner);
}

}  // namespace

// Asked for every corner of every cell: what is asked for most is answered without another call,
// the rest by functions that take this one's place. Nothing in it can throw, so nothing is guarded.
LgIndex_t QelUtilDataNodeGetByRef(const QelNodeMap* map, LgIndex_t element, LgIndex_t corner) {
  if (!TheHandles().references.IsLatest(map)) return SearchMapAndNode(map, element, corner);
  if (!IsNumberUpTo(element, map->elementCount) || !IsNumberUpTo(corner, map->nodesPerElement)) {
    return 0;
  }
  if (!map->plain) return NodeOfKnownMap(map, element, corner);
  const std::int64_t slot = (std::int64_t{element} - 1) * map->nodesPerElement + corner - 1;
  const std::int64_t node = map->wide ? static_cast<const std::int64_t*>(map->nodes)[slot]
                                      : static_cast<const std::int32_t*>(map->nodes)[slot];
  return static_cast<LgIndex_t>(node + 1);
}

void QelUtilDataNodeSetByRef(QelNodeMap* map, LgIndex_t element, LgIndex_t corner, LgIndex_t node) {
  GuardedVoid(__func__, [&](Host&) {
    if (!IsKnown(map) || !IsNumber(corner, map->nodesPerElement)) return;
    if (!map->SetNode(std::int64_t{element} - 1, corner - 1, std::int64_t{node} - 1)) return;
    Zone* const zone = TheHandles().references.ForgetDerivedMaps(map);
    if (zone != nullptr) zone->DropDerivedMaps();
  });
}

QelNodeToElemMap* QelUtilDataNodeToElemMapGetReadableRef(LgIndex_t zone) {
  return HandOutMap<QelNodeToElemMap>(
      __func__, zone, [](Zone& z) { return const_cast<QelNodeToElemMap*>(z.NodeToElem()); });
}

LgIndex_t QelUtilDataNodeToElemMapGetNumElems(const QelNodeToElemMap* map, LgIndex_t node) {
  return Guarded<LgIndex_t>(__func__, 0, [&](Host&) -> LgIndex_t {
    if (!IsKnown(map) || !IsNumber(node, map->NodeCount())) return 0;
    return static_cast<LgIndex_t>(map->Count(node - 1));
  });
}

LgIndex_t QelUtilDataNodeToElemMapGetElem(const QelNodeToElemMap* map, LgIndex_t node,
                                          LgIndex_t n) {
  return Guarded<LgIndex_t>(__func__, 0, [&](Host&) -> LgIndex_t {
    if (!IsKnown(map) || !IsNumber(node, map->NodeCount()) || !IsNumber(n, map->Count(node - 1))) {
      return 0;
    }
    return map->Element(node - 1, n - 1) + 1;
  });
}

QelFaceNeighbors* QelUtilDataFaceNbrGetReadableRef(LgIndex_t zone) {
  return HandOutMap<QelFaceNeighbors>(
      __func__, zone, [](Zone& z) { return const_cast<QelFaceNeighbors*>(z.FaceNeighbors()); });
}

LgIndex_t QelUtilDataFaceNbrGetNumNByRef(const QelFaceNeighbors* nbr, LgIndex_t element,
                                         LgIndex_t face) {
  return Guarded<LgIndex_t>(__func__, 0, [&](Host&) -> LgIndex_t {
    if (!IsKnown(nbr) || !IsNumber(element, nbr->nodes->elementCount) || face < 1) return 0;
    return nbr->Count(element - 1, face - 1);
  });
}

QelElemToFaceMap* QelUtilDataElemGetReadableRef(LgIndex_t zone) {
  return HandOutMap<QelElemToFaceMap>(
      __func__, zone, [](Zone& z) { return const_cast<QelElemToFaceMap*>(z.ElemToFace()); });
}

LgIndex_t QelUtilDataElemGetNumFaces(const QelElemToFaceMap* map, LgIndex_t element) {
  return Guarded<LgIndex_t>(__func__, 0, [&](Host&) -> LgIndex_t {
    if (!IsKnown(map) || !IsNumber(element, map->ElementCount())) return 0;
    return map->FaceCount(element - 1);
  });
}

LgIndex_t QelUtilDataElemGetFace(const QelElemToFaceMap* map, LgIndex_t element, LgIndex_t n) {
  return Guarded<LgIndex_t>(__func__, 0, [&](Host&) -> LgIndex_t {
    if (!IsKnown(map) || !IsNumber(element, map->ElementCount()) ||
        !IsNumber(n, map->FaceCount(element - 1))) {
      return 0;
    }
    return map->Face(element - 1, n - 1) + 1;
  });
}

QelFaceMap* QelUtilDataFaceMapGetReadableRef(LgIndex_t zone) {
  return HandOutMap<QelFaceMap>(__func__, zone,
                                [](Zone& z) { return const_cast<QelFaceMap*>(z.FaceMap()); });
}

LgIndex_t QelUtilDataFaceMapGetLeftElem(const QelFaceMap* map, LgIndex_t face) {
  return Guarded<LgIndex_t>(__func__, 0, [&](Host&) -> LgIndex_t {
    if (!IsKnown(map) || !IsNumber(face, map->FaceCount())) return 0;
    return map->left[static_cast<std::size_t>(face - 1)] + 1;
  });
}

LgIndex_t QelUtilDataFaceMapGetRightElem(const QelFaceMap* map, LgIndex_t face) {
  return Guarded<LgIndex_t>(__func__, 0, [&](Host&) -> LgIndex_t {
    if (!IsKnown(map) || !IsNumber(face, map->FaceCount())) return 0;
    return map->right[static_cast<std::size_t>(face - 1)] + 1;
  });
}

LgIndex_t QelUtilDataFaceMapGetNFaceNodes(const QelFaceMap* map, LgIndex_t face) {
  return Guarded<LgIndex_t>(__func__, 0, [&](Host&) -> LgIndex_t {
    return IsKnown(map) && IsNumber(face, map->FaceCount()) ? map->NodeCount(face - 1) : 0;
  });
}

LgIndex_t QelUtilDataFaceMapGetFaceNode(const QelFaceMap* map, LgIndex_t face, LgIndex_t n) {
  return Guarded<LgIndex_t>(__func__, 0, [&](Host&) -> LgIndex_t {
    if (!IsKnown(map) || !IsNumber(face, map->FaceCount()) ||
        !IsNumber(n, map->NodeCount(face - 1))) {
      return 0;
    }
    return map->Node(face - 1, n - 1) + 1;
  });
}
