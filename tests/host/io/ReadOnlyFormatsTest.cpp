// Formats that are read and written as others: small files, spelt out here.
#include "DataSetFiles.h"
#include "FileTesting.h"
#include "SmallCases.h"

#include <vtkXMLPolyDataWriter.h>
#include <vtkXMLStructuredGridWriter.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <gmock/gmock.h>

#include <utility>

namespace {

using namespace qelhost;
using namespace filetesting;

class ReadOnlyFormats : public FolderTest {
 protected:
  /// The values of a variable in a zone, where it lives.
  static std::vector<double> Values(DataSet& data, LgIndex_t zone, const std::string& name) {
    const QelFieldData* const field = data.Readable(zone, data.VariableNumber(name));
    std::vector<double> values;
    for (LgIndex_t i = 0; field != nullptr && i < field->count; ++i) {
      values.push_back(field->get(field, i));
    }
    return values;
  }
};

TEST_F(ReadOnlyFormats, ObjIsASurface) {
  Save(In("plate.obj"), "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nf 1 2 3\nf 1 3 4\n");
  const DataSetPtr data = ReadDataSet(In("plate.obj"));
  ASSERT_EQ(data->ZoneCount(), 1);
  EXPECT_EQ(data->FindZone(1)->Type(), ZoneType_FETriangle);
  EXPECT_EQ(data->FindZone(1)->NodeCount(), 4);
  EXPECT_EQ(data->FindZone(1)->CellCount(), 2);
}

TEST_F(ReadOnlyFormats, EnSightPartIsAZone) {
  SaveEnSightCase(In(""));
  const DataSetPtr data = ReadDataSet(In("bar.case"));
  ASSERT_EQ(data->ZoneCount(), 1);
  EXPECT_EQ(data->FindZone(1)->Type(), ZoneType_FEBrick);
  EXPECT_EQ(data->FindZone(1)->NodeCount(), 12);
  EXPECT_THAT(Values(*data, 1, "q"), ::testing::ElementsAre(3.0, 4.0));
  EXPECT_EQ(Values(*data, 1, "p").at(11), 12.5);
  WriteDataSet(*data, In("bar.vtm"));
  const DataSetPtr again = ReadDataSet(In("bar.vtm"));
  EXPECT_THAT(Values(*again, 1, "q"), ::testing::ElementsAre(3.0, 4.0));
}

TEST_F(ReadOnlyFormats, FoamCaseIsItsMeshAndPatches) {
  SaveFoamCase(In(""));
  const DataSetPtr data = ReadDataSet(In("box.foam"));
  ASSERT_GE(data->ZoneCount(), 1);
  EXPECT_EQ(data->FindZone(1)->Type(), ZoneType_FEBrick);
  EXPECT_EQ(data->FindZone(1)->CellCount(), 1);
  bool isFound = false;
  for (LgIndex_t var = 1; var <= data->VariableCount(); ++var) {
    const std::string& name = data->FindVariable(var)->name;
    isFound = isFound || (name.rfind("p", 0) == 0 && !Values(*data, 1, name).empty() &&
                          Values(*data, 1, name).front() == 7.5);
  }
  EXPECT_TRUE(isFound) << "no variable holds the cell's pressure";
}

template <class Writer>
void WritePiece(vtkDataSet* piece, const std::string& path) {
  vtkNew<Writer> writer;
  writer->SetFileName(path.c_str());
  writer->SetInputData(piece);
  ASSERT_EQ(writer->Write(), 1);
}

/// A row of pixels' worth of points, cut into triangles, moved along X.
vtkSmartPointer<vtkPolyData> Strip(double x) {
  auto surface = vtkSmartPointer<vtkPolyData>::New();
  vtkNew<vtkPoints> points;
  for (const auto& [dx, y] : {std::pair{0, 0}, {1, 0}, {1, 1}, {0, 1}}) {
    points->InsertNextPoint(x + dx, y, 0);
  }
  surface->SetPoints(points);
  surface->Allocate(2);
  const vtkIdType lower[] = {0, 1, 2};
  const vtkIdType upper[] = {0, 2, 3};
  surface->InsertNextCell(VTK_TRIANGLE, 3, lower);
  surface->InsertNextCell(VTK_TRIANGLE, 3, upper);
  return surface;
}

TEST_F(ReadOnlyFormats, PiecesOfASurfaceAreOneZone) {
  WritePiece<vtkXMLPolyDataWriter>(Strip(0), In("a.vtp"));
  WritePiece<vtkXMLPolyDataWriter>(Strip(1), In("b.vtp"));
  Save(In("all.pvtp"),
       "<VTKFile type=\"PPolyData\" version=\"1.0\" byte_order=\"LittleEndian\">\n"
       "<PPolyData GhostLevel=\"0\"><PPoints><PDataArray type=\"Float32\" Name=\"Points\" "
       "NumberOfComponents=\"3\"/></PPoints><Piece Source=\"a.vtp\"/><Piece Source=\"b.vtp\"/>"
       "</PPolyData></VTKFile>\n");
  const DataSetPtr data = ReadDataSet(In("all.pvtp"));
  ASSERT_EQ(data->ZoneCount(), 1);
  EXPECT_EQ(data->FindZone(1)->Type(), ZoneType_FETriangle);
  EXPECT_EQ(data->FindZone(1)->CellCount(), 4);
  EXPECT_EQ(data->VariableRange(data->CoordinateVariable('X')).max, 2.0);
}

TEST_F(ReadOnlyFormats, PiecesOfAnUnstructuredGridAreOneZone) {
  for (const auto& [name, x] : {std::pair{"a.vtu", 0.0}, {"b.vtu", 5.0}}) {
    vtkNew<vtkUnstructuredGrid> grid;
    vtkNew<vtkPoints> points;
    points->InsertNextPoint(x, 0, 0);
    points->InsertNextPoint(x + 1, 0, 0);
    points->InsertNextPoint(x, 1, 0);
    points->InsertNextPoint(x, 0, 1);
    grid->SetPoints(points);
    const vtkIdType corners[] = {0, 1, 2, 3};
    grid->InsertNextCell(VTK_TETRA, 4, corners);
    WritePiece<vtkXMLUnstructuredGridWriter>(grid, In(name));
  }
  Save(In("all.pvtu"),
       "<VTKFile type=\"PUnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\">\n"
       "<PUnstructuredGrid GhostLevel=\"0\"><PPoints><PDataArray type=\"Float32\" Name=\"Points\" "
       "NumberOfComponents=\"3\"/></PPoints><Piece Source=\"a.vtu\"/><Piece Source=\"b.vtu\"/>"
       "</PUnstructuredGrid></VTKFile>\n");
  const DataSetPtr data = ReadDataSet(In("all.pvtu"));
  ASSERT_EQ(data->ZoneCount(), 1);
  EXPECT_EQ(data->FindZone(1)->Type(), ZoneType_FETetra);
  EXPECT_EQ(data->FindZone(1)->CellCount(), 2);
  WriteDataSet(*data, In("all.vtu"));
  EXPECT_EQ(ReadDataSet(In("all.vtu"))->FindZone(1)->NodeCount(), 8);
}

TEST_F(ReadOnlyFormats, PiecesOfAStructuredGridAreOneZone) {
  for (const int start : {0, 2}) {
    vtkNew<vtkStructuredGrid> grid;
    vtkNew<vtkPoints> points;
    for (int j = 0; j < 2; ++j) {
      for (int i = start; i <= start + 2; ++i) points->InsertNextPoint(i, j, 0);
    }
    grid->SetExtent(start, start + 2, 0, 1, 0, 0);
    grid->SetPoints(points);
    WritePiece<vtkXMLStructuredGridWriter>(grid, In("s" + std::to_string(start) + ".vts"));
  }
  Save(In("all.pvts"),
       "<VTKFile type=\"PStructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\">\n"
       "<PStructuredGrid WholeExtent=\"0 4 0 1 0 0\" GhostLevel=\"0\"><PPoints><PDataArray "
       "type=\"Float32\" Name=\"Points\" NumberOfComponents=\"3\"/></PPoints>"
       "<Piece Extent=\"0 2 0 1 0 0\" Source=\"s0.vts\"/>"
       "<Piece Extent=\"2 4 0 1 0 0\" Source=\"s2.vts\"/></PStructuredGrid></VTKFile>\n");
  const DataSetPtr data = ReadDataSet(In("all.pvts"));
  ASSERT_EQ(data->ZoneCount(), 1);
  EXPECT_EQ(data->FindZone(1)->Type(), ZoneType_Ordered);
  EXPECT_EQ(data->FindZone(1)->NodeCount(), 10);
  EXPECT_EQ(data->FindZone(1)->CellCount(), 4);
}

}  // namespace
