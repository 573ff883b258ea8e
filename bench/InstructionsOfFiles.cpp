// Reads a small .vtu file, alters one of its arrays and writes it again, for a tool that counts
// instructions: see scripts/instructions.sh. Only what MeasuredWork calls is to be counted.
//
// usage: bench_instructions_files ENCODING FOLDER   does that in the folder; raw or zlib
#include "Encoding.h"
#include "Grid.h"
#include "MeasuredWork.h"

#include "DataSet.h"
#include "DataSetFiles.h"
#include "FieldData.h"

#include <vtkNew.h>
#include <vtkSMPTools.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>

namespace {

void WriteCube(const std::string& path, const std::string& encoding) {
  constexpr vtkIdType kEdge = 24;
  vtkNew<vtkXMLUnstructuredGridWriter> writer;
  if (!marquell::bench::SetEncoding(writer, encoding)) {
    throw std::runtime_error("no encoding is called " + encoding);
  }
  writer->SetInputData(marquell::bench::MakeGrid(kEdge));
  writer->SetFileName(path.c_str());
  if (writer->Write() != 1) throw std::runtime_error("cannot write " + path);
}

void Edit(const std::string& from, const std::string& to) {
  const qelhost::DataSetPtr data = qelhost::ReadDataSet(from);
  const LgIndex_t variable = data->VariableNumber("k");
  QelFieldData* const values = data->Writable(1, variable);
  if (values == nullptr || values->set == nullptr) {
    throw std::runtime_error("k cannot be written");
  }
  constexpr LgIndex_t kAltered = 1000;
  for (LgIndex_t item = 0; item < kAltered; ++item) values->set(values, item, 1.5);
  qelhost::WriteDataSet(*data, to);
}

}  // namespace

int main(int argc, char* argv[]) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: bench_instructions_files raw|zlib FOLDER\n");
    return 2;
  }
  try {
    vtkSMPTools::Initialize(1);
    const std::string cube = std::string(argv[2]) + "/cube.vtu";
    const std::string edited = std::string(argv[2]) + "/edited.vtu";
    WriteCube(cube, argv[1]);
    Edit(cube, edited);  // what is made once is there from now on
    MeasuredWork([&] { Edit(cube, edited); });
    return 0;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "bench_instructions_files: %s\n", e.what());
    return 1;
  }
}
