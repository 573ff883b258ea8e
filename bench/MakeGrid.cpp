// Writes a cube of n x n x n bricks to a .vtu file, or a plane of n x n cells to a .vti file.
#include "Encoding.h"
#include "Grid.h"

#include <vtkFloatArray.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkXMLImageDataWriter.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

/// One unit wide, with float p at nodes.
vtkSmartPointer<vtkImageData> MakePlane(int n) {
  auto plane = vtkSmartPointer<vtkImageData>::New();
  plane->SetDimensions(n + 1, n + 1, 1);
  plane->SetSpacing(1.0 / n, 1.0 / n, 1.0);
  vtkNew<vtkFloatArray> values;
  values->SetName("p");
  values->SetNumberOfValues(plane->GetNumberOfPoints());
  for (vtkIdType node = 0; node < plane->GetNumberOfPoints(); ++node) {
    const double x = static_cast<double>(node % (n + 1)) / n;
    const double y = static_cast<double>(node / (n + 1)) / n;
    values->SetValue(node, static_cast<float>(std::sin(9.0 * x) * std::cos(7.0 * y)));
  }
  plane->GetPointData()->AddArray(values);
  return plane;
}

bool Write(vtkXMLWriter* writer, vtkDataObject* data, const char* encoding, const char* file) {
  if (!marquell::bench::SetEncoding(writer, encoding)) return false;
  writer->SetInputDataObject(data);
  writer->SetFileName(file);
  return writer->Write() == 1;
}

}  // namespace

int main(int argc, char* argv[]) {
  constexpr int kLargestEdge = 4000;
  const int n = argc == 4 ? std::atoi(argv[1]) : 0;
  if (n < 1 || n > kLargestEdge) {
    std::fprintf(stderr, "usage: bench_make_grid CELLS-ON-AN-EDGE raw|zlib OUT.vtu|OUT.vti\n");
    return 2;
  }
  const std::string file = argv[3];
  const bool isPlane = file.size() > 4 && file.compare(file.size() - 4, 4, ".vti") == 0;
  vtkNew<vtkXMLImageDataWriter> planes;
  vtkNew<vtkXMLUnstructuredGridWriter> cubes;
  const bool isWritten = isPlane ? Write(planes, MakePlane(n), argv[2], argv[3])
                                 : Write(cubes, marquell::bench::MakeGrid(n), argv[2], argv[3]);
  return isWritten ? 0 : 3;
}
