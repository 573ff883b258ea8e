// Files that are damaged in some place are refused in one line, or read as VTK reads them; what is
// written of them reads back as what was read. Each is tried in a process of its own, so that one
// that ends its process, takes too long or too much memory is found as well.
#include <gmock/gmock.h>
#include <vtkXMLGenericDataObjectReader.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <cstdio>

#include "DataSetFiles.h"
#include "EncodedMeshes.h"
#include "FileTree.h"
#include "LatticeCells.h"
#include "Mutations.h"
#include "Trials.h"
#include "VtkErrors.h"
#include "xml/XmlLayout.h"

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
  constexpr latticecells::Lattice kLattice = {kNodes, kNodes, kNodes};
  for (int n = 0; n < kNodes * kNodes * kNodes; ++n) {
    points->InsertNextPoint(n % kNodes / 3.0, n / kNodes % kNodes, n / (kNodes * kNodes));
  }
  grid->SetPoints(points);
  kLattice.ForEachBox(
      [&](int i, int j, int k) { latticecells::InsertBrick(grid, kLattice.Box(i, j, k)); });
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

void AlterSomething(DataSet& data) {
  for (LgIndex_t var = data.VariableCount(); var > 0; --var) {
    QelFieldData* const field = data.Writable(1, var);
    if (field == nullptr || field->set == nullptr || field->count == 0) continue;
    field->set(field, field->count / 2, 3);
    if (var % 2 == 0) return;
  }
}

Outcome Try(const std::string& path, const std::string& target, const std::string& said,
            TrialState& state) {
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
  state.isVtkAlone = true;
  const auto expected = ReadQuietly(path);
  state.isVtkAlone = false;
  if (expected != nullptr) ExpectSame(block, expected);
  if (::testing::Test::HasFailure()) return kFailed;

  AlterSomething(*data);
  try {
    WriteDataSet(*data, target);
  } catch (const FileError& error) {
    ADD_FAILURE() << "what was read cannot be written: " << error.what();
    return kFailed;
  }
  state.isVtkAlone = expected == nullptr;
  const auto written = ReadQuietly(target);
  if (written == nullptr && expected == nullptr) return kMoreThanVtk;
  EXPECT_NE(written, nullptr) << "what was written cannot be read";
  if (written != nullptr) ExpectSame(written, block);
  return expected == nullptr ? kMoreThanVtk : kRead;
}

TEST_F(MutatedFiles, AreRefusedOrReadAsVtkReadsThem) {
  MakeSeeds();
  const auto seedOf = [this](Random& random) -> const Seed& {
    return m_seeds[Below(random, m_seeds.size())];
  };
  TrialPlan plan(2000);
  plan.said = In("said");
  plan.trial = [&](unsigned number, TrialState& state) {
    Random random(number);
    const Seed& seed = seedOf(random);
    const std::string path = In("mutated" + seed.extension);
    const std::string target = In("target" + seed.extension);
    Save(path, Mutated(random, seed));
    fs::remove(target);
    return Try(path, target, In("said"), state);
  };
  plan.name = [&](unsigned number, const std::string& folder) {
    Random random(number);
    const Seed& seed = seedOf(random);
    if (!folder.empty()) Save(folder + "/mutated" + seed.extension, Mutated(random, seed));
    return seed.name;
  };
  const TrialResult result = RunTrials(plan);
  const TrialState& state = result.state;
  std::printf(
      "%u mutated inputs, %u survived: %u read, %u refused, %u read though VTK does not; VTK alone "
      "failed in %u\n",
      plan.count, plan.count - result.Failed(), state.Sum(kRead), state.Sum(kRefused),
      state.Sum(kMoreThanVtk), result.vtkFailed);
  EXPECT_EQ(result.failures, "");
}

}  // namespace
