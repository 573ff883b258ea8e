// Writes a cube of n x n x n bricks to a file.
#include "Encoding.h"
#include "Grid.h"

#include <vtkNew.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <cstdio>
#include <cstdlib>

int main(int argc, char* argv[]) {
  constexpr int kLargestEdge = 1000;
  const int n = argc == 4 ? std::atoi(argv[1]) : 0;
  vtkNew<vtkXMLUnstructuredGridWriter> writer;
  if (n < 1 || n > kLargestEdge || !marquell::bench::SetEncoding(writer, argv[2])) {
    std::fprintf(stderr, "usage: bench_make_grid CELLS-ON-AN-EDGE raw|zlib OUT.vtu\n");
    return 2;
  }
  writer->SetInputData(marquell::bench::MakeGrid(n));
  writer->SetFileName(argv[3]);
  return writer->Write() == 1 ? 0 : 3;
}
