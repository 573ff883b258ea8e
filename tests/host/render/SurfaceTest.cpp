// What is seen of every kind of zone, as VTK's own filters find it.
#include <vtkCellData.h>
#include <vtkDataSetSurfaceFilter.h>
#include <vtkFeatureEdges.h>
#include <vtkIdTypeArray.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkPolyDataNormals.h>
#include <vtkThreshold.h>
#include <vtkUnsignedCharArray.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>

#include "FaceEdges.h"
#include "RandomMeshes.h"
#include "Zone.h"
#include "ZoneFaces.h"
#include "ZoneSurface.h"

namespace rendertests {
namespace {

using namespace qelhost;

/// The cell of a face and its nodes, ascending.
using Face = std::pair<std::int64_t, std::vector<std::int64_t>>;

/// The surface that VTK shows of the cells that are not hidden, with the numbers of the block's
/// points and cells.
vtkSmartPointer<vtkPolyData> VtkSurface(vtkDataSet* mesh, const ItemBits* hidden) {
  auto copy = vtkSmartPointer<vtkDataSet>::Take(mesh->NewInstance());
  copy->CopyStructure(mesh);
  vtkNew<vtkIdTypeArray> cells, points;
  cells->SetName("cell");
  points->SetName("point");
  for (vtkIdType n = 0; n < mesh->GetNumberOfCells(); ++n) cells->InsertNextValue(n);
  for (vtkIdType n = 0; n < mesh->GetNumberOfPoints(); ++n) points->InsertNextValue(n);
  copy->GetCellData()->AddArray(cells);
  copy->GetPointData()->AddArray(points);
  vtkNew<vtkDataSetSurfaceFilter> surface;
  vtkNew<vtkThreshold> shown;
  surface->SetInputData(copy);
  if (hidden != nullptr) {
    vtkNew<vtkUnsignedCharArray> marks;
    marks->SetName("hidden");
    for (vtkIdType n = 0; n < mesh->GetNumberOfCells(); ++n) marks->InsertNextValue(hidden->Has(n));
    copy->GetCellData()->AddArray(marks);
    shown->SetInputData(copy);
    shown->SetInputArrayToProcess(0, 0, 0, vtkDataObject::FIELD_ASSOCIATION_CELLS, "hidden");
    shown->SetThresholdFunction(vtkThreshold::THRESHOLD_LOWER);
    shown->SetLowerThreshold(0.5);
    surface->SetInputConnection(shown->GetOutputPort());
  }
  surface->Update();
  return surface->GetOutput();
}

std::multiset<Face> FacesOf(vtkPolyData* surface) {
  std::multiset<Face> faces;
  auto* cells = vtkIdTypeArray::SafeDownCast(surface->GetCellData()->GetArray("cell"));
  auto* points = vtkIdTypeArray::SafeDownCast(surface->GetPointData()->GetArray("point"));
  vtkNew<vtkIdList> ids;
  for (vtkIdType n = 0; n < surface->GetNumberOfCells(); ++n) {
    surface->GetCellPoints(n, ids);
    Face face{cells->GetValue(n), {}};
    for (vtkIdType i = 0; i < ids->GetNumberOfIds(); ++i) {
      face.second.push_back(points->GetValue(ids->GetId(i)));
    }
    std::sort(face.second.begin(), face.second.end());
    faces.insert(face);
  }
  return faces;
}

std::multiset<Face> FacesOf(const FaceList& list) {
  std::multiset<Face> faces;
  for (std::int64_t n = 0; n < list.Count(); ++n) {
    Face face{list.cells[static_cast<std::size_t>(n)], {}};
    face.second.assign(list.Begin(n), list.Begin(n) + list.Size(n));
    std::sort(face.second.begin(), face.second.end());
    faces.insert(face);
  }
  return faces;
}

class Surface : public testing::TestWithParam<std::size_t> {
 protected:
  Surface() : named(AllMeshes(5)[GetParam()]), zone(named.name, named.mesh, true) {}

  NamedMesh named;
  Zone zone;
  Random random{static_cast<unsigned>(GetParam())};
};

TEST_P(Surface, OfAllCellsIsVtks) {
  const auto faces = MakeZoneFaces(zone);
  const std::multiset<Face> found = FacesOf(faces->Shown(nullptr));
  EXPECT_FALSE(found.empty());
  EXPECT_EQ(found, FacesOf(VtkSurface(named.mesh, nullptr))) << named.name;
}

TEST_P(Surface, OfCellsThatAreNotHiddenIsVtks) {
  const auto faces = MakeZoneFaces(zone);
  for (const double chance : {0.02, 0.3, 0.5, 0.8, 0.98, 1.0}) {
    for (int round = 0; round < 5; ++round) {
      const ItemBits hidden = RandomBits(zone.CellCount(), chance, random);
      EXPECT_EQ(FacesOf(faces->Shown(&hidden)), FacesOf(VtkSurface(named.mesh, &hidden)))
          << named.name << ", " << chance << " hidden";
    }
  }
}

TEST_P(Surface, ListsCornersInOrderAround) {
  // In order around, neighbours share an edge of the cell; VTK's face has the same edges.
  const auto edgesOf = [](const std::vector<std::int64_t>& nodes) {
    std::set<std::pair<std::int64_t, std::int64_t>> edges;
    for (std::size_t n = 0; n < nodes.size(); ++n) {
      edges.insert(std::minmax(nodes[n], nodes[(n + 1) % nodes.size()]));
    }
    return edges;
  };
  std::set<std::set<std::pair<std::int64_t, std::int64_t>>> ours, vtks;
  const FaceList list = MakeZoneFaces(zone)->Shown(nullptr);
  for (std::int64_t n = 0; n < list.Count(); ++n) {
    ours.insert(edgesOf({list.Begin(n), list.Begin(n) + list.Size(n)}));
  }
  const vtkSmartPointer<vtkPolyData> surface = VtkSurface(named.mesh, nullptr);
  auto* points = vtkIdTypeArray::SafeDownCast(surface->GetPointData()->GetArray("point"));
  vtkNew<vtkIdList> ids;
  for (vtkIdType n = 0; n < surface->GetNumberOfCells(); ++n) {
    surface->GetCellPoints(n, ids);
    std::vector<std::int64_t> nodes;
    for (vtkIdType i = 0; i < ids->GetNumberOfIds(); ++i) {
      nodes.push_back(points->GetValue(ids->GetId(i)));
    }
    if (surface->GetCellType(n) == VTK_PIXEL) std::swap(nodes[2], nodes[3]);
    vtks.insert(edgesOf(nodes));
  }
  EXPECT_EQ(ours, vtks) << named.name;
}

using Edge = std::array<double, 6>;

Edge EdgeOf(const double* a, const double* b) {
  const auto rounded = [](double x) { return std::round(x * 1e4) / 1e4; };
  std::array<double, 3> from{rounded(a[0]), rounded(a[1]), rounded(a[2])};
  std::array<double, 3> to{rounded(b[0]), rounded(b[1]), rounded(b[2])};
  if (to < from) std::swap(from, to);
  return {from[0], from[1], from[2], to[0], to[1], to[2]};
}

TEST_P(Surface, HasTheSharpEdgesThatVtkFinds) {
  const ZoneSurface surface(zone, MakeZoneFaces(zone)->Shown(nullptr), {1.0, 2.0, 3.0});
  const FaceEdges edges(surface.Faces(), surface.PointCount());
  const double cosine = std::cos(40.0 * 3.14159265358979 / 180.0);
  const EdgeList ends = SharpEdges(surface.Faces(), edges, surface.Coordinates(), cosine);
  // As sets: where VTK gives each side of a block points of its own, an edge is there twice.
  std::set<Edge> ours;
  for (std::size_t n = 0; n < ends.size(); n += 2) {
    ours.insert(EdgeOf(surface.Position(ends[n]).data(), surface.Position(ends[n + 1]).data()));
  }
  std::set<Edge> vtks;
  // Voxels list their faces the other way around, which VTK would take for a sharp edge.
  vtkNew<vtkPolyDataNormals> alike;
  alike->SetInputData(VtkSurface(named.mesh, nullptr));
  alike->SplittingOff();
  alike->ConsistencyOn();
  vtkNew<vtkFeatureEdges> filter;
  filter->SetInputConnection(alike->GetOutputPort());
  filter->SetFeatureAngle(40.0);
  filter->NonManifoldEdgesOff();
  filter->Update();
  vtkPolyData* const lines = filter->GetOutput();
  for (vtkIdType n = 0; n < lines->GetNumberOfCells(); ++n) {
    vtkCell* const line = lines->GetCell(n);
    double a[3], b[3];
    line->GetPoints()->GetPoint(0, a);
    line->GetPoints()->GetPoint(1, b);
    vtks.insert(EdgeOf(a, b));
  }
  EXPECT_EQ(ours, vtks) << named.name;
}

INSTANTIATE_TEST_SUITE_P(OfEveryKind, Surface, testing::Range<std::size_t>(0, 15));

TEST(SurfaceOf, AZoneWithNothingShownIsEmpty) {
  Zone zone("z", Volume(2, AddAsBrick), true);
  ItemBits all(zone.CellCount());
  for (std::int64_t cell = 0; cell < all.count; ++cell) all.Add(cell);
  const ZoneSurface surface(zone, MakeZoneFaces(zone)->Shown(&all), {});
  EXPECT_TRUE(surface.IsEmpty());
  EXPECT_EQ(surface.PointCount(), 0);
}

TEST(SurfaceOf, ManyCellsIsFoundByThreadsAlike) {
  // Above the size at which work is cut into parts.
  Zone zone("z", Volume(30, AddAsBrick), true);
  const auto faces = MakeZoneFaces(zone);
  EXPECT_EQ(faces->Shown(nullptr).Count(), 6 * 30 * 30);
  Random random(3);
  const ItemBits hidden = RandomBits(zone.CellCount(), 0.5, random);
  EXPECT_EQ(FacesOf(faces->Shown(&hidden)), FacesOf(VtkSurface(zone.Block(), &hidden)));
}

}  // namespace
}  // namespace rendertests
