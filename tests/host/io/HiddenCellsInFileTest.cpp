// How cells that an array hides are written in files of several blocks and time steps.
#include <vtkInformation.h>
#include <vtkMultiBlockDataSet.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "DataSetFiles.h"
#include "FileTesting.h"
#include "HiddenCellFiles.h"
#include "HiddenCellMeshes.h"
#include "LeftOutDifference.h"

namespace {

using namespace filetesting;
using hiddencells::AddHiding;
using hiddencells::DropDifference;
using hiddencells::kHiding;
using hiddencells::Load;
using hiddencells::Marked;
using hiddencells::SaveMesh;
using hiddencells::Treatment;
using hiddencells::With;
using qelhost::CheckWritable;
using qelhost::DataSetPtr;
using qelhost::FileError;
using qelhost::ReadDataSet;
using qelhost::WriteDataSet;

class HiddenCellsInFile : public FolderTest {
 protected:
  static vtkSmartPointer<vtkDataSet> Block(vtkSmartPointer<vtkDataSet> (*make)(), bool hides) {
    vtkSmartPointer<vtkDataSet> block = make();
    AddArrays(block);
    if (hides) AddHiding(block, 8);
    return block;
  }
  static std::vector<vtkSmartPointer<vtkDataSet>> Blocks() {
    return {Block(hiddencells::Structured, true), Block(hiddencells::MixedCells, true),
            Block(hiddencells::Rectilinear, false), Block(hiddencells::Surface, true),
            Block(hiddencells::ImageOfBoxes, true)};
  }
  static vtkSmartPointer<vtkMultiBlockDataSet> Together(
      const std::vector<vtkSmartPointer<vtkDataSet>>& blocks) {
    auto together = vtkSmartPointer<vtkMultiBlockDataSet>::New();
    for (unsigned n = 0; n < blocks.size(); ++n) {
      together->SetBlock(n, blocks[n]);
      together->GetMetaData(n)->Set(vtkCompositeDataSet::NAME(),
                                    ("block " + std::to_string(n)).c_str());
    }
    return together;
  }
  std::vector<std::string> Pieces(const std::string& folder) const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(In(folder))) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }
};

TEST_F(HiddenCellsInFile, AreMarkedInEachBlock) {
  std::vector<vtkSmartPointer<vtkDataSet>> blocks = Blocks();
  SaveMesh(Together(blocks), In("in.vtm"));
  // Made anew: what was written once carries the ranges that were found then.
  blocks = Blocks();
  for (auto& block : blocks) {
    if (block->GetCellData()->HasArray(kHiding) != 0) block = Marked(block);
  }
  SaveMesh(Together(blocks), In("expected.vtm"));
  WriteDataSet(*ReadDataSet(In("in.vtm")), In("out.vtm"), With(Treatment::Mark));
  const std::vector<std::string> extensions = {"vts", "vtu", "vtr", "vtp", "vti"};
  for (std::size_t n = 0; n < extensions.size(); ++n) {
    const std::string piece = '_' + std::to_string(n) + '.' + extensions[n];
    ASSERT_TRUE(fs::exists(In("out/out" + piece))) << piece;
    EXPECT_EQ(Contents(In("out/out" + piece)), Contents(In("expected/expected" + piece))) << piece;
  }
}

TEST_F(HiddenCellsInFile, MakeUnstructuredPiecesWhenTheyAreLeftOut) {
  const std::vector<vtkSmartPointer<vtkDataSet>> blocks = Blocks();
  SaveMesh(Together(blocks), In("in.vtm"));
  WriteDataSet(*ReadDataSet(In("in.vtm")), In("out.vtm"), With(Treatment::Drop));
  EXPECT_THAT(Pieces("out"), ::testing::ElementsAre("out_0.vtu", "out_1.vtu", "out_2.vtr",
                                                    "out_3.vtp", "out_4.vtu"));
  const std::vector<std::string> extensions = {"vtu", "vtu", "vtr", "vtp", "vtu"};
  for (std::size_t n = 0; n < blocks.size(); ++n) {
    const auto after = Load(In("out/out_" + std::to_string(n) + '.' + extensions[n]));
    EXPECT_EQ(DropDifference(blocks[n], after), "") << n;
  }
  EXPECT_EQ(Contents(In("out/out_2.vtr")), Contents(In("in/in_2.vtr"))) << "it hides nothing";
  const DataSetPtr again = ReadDataSet(In("out.vtm"));
  ASSERT_EQ(again->ZoneCount(), 5);
  EXPECT_EQ(again->FindZone(1)->name, "block 0");
  EXPECT_EQ(again->FindZone(5)->name, "block 4");
}

TEST_F(HiddenCellsInFile, AreLeftOutOfEachTimeStep) {
  const auto first = Block(hiddencells::ImageOfBoxes, false);
  const auto second = Block(hiddencells::ImageOfBoxes, true);
  SaveMesh(first, In("a.vti"));
  SaveMesh(second, In("b.vti"));
  Save(In("in.pvd"),
       "<?xml version=\"1.0\"?>\n<VTKFile type=\"Collection\" version=\"0.1\">\n<Collection>\n"
       "<DataSet timestep=\"0.1\" group=\"\" part=\"0\" file=\"a.vti\"/>\n"
       "<DataSet timestep=\"0.2\" group=\"\" part=\"0\" file=\"b.vti\"/>\n"
       "</Collection>\n</VTKFile>\n");
  WriteDataSet(*ReadDataSet(In("in.pvd")), In("marked.pvd"), With(Treatment::Mark));
  SaveMesh(Marked(second), In("expected.vti"));
  EXPECT_EQ(Contents(In("marked/marked_0.vti")), Contents(In("a.vti")));
  EXPECT_EQ(Contents(In("marked/marked_1.vti")), Contents(In("expected.vti")));
  WriteDataSet(*ReadDataSet(In("in.pvd")), In("out.pvd"), With(Treatment::Drop));
  EXPECT_THAT(Pieces("out"), ::testing::ElementsAre("out_0.vti", "out_1.vtu"));
  EXPECT_EQ(Contents(In("out/out_0.vti")), Contents(In("a.vti")));
  EXPECT_EQ(DropDifference(second, Load(In("out/out_1.vtu"))), "");
  const DataSetPtr again = ReadDataSet(In("out.pvd"));
  EXPECT_THAT(again->SolutionTimes(), ::testing::ElementsAre(0.1, 0.2));
}

TEST_F(HiddenCellsInFile, AreNotLeftOutOfFilesForStructuredMeshes) {
  const std::pair<const char*, vtkSmartPointer<vtkDataSet> (*)()> kinds[] = {
      {"vti", hiddencells::ImageOfBoxes},
      {"vtr", hiddencells::Rectilinear},
      {"vts", hiddencells::Structured}};
  for (const auto& [extension, make] : kinds) {
    // Also where none is hidden yet: that is not known before the journal is played.
    SaveMesh(Block(make, false), In(std::string("in.") + extension));
    const DataSetPtr data = ReadDataSet(In(std::string("in.") + extension));
    const std::string out = In(std::string("out.") + extension);
    for (const auto& attempt : {CheckWritable, WriteDataSet}) {
      try {
        attempt(*data, out, With(Treatment::Drop));
        ADD_FAILURE() << extension;
      } catch (const FileError& error) {
        EXPECT_EQ(error.Reason(), "cannot hold a mesh with cells left out; write a .vtu file");
      }
    }
    EXPECT_FALSE(fs::exists(out));
    EXPECT_NO_THROW(CheckWritable(*data, In("out.vtu"), With(Treatment::Drop)));
    EXPECT_NO_THROW(CheckWritable(*data, In("out.vtk"), With(Treatment::Drop)));
    EXPECT_NO_THROW(CheckWritable(*data, out, With(Treatment::Mark)));
  }
}

}  // namespace
