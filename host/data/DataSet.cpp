#include "DataSet.h"

#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkDataSetAttributes.h>
#include <vtkPointData.h>
#include <vtkPointSet.h>
#include <vtkPoints.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <set>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace qelhost {
namespace {

QelUniqueID_t NextId() {
  static std::atomic<QelUniqueID_t> last{0};
  return ++last;
}

std::string ComponentName(const std::string& array, int component, int componentCount) {
  if (componentCount == 1) return array;
  if (componentCount == 3) return array + "_" + "XYZ"[component];
  return array + "_" + std::to_string(component);
}

std::string WithoutQuotes(std::string name) {
  std::replace(name.begin(), name.end(), '"', '\'');
  return name;
}

/// An array as the whole data set sees it: blocks agree on it when all three are equal.
using ArrayKey = std::tuple<std::string, QelValueLocation_e, int>;

/// The arrays of all blocks in the order of their first appearance.
std::vector<ArrayKey> CollectArrays(const std::vector<std::unique_ptr<Zone>>& zones) {
  std::vector<ArrayKey> ordered;
  std::set<ArrayKey> seen;
  for (const auto& zone : zones) {
    for (const QelValueLocation_e location : {ValueLocation_Nodal, ValueLocation_CellCentered}) {
      vtkDataSetAttributes* attributes = AttributesAt(zone->Block(), location);
      for (int i = 0; i < attributes->GetNumberOfArrays(); ++i) {
        vtkAbstractArray* array = attributes->GetAbstractArray(i);
        if (!IsShownAsVariable(array)) continue;
        ArrayKey key{array->GetName(), location, array->GetNumberOfComponents()};
        if (seen.insert(key).second) ordered.push_back(std::move(key));
      }
    }
  }
  return ordered;
}

/// Arrays of no values at all may have as many components as they like.
void RequireFewEnough(const std::vector<ArrayKey>& arrays, std::size_t zoneCount) {
  constexpr std::size_t kMostVariables = 1 << 19;
  constexpr std::size_t kMostFields = 1 << 24;
  std::size_t count = 3;  // of coordinates
  for (const auto& [name, location, components] : arrays) {
    count += static_cast<std::size_t>(components);
  }
  if (count > kMostVariables) throw DataError("it has more variables than can be kept");
  if (count > kMostFields / zoneCount) {
    throw DataError("it has more zones and variables than can be kept");
  }
}

/// Names of which none is given twice, however many are.
class UniqueNames {
 public:
  std::string Give(const std::string& wanted) {
    std::string name = wanted;
    for (int& n = m_lastNumbers[wanted]; !m_given.insert(name).second;) {
      n = std::max(n + 1, 2);
      name = wanted + " (" + std::to_string(n) + ")";
    }
    return name;
  }

 private:
  std::unordered_set<std::string> m_given;
  std::unordered_map<std::string, int> m_lastNumbers;
};

}  // namespace

bool IsShownAsVariable(vtkAbstractArray* array) {
  if (vtkDataArray::SafeDownCast(array) == nullptr || array->GetNumberOfComponents() < 1) {
    return false;
  }
  const char* name = array->GetName();
  return name != nullptr && *name != '\0' &&
         std::string(name) != vtkDataSetAttributes::GhostArrayName();
}

DataSet::DataSet(std::string title, const std::vector<BlockEntry>& blocks,
                 std::shared_ptr<Source> source)
    : m_id(NextId()), m_title(std::move(title)), m_source(std::move(source)) {
  for (const BlockEntry& entry : blocks) {
    if (entry.block == nullptr || entry.block->GetNumberOfPoints() == 0) continue;
    auto zone = std::make_unique<Zone>(entry.name, entry.block, true);
    zone->strand = entry.strand;
    zone->solutionTime = entry.solutionTime;
    if (entry.pending != nullptr) m_pending.insert(entry.pending->begin(), entry.pending->end());
    m_zones.push_back(std::move(zone));
  }
  if (m_zones.empty()) throw DataError("it holds no mesh");
  AddCoordinateVariables();
  CollectVariables();
  for (const auto& zone : m_zones) BindFileFields(*zone);
}

void DataSet::AddCoordinateVariables() {
  for (int axis = 0; axis < 3; ++axis) {
    Variable variable;
    variable.name = std::string(1, "XYZ"[axis]);
    variable.component = axis;
    variable.componentCount = 3;
    variable.coordinateAxis = axis;
    m_variables.push_back(std::move(variable));
    m_locationOfVariable[VariableCount()] = ValueLocation_Nodal;
  }
}

void DataSet::CollectVariables() {
  const std::vector<ArrayKey> arrays = CollectArrays(m_zones);
  RequireFewEnough(arrays, m_zones.size());
  std::set<std::string> nodalNames;
  for (const auto& [name, location, components] : arrays) {
    if (location == ValueLocation_Nodal) nodalNames.insert(name);
  }
  UniqueNames names;
  for (const Variable& coordinate : m_variables) names.Give(coordinate.name);
  for (const auto& [name, location, components] : arrays) {
    const bool twice = location == ValueLocation_CellCentered && nodalNames.count(name) > 0;
    for (int component = 0; component < components; ++component) {
      Variable variable;
      const std::string own = WithoutQuotes(ComponentName(name, component, components));
      variable.name = names.Give(twice ? own + " (cell)" : own);
      variable.arrayName = name;
      variable.component = component;
      variable.componentCount = components;
      m_variables.push_back(std::move(variable));
      m_locationOfVariable[VariableCount()] = location;
    }
  }
  m_declaredTypes.assign(m_variables.size(), {});
}

std::shared_ptr<Storage> DataSet::StorageOf(vtkDataArray* array, int component) {
  std::weak_ptr<Storage>& known = m_storages[{array, component}];
  std::shared_ptr<Storage> storage = known.lock();
  if (storage == nullptr) {
    storage = std::make_shared<Storage>();
    storage->array = array;
    storage->component = component;
    const auto pending = m_pending.find(array);
    if (pending != m_pending.end()) storage->pending = pending->second;
    known = storage;
  }
  return storage;
}

void DataSet::BindFileFields(Zone& zone) {
  zone.fields.resize(m_variables.size());
  for (LgIndex_t varNum = 1; varNum <= VariableCount(); ++varNum) {
    const Variable& variable = m_variables[varNum - 1];
    Field& field = zone.fields[varNum - 1];
    field.location = m_locationOfVariable[varNum];
    if (variable.coordinateAxis >= 0) {
      if (zone.ComputedCoordinatesKind() != nullptr) {
        zone.BindComputedCoordinate(field, variable.coordinateAxis);
      } else {
        vtkDataArray* points = vtkPointSet::SafeDownCast(zone.Block())->GetPoints()->GetData();
        zone.Bind(field, StorageOf(points, variable.coordinateAxis));
      }
      continue;
    }
    vtkDataArray* array =
        AttributesAt(zone.Block(), field.location)->GetArray(variable.arrayName.c_str());
    if (array == nullptr || array->GetNumberOfComponents() != variable.componentCount) continue;
    RequireLength(zone, variable, field, array);
    zone.Bind(field, StorageOf(array, variable.component));
  }
}

void DataSet::RequireLength(const Zone& zone, const Variable& variable, const Field& field,
                            vtkDataArray* array) const {
  const std::int64_t items = field.location == ValueLocation_Nodal
                                 ? zone.Block()->GetNumberOfPoints()
                                 : zone.Block()->GetNumberOfCells();
  const auto pending = m_pending.find(array);
  const std::int64_t tuples =
      pending == m_pending.end() ? array->GetNumberOfTuples() : pending->second->TupleCount();
  if (tuples == items) return;
  throw DataError("array \"" + variable.arrayName + "\" of zone \"" + zone.name + "\" has " +
                  std::to_string(tuples) + " values where " + std::to_string(items) + " belong");
}

Zone* DataSet::FindZone(LgIndex_t zoneNum) const {
  return zoneNum >= 1 && zoneNum <= ZoneCount() ? m_zones[zoneNum - 1].get() : nullptr;
}

const Variable* DataSet::FindVariable(LgIndex_t varNum) const {
  return varNum >= 1 && varNum <= VariableCount() ? &m_variables[varNum - 1] : nullptr;
}

LgIndex_t DataSet::VariableNumber(const std::string& name) const {
  for (LgIndex_t varNum = 1; varNum <= VariableCount(); ++varNum) {
    if (m_variables[varNum - 1].name == name) return varNum;
  }
  return 0;
}

LgIndex_t DataSet::CoordinateVariable(char axis) const {
  const int wanted = std::toupper(static_cast<unsigned char>(axis)) - 'X';
  return wanted >= 0 && wanted <= 2 ? wanted + 1 : 0;
}

Field* DataSet::FindField(LgIndex_t zoneNum, LgIndex_t varNum) const {
  Zone* zone = FindZone(zoneNum);
  return zone != nullptr && FindVariable(varNum) != nullptr ? &zone->fields[varNum - 1] : nullptr;
}

bool DataSet::RenameZone(LgIndex_t zoneNum, const std::string& name) {
  Zone* zone = FindZone(zoneNum);
  if (zone == nullptr || name.empty()) return false;
  zone->name = name;
  return true;
}

std::vector<double> DataSet::SolutionTimes() const {
  std::set<double> times;
  for (const auto& zone : m_zones) {
    if (zone->strand > 0) times.insert(zone->solutionTime);
  }
  return {times.begin(), times.end()};
}

}  // namespace qelhost
