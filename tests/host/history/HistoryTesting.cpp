#include "HistoryTesting.h"

#include <vtkBitArray.h>
#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkUnstructuredGrid.h>

namespace historytest {

namespace {

vtkSmartPointer<vtkUnstructuredGrid> MakeLine(int count) {
  vtkNew<vtkPoints> points;
  for (int i = 0; i < count; ++i) points->InsertNextPoint(i, 0, 0);
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(points);
  for (vtkIdType i = 0; i + 1 < count; ++i) {
    const vtkIdType nodes[] = {i, i + 1};
    grid->InsertNextCell(VTK_LINE, 2, nodes);
  }
  return grid;
}

std::string BytesOf(vtkDataArray* array) {
  std::string bytes;
  if (array->GetDataType() == VTK_BIT || !array->HasStandardMemoryLayout()) {
    for (vtkIdType i = 0; i < array->GetNumberOfTuples(); ++i) {
      for (int n = 0; n < array->GetNumberOfComponents(); ++n) {
        const double value = array->GetComponent(i, n);
        bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
      }
    }
    return bytes;
  }
  const auto* const first = static_cast<const char*>(array->GetVoidPointer(0));
  return {first, static_cast<std::size_t>(array->GetNumberOfValues() * array->GetDataTypeSize())};
}

}  // namespace

DataSetPtr MakeLines(const std::vector<std::vector<vtkSmartPointer<vtkDataArray>>>& arraysOfZones,
                     int count) {
  std::vector<BlockEntry> blocks;
  for (const auto& arrays : arraysOfZones) {
    const auto grid = MakeLine(count);
    for (const auto& array : arrays) grid->GetPointData()->AddArray(array);
    blocks.push_back({"zone " + std::to_string(blocks.size() + 1), grid});
  }
  return std::make_shared<DataSet>("test", blocks, nullptr);
}

vtkSmartPointer<vtkDataArray> MakeArray(int vtkType, const char* name, int count, int components) {
  auto array = vtkSmartPointer<vtkDataArray>::Take(vtkDataArray::CreateDataArray(vtkType));
  array->SetName(name);
  array->SetNumberOfComponents(components);
  array->SetNumberOfTuples(count);
  for (vtkIdType i = 0; i < count; ++i) {
    for (int n = 0; n < components; ++n) {
      array->SetComponent(i, n, vtkType == VTK_BIT ? (i / 3) % 2 : (7 * i + n) % 100);
    }
  }
  return array;
}

std::vector<std::string> BytesOf(DataSet& data) {
  std::vector<std::string> bytes;
  for (LgIndex_t zone = 1; zone <= data.ZoneCount(); ++zone) {
    for (const Field& field : data.FindZone(zone)->fields) {
      if (field.storage != nullptr) bytes.push_back(BytesOf(field.storage->array));
    }
  }
  return bytes;
}

void Alter(History& history, const DataSetPtr& data, LgIndex_t zone, const std::string& variable,
           const Write& write) {
  const LgIndex_t number = data->VariableNumber(variable);
  QelFieldData* const field = data->Writable(zone, number);
  if (field == nullptr) throw std::runtime_error(variable + " cannot be written");
  history.BeforeWriting(data, zone, number);
  write(*field);
}

Write Put(LgIndex_t offset, double value) {
  return [offset, value](QelFieldData& field) { field.set(&field, offset, value); };
}

Write PutAll(double value) {
  return [value](QelFieldData& field) {
    for (LgIndex_t i = 0; i < field.count; ++i) field.set(&field, i, value);
  };
}

}  // namespace historytest
