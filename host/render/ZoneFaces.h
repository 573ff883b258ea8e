// Which faces of a zone's cells are seen when some cells are hidden. Made once a zone; a change of
// what is hidden costs about what changes of the faces.
#pragma once

#include <memory>

#include "FaceList.h"
#include "ValueBlanking.h"
#include "Zone.h"

namespace qelhost {

class ZoneFaces {
 public:
  virtual ~ZoneFaces() = default;

  /// The faces that bound the cells that are not hidden, by nodes of the zone; of flat cells and
  /// lines the cells themselves. hidden may be null.
  virtual FaceList Shown(const ItemBits* hidden) const = 0;
  /// What is kept beside the zone's own connectivity.
  virtual std::size_t Bytes() const = 0;
};

/// For the zone as it is; the zone must outlive it, and a change of its connectivity ends its use.
std::unique_ptr<ZoneFaces> MakeZoneFaces(Zone& zone);

/// The makers for each kind of zone.
std::unique_ptr<ZoneFaces> MakeFlatFaces(Zone& zone);
std::unique_ptr<ZoneFaces> MakeOrderedFaces(Zone& zone);
std::unique_ptr<ZoneFaces> MakeElementFaces(Zone& zone);
std::unique_ptr<ZoneFaces> MakePolyhedronFaces(Zone& zone);

}  // namespace qelhost
