#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPointSet.h>
#include <vtkPoints.h>
#include <vtkStructuredGrid.h>
#include <vtkTypeInt64Array.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <limits>
#include <set>

#include "DataSet.h"

namespace qelhost {
namespace {

void NoteDirectWritesOf(const Field& field) {
  if (field.storage == nullptr || field.storage->directWrites == DirectWrites::None) return;
  ++field.storage->tally.writes;
  ++field.storage->tally.changed;
}

int VtkCellTypeOf(QelZoneType_e type) {
  switch (type) {
    case ZoneType_FELineSeg:
      return VTK_LINE;
    case ZoneType_FETriangle:
      return VTK_TRIANGLE;
    case ZoneType_FEQuad:
      return VTK_QUAD;
    case ZoneType_FETetra:
      return VTK_TETRA;
    default:
      return VTK_HEXAHEDRON;
  }
}

vtkSmartPointer<vtkPoints> ZeroPoints(std::int64_t count, int vtkType) {
  auto points = vtkSmartPointer<vtkPoints>::New();
  points->SetDataType(vtkType);
  points->SetNumberOfPoints(count);
  points->GetData()->Fill(0);
  return points;
}

vtkSmartPointer<vtkPointSet> MakeElements(QelZoneType_e type, std::int64_t elements) {
  const int corners = NodesPerElement(type);
  vtkNew<vtkTypeInt64Array> offsets, nodes;
  offsets->SetNumberOfValues(elements + 1);
  for (std::int64_t i = 0; i <= elements; ++i) offsets->SetValue(i, i * corners);
  nodes->SetNumberOfValues(elements * corners);
  nodes->Fill(0);
  vtkNew<vtkCellArray> cells;
  cells->SetData(offsets, nodes);
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetCells(VtkCellTypeOf(type), cells);
  return grid;
}

/// Null when the sizes make no zone.
vtkSmartPointer<vtkPointSet> MakeBlock(LgIndex_t iMax, LgIndex_t jMax, LgIndex_t kMax,
                                       QelZoneType_e type, int coordinateType) {
  if (type == ZoneType_Ordered) {
    if (iMax < 1 || jMax < 1 || kMax < 1) return nullptr;
    const std::int64_t plane = std::int64_t{iMax} * jMax;
    constexpr std::int64_t kMost = std::numeric_limits<LgIndex_t>::max();
    if (plane > kMost || plane * kMax > kMost) return nullptr;
    auto grid = vtkSmartPointer<vtkStructuredGrid>::New();
    grid->SetDimensions(iMax, jMax, kMax);
    grid->SetPoints(ZeroPoints(plane * kMax, coordinateType));
    return grid;
  }
  if (NodesPerElement(type) == 0 || iMax < 1 || jMax < 1) return nullptr;
  vtkSmartPointer<vtkPointSet> grid = MakeElements(type, jMax);
  grid->SetPoints(ZeroPoints(iMax, coordinateType));
  return grid;
}

QelFieldData* Loaded(const Field& field) {
  LoadValues(*field.view);
  return field.view.get();
}

}  // namespace

QelFieldData* DataSet::Readable(LgIndex_t zoneNum, LgIndex_t varNum) {
  Field* field = FindField(zoneNum, varNum);
  if (field == nullptr) return nullptr;
  if (!field->IsPassive()) return Loaded(*field);
  if (field->location == ValueLocation_Nodal) return ReadableAtNodes(zoneNum, varNum);
  if (field->atCells == nullptr) field->atCells = MakeZeroView(FindZone(zoneNum)->CellCount());
  return field->atCells.get();
}

QelFieldData* DataSet::ReadableAtNodes(LgIndex_t zoneNum, LgIndex_t varNum) {
  Field* field = FindField(zoneNum, varNum);
  if (field == nullptr) return nullptr;
  if (!field->IsPassive() && field->location == ValueLocation_Nodal) return Loaded(*field);
  if (field->atNodes == nullptr) {
    Zone* zone = FindZone(zoneNum);
    field->atNodes = field->IsPassive()
                         ? MakeZeroView(zone->NodeCount())
                         : MakeAveragedView(*Loaded(*field), *zone, zone->NodeCount());
  }
  return field->atNodes.get();
}

QelFieldData* DataSet::Writable(LgIndex_t zoneNum, LgIndex_t varNum) {
  Field* field = FindField(zoneNum, varNum);
  if (field == nullptr || field->IsPassive()) return nullptr;
  QelFieldData* const view = Loaded(*field);
  return view->set == nullptr ? nullptr : view;
}

bool DataSet::AttachNewArray(Zone& zone, LgIndex_t varNum, QelFieldDataType_e type) {
  const Variable& variable = m_variables[varNum - 1];
  Field& field = zone.fields[varNum - 1];
  const int vtkType = VtkTypeOfField(type);
  if (vtkType == 0 || variable.coordinateAxis >= 0) return false;
  auto array = vtkSmartPointer<vtkDataArray>::Take(vtkDataArray::CreateDataArray(vtkType));
  // A component that is stored alone goes by its own name: the vector's would promise the rest.
  vtkDataSetAttributes* attributes = AttributesAt(zone.Block(), field.location);
  const bool ownName =
      variable.componentCount > 1 || attributes->HasArray(variable.arrayName.c_str()) != 0;
  array->SetName(ownName ? variable.name.c_str() : variable.arrayName.c_str());
  if (attributes->HasArray(array->GetName()) != 0) return false;
  array->SetNumberOfTuples(field.location == ValueLocation_Nodal
                               ? zone.Block()->GetNumberOfPoints()
                               : zone.Block()->GetNumberOfCells());
  array->Fill(0);
  attributes->AddArray(array);
  zone.Bind(field, StorageOf(array, 0));
  return true;
}

bool DataSet::AllocateValues(LgIndex_t zoneNum, LgIndex_t varNum) {
  Field* field = FindField(zoneNum, varNum);
  if (field == nullptr) return false;
  if (!field->IsPassive()) return true;
  QelFieldDataType_e type = FieldDataType_Invalid;
  const std::vector<QelFieldDataType_e>& declared = m_declaredTypes[varNum - 1];
  if (static_cast<std::size_t>(zoneNum) <= declared.size()) type = declared[zoneNum - 1];
  for (std::size_t i = 0; i < m_zones.size() && type == FieldDataType_Invalid; ++i) {
    const Field& other = m_zones[i]->fields[varNum - 1];
    if (!other.IsPassive()) type = other.view->type;
  }
  if (type == FieldDataType_Invalid) type = FieldDataType_Float;
  return AttachNewArray(*FindZone(zoneNum), varNum, type);
}

LgIndex_t DataSet::ShareCount(LgIndex_t zoneNum, LgIndex_t varNum) const {
  const Field* field = FindField(zoneNum, varNum);
  if (field == nullptr || field->IsPassive()) return 0;
  if (field->storage == nullptr) return 1;
  LgIndex_t count = 0;
  for (const auto& zone : m_zones) {
    if (zone->fields[varNum - 1].storage == field->storage) ++count;
  }
  return count;
}

bool DataSet::BranchShared(LgIndex_t zoneNum, LgIndex_t varNum) {
  Field* field = FindField(zoneNum, varNum);
  if (field == nullptr || field->IsPassive()) return false;
  if (ShareCount(zoneNum, varNum) <= 1) return true;
  Zone* zone = FindZone(zoneNum);
  Loaded(*field);
  const vtkSmartPointer<vtkDataArray> old = field->storage->array;
  auto own = vtkSmartPointer<vtkDataArray>::Take(old->NewInstance());
  own->DeepCopy(old);
  if (m_variables[varNum - 1].coordinateAxis >= 0) {
    vtkNew<vtkPoints> points;
    points->SetData(own);
    vtkPointSet::SafeDownCast(zone->Block())->SetPoints(points);
  } else {
    // An array of the same name takes the old one's place and its part as active attribute.
    AttributesAt(zone->Block(), field->location)->AddArray(own);
  }
  for (Field& other : zone->fields) {
    if (other.storage != nullptr && other.storage->array == old) {
      zone->Bind(other, StorageOf(own, other.storage->component));
    }
  }
  return true;
}

LgIndex_t DataSet::AddVariable(const std::string& name, const std::vector<NewField>& perZone,
                               bool deferred) {
  std::string own = name;
  std::replace(own.begin(), own.end(), '"', '\'');
  if (own.empty() || VariableNumber(own) != 0) return 0;
  if (!perZone.empty() && perZone.size() != m_zones.size()) return 0;
  for (const NewField& field : perZone) {
    if (VtkTypeOfField(field.type) == 0) return 0;
  }
  Variable variable;
  variable.name = own;
  variable.arrayName = own;
  m_variables.push_back(variable);
  const LgIndex_t varNum = VariableCount();
  m_locationOfVariable[varNum] = perZone.empty() ? ValueLocation_Nodal : perZone.front().location;
  m_declaredTypes.emplace_back();
  for (std::size_t i = 0; i < m_zones.size(); ++i) {
    const NewField wanted = perZone.empty() ? NewField{} : perZone[i];
    m_declaredTypes.back().push_back(wanted.type);
    m_zones[i]->fields.emplace_back();
    m_zones[i]->fields.back().location = wanted.location;
  }
  if (!deferred) {
    for (LgIndex_t zoneNum = 1; zoneNum <= ZoneCount(); ++zoneNum) AllocateValues(zoneNum, varNum);
  }
  return varNum;
}

LgIndex_t DataSet::AddZone(const std::string& name, LgIndex_t iMax, LgIndex_t jMax, LgIndex_t kMax,
                           QelZoneType_e type, const QelFieldDataType_e* varTypes) {
  int coordinateType = VTK_FLOAT;
  for (LgIndex_t i = 0; i < 3; ++i) {
    if (varTypes == nullptr || varTypes[i] == FieldDataType_Double) coordinateType = VTK_DOUBLE;
  }
  const vtkSmartPointer<vtkPointSet> block = MakeBlock(iMax, jMax, kMax, type, coordinateType);
  if (block == nullptr || name.empty()) return 0;
  auto zone = std::make_unique<Zone>(name, block, false);
  zone->fields.resize(m_variables.size());
  for (LgIndex_t varNum = 1; varNum <= VariableCount(); ++varNum) {
    Field& field = zone->fields[varNum - 1];
    field.location = m_locationOfVariable[varNum];
    std::vector<QelFieldDataType_e>& declared = m_declaredTypes[varNum - 1];
    declared.resize(m_zones.size(), FieldDataType_Invalid);
    declared.push_back(varTypes == nullptr ? FieldDataType_Invalid : varTypes[varNum - 1]);
    const int axis = m_variables[varNum - 1].coordinateAxis;
    if (axis >= 0) zone->Bind(field, StorageOf(block->GetPoints()->GetData(), axis));
  }
  m_zones.push_back(std::move(zone));
  return ZoneCount();
}

bool DataSet::DeleteZones(const std::vector<LgIndex_t>& zoneNums) {
  std::set<LgIndex_t, std::greater<>> doomed(zoneNums.begin(), zoneNums.end());
  for (const LgIndex_t zoneNum : doomed) {
    const Zone* zone = FindZone(zoneNum);
    if (zone == nullptr || zone->IsFromFile()) return false;
  }
  for (const LgIndex_t zoneNum : doomed) {
    m_zones.erase(m_zones.begin() + (zoneNum - 1));
    for (auto& declared : m_declaredTypes) {
      if (static_cast<std::size_t>(zoneNum) <= declared.size()) {
        declared.erase(declared.begin() + (zoneNum - 1));
      }
    }
  }
  return true;
}

Range DataSet::ZoneRange(LgIndex_t zoneNum, LgIndex_t varNum) {
  Field* field = FindField(zoneNum, varNum);
  if (field == nullptr || field->IsPassive()) return {};
  const std::int64_t stamp = field->storage == nullptr ? 0 : field->storage->tally.writes;
  if (field->rangeStamp != stamp) {
    field->range = ScanRange(*Loaded(*field));
    field->rangeStamp = stamp;
  }
  return field->range;
}

Range DataSet::VariableRange(LgIndex_t varNum) {
  Range all;
  for (LgIndex_t zoneNum = 1; zoneNum <= ZoneCount(); ++zoneNum) {
    const Range one = ZoneRange(zoneNum, varNum);
    if (!one.hasValues) continue;
    all.min = all.hasValues ? std::min(all.min, one.min) : one.min;
    all.max = all.hasValues ? std::max(all.max, one.max) : one.max;
    all.hasValues = true;
  }
  return all;
}

WriteTally DataSet::ZoneWrites(LgIndex_t zoneNum, LgIndex_t varNum) const {
  const Field* field = FindField(zoneNum, varNum);
  return field == nullptr || field->storage == nullptr ? WriteTally{} : field->storage->tally;
}

void DataSet::NoteDirectWrites() {
  for (const auto& zone : m_zones) {
    for (const Field& field : zone->fields) NoteDirectWritesOf(field);
  }
}

void DataSet::NoteDirectWrites(LgIndex_t zoneNum, LgIndex_t varNum) {
  if (const Field* const field = FindField(zoneNum, varNum)) NoteDirectWritesOf(*field);
}

std::set<vtkDataArray*> DataSet::TouchedArrays() const {
  std::set<vtkDataArray*> touched;
  for (const auto& zone : m_zones) {
    for (const Field& field : zone->fields) {
      if (field.storage != nullptr && field.storage->IsTouched()) {
        touched.insert(field.storage->array);
      }
    }
  }
  return touched;
}

WriteTally DataSet::Writes(LgIndex_t varNum) const {
  WriteTally sum;
  std::set<const Storage*> seen;
  for (const auto& zone : m_zones) {
    for (std::size_t i = 0; i < zone->fields.size(); ++i) {
      const Storage* storage = zone->fields[i].storage.get();
      if (varNum != 0 && static_cast<LgIndex_t>(i) + 1 != varNum) continue;
      if (storage == nullptr || !seen.insert(storage).second) continue;
      sum.writes += storage->tally.writes;
      sum.changed += storage->tally.changed;
    }
  }
  return sum;
}

}  // namespace qelhost
