// How cells that an array hides are written: marked as ghosts, or left out.
#include <vtkCell.h>
#include <vtkDataSetSurfaceFilter.h>
#include <vtkIdList.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "DataSetFiles.h"
#include "FileTesting.h"
#include "HiddenCellFiles.h"
#include "HiddenCellMeshes.h"
#include "LeftOutDifference.h"

namespace {

using namespace filetesting;
using hiddencells::AddGhosts;
using hiddencells::AddHiding;
using hiddencells::AllOf;
using hiddencells::DropDifference;
using hiddencells::IsHidden;
using hiddencells::kHiding;
using hiddencells::Load;
using hiddencells::Marked;
using hiddencells::Position;
using hiddencells::PositionOf;
using hiddencells::SaveMesh;
using hiddencells::Treatment;
using hiddencells::With;
using qelhost::DataSetPtr;
using qelhost::ReadDataSet;
using qelhost::WriteDataSet;

struct HiddenKind {
  const char* name;
  const char* extension;
  vtkSmartPointer<vtkDataSet> (*make)();
  bool isStructured;
  /// VTK's surface filter leaves cells of the kind out when they are marked as hidden.
  bool hidesInSurface;
};

const HiddenKind kKinds[] = {
    {"Bricks", "vtu", hiddencells::Bricks, false, true},
    {"MixedCells", "vtu", hiddencells::MixedCells, false, true},
    {"Polyhedra", "vtu", hiddencells::Polyhedra, false, true},
    {"Polygons", "vtu", hiddencells::Polygons, false, true},
    {"Surface", "vtp", hiddencells::Surface, false, false},
    {"Structured", "vts", hiddencells::Structured, true, true},
    {"Rectilinear", "vtr", hiddencells::Rectilinear, true, true},
    {"Image", "vti", hiddencells::ImageOfBoxes, true, true},
    {"LegacyMixedCells", "vtk", hiddencells::MixedCells, false, true},
    {"LegacySurface", "vtk", hiddencells::Surface, false, false},
    {"LegacyStructured", "vtk", hiddencells::Structured, true, true},
    {"LegacyRectilinear", "vtk", hiddencells::Rectilinear, true, true},
    {"LegacyImage", "vtk", hiddencells::ImageOfBoxes, true, true},
};

class HiddenCellsOfKind : public FolderTest, public ::testing::WithParamInterface<HiddenKind> {
 protected:
  std::string File(const std::string& stem) const { return In(stem + '.' + GetParam().extension); }
  /// Of the format that the block has when cells have been left out.
  std::string DropTarget() const {
    const bool isXml = std::strcmp(GetParam().extension, "vtk") != 0;
    return isXml && GetParam().isStructured ? In("out.vtu") : File("out");
  }
  vtkSmartPointer<vtkDataSet> Make(unsigned seed, bool hasGhosts) const {
    vtkSmartPointer<vtkDataSet> block = GetParam().make();
    AddArrays(block);
    AddHiding(block, seed);
    if (hasGhosts) AddGhosts(block, GetParam().isStructured);
    return block;
  }
};

INSTANTIATE_TEST_SUITE_P(Kinds, HiddenCellsOfKind, ::testing::ValuesIn(kKinds),
                         [](const auto& row) { return std::string(row.param.name); });

// ---- marks ----

TEST_P(HiddenCellsOfKind, AreMarkedAndNothingElseInTheFileDiffers) {
  for (const bool hasGhosts : {false, true}) {
    const auto block = Make(3, hasGhosts);
    SaveMesh(block, File("in"));
    SaveMesh(Marked(block), File("expected"));
    const DataSetPtr data = ReadDataSet(File("in"));
    WriteDataSet(*data, File("out"), With(Treatment::Mark));
    EXPECT_EQ(Contents(File("out")), Contents(File("expected"))) << "ghosts " << hasGhosts;
    EXPECT_EQ(AllOf(data->FindZone(1)->Block()), AllOf(Load(File("in")))) << "changed in memory";
  }
}

TEST_P(HiddenCellsOfKind, LeaveAFileAsItIsWhereThereAreNone) {
  auto block = Make(3, false);
  block->GetCellData()->GetArray(kHiding)->Fill(0);
  SaveMesh(block, File("in"));
  WriteDataSet(*ReadDataSet(File("in")), File("out"), With(Treatment::Mark));
  EXPECT_EQ(Contents(File("out")), Contents(File("in")));
  block = Make(3, false);
  block->GetCellData()->RemoveArray(kHiding);
  SaveMesh(block, File("bare"));
  WriteDataSet(*ReadDataSet(File("bare")), File("out"), With(Treatment::Mark));
  EXPECT_EQ(Contents(File("out")), Contents(File("bare")));
}

// ---- what is left ----

using Faces = std::multiset<std::vector<Position>>;

/// A polygon whatever its first corner and its sense are and whether that corner closes it; the
/// filter rounds positions.
std::vector<Position> Face(vtkDataSet* mesh, vtkIdList* points) {
  std::vector<Position> face;
  for (vtkIdType n = 0; n < points->GetNumberOfIds(); ++n) {
    Position position = PositionOf(mesh, points->GetId(n));
    for (double& x : position) x = std::round(x * 1e4) / 1e4;
    face.push_back(position);
  }
  std::sort(face.begin(), face.end());
  face.erase(std::unique(face.begin(), face.end()), face.end());
  return face;
}

/// The faces that VTK's surface filter shows of a mesh; not the points and lines.
Faces SurfaceOf(vtkDataSet* mesh) {
  vtkNew<vtkDataSetSurfaceFilter> filter;
  filter->SetInputData(mesh);
  filter->Update();
  vtkPolyData* const surface = filter->GetOutput();
  Faces faces;
  for (vtkIdType cell = 0; cell < surface->GetNumberOfCells(); ++cell) {
    vtkCell* const face = surface->GetCell(cell);
    if (face->GetCellDimension() == 2) faces.insert(Face(surface, face->GetPointIds()));
  }
  return faces;
}

/// An unstructured grid of the cells that are not hidden, on all points, without arrays.
vtkSmartPointer<vtkDataSet> ShownCells(vtkDataSet* block) {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  for (vtkIdType point = 0; point < block->GetNumberOfPoints(); ++point) {
    points->InsertNextPoint(block->GetPoint(point));
  }
  grid->SetPoints(points);
  vtkNew<vtkIdList> ids;
  for (vtkIdType cell = 0; cell < block->GetNumberOfCells(); ++cell) {
    if (IsHidden(block, cell)) continue;
    auto* const unstructured = vtkUnstructuredGrid::SafeDownCast(block);
    if (unstructured != nullptr && block->GetCellType(cell) == VTK_POLYHEDRON) {
      unstructured->GetFaceStream(cell, ids);
    } else {
      block->GetCellPoints(cell, ids);
    }
    grid->InsertNextCell(block->GetCellType(cell), ids);
  }
  return grid;
}

TEST_P(HiddenCellsOfKind, MarkedAreLeftOutOfSurfaces) {
  for (const unsigned seed : {3u, 4u, 5u}) {
    const auto block = Make(seed, false);
    SaveMesh(block, File("in"));
    WriteDataSet(*ReadDataSet(File("in")), File("out"), With(Treatment::Mark));
    const Faces all = SurfaceOf(Load(File("in")));
    const Faces shown = SurfaceOf(Load(File("out")));
    EXPECT_NE(SurfaceOf(ShownCells(block)), all);
    EXPECT_TRUE(shown == (GetParam().hidesInSurface ? SurfaceOf(ShownCells(block)) : all))
        << shown.size() << " faces of " << all.size() << ", should be "
        << SurfaceOf(ShownCells(block)).size();
  }
}

/// How two sets of arrays differ at one tuple each.
TEST_P(HiddenCellsOfKind, AreLeftOutWithThePointsThatOnlyTheyHad) {
  const std::string out = DropTarget();
  for (const bool hasGhosts : {false, true}) {
    const auto block = Make(6, hasGhosts);
    SaveMesh(block, File("in"));
    const DataSetPtr data = ReadDataSet(File("in"));
    WriteDataSet(*data, out, With(Treatment::Drop));
    const auto before = Load(File("in"));
    const auto after = Load(out);
    EXPECT_EQ(DropDifference(before, after), "") << "ghosts " << hasGhosts;
    EXPECT_LT(after->GetNumberOfCells(), before->GetNumberOfCells());
    EXPECT_EQ(after->IsA("vtkPolyData"), before->IsA("vtkPolyData"));
    ASSERT_EQ(after->GetFieldData()->GetNumberOfArrays(), 1);
    EXPECT_EQ(after->GetFieldData()->GetAbstractArray("note")->GetVariantValue(0).ToString(),
              "kept as it is");
    ASSERT_NE(after->GetPointData()->GetScalars(), nullptr);
    EXPECT_STREQ(after->GetPointData()->GetScalars()->GetName(), "p");
    EXPECT_EQ(AllOf(data->FindZone(1)->Block()), AllOf(Load(File("in")))) << "changed in memory";
  }
}

TEST_P(HiddenCellsOfKind, AreLeftOutDownToTheLastOne) {
  const auto block = Make(6, false);
  block->GetCellData()->GetArray(kHiding)->Fill(1);
  SaveMesh(block, File("in"));
  const std::string out = DropTarget();
  WriteDataSet(*ReadDataSet(File("in")), out, With(Treatment::Drop));
  const auto after = Load(out);
  EXPECT_EQ(after->GetNumberOfCells(), 0);
  EXPECT_EQ(after->GetNumberOfPoints(), 0);
}

TEST_P(HiddenCellsOfKind, GoByOneAlone) {
  auto block = Make(6, false);
  vtkNew<vtkDoubleArray> hiding;
  hiding->SetName(kHiding);
  const double kinds[] = {0, 1, 2, -1, 0.999, std::numeric_limits<double>::quiet_NaN()};
  for (vtkIdType cell = 0; cell < block->GetNumberOfCells(); ++cell) {
    hiding->InsertNextValue(kinds[cell % 6]);
  }
  block->GetCellData()->AddArray(hiding);
  SaveMesh(block, File("in"));
  const std::string out = DropTarget();
  WriteDataSet(*ReadDataSet(File("in")), out, With(Treatment::Drop));
  EXPECT_EQ(Load(out)->GetNumberOfCells(),
            block->GetNumberOfCells() - (block->GetNumberOfCells() + 4) / 6);
}

}  // namespace
