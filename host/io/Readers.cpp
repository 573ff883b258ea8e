#include "Readers.h"

#include <vtkGenericDataObjectReader.h>
#include <vtkNew.h>
#include <vtkOBJReader.h>
#include <vtkSTLReader.h>

#include "FileError.h"
#include "Formats.h"
#include "InputFile.h"
#include "LegacyCheck.h"
#include "ObjCheck.h"
#include "ReadWatch.h"
#include "ReaderParts.h"
#include "xml/ByteFile.h"

namespace qelhost {

namespace {

void RunLegacyReader(const std::string& path, FileSource& source) {
  vtkNew<vtkGenericDataObjectReader> reader;
  reader->SetFileName(path.c_str());
  reader->ReadAllScalarsOn();
  reader->ReadAllVectorsOn();
  reader->ReadAllNormalsOn();
  reader->ReadAllTensorsOn();
  reader->ReadAllColorScalarsOn();
  reader->ReadAllTCoordsOn();
  reader->ReadAllFieldsOn();
  VtkErrorCapture errors;
  UpdateWatched(reader);
  RequireNoError(path, errors);
  vtkDataObject* output = reader->GetOutputDataObject(0);
  if (output == nullptr || reader->GetErrorCode() != 0) {
    throw FileError(path, "damaged or unreadable");
  }
  source.steps.resize(1);
  source.steps[0].root = NodeOf(output, ScanLegacyFile(path));
  source.steps[0].root.name = StemOf(path);
  CheckMeshes(path, source.steps[0].root);
}

void RunObjReader(const std::string& path, FileSource& source) {
  vtkNew<vtkOBJReader> reader;
  VtkErrorCapture errors;
  reader->SetFileName(path.c_str());
  UpdateWatched(reader);
  RequireNoError(path, errors);
  if (reader->GetOutput()->GetNumberOfCells() == 0) {
    throw FileError(path, "not a Wavefront surface");
  }
  TakeBlock(source, reader->GetOutput(), {});
  CheckMeshes(path, source.steps[0].root);
}

}  // namespace

void ReadLegacy(const std::string& path, FileSource& source) {
  RequireFile(path);
  const ByteFile file(path);
  if (CheckLegacyFile(file)) {
    RunLegacyReader(path, source);
  } else {
    ReadAfterTrial(path, FileBytes, RunLegacyReader, source);
  }
  // What the reader took may not be what was looked at.
  file.RequireUnchanged();
}

void ReadStl(const std::string& path, FileSource& source) {
  RequireFile(path);
  vtkNew<vtkSTLReader> reader;
  VtkErrorCapture errors;
  reader->SetFileName(path.c_str());
  UpdateWatched(reader);
  RequireNoError(path, errors);
  if (reader->GetOutput()->GetNumberOfCells() == 0) throw FileError(path, "not an STL surface");
  TakeBlock(source, reader->GetOutput(), {});
  CheckMeshes(path, source.steps[0].root);
}

void ReadObj(const std::string& path, FileSource& source) {
  RequireFile(path);
  if (CheckObjFile(path)) return RunObjReader(path, source);
  ReadAfterTrial(path, FileBytes, RunObjReader, source);
}

}  // namespace qelhost
