// Small meshes and folders for the tests of reading and writing.
#pragma once

#include <vtkCellData.h>
#include <vtkDataSet.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkImageData.h>
#include <vtkIntArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkRectilinearGrid.h>
#include <vtkSmartPointer.h>
#include <vtkStringArray.h>
#include <vtkStructuredGrid.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace filetesting {

namespace fs = std::filesystem;

/// A folder of its own for each test, gone afterwards.
class FolderTest : public ::testing::Test {
 protected:
  FolderTest() {
    std::string pattern = (fs::temp_directory_path() / "host_io_XXXXXX").string();
    m_folder = mkdtemp(pattern.data());
  }
  ~FolderTest() override { fs::remove_all(m_folder); }
  std::string In(const std::string& name) const { return (m_folder / name).string(); }
  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(m_folder)) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  fs::path m_folder;
};

inline std::string Contents(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

inline void Save(const std::string& path, const std::string& contents) {
  std::ofstream(path, std::ios::binary) << contents;
}

/// Arrays of several types, with values that no short decimal text holds.
inline void AddArrays(vtkDataSet* block) {
  const auto add = [](vtkDataSetAttributes* data, vtkDataArray* array, const char* name,
                      int components, vtkIdType count) {
    array->SetName(name);
    array->SetNumberOfComponents(components);
    array->SetNumberOfTuples(count);
    for (vtkIdType i = 0; i < count * components; ++i) {
      array->SetComponent(i / components, static_cast<int>(i % components), (i + 1) / 3.0);
    }
    data->AddArray(array);
  };
  vtkNew<vtkDoubleArray> pressure;
  vtkNew<vtkFloatArray> velocity, cellPressure;
  vtkNew<vtkIntArray> id;
  vtkNew<vtkUnsignedCharArray> flag;
  add(block->GetPointData(), pressure, "p", 1, block->GetNumberOfPoints());
  add(block->GetPointData(), velocity, "U", 3, block->GetNumberOfPoints());
  add(block->GetCellData(), cellPressure, "p", 1, block->GetNumberOfCells());
  add(block->GetCellData(), id, "id", 1, block->GetNumberOfCells());
  add(block->GetCellData(), flag, "flag", 1, block->GetNumberOfCells());
  block->GetPointData()->SetActiveScalars("p");
  vtkNew<vtkStringArray> note;
  note->SetName("note");
  note->InsertNextValue("kept as it is");
  block->GetFieldData()->AddArray(note);
}

inline vtkSmartPointer<vtkUnstructuredGrid> TwoBricks() {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  for (int k = 0; k < 2; ++k) {
    for (int j = 0; j < 2; ++j) {
      for (int i = 0; i < 3; ++i) points->InsertNextPoint(i / 3.0, j / 7.0, k);
    }
  }
  grid->SetPoints(points);
  const vtkIdType bricks[2][8] = {{0, 1, 4, 3, 6, 7, 10, 9}, {1, 2, 5, 4, 7, 8, 11, 10}};
  for (const auto& brick : bricks) grid->InsertNextCell(VTK_HEXAHEDRON, 8, brick);
  AddArrays(grid);
  return grid;
}

inline vtkSmartPointer<vtkPolyData> TwoTriangles() {
  auto surface = vtkSmartPointer<vtkPolyData>::New();
  vtkNew<vtkPoints> points;
  points->InsertNextPoint(0, 0, 0);
  points->InsertNextPoint(1, 0, 0);
  points->InsertNextPoint(1, 1, 0);
  points->InsertNextPoint(0, 1, 0);
  surface->SetPoints(points);
  vtkNew<vtkCellArray> polygons;
  const vtkIdType triangles[2][3] = {{0, 1, 2}, {0, 2, 3}};
  for (const auto& triangle : triangles) polygons->InsertNextCell(3, triangle);
  surface->SetPolys(polygons);
  AddArrays(surface);
  return surface;
}

inline vtkSmartPointer<vtkStructuredGrid> CurvedGrid() {
  auto grid = vtkSmartPointer<vtkStructuredGrid>::New();
  vtkNew<vtkPoints> points;
  for (int n = 0; n < 12; ++n) points->InsertNextPoint(n % 3 + 0.1 * n, n / 3 % 2, n / 6);
  grid->SetDimensions(3, 2, 2);
  grid->SetPoints(points);
  AddArrays(grid);
  return grid;
}

inline vtkSmartPointer<vtkRectilinearGrid> UnevenGrid() {
  auto grid = vtkSmartPointer<vtkRectilinearGrid>::New();
  grid->SetDimensions(3, 2, 1);
  vtkNew<vtkDoubleArray> x, y, z;
  for (const double value : {0.0, 1.0 / 3, 2.0}) x->InsertNextValue(value);
  for (const double value : {0.0, 1.0}) y->InsertNextValue(value);
  z->InsertNextValue(0);
  grid->SetXCoordinates(x);
  grid->SetYCoordinates(y);
  grid->SetZCoordinates(z);
  AddArrays(grid);
  return grid;
}

inline vtkSmartPointer<vtkImageData> Image() {
  auto image = vtkSmartPointer<vtkImageData>::New();
  image->SetDimensions(3, 3, 2);
  image->SetSpacing(0.1, 0.2, 0.3);
  image->SetOrigin(1, 2, 3);
  AddArrays(image);
  return image;
}

}  // namespace filetesting
