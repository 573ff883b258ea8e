// Leaving cells out must not round, lose or mix up anything besides.
#include "DataSetFiles.h"
#include "FileTesting.h"

#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDataSetAttributes.h>
#include <vtkDoubleArray.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkRectilinearGrid.h>
#include <vtkStructuredGrid.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLDataSetWriter.h>
#include <vtkXMLGenericDataObjectReader.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using qelhost::HiddenCells;
using qelhost::ReadDataSet;
using qelhost::WriteDataSet;

class LeftOutCells : public filetesting::FolderTest {
 protected:
  /// The first `hiddenCount` cells are to be left out.
  static void Hide(vtkDataSet* mesh, vtkIdType hiddenCount) {
    vtkNew<vtkUnsignedCharArray> hidden;
    hidden->SetName("HIDE");
    for (vtkIdType cell = 0; cell < mesh->GetNumberOfCells(); ++cell) {
      hidden->InsertNextValue(cell < hiddenCount ? 1 : 0);
    }
    mesh->GetCellData()->AddArray(hidden);
  }

  /// Writes it, reads it as a data set, writes that without the hidden cells and reads the result.
  vtkSmartPointer<vtkDataSet> WithoutHidden(vtkDataSet* mesh, const char* name) const {
    vtkNew<vtkXMLDataSetWriter> writer;
    writer->SetInputData(mesh);
    writer->SetFileName(In(name).c_str());
    EXPECT_EQ(writer->Write(), 1);
    WriteDataSet(*ReadDataSet(In(name)), In("out.vtu"),
                 {true, {HiddenCells::Treatment::Drop, "HIDE"}});
    vtkNew<vtkXMLGenericDataObjectReader> reader;
    reader->SetFileName(In("out.vtu").c_str());
    reader->Update();
    return vtkDataSet::SafeDownCast(reader->GetOutput());
  }
};

/// Three boxes in a row at positions that no float holds.
vtkSmartPointer<vtkDataSet> ImageBlock() {
  auto image = vtkSmartPointer<vtkImageData>::New();
  image->SetDimensions(4, 2, 2);
  image->SetOrigin(1000.0000001, 0.1, 0.2);
  image->SetSpacing(0.1, 0.3, 0.7);
  return image;
}

vtkSmartPointer<vtkDataSet> RectilinearBlock() {
  vtkNew<vtkDoubleArray> x;
  for (const double tick : {1000.0000001, 1000.1, 1000.3, 1000.7}) x->InsertNextValue(tick);
  vtkNew<vtkDoubleArray> y;
  for (const double tick : {0.1, 0.4}) y->InsertNextValue(tick);
  auto grid = vtkSmartPointer<vtkRectilinearGrid>::New();
  grid->SetDimensions(4, 2, 2);
  grid->SetXCoordinates(x);
  grid->SetYCoordinates(y);
  grid->SetZCoordinates(y);
  return grid;
}

TEST_F(LeftOutCells, LeaveComputedPositionsUnrounded) {
  const std::pair<const char*, vtkSmartPointer<vtkDataSet>> meshes[] = {
      {"in.vti", ImageBlock()}, {"in.vtr", RectilinearBlock()}};
  for (const auto& [name, mesh] : meshes) {
    Hide(mesh, 1);
    const auto shown = WithoutHidden(mesh, name);
    ASSERT_EQ(shown->GetNumberOfCells(), 2) << name;
    ASSERT_EQ(shown->GetNumberOfPoints(), 12) << name;
    double low[6];
    shown->GetBounds(low);
    double expected[3];
    mesh->GetPoint(1, expected);
    EXPECT_EQ(low[0], expected[0]) << name;
    EXPECT_EQ(low[2], expected[1]) << name;
  }
}

TEST_F(LeftOutCells, StayInAPlainConversionUnrounded) {
  const auto mesh = ImageBlock();
  const auto all = WithoutHidden(mesh, "in.vti");
  ASSERT_EQ(all->GetNumberOfCells(), 3);
  double bounds[6];
  all->GetBounds(bounds);
  EXPECT_EQ(bounds[0], 1000.0000001);
}

TEST_F(LeftOutCells, AreNotThoseThatAnotherProgramMarked) {
  vtkNew<vtkPoints> points;
  for (int k = 0; k < 2; ++k) {
    for (int j = 0; j < 2; ++j) {
      for (int i = 0; i < 4; ++i) points->InsertNextPoint(i, j, k);
    }
  }
  vtkNew<vtkStructuredGrid> grid;
  grid->SetDimensions(4, 2, 2);
  grid->SetPoints(points);
  vtkNew<vtkUnsignedCharArray> marks;
  marks->SetName(vtkDataSetAttributes::GhostArrayName());
  for (const unsigned char mark : {0, 0, int{vtkDataSetAttributes::HIDDENCELL}}) {
    marks->InsertNextValue(mark);
  }
  grid->GetCellData()->AddArray(marks);
  Hide(grid, 1);
  EXPECT_EQ(WithoutHidden(grid, "in.vts")->GetNumberOfCells(), 2);
}

TEST_F(LeftOutCells, MayBeAllOfASurface) {
  vtkNew<vtkPolyData> surface;
  vtkNew<vtkPoints> points;
  for (int n = 0; n < 4; ++n) points->InsertNextPoint(n % 2, n / 2, 0);
  surface->SetPoints(points);
  surface->AllocateEstimate(1, 3);
  const vtkIdType nodes[] = {0, 1, 3};
  surface->InsertNextCell(VTK_TRIANGLE, 3, nodes);
  Hide(surface, 1);
  EXPECT_EQ(WithoutHidden(surface, "in.vtp")->GetNumberOfCells(), 0);
}

}  // namespace
