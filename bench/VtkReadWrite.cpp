// Reads a .vtu file and writes it again in the encoding given: what any edit costs at least that
// goes through VTK's reader and writer.
#include "Encoding.h"

#include <vtkErrorCode.h>
#include <vtkNew.h>
#include <vtkXMLUnstructuredGridReader.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <cstdio>

int main(int argc, char* argv[]) {
  vtkNew<vtkXMLUnstructuredGridWriter> writer;
  if (argc != 4 || !marquell::bench::SetEncoding(writer, argv[1])) {
    std::fprintf(stderr, "usage: bench_vtk_read_write raw|zlib IN.vtu OUT.vtu\n");
    return 2;
  }
  vtkNew<vtkXMLUnstructuredGridReader> reader;
  reader->SetFileName(argv[2]);
  reader->Update();
  if (reader->GetErrorCode() != vtkErrorCode::NoError) return 3;
  writer->SetInputConnection(reader->GetOutputPort());
  writer->SetFileName(argv[3]);
  return writer->Write() == 1 ? 0 : 3;
}
