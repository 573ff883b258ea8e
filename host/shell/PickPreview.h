#pragma once

#include "ValueBlanking.h"

#include "qelvane/Types.h"

#include <cstdint>
#include <string>
#include <vector>

namespace qelhost {

class Host;

/// What applying the pick in hand would change in one zone: a bit for each of its cells or nodes.
struct PickedInZone {
  LgIndex_t zone = 0;
  QelValueLocation_e location = ValueLocation_CellCentered;
  ItemBits items;
  std::int64_t count = 0;  ///< of the bits that are set; never 0
};

/// The same for the active frame.
struct PickPreview {
  bool isReady = false;  ///< there is something to apply, even if it would change no value
  std::vector<PickedInZone> zones;
  std::int64_t cellCount = 0;
  std::int64_t nodeCount = 0;
};

/// Asks the add-ons, for every active zone from a file that applies at the frame's time. They take
/// the lock themselves: while somebody holds it nothing is asked, and nothing is ready.
PickPreview AskForPick(Host& host);

/// "1 284 cells in 3 zones", "1 node in 1 zone"; empty when nothing is ready.
std::string Describe(const PickPreview& preview);

}  // namespace qelhost
