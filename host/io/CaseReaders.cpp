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
#include <fstream>
#include <set>

#include "FileError.h"
#include "Formats.h"
#include "InputFile.h"
#include "ReadWatch.h"
#include "ReaderParts.h"
#include "Readers.h"

namespace qelhost {
namespace {

constexpr std::int64_t kUncounted = std::int64_t{1} << 50;

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

void RunExodusReader(const std::string& path, FileSource& source) {
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

void RunCgnsReader(const std::string& path, FileSource& source) {
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

void RunEnSightReader(const std::string& path, FileSource& source) {
  const StandardErrorSilence silence;
  vtkNew<vtkGenericEnSightReader> reader;
  if (reader->CanReadFile(path.c_str()) == 0) throw FileError(path, "not an EnSight case");
  reader->SetCaseFileName(path.c_str());
  reader->ReadAllVariablesOn();
  TakeSteps(path, reader, source);
}

void RunOpenFoamReader(const std::string& path, FileSource& source) {
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

/// Of the regular files in a folder, and in those within it if wanted. More than can be counted
/// where there are very many.
std::int64_t FolderBytes(const std::filesystem::path& folder, bool isDeep) {
  constexpr int kMostEntries = 100000;
  std::error_code error;
  std::int64_t bytes = 0;
  int left = kMostEntries;
  const auto options = std::filesystem::directory_options::follow_directory_symlink |
                       std::filesystem::directory_options::skip_permission_denied;
  std::filesystem::recursive_directory_iterator entry(folder, options, error);
  for (; !error && entry != end(entry); entry.increment(error)) {
    if (--left == 0) return kUncounted;
    if (!isDeep) entry.disable_recursion_pending();
    bytes += FileBytes(entry->path().string());
  }
  return bytes;
}

/// Of all that lies where the case's words lead to.
std::int64_t EnSightBytes(const std::string& path) {
  constexpr int kMostFolders = 1000;
  const std::filesystem::path own = std::filesystem::path(path).parent_path();
  std::set<std::filesystem::path> folders = {own.empty() ? "." : own};
  std::ifstream in(path);
  for (std::string word; in >> word && folders.size() < kMostFolders;) {
    if (word.find('/') != std::string::npos) folders.insert((own / word).parent_path());
  }
  std::int64_t bytes = 0;
  for (const auto& folder : folders) {
    bytes = std::min(bytes + FolderBytes(folder, false), kUncounted);
  }
  return bytes;
}

std::int64_t OpenFoamBytes(const std::string& path) {
  const std::filesystem::path own = std::filesystem::path(path).parent_path();
  return FolderBytes(own.empty() ? "." : own, true);
}

}  // namespace

void ReadExodus(const std::string& path, FileSource& source) {
  ReadAfterTrial(path, FileBytes, RunExodusReader, source);
}

void ReadCgns(const std::string& path, FileSource& source) {
  ReadAfterTrial(path, FileBytes, RunCgnsReader, source);
}

void ReadEnSight(const std::string& path, FileSource& source) {
  ReadAfterTrial(path, EnSightBytes, RunEnSightReader, source);
}

void ReadOpenFoam(const std::string& path, FileSource& source) {
  ReadAfterTrial(path, OpenFoamBytes, RunOpenFoamReader, source);
}

}  // namespace qelhost
