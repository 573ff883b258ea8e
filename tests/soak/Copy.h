#pragma once

#include "qelvane/Types.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace soak {

struct FaceCopy {
  std::vector<LgIndex_t> nodes;
  LgIndex_t left = 0;
  LgIndex_t right = 0;
};

/// A zone without its values. Nodes and elements count from 1.
struct ZoneCopy {
  std::string name;
  QelZoneType_e type = ZoneType_Ordered;
  std::array<LgIndex_t, 3> ijk{1, 1, 1};  ///< as the host answers
  std::vector<LgIndex_t> nodes;           ///< types 1 to 5: of one element after the other
  std::vector<FaceCopy> faces;            ///< types 6 and 7
};

/// A variable in a zone.
struct FieldCopy {
  QelFieldDataType_e type = FieldDataType_Invalid;
  QelValueLocation_e location = ValueLocation_Nodal;
  bool isPassive = false;
  LgIndex_t sharedWith = 0;  ///< a zone before this one; 0: the values are its own
  std::vector<double> values;
};

/// All that the active frame of a host shows.
struct Copy {
  QelPlotType_e plotType = PlotType_None;
  std::array<double, 3> viewOrigin{};
  std::vector<ZoneCopy> zones;
  std::vector<std::string> variables;
  std::vector<std::vector<FieldCopy>> fields;  ///< by zone, then variable
};

/// What a host is like after a line.
struct Outcome {
  bool isDone = false;
  std::string error;
  std::vector<std::string> zones;
  std::vector<std::string> variables;
  std::vector<std::vector<FieldCopy>> fields;  ///< of zones that came with the data
  std::vector<std::vector<bool>> hiddenCells;  ///< the same; empty while nothing is blanked
  std::vector<std::vector<bool>> hiddenNodes;
  /// Those that came with the data and apply at the solution time. Which do is for each host to
  /// say: the one goes by the other.
  std::vector<LgIndex_t> relevantZones;
  std::string misuse;  ///< of the interface by the add-on, where a host sees it
};

/// The first difference, or nothing. NaN equals NaN.
std::string DifferenceOf(const Outcome& a, const Outcome& b);

/// Bytes in use: of the heap, and of the process.
struct Memory {
  std::int64_t heap = 0;
  std::int64_t resident = 0;
};
Memory MemoryInUse();

}  // namespace soak
