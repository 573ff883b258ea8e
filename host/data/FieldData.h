// The values of one variable in one zone, seen where VTK keeps them.
//
// Offsets count from 0. Nothing here checks an offset: the interface does that at its door.
#pragma once

#include <vtkDataArray.h>
#include <vtkSmartPointer.h>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "PendingArray.h"
#include "qelvane/Types.h"

namespace qelhost {

/// How often the values of a storage were written and how many of them really became different.
/// A NaN written over a NaN is no change.
struct WriteTally {
  std::int64_t writes = 0;
  std::int64_t changed = 0;
};

/// Who may have written values where they lie, uncounted. The tally moves on when they say so.
enum class DirectWrites { None, Possible };

/// One component of one VTK array. Zones that share an array share its storages, and with them the
/// tally, so a value counts once however many zones show it.
struct Storage {
  vtkSmartPointer<vtkDataArray> array;
  int component = 0;
  WriteTally tally;
  DirectWrites directWrites = DirectWrites::None;
  std::shared_ptr<PendingArray> pending;  ///< null: the array has its values from the start

  bool HasValues() const { return pending == nullptr || pending->IsLoaded(); }
  bool IsTouched() const { return tally.writes > 0 || directWrites == DirectWrites::Possible; }
};

/// The node coordinates of an image or a rectilinear grid along one axis.
struct ComputedCoordinates {
  std::array<std::int64_t, 3> dimensions{1, 1, 1};
  /// An image: value = row . (i, j, k, 1), with the extent's start added to the indices.
  std::array<double, 4> row{0, 0, 0, 0};
  std::array<std::int64_t, 3> start{0, 0, 0};
  /// A rectilinear grid: the coordinates along `axis`; null for an image.
  vtkSmartPointer<vtkDataArray> ticks;
  int axis = 0;
};

/// Cells around nodes, for the mean of a cell-centred variable at a node.
class NodeAverageSource {
 public:
  virtual ~NodeAverageSource() = default;
  /// The mean of `cells` over the cells around the node; 0 where there is none.
  virtual double Average(const QelFieldData& cells, std::int64_t node) = 0;
};

}  // namespace qelhost

/// A view, never a copy. `set` is null where the values cannot be written; both accessors are while
/// the array is still to be read.
struct QelFieldData {
  QelFieldGet_pf get = nullptr;
  QelFieldSet_pf set = nullptr;
  LgIndex_t count = 0;
  QelFieldDataType_e type = FieldDataType_Invalid;  ///< Invalid: a stored type without a code
  int vtkType = 0;                                  ///< VTK_FLOAT and so on; 0 for computed values
  int valueSize = 0;        ///< bytes of one stored value; 0 when there is no raw memory to show
  char* first = nullptr;    ///< the first value; null when there is no raw memory to show
  std::int64_t stride = 0;  ///< values (not bytes) from one tuple to the next
  /// Item n of the field is tuple tupleOfItem[n] of the array, counted from `first`; null: item n
  /// is tuple n.
  const std::int64_t* tupleOfItem = nullptr;
  std::int64_t firstTuple = 0;          ///< of the array; 0 with a map
  qelhost::Storage* storage = nullptr;  ///< null for computed values
  bool isOpenForWriting = false;        ///< a writable reference to it was handed out
  std::shared_ptr<qelhost::Storage> owner;
  std::shared_ptr<const qelhost::ComputedCoordinates> coordinates;
  const QelFieldData* averaged = nullptr;  ///< the cell-centred view behind a node average
  qelhost::NodeAverageSource* average = nullptr;
};

namespace qelhost {

using FieldView = std::unique_ptr<QelFieldData>;

/// The values firstTuple, firstTuple + 1, ... of a storage; count of them.
FieldView MakeDirectView(std::shared_ptr<Storage> storage, std::int64_t firstTuple,
                         LgIndex_t count);
/// The values at the tuples listed; the list must outlive the view.
FieldView MakeMappedView(std::shared_ptr<Storage> storage, const std::vector<std::int64_t>& tuples);
FieldView MakeComputedView(std::shared_ptr<const ComputedCoordinates> coordinates, LgIndex_t count);
/// The cell-centred view seen at nodes, computed at each read, so never stale.
FieldView MakeAveragedView(const QelFieldData& cells, NodeAverageSource& source,
                           LgIndex_t nodeCount);
/// A passive variable: reads as 0.
FieldView MakeZeroView(LgIndex_t count);

/// Reads the array behind the view, if that was not done yet, and sets the accessors. The view
/// stays where it is. Throws ValuesError.
void LoadValues(QelFieldData& view);

/// Whether the stored values lie in memory as one aligned run through `first`, `stride` values
/// apart, without a map.
bool IsStridedRun(const QelFieldData& ref);

/// Copies count values of the stored type to the field, from offset on; false when the field cannot
/// be written so. Counts like single writes.
bool CopyStoredValues(QelFieldData& ref, std::int64_t offset, std::int64_t count,
                      const void* source);

/// Smallest and largest value, NaN left out.
struct Range {
  double min = 0;
  double max = 0;
  bool hasValues = false;  ///< false: no value that is a number; min and max are 0
};
Range ScanRange(const QelFieldData& ref);

/// The code of a VTK scalar type; Invalid for types without one. And back: 0 for Invalid.
QelFieldDataType_e FieldTypeOfVtk(int vtkType);
int VtkTypeOfField(QelFieldDataType_e type);
/// "float", "double", "int8", ... "uint64"; "bit"; "computed" for 0.
const char* StoredTypeName(int vtkType);

}  // namespace qelhost
