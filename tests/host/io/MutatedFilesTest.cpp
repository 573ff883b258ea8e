// Files that are damaged in some place are refused in one line, or read as VTK reads them; what is
// written of them reads back as what was read. Each is tried in a process of its own, so that one
// that ends its process, takes too long or too much memory is found as well.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <vtkXMLGenericDataObjectReader.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <new>

#include "DataSetFiles.h"
#include "EncodedMeshes.h"
#include "FileTree.h"
#include "Mutations.h"
#include "VtkErrors.h"
#include "xml/XmlLayout.h"

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

namespace {

using namespace filetesting;
using qelhost::DataSet;
using qelhost::DataSetPtr;
using qelhost::FileError;
using qelhost::FileSource;
using qelhost::ValuesError;

// ---- files to damage ----

vtkSmartPointer<vtkDataSet> SmallBricks() {
  constexpr int kNodes = 6;  // along an edge: arrays of doubles have two blocks
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  vtkNew<vtkPoints> points;
  const auto at = [](int i, int j, int k) -> vtkIdType { return (k * kNodes + j) * kNodes + i; };
  for (int n = 0; n < kNodes * kNodes * kNodes; ++n) {
    points->InsertNextPoint(n % kNodes / 3.0, n / kNodes % kNodes, n / (kNodes * kNodes));
  }
  grid->SetPoints(points);
  for (int k = 0; k + 1 < kNodes; ++k) {
    for (int j = 0; j + 1 < kNodes; ++j) {
      for (int i = 0; i + 1 < kNodes; ++i) {
        const vtkIdType corners[8] = {
            at(i, j, k),     at(i + 1, j, k),     at(i + 1, j + 1, k),     at(i, j + 1, k),
            at(i, j, k + 1), at(i + 1, j, k + 1), at(i + 1, j + 1, k + 1), at(i, j + 1, k + 1)};
        grid->InsertNextCell(VTK_HEXAHEDRON, 8, corners);
      }
    }
  }
  AddArrays(grid);
  return grid;
}

vtkSmartPointer<vtkDataSet> BricksAlone() {
  auto grid = SmallBricks();
  grid->GetFieldData()->Initialize();
  return grid;
}

template <class Mesh, vtkSmartPointer<Mesh> (*Make)()>
vtkSmartPointer<vtkDataSet> As() {
  return Make();
}

/// VTK would name them by where they lie in memory.
vtkSmartPointer<vtkDataSet> UnevenWithNames() {
  auto grid = UnevenGrid();
  grid->GetXCoordinates()->SetName("x");
  grid->GetYCoordinates()->SetName("y");
  grid->GetZCoordinates()->SetName("z");
  return grid;
}

struct Sample {
  const char* name;
  std::size_t kind;  ///< in Kinds()
  vtkSmartPointer<vtkDataSet> (*mesh)();
};

const Sample kSamples[] = {
    {"bricks", 0, BricksAlone},
    {"bricksAndNote", 0, SmallBricks},
    {"surface", 1, As<vtkPolyData, TwoTriangles>},
    {"curved", 2, As<vtkStructuredGrid, CurvedGrid>},
    {"uneven", 3, UnevenWithNames},
    {"image", 4, As<vtkImageData, Image>},
};

class MutatedFiles : public FolderTest {
 protected:
  void MakeSeeds() {
    for (const Sample& sample : kSamples) {
      const Kind& kind = Kinds()[sample.kind];
      const auto mesh = sample.mesh();
      for (const Form& form : Forms()) {
        for (const Encoding& encoding : EncodingsOf(form))
          AddSeed(sample, kind, form, encoding, mesh);
      }
      const Encoding text = {vtkXMLWriter::Ascii, 0, vtkXMLWriter::NONE, vtkXMLWriter::UInt32,
                             vtkXMLWriter::LittleEndian};
      AddSeed(sample, kind, {"Ascii", vtkXMLWriter::Ascii, 0}, text, mesh);
    }
  }

  std::vector<Seed> m_seeds;

 private:
  void AddSeed(const Sample& sample, const Kind& kind, const Form& form, const Encoding& encoding,
               vtkDataSet* mesh) {
    const std::string path = In("seed");
    SaveEncoded(kind, encoding, mesh, path);
    Seed seed;
    seed.name = std::string(sample.name) + form.name + NameOf(encoding);
    seed.extension = std::string(".") + kind.extension;
    seed.bytes = Contents(path);
    if (const auto layout = qelhost::ReadXmlLayout(path)) {
      for (const qelhost::XmlArray& array : layout->arrays) {
        seed.headers.push_back(static_cast<std::size_t>(array.payloadBegin));
      }
    }
    m_seeds.push_back(std::move(seed));
  }
};

// ---- what is tried with each ----

enum Outcome { kRead, kRefused, kMoreThanVtk, kFailed };

/// What both processes see of how far the trials are.
struct Shared {
  unsigned tried = 0;
  bool isVtkAlone = false;  ///< what happens now is no fault of ours
  unsigned outcomes[4] = {};
};

/// Null when VTK finds something wrong.
vtkSmartPointer<vtkDataSet> ReadQuietly(const std::string& path) {
  const qelhost::VtkErrorCapture errors;
  vtkNew<vtkXMLGenericDataObjectReader> reader;
  reader->SetFileName(path.c_str());
  reader->Update();
  vtkSmartPointer<vtkDataSet> block = vtkDataSet::SafeDownCast(reader->GetOutput());
  return errors.HasError() || reader->GetErrorCode() != 0 ? nullptr : block;
}

const qelhost::FileNode& NodeOf(const DataSet& data) {
  return static_cast<const FileSource&>(*data.GetSource()).steps.at(0).root;
}

void LoadEverything(DataSet& data) {
  for (LgIndex_t var = 1; var <= data.VariableCount(); ++var) data.ZoneRange(1, var);
  if (NodeOf(data).xml != nullptr) LoadAll(*NodeOf(data).xml);
}

bool IsOneLine(const std::string& text) {
  return !text.empty() && text.find('\n') == std::string::npos;
}

void AlterSomething(DataSet& data) {
  for (LgIndex_t var = data.VariableCount(); var > 0; --var) {
    QelFieldData* const field = data.Writable(1, var);
    if (field == nullptr || field->set == nullptr || field->count == 0) continue;
    field->set(field, field->count / 2, 3);
    if (var % 2 == 0) return;
  }
}

Outcome Try(const std::string& path, const std::string& target, const std::string& said,
            Shared& shared) {
  DataSetPtr data;
  try {
    data = qelhost::ReadDataSet(path);
    LoadEverything(*data);
  } catch (const FileError& error) {
    EXPECT_TRUE(IsOneLine(error.what())) << error.what();
    return kRefused;
  } catch (const ValuesError& error) {
    EXPECT_TRUE(data != nullptr) << "the file was refused by an error of values: " << error.what();
    EXPECT_TRUE(IsOneLine(error.what())) << error.what();
    return kRefused;
  }
  EXPECT_EQ(fs::file_size(said), 0U) << "something was said on the error stream";
  vtkDataSet* const block = NodeOf(*data).block;
  shared.isVtkAlone = true;
  const auto expected = ReadQuietly(path);
  shared.isVtkAlone = false;
  if (expected != nullptr) ExpectSame(block, expected);
  if (::testing::Test::HasFailure()) return kFailed;

  AlterSomething(*data);
  try {
    WriteDataSet(*data, target);
  } catch (const FileError& error) {
    ADD_FAILURE() << "what was read cannot be written: " << error.what();
    return kFailed;
  }
  shared.isVtkAlone = expected == nullptr;
  const auto written = ReadQuietly(target);
  if (written == nullptr && expected == nullptr) return kMoreThanVtk;
  EXPECT_NE(written, nullptr) << "what was written cannot be read";
  if (written != nullptr) ExpectSame(written, block);
  return expected == nullptr ? kMoreThanVtk : kRead;
}

constexpr long kMostKilobytes = 1 << 20;

/// Of the process that runs the trials.
void TryAll(const std::string& said, unsigned count, const std::function<Outcome(unsigned)>& trial,
            Shared& shared) {
  constexpr unsigned kMostSeconds = 10;
  const int to = open(said.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_APPEND, 0600);
  const int out = open((said + ".out").c_str(), O_RDWR | O_CREAT | O_TRUNC | O_APPEND, 0600);
  dup2(to, STDERR_FILENO);
  dup2(out, STDOUT_FILENO);
  const rlimit space = {rlim_t{4} << 30, rlim_t{4} << 30};
  if (!kIsSanitized) setrlimit(RLIMIT_AS, &space);
  while (shared.tried < count) {
    alarm(kIsSanitized ? 10 * kMostSeconds : kMostSeconds);
    const unsigned n = shared.tried++;
    shared.isVtkAlone = false;
    Outcome outcome = kFailed;
    try {
      outcome = trial(n);
    } catch (const std::exception& error) {
      ADD_FAILURE() << "an error of an unexpected kind: " << error.what();
    }
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    EXPECT_TRUE(kIsSanitized || used.ru_maxrss <= kMostKilobytes) << "it takes too much memory";
    if (::testing::Test::HasFailure()) outcome = kFailed;
    ++shared.outcomes[outcome];
    if (outcome == kFailed) break;
  }
  std::fflush(nullptr);
  _exit(0);
}

/// Runs some trials in a process of their own, up to the first that fails: why, or "".
std::string RunApart(const std::string& said, unsigned count,
                     const std::function<Outcome(unsigned)>& trial, Shared& shared) {
  const unsigned failedBefore = shared.outcomes[kFailed];
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) TryAll(said, count, trial, shared);
  int status = 0;
  waitpid(child, &status, 0);
  const std::string text = Contents(said) + Contents(said + ".out");
  if (shared.outcomes[kFailed] > failedBefore) return text;
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return {};
  ++shared.outcomes[kFailed];
  return "the process ended by " + std::to_string(status) + "\n" + text;
}

unsigned NumberFrom(const char* variable, unsigned otherwise) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? otherwise : static_cast<unsigned>(std::strtoul(text, nullptr, 10));
}

/// MUTATED_FILES and MUTATION_SEED in the environment ask for more of them, or others; those that
/// failed are kept in MUTATED_KEEP.
TEST_F(MutatedFiles, AreRefusedOrReadAsVtkReadsThem) {
  MakeSeeds();
  const unsigned count = NumberFrom("MUTATED_FILES", 2000);
  const unsigned first = NumberFrom("MUTATION_SEED", 1);
  const char* const keep = std::getenv("MUTATED_KEEP");
  void* const memory =
      mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(memory, MAP_FAILED);
  auto& shared = *new (memory) Shared;
  const auto seedOf = [this](Random& random) -> const Seed& {
    return m_seeds[Below(random, m_seeds.size())];
  };
  const auto trial = [&](unsigned n) {
    Random random(first + n);
    const Seed& seed = seedOf(random);
    const std::string path = In("mutated" + seed.extension);
    const std::string target = In("target" + seed.extension);
    Save(path, Mutated(random, seed));
    fs::remove(target);
    return Try(path, target, In("said"), shared);
  };
  std::string failures;  // told at the end: what runs apart begins without one
  unsigned vtkFailed = 0;
  while (shared.tried < count) {
    const std::string why = RunApart(In("said"), count, trial, shared);
    if (why.empty()) continue;
    Random random(first + shared.tried - 1);
    const Seed& seed = seedOf(random);
    const std::string number = std::to_string(first + shared.tried - 1);
    if (shared.isVtkAlone) {
      ++vtkFailed;
      continue;
    }
    failures += "mutation " + number + " of " + seed.name + ": " + why.substr(0, 1500) + "\n";
    if (keep == nullptr) continue;
    Save(std::string(keep) + "/" + number + seed.extension, Mutated(random, seed));
    Save(std::string(keep) + "/" + number + ".txt", seed.name + "\n" + why);
  }
  const unsigned failed = shared.outcomes[kFailed] - vtkFailed;
  std::printf(
      "%u mutated files, %u survived: %u read, %u refused, %u read though VTK does not; VTK alone "
      "failed in %u\n",
      count, count - failed, shared.outcomes[kRead], shared.outcomes[kRefused],
      shared.outcomes[kMoreThanVtk], vtkFailed);
  munmap(memory, sizeof(Shared));
  EXPECT_EQ(failures, "");
}

}  // namespace
