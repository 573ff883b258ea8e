// bench_vtk_read_write IN OUT: what any program must do to edit a file - read it whole, write it in
// the same encoding - and nothing else.
#include <vtkNew.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLUnstructuredGridReader.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <cstdio>

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: bench_vtk_read_write IN OUT\n");
    return 2;
  }
  vtkNew<vtkXMLUnstructuredGridReader> reader;
  reader->SetFileName(argv[1]);
  reader->Update();
  if (reader->GetOutput()->GetNumberOfCells() == 0) return 1;

  vtkNew<vtkXMLUnstructuredGridWriter> writer;
  writer->SetFileName(argv[2]);
  writer->SetInputData(reader->GetOutput());
  writer->SetDataModeToAppended();
  writer->EncodeAppendedDataOff();
  writer->SetCompressorTypeToNone();
  return writer->Write() == 1 ? 0 : 1;
}
