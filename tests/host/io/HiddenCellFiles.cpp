#include "HiddenCellFiles.h"

#include "HiddenCellMeshes.h"

#include <vtkFieldData.h>
#include <vtkGenericDataObjectReader.h>
#include <vtkGenericDataObjectWriter.h>
#include <vtkIdList.h>
#include <vtkXMLDataSetWriter.h>
#include <vtkXMLGenericDataObjectReader.h>
#include <vtkXMLMultiBlockDataWriter.h>

#include <cstring>
#include <stdexcept>

namespace hiddencells {

namespace fs = std::filesystem;

qelhost::WriteOptions With(Treatment treatment) { return {true, {treatment, kHiding}}; }

namespace {

template <class Writer>
void WriteWith(vtkDataObject* mesh, const std::string& path) {
  vtkNew<Writer> writer;
  writer->SetFileName(path.c_str());
  writer->SetInputDataObject(mesh);
  ASSERT_EQ(writer->Write(), 1);
}

template <class Reader>
vtkSmartPointer<vtkDataObject> LoadWith(const std::string& path) {
  vtkNew<Reader> reader;
  reader->SetFileName(path.c_str());
  reader->Update();
  return reader->GetOutput();
}

}  // namespace

void SaveMesh(vtkDataObject* mesh, const std::string& path) {
  if (fs::path(path).extension() == ".vtk") {
    vtkNew<vtkGenericDataObjectWriter> writer;
    writer->SetFileName(path.c_str());
    writer->SetInputData(mesh);
    writer->SetFileTypeToBinary();
    ASSERT_EQ(writer->Write(), 1);
  } else if (mesh->IsA("vtkMultiBlockDataSet") != 0) {
    WriteWith<vtkXMLMultiBlockDataWriter>(mesh, path);
  } else {
    WriteWith<vtkXMLDataSetWriter>(mesh, path);
  }
}

vtkSmartPointer<vtkDataSet> Load(const std::string& path) {
  if (!fs::exists(path)) throw std::runtime_error(path + " is missing");
  const vtkSmartPointer<vtkDataObject> mesh = fs::path(path).extension() == ".vtk"
                                                  ? LoadWith<vtkGenericDataObjectReader>(path)
                                                  : LoadWith<vtkXMLGenericDataObjectReader>(path);
  vtkSmartPointer<vtkDataSet> block = vtkDataSet::SafeDownCast(mesh);
  if (block == nullptr) throw std::runtime_error(path + " holds no mesh");
  return block;
}

std::string BytesOf(vtkAbstractArray* array, vtkIdType tuple) {
  if (array->GetDataType() == VTK_STRING) return array->GetVariantValue(tuple).ToString();
  const int components = array->GetNumberOfComponents();
  const auto size = static_cast<std::size_t>(components * array->GetDataTypeSize());
  std::string bytes(size, '\0');
  std::memcpy(bytes.data(), array->GetVoidPointer(tuple * components), size);
  return bytes;
}

std::string AllOf(vtkDataSet* block) {
  std::string all = block->GetClassName();
  for (vtkFieldData* const data :
       {static_cast<vtkFieldData*>(block->GetPointData()),
        static_cast<vtkFieldData*>(block->GetCellData()), block->GetFieldData()}) {
    for (int n = 0; n < data->GetNumberOfArrays(); ++n) {
      vtkAbstractArray* const array = data->GetAbstractArray(n);
      all += std::string("\n") + array->GetName() + ' ' + array->GetDataTypeAsString() + ' ';
      for (vtkIdType i = 0; i < array->GetNumberOfTuples(); ++i) all += BytesOf(array, i);
    }
  }
  all += "\npoints ";
  for (vtkIdType point = 0; point < block->GetNumberOfPoints(); ++point) {
    all.append(reinterpret_cast<const char*>(block->GetPoint(point)), 3 * sizeof(double));
  }
  vtkNew<vtkIdList> ids;
  for (vtkIdType cell = 0; cell < block->GetNumberOfCells(); ++cell) {
    block->GetCellPoints(cell, ids);
    all += "\ncell " + std::to_string(block->GetCellType(cell));
    for (const vtkIdType point : *ids) all += ' ' + std::to_string(point);
  }
  return all;
}

vtkSmartPointer<vtkDataSet> Marked(vtkDataSet* block) {
  auto marked = vtkSmartPointer<vtkDataSet>::Take(block->NewInstance());
  marked->DeepCopy(block);
  vtkCellData* const data = marked->GetCellData();
  const char* const name = vtkDataSetAttributes::GhostArrayName();
  if (data->GetArray(name) == nullptr) {
    vtkNew<vtkUnsignedCharArray> none;
    none->SetName(name);
    none->SetNumberOfTuples(block->GetNumberOfCells());
    none->Fill(0);
    data->AddArray(none);
  }
  auto* const ghosts = vtkUnsignedCharArray::SafeDownCast(data->GetArray(name));
  for (vtkIdType cell = 0; cell < block->GetNumberOfCells(); ++cell) {
    if (IsHidden(block, cell)) ghosts->SetValue(cell, ghosts->GetValue(cell) | 32);
  }
  return marked;
}

}  // namespace hiddencells
