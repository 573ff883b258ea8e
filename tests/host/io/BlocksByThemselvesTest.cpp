// Data sets of many blocks: writing one is no work at the others.
#include <vtkCallbackCommand.h>

#include <vector>

#include "FileTree.h"
#include "HostileFiles.h"

namespace filetesting {
namespace {

using qelhost::DataSetPtr;

class BlocksByThemselves : public HostileFiles {
 protected:
  static void Count(vtkObject*, unsigned long, void* count, void*) { ++*static_cast<int*>(count); }
};

TEST_F(BlocksByThemselves, AreWrittenWithoutALookAtTheOthers) {
  constexpr int kBlocks = 5;
  std::string entries;
  for (int n = 0; n < kBlocks; ++n) {
    const std::string name = "a" + std::to_string(n) + ".vtu";
    SaveBricks(name);
    entries += "<DataSet index=\"" + std::to_string(n) + "\" file=\"" + name + "\"/>";
  }
  const DataSetPtr data = qelhost::ReadDataSet(Saved("a.vtm", Blocks(entries)));
  const auto& source = static_cast<const qelhost::FileSource&>(*data->GetSource());
  std::vector<int> counts(kBlocks, 0);
  for (int n = 0; n < kBlocks; ++n) {
    QelFieldData* const field = data->Writable(n + 1, data->VariableNumber("p"));
    ASSERT_NE(field, nullptr);
    field->set(field, 0, 7);
    const qelhost::FileNode& node =
        source.steps.at(0).root.children.at(static_cast<std::size_t>(n));
    vtkNew<vtkCallbackCommand> observer;
    observer->SetCallback(Count);
    observer->SetClientData(&counts[static_cast<std::size_t>(n)]);
    node.block->GetPointData()->GetArray("p")->AddObserver(vtkCommand::ModifiedEvent, observer);
  }

  qelhost::WriteDataSet(*data, In("b.vtm"));

  EXPECT_THAT(counts, testing::Each(1)) << "each range is told anew, once";
}

}  // namespace
}  // namespace filetesting
