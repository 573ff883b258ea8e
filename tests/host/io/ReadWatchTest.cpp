// Files that are read and written on another thread, watched and stopped.
#include "DataSetFiles.h"
#include "FileTesting.h"
#include "ReadWatch.h"
#include "WriteCancel.h"

#include <vtkSTLWriter.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <gmock/gmock.h>

#include <functional>
#include <limits>
#include <thread>
#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace filetesting {
namespace {

using qelhost::DataSetPtr;
using qelhost::ReadCancelled;
using qelhost::ReadDataSet;
using qelhost::ReadWatch;
using qelhost::WriteCancelled;
using qelhost::WriteDataSet;
using qelhost::WriteWatch;
using testing::ElementsAre;
using testing::Ge;
using testing::SizeIs;

constexpr int kNever = std::numeric_limits<int>::max();

/// What a watch was told, up to the answer that stops the work.
struct Told {
  std::vector<double> fractions;
  bool isCancelled = false;

  std::function<bool(double)> Until(int count) {
    return [this, count](double fraction) {
      // Nothing is told again and again while a file is read on trial, as often as time passes.
      if (fraction == 0.0 && !fractions.empty()) return true;
      fractions.push_back(fraction);
      return static_cast<int>(fractions.size()) < count;
    };
  }
};

Told ReadOnThread(const std::string& path, int until, DataSetPtr* data = nullptr) {
  Told told;
  std::string failure;
  std::thread reader([&] {
#ifdef __SANITIZE_ADDRESS__
    const __lsan::ScopedDisabler vtkForgetsArraysWhenItIsCancelled;
#endif
    const ReadWatch watch(told.Until(until));
    try {
      const DataSetPtr read = ReadDataSet(path);
      if (data != nullptr) *data = read;
    } catch (const ReadCancelled&) {
      told.isCancelled = true;
    } catch (const std::exception& e) {
      failure = e.what();
    }
  });
  reader.join();
  EXPECT_EQ(failure, "");
  return told;
}

Told WriteOnThread(const DataSetPtr& data, const std::string& path, int until) {
  Told told;
  std::string failure;
  std::thread writer([&] {
    const WriteWatch watch(told.Until(until));
    try {
      WriteDataSet(*data, path);
    } catch (const WriteCancelled&) {
      told.isCancelled = true;
    } catch (const std::exception& e) {
      failure = e.what();
    }
  });
  writer.join();
  EXPECT_EQ(failure, "");
  return told;
}

void ExpectToRise(const std::vector<double>& fractions) {
  for (std::size_t i = 0; i < fractions.size(); ++i) {
    EXPECT_GE(fractions[i], i == 0 ? 0.0 : fractions[i - 1]) << i;
    EXPECT_LE(fractions[i], 1.0) << i;
  }
}

/// n x n x n bricks in a file without compression.
void SaveBricks(const std::string& path, int n) {
  vtkNew<vtkPoints> points;
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  const vtkIdType row = n + 1;
  for (vtkIdType node = 0; node < row * row * row; ++node) {
    points->InsertNextPoint(static_cast<double>(node % row), static_cast<double>(node / row % row),
                            static_cast<double>(node / (row * row)));
  }
  grid->SetPoints(points);
  grid->AllocateExact(static_cast<vtkIdType>(n) * n * n, static_cast<vtkIdType>(n) * n * n * 8);
  for (vtkIdType cell = 0; cell < static_cast<vtkIdType>(n) * n * n; ++cell) {
    const vtkIdType a = cell % n + cell / n % n * row + cell / (n * n) * row * row;
    const vtkIdType b = a + row * row;
    const vtkIdType nodes[] = {a, a + 1, a + 1 + row, a + row, b, b + 1, b + 1 + row, b + row};
    grid->InsertNextCell(VTK_HEXAHEDRON, 8, nodes);
  }
  vtkNew<vtkXMLUnstructuredGridWriter> writer;
  writer->SetFileName(path.c_str());
  writer->SetInputData(grid);
  writer->SetCompressorTypeToNone();
  writer->SetDataModeToAppended();
  writer->EncodeAppendedDataOff();
  ASSERT_EQ(writer->Write(), 1);
}

std::string Example(const std::string& name) { return std::string(EXAMPLES_DIR) + "/" + name; }

class Watched : public FolderTest {};

TEST_F(Watched, FilesOfManyPiecesTellAfterEachAndStopAtEach) {
  for (const char* name : {"flange/flange.pvd", "pitzDaily/pitzDaily.vtm"}) {
    SCOPED_TRACE(name);
    DataSetPtr data;
    const Told all = ReadOnThread(Example(name), kNever, &data);
    ASSERT_NE(data, nullptr);
    EXPECT_FALSE(all.isCancelled);
    EXPECT_THAT(all.fractions, SizeIs(Ge(static_cast<std::size_t>(data->ZoneCount()))));
    ExpectToRise(all.fractions);
    const int count = static_cast<int>(all.fractions.size());
    for (int until = 1; until <= count; until += std::max(count / 8, 1)) {
      const Told some = ReadOnThread(Example(name), until);
      EXPECT_TRUE(some.isCancelled) << until;
      EXPECT_THAT(some.fractions, SizeIs(static_cast<std::size_t>(until)));
    }
  }
}

TEST_F(Watched, FilesOfOneMeshStopWhereverTheyAreAsked) {
  WriteDataSet(*ReadDataSet(Example("part/gmsh_part.vtu")), In("part.vtk"));
  vtkNew<vtkSTLWriter> writer;
  writer->SetFileName(In("part.stl").c_str());
  writer->SetInputData(TwoTriangles());
  ASSERT_EQ(writer->Write(), 1);
  for (const std::string& path : {Example("part/gmsh_part.vtu"), Example("part/mixed.vtu"),
                                  Example("part/gmsh_part.exo"), In("part.vtk"), In("part.stl")}) {
    SCOPED_TRACE(path);
    const Told all = ReadOnThread(path, kNever);
    EXPECT_FALSE(all.isCancelled);
    ASSERT_FALSE(all.fractions.empty());
    ExpectToRise(all.fractions);
    EXPECT_TRUE(ReadOnThread(path, 1).isCancelled);
    EXPECT_TRUE(ReadOnThread(path, static_cast<int>(all.fractions.size())).isCancelled);
  }
}

TEST_F(Watched, LargeMeshesTellOnTheWay) {
  SaveBricks(In("large.vtu"), 80);
  const Told all = ReadOnThread(In("large.vtu"), kNever);
  EXPECT_FALSE(all.isCancelled);
  ExpectToRise(all.fractions);
  // Four arrays, of which the nodes of the cells alone are 32 MiB.
  EXPECT_THAT(all.fractions, SizeIs(Ge(5U)));
  EXPECT_TRUE(ReadOnThread(In("large.vtu"), 3).isCancelled);
}

TEST_F(Watched, TheSameIsReadAsUnwatched) {
  SaveBricks(In("large.vtu"), 40);
  DataSetPtr data;
  ReadOnThread(In("large.vtu"), kNever, &data);
  const DataSetPtr plain = ReadDataSet(In("large.vtu"));
  ASSERT_NE(data, nullptr);
  EXPECT_NE(data->Id(), plain->Id());
  WriteDataSet(*data, In("a.vtk"));
  WriteDataSet(*plain, In("b.vtk"));
  EXPECT_EQ(Contents(In("a.vtk")), Contents(In("b.vtk")));
}

TEST_F(Watched, OtherThreadsAndLaterWorkHearNothing) {
  Told outer;
  const ReadWatch watch(outer.Until(1));
  const Told inner = ReadOnThread(Example("part/mixed.vtu"), kNever);
  EXPECT_FALSE(inner.isCancelled);
  EXPECT_TRUE(outer.fractions.empty());
  EXPECT_THROW(ReadDataSet(Example("part/mixed.vtu")), ReadCancelled);
  EXPECT_THAT(outer.fractions, ElementsAre(0.0));
  {
    Told nested;
    const ReadWatch other(nested.Until(kNever));
    EXPECT_NO_THROW(ReadDataSet(Example("part/mixed.vtu")));
  }
  EXPECT_THROW(ReadDataSet(Example("part/mixed.vtu")), ReadCancelled);
}

TEST_F(Watched, WritingTellsAndStopsWithoutATrace) {
  struct Row {
    std::string source;
    std::string target;
  };
  const Row rows[] = {{Example("part/gmsh_part.vtu"), "part.vtu"},
                      {Example("part/gmsh_part.vtu"), "part.vtk"},
                      {Example("flange/flange.pvd"), "flange.pvd"},
                      {Example("pitzDaily/pitzDaily.vtm"), "pitz.vtm"}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.target);
    const DataSetPtr data = ReadDataSet(row.source);
    const std::vector<std::string> before = Files();
    EXPECT_TRUE(WriteOnThread(data, In(row.target), 1).isCancelled);
    EXPECT_EQ(Files(), before);
    const Told all = WriteOnThread(data, In(row.target), kNever);
    EXPECT_FALSE(all.isCancelled);
    ASSERT_FALSE(all.fractions.empty());
    ExpectToRise(all.fractions);
    const std::vector<std::string> written = Files();
    const std::string contents = Contents(In(row.target));
    EXPECT_TRUE(
        WriteOnThread(data, In(row.target), static_cast<int>(all.fractions.size())).isCancelled);
    EXPECT_EQ(Files(), written);
    EXPECT_EQ(Contents(In(row.target)), contents);
  }
}

}  // namespace
}  // namespace filetesting
