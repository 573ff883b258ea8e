#pragma once

#include "qelvane/Types.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace fakehost {

struct Mesh;
struct Storage;

/// A service that the host may offer beyond the interface.
enum class Service { Bulk, Parallel, Progress, PickQuery, ShapeHandles, History };

/// How the host keeps what it shows. It shows values and nodes where they lie, so this is also how
/// zones and variables are kept that are added while the variant is chosen.
struct SpanVariant {
  bool isInterleaved = false;  ///< one value in three places; what lies between is watched
  bool hasPoints = false;      ///< coordinates of one type lie as x, y, z, x, y, z, ...
  bool isPartial = false;      ///< refuses some fields, and the nodes and bits of zones 2, 4, ...
  bool isWide = false;         ///< node numbers of 8 bytes, not 4
  bool startsAtZero = false;   ///< node numbers count from 0
  bool isBent = false;         ///< keeps its projection to itself
};

/// What the add-on told of an operation in hand.
struct ProgressCall {
  double fraction = -1.0;  ///< of a report; -1 when values were told of
  LgIndex_t zone = 0;
  LgIndex_t var = 0;
  std::int64_t count = 0;
};

/// The shape that the user can drag in the plot, as the add-on told of it.
struct ShapeCall {
  bool isShow = false;  ///< else it was taken away
  QelShape_e kind = Shape_Box;
  std::array<double, 3> anchor{};
  std::array<double, 3> size{};
  std::array<double, 3> rotationDeg{};
};

/// The answer to the question what an apply would write.
struct PickAnswer {
  bool isAnswered = false;
  std::vector<bool> items;  ///< as many as were asked about
};

/// The services that the text names, and their variant: "bulk:interleaved+wide,parallel". Throws
/// std::invalid_argument for a word that it does not know.
std::pair<std::vector<Service>, SpanVariant> ServicesNamed(const std::string& text);

/// The structs behind the ids of the interface.
const void* BulkService();
const void* ParallelService();
const void* ProgressService();
const void* PickQueryService();
const void* ShapeHandlesService();
const void* HistoryService();

/// Where values of the variable are put that the host is to keep.
struct Layout {
  std::int64_t lanes = 1;  ///< places for each value
  std::int64_t lane = 0;   ///< its own, from 0
};
Layout LayoutOf(const SpanVariant& variant, LgIndex_t var);

// What bulk access knows by handle; null, reported, for one that is none of the host's or stale.
struct FieldBehind {
  Storage* storage = nullptr;
  QelUniqueID_t zone = 0;
  LgIndex_t var = 0;
};
FieldBehind FieldOf(const QelFieldData* ref, const char* function);
struct NodesBehind {
  const Mesh* mesh = nullptr;
  QelUniqueID_t zone = 0;
};
NodesBehind NodesOfMap(const QelNodeMap* map, const char* function);

/// Makes what was shown as bits useless, because it may no longer hold.
void SpoilBits();
void ForgetBits();

extern std::atomic<bool> isRangeRunning;
/// Keeps for later that a body of forRange called the function.
void KeepOffence(const char* function);
/// True, and kept for later, when a body of forRange calls; nothing of the host may be touched
/// then.
inline bool IsCalledByBody(const char* function) {
  if (!isRangeRunning.load(std::memory_order_relaxed)) return false;
  KeepOffence(function);
  return true;
}

}  // namespace fakehost
