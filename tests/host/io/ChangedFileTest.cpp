// Files that somebody else writes while they are read or copied: half of the old and half of the
// new would not belong together.
#include <fstream>
#include <functional>

#include "HostileFiles.h"
#include "ReadWatch.h"
#include "WriteCancel.h"

namespace filetesting {
namespace {

using qelhost::DataSetPtr;
using qelhost::ReadDataSet;
using qelhost::ReadWatch;
using qelhost::WriteDataSet;
using qelhost::WriteWatch;

class ChangedFiles : public HostileFiles {
 protected:
  /// With one array, so that nobody looks at the file again after its values.
  std::string SaveOneArray() {
    const vtkSmartPointer<vtkUnstructuredGrid> grid = TwoBricks();
    grid->GetPointData()->Initialize();
    for (const char* name : {"id", "flag"}) grid->GetCellData()->RemoveArray(name);
    return SaveMesh("a.vtu", grid, vtkXMLWriter::Appended);
  }
  static void Change(const std::string& path) { std::ofstream(path, std::ios::app) << "\n"; }
  /// "" when nothing went wrong.
  static std::string ErrorOf(const std::function<void()>& work) {
    try {
      work();
      return "";
    } catch (const std::exception& error) {
      return error.what();
    }
  }
  std::string Expected() const {
    return In("a.vtu") + ": was changed by somebody else since it was opened";
  }
};

TEST_F(ChangedFiles, AreNotCopied) {
  const std::string path = SaveOneArray();
  const DataSetPtr data = ReadDataSet(path);
  int toldCount = 0;
  const WriteWatch watch([&](double) { return ++toldCount > 0; });
  WriteDataSet(*data, In("b.vtu"));
  EXPECT_GT(toldCount, 0);
  toldCount = 0;
  Change(path);
  EXPECT_EQ(ErrorOf([&] { WriteDataSet(*data, In("c.vtu")); }), Expected());
  EXPECT_EQ(toldCount, 0) << "nothing was written before";
  EXPECT_THAT(Files(), testing::ElementsAre("a.vtu", "b.vtu"));
}

TEST_F(ChangedFiles, LeaveNothingWhenTheyChangeWhileTheyAreCopied) {
  const std::string path = SaveOneArray();
  const DataSetPtr data = ReadDataSet(path);
  bool isAsked = false;
  const WriteWatch watch([&](double) {
    if (!isAsked) Change(path);
    return isAsked = true;
  });
  EXPECT_EQ(ErrorOf([&] { WriteDataSet(*data, In("b.vtu")); }), Expected());
  EXPECT_TRUE(isAsked);
  EXPECT_THAT(Files(), testing::ElementsAre("a.vtu"));
}

TEST_F(ChangedFiles, GiveNoValuesWhenTheyChangeWhileTheseAreRead) {
  const std::string path = SaveOneArray();
  const DataSetPtr data = ReadDataSet(path);
  bool isAsked = false;
  const ReadWatch watch([&](double) {
    if (!isAsked) Change(path);
    return isAsked = true;
  });
  // Another format needs the values.
  EXPECT_EQ(ErrorOf([&] { WriteDataSet(*data, In("b.vtk")); }), Expected());
  EXPECT_TRUE(isAsked);
  EXPECT_THAT(Files(), testing::ElementsAre("a.vtu"));
}

}  // namespace
}  // namespace filetesting
