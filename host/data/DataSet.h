// A data set: zones, variables and the values where they meet. Zone and variable numbers count
// from 1 (zoneNum, varNum); a number out of range is refused with null or false.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Zone.h"
#include "qelvane/Types.h"

#include <vtkAbstractArray.h>

namespace qelhost {

/// Data that cannot be shown as zones; the text says why, in one line.
class DataError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What stands for the values of a file's arrays until they are needed.
using PendingArrays = std::map<vtkAbstractArray*, std::shared_ptr<PendingArray>>;

/// One block that becomes a zone.
struct BlockEntry {
  std::string name;
  vtkSmartPointer<vtkDataSet> block;
  LgIndex_t strand = 0;
  double solutionTime = 0;
  std::shared_ptr<const PendingArrays> pending{};  ///< of the block's arrays; null: none
};

/// Where a data set came from, kept for the room that reads and writes files.
class Source {
 public:
  virtual ~Source() = default;
};

struct Variable {
  std::string name;       ///< unique in the data set
  std::string arrayName;  ///< the VTK array behind it; "" for coordinates
  int component = 0;
  int componentCount = 1;
  int coordinateAxis = -1;  ///< 0 to 2: X, Y, Z
};

/// What AddVariable gives a variable in one zone.
struct NewField {
  QelFieldDataType_e type = FieldDataType_Float;
  QelValueLocation_e location = ValueLocation_Nodal;
};

class DataSet {
 public:
  /// Throws DataError. Blocks without points are left out (they stay in the source).
  DataSet(std::string title, const std::vector<BlockEntry>& blocks, std::shared_ptr<Source> source);
  DataSet(const DataSet&) = delete;
  DataSet& operator=(const DataSet&) = delete;

  QelUniqueID_t Id() const { return m_id; }
  const std::string& Title() const { return m_title; }
  const std::shared_ptr<Source>& GetSource() const { return m_source; }

  LgIndex_t ZoneCount() const { return static_cast<LgIndex_t>(m_zones.size()); }
  LgIndex_t VariableCount() const { return static_cast<LgIndex_t>(m_variables.size()); }
  Zone* FindZone(LgIndex_t zoneNum) const;
  const Variable* FindVariable(LgIndex_t varNum) const;
  /// Case counts; 0 when none.
  LgIndex_t VariableNumber(const std::string& name) const;
  /// Variable of the axis 'X', 'Y', 'Z' (either case); 0 when none.
  LgIndex_t CoordinateVariable(char axis) const;
  Field* FindField(LgIndex_t zoneNum, LgIndex_t varNum) const;

  /// Values at nodes: the variable's own, the node average, or zeros where it is passive.
  QelFieldData* ReadableAtNodes(LgIndex_t zoneNum, LgIndex_t varNum);
  /// Values where the variable lives; zeros where it is passive.
  QelFieldData* Readable(LgIndex_t zoneNum, LgIndex_t varNum);
  /// Null when passive or computed.
  QelFieldData* Writable(LgIndex_t zoneNum, LgIndex_t varNum);

  /// Makes a passive variable active, all 0, in its declared type; true when it already is.
  bool AllocateValues(LgIndex_t zoneNum, LgIndex_t varNum);
  /// Zones that use the same storage, this one included; 1 for computed values, 0 for passive.
  LgIndex_t ShareCount(LgIndex_t zoneNum, LgIndex_t varNum) const;
  /// Gives the zone an array of its own (all components of it); true when it has one already.
  bool BranchShared(LgIndex_t zoneNum, LgIndex_t varNum);

  /// Adds a variable, one entry a zone (empty: float at nodes everywhere). Deferred: passive until
  /// AllocateValues; else all 0. Returns its number, 0 when the name is taken or empty or the list
  /// has another length.
  LgIndex_t AddVariable(const std::string& name, const std::vector<NewField>& perZone,
                        bool deferred);
  /// Appends a zone of the size given, as QelUtilDataSetAddZone has it; types 0 to 5. `varTypes`
  /// is null or has an entry a variable. Returns its number, 0 when refused.
  LgIndex_t AddZone(const std::string& name, LgIndex_t iMax, LgIndex_t jMax, LgIndex_t kMax,
                    QelZoneType_e type, const QelFieldDataType_e* varTypes);
  /// Deletes all of these zones or, when one came from a file or does not exist, none.
  bool DeleteZones(const std::vector<LgIndex_t>& zoneNums);
  /// Refused for an empty name.
  bool RenameZone(LgIndex_t zoneNum, const std::string& name);

  /// The arrays, coordinates included, whose values may be others than those read.
  std::set<vtkDataArray*> TouchedArrays() const;

  /// Over one zone, and over all; cached until a value is written.
  Range ZoneRange(LgIndex_t zoneNum, LgIndex_t varNum);
  Range VariableRange(LgIndex_t varNum);

  /// Writes in all storages of the variable (every variable when 0) since the data set was made;
  /// the difference of two answers says what happened between them.
  WriteTally Writes(LgIndex_t varNum = 0) const;
  /// The same for one zone's storage.
  WriteTally ZoneWrites(LgIndex_t zoneNum, LgIndex_t varNum) const;
  /// Somebody says that values were altered: those that may have been written where they lie count
  /// as changed, so that nothing computed from them is taken for current.
  void NoteDirectWrites();
  /// The same of one variable in one zone; nothing where there is none.
  void NoteDirectWrites(LgIndex_t zoneNum, LgIndex_t varNum);

  /// Distinct solution times of the zones with a strand, ascending.
  std::vector<double> SolutionTimes() const;

 private:
  void AddCoordinateVariables();
  void CollectVariables();
  void BindFileFields(Zone& zone);
  void RequireLength(const Zone& zone, const Variable& variable, const Field& field,
                     vtkDataArray* array) const;
  std::shared_ptr<Storage> StorageOf(vtkDataArray* array, int component);
  bool AttachNewArray(Zone& zone, LgIndex_t varNum, QelFieldDataType_e type);

  QelUniqueID_t m_id;
  std::string m_title;
  std::shared_ptr<Source> m_source;
  std::vector<std::unique_ptr<Zone>> m_zones;
  std::vector<Variable> m_variables;
  std::vector<std::vector<QelFieldDataType_e>> m_declaredTypes;  ///< by variable, then zone
  std::map<std::pair<vtkDataArray*, int>, std::weak_ptr<Storage>> m_storages;
  PendingArrays m_pending;
  std::map<LgIndex_t, QelValueLocation_e> m_locationOfVariable;
};

using DataSetPtr = std::shared_ptr<DataSet>;

/// False for an array that is carried through instead of shown: strings, ghost marks, no name.
bool IsShownAsVariable(vtkAbstractArray* array);

}  // namespace qelhost
