// Formats whose readers give blocks and time steps.
#include <vtkCGNSReader.h>
#include <vtkDataObjectTree.h>
#include <vtkExodusIIReader.h>
#include <vtkGenericEnSightReader.h>
#include <vtkInformation.h>
#include <vtkNew.h>
#include <vtkOpenFOAMReader.h>
#include <vtkStreamingDemandDrivenPipeline.h>

#include <algorithm>
#include <filesystem>

#include "FileError.h"
#include "Formats.h"
#include "InputFile.h"
#include "ReadWatch.h"
#include "ReaderParts.h"
#include "Readers.h"

namespace qelhost {
namespace {

/// The output as it is now; the next time step leaves it alone.
vtkSmartPointer<vtkDataObject> Detached(vtkDataObject* output) {
  auto copy = vtkSmartPointer<vtkDataObject>::Take(output->NewInstance());
  auto* tree = vtkDataObjectTree::SafeDownCast(copy);
  if (tree != nullptr) {
    tree->RecursiveShallowCopy(output);
  } else {
    copy->ShallowCopy(output);
  }
  return copy;
}

void TakeSteps(const std::string& path, vtkAlgorithm* reader, FileSource& source) {
  VtkErrorCapture errors;
  reader->UpdateInformation();
  RequireNoError(path, errors);
  vtkInformation* info = reader->GetOutputInformation(0);
  std::vector<double> times;
  if (info->Has(vtkStreamingDemandDrivenPipeline::TIME_STEPS())) {
    const double* first = info->Get(vtkStreamingDemandDrivenPipeline::TIME_STEPS());
    times.assign(first, first + info->Length(vtkStreamingDemandDrivenPipeline::TIME_STEPS()));
  }
  source.hasTimes = !times.empty();
  const std::size_t stepCount = std::max<std::size_t>(times.size(), 1);
  for (std::size_t i = 0; i < stepCount; ++i) {
    const auto n = static_cast<std::int64_t>(i);
    const ReadPart part(n, n + 1, static_cast<std::int64_t>(stepCount));
    RunWatched(reader, [&] {
      if (times.empty()) {
        reader->Update();
      } else {
        reader->UpdateTimeStep(times[i]);
      }
    });
    RequireNoError(path, errors);
    vtkDataObject* output = reader->GetOutputDataObject(0);
    if (output == nullptr) throw FileError(path, "damaged or unreadable");
    FileStep step;
    step.time = times.empty() ? 0 : times[i];
    step.root = NodeOf(Detached(output), {});
    step.root.name = StemOf(path);
    CheckMeshes(path, step.root);
    source.steps.push_back(std::move(step));
  }
}

}  // namespace

void ReadExodus(const std::string& path, FileSource& source) {
  RequireFile(path);
  const StandardErrorSilence silence;
  vtkNew<vtkExodusIIReader> reader;
  if (reader->CanReadFile(path.c_str()) == 0) throw FileError(path, "not an Exodus file");
  VtkErrorCapture errors;
  reader->SetFileName(path.c_str());
  // The coordinates as the file has them, not as moved by a variable called displacement.
  reader->SetApplyDisplacements(0);
  reader->UpdateInformation();
  RequireNoError(path, errors);
  for (const auto kind :
       {vtkExodusIIReader::NODAL, vtkExodusIIReader::ELEM_BLOCK, vtkExodusIIReader::FACE_BLOCK,
        vtkExodusIIReader::EDGE_BLOCK, vtkExodusIIReader::GLOBAL}) {
    reader->SetAllArrayStatus(kind, 1);
  }
  TakeSteps(path, reader, source);
}

void ReadCgns(const std::string& path, FileSource& source) {
  RequireFile(path);
  const StandardErrorSilence silence;
  vtkNew<vtkCGNSReader> reader;
  if (reader->CanReadFile(path.c_str()) == 0) throw FileError(path, "not a CGNS file");
  VtkErrorCapture errors;
  reader->SetFileName(path.c_str());
  reader->UpdateInformation();
  RequireNoError(path, errors);
  reader->EnableAllBases();
  reader->EnableAllPointArrays();
  reader->EnableAllCellArrays();
  TakeSteps(path, reader, source);
}

void ReadEnSight(const std::string& path, FileSource& source) {
  RequireFile(path);
  const StandardErrorSilence silence;
  vtkNew<vtkGenericEnSightReader> reader;
  if (reader->CanReadFile(path.c_str()) == 0) throw FileError(path, "not an EnSight case");
  reader->SetCaseFileName(path.c_str());
  reader->ReadAllVariablesOn();
  TakeSteps(path, reader, source);
}

void ReadOpenFoam(const std::string& path, FileSource& source) {
  RequireFile(path);
  const auto folder = std::filesystem::path(path).parent_path();
  if (!std::filesystem::exists(folder / "system" / "controlDict")) {
    throw FileError(path, "no OpenFOAM case stands beside it (system/controlDict)");
  }
  vtkNew<vtkOpenFOAMReader> reader;
  reader->SetFileName(path.c_str());
  reader->SetDecomposePolyhedra(0);
  VtkErrorCapture errors;
  reader->UpdateInformation();
  RequireNoError(path, errors);
  reader->EnableAllPatchArrays();
  reader->EnableAllCellArrays();
  reader->EnableAllPointArrays();
  TakeSteps(path, reader, source);
}

}  // namespace qelhost
