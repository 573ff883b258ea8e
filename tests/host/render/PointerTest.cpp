// What lies under the pointer, and views that follow it.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "SceneTesting.h"

namespace rendertests {
namespace {

class Coordinates : public testing::TestWithParam<bool> {};

TEST_P(Coordinates, OfPixelsAndTheGridAreEachOthersInverse) {
  Frame frame;
  ShowMeshes(frame, {WithValues(GetParam() ? vtkSmartPointer<vtkDataSet>(Volume(3, AddAsBrick))
                                           : vtkSmartPointer<vtkDataSet>(Sheet(3, AddAsQuad)))});
  frame.view.psiDeg = 50.0;
  frame.view.alphaDeg = 20.0;
  frame.view.magnification = 1.7;
  frame.view.translation = {0.3, -0.2};
  PlotLook look = LookAt(frame, "n");
  look.showAxes = true;
  Canvas canvas(kWidth, kHeight);
  canvas.Update(frame, look);
  for (const auto& [x, y] :
       {std::pair(0.0, 0.0), std::pair(123.5, 77.25), std::pair(330.0, 270.0)}) {
    const auto [gridX, gridY] = canvas.scene.GridAt(x, y);
    const auto back = canvas.scene.PixelAt(gridX, gridY);
    EXPECT_NEAR(back[0], x, 1e-9);
    EXPECT_NEAR(back[1], y, 1e-9);
    EXPECT_NEAR(canvas.scene.GridAt(x + 1.0, y)[0] - gridX, canvas.scene.GridPerPixel(), 1e-12);
  }
}

INSTANTIATE_TEST_SUITE_P(FlatAndSolid, Coordinates, testing::Bool());

TEST(Coordinates, InAFlatPlotAreTheDatas) {
  Frame frame;
  ShowMeshes(frame, {WithValues(Image(10, 10, 0))});
  PlotLook look = LookAt(frame, "n");
  frame.view.translation = {1.0, 0.5};
  frame.view.magnification = 0.7;
  look.showAxes = true;
  Canvas canvas(kWidth, kHeight);
  HideWhere(frame, 'X', 4.5);
  const Pixels pixels = canvas.Draw(frame, look);
  // Cells from X = 0 to 5 are shown; the picture changes where the scene says that these lie.
  const auto isWhite = [&](double gridX, double gridY) {
    const auto [x, y] = canvas.scene.PixelAt(gridX, gridY);
    return pixels.At(x, y) == Pixel{255, 255, 255};
  };
  for (const double y : {0.5, 5.0, 9.5}) {
    EXPECT_TRUE(isWhite(-0.2, y));
    EXPECT_FALSE(isWhite(0.2, y));
    EXPECT_FALSE(isWhite(3.8, y));
    EXPECT_TRUE(isWhite(5.2, y));
  }
  EXPECT_TRUE(isWhite(2.0, -0.2));
  EXPECT_TRUE(isWhite(2.0, 10.2));
}

/// The hit found by looking at every face of VTK's cells that are not hidden.
std::optional<std::pair<LgIndex_t, LgIndex_t>> BruteHit(Frame& frame, double gridX, double gridY) {
  const Projection projection =
      frame.plotType == PlotType_Cartesian3D ? ProjectionOf(frame.view) : Projection();
  const auto placed = [&](vtkDataSet* block, vtkIdType node) {
    double p[3];
    block->GetPoint(node, p);
    auto at = projection.ToPlane(p[0], p[1], p[2]);
    at[0] -= gridX;
    at[1] -= gridY;
    return at;
  };
  std::optional<std::pair<LgIndex_t, LgIndex_t>> best;
  double nearest = -1e300;
  const auto tryTriangle = [&](const auto& a, const auto& b, const auto& c, LgIndex_t zone,
                               LgIndex_t cell) {
    const double area = (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
    const double u = (b[0] * c[1] - b[1] * c[0]) / area;
    const double v = (c[0] * a[1] - c[1] * a[0]) / area;
    const double w = 1.0 - u - v;
    if (area == 0.0 || u < 0.0 || v < 0.0 || w < 0.0) return;
    const double depth = u * a[2] + v * b[2] + w * c[2];
    if (depth <= nearest) return;
    nearest = depth;
    best = {zone, cell};
  };
  for (LgIndex_t zoneNum = 1; zoneNum <= frame.Data()->ZoneCount(); ++zoneNum) {
    const Zone& zone = *frame.Data()->FindZone(zoneNum);
    if (!zone.active || !zone.IsFromFile()) continue;
    const BlankedItems* const blanked = frame.Blanked(zoneNum);
    for (LgIndex_t cell = 0; cell < zone.CellCount(); ++cell) {
      if (blanked != nullptr && blanked->cells.Has(cell)) continue;
      vtkCell* const solid = zone.Block()->GetCell(zone.BlockCell(cell));
      const int faces = solid->GetCellDimension() == 3 ? solid->GetNumberOfFaces() : 1;
      for (int n = 0; n < faces; ++n) {
        vtkCell* const face = solid->GetCellDimension() == 3 ? solid->GetFace(n) : solid;
        for (vtkIdType i = 1; i + 1 < face->GetNumberOfPoints(); ++i) {
          tryTriangle(placed(zone.Block(), face->GetPointId(0)),
                      placed(zone.Block(), face->GetPointId(i)),
                      placed(zone.Block(), face->GetPointId(i + 1)), zoneNum, cell + 1);
        }
      }
    }
  }
  return best;
}

class Probe : public testing::TestWithParam<bool> {
 protected:
  Probe() {
    if (GetParam()) {
      ShowMeshes(frame,
                 {WithValues(Volume(4, AddAsTetrahedra)), WithValues(ShiftedBricks(3, 3.0))});
      frame.view.psiDeg = 55.0;
      frame.view.alphaDeg = 25.0;
    } else {
      ShowMeshes(frame, {WithValues(Sheet(6, AddAsTriangles))});
    }
    look = LookAt(frame, "n");
  }

  /// How many pixels were hit; all of them are compared.
  int Compare(Random& random) {
    canvas.Update(frame, look);
    std::uniform_real_distribution<double> x(0.0, 0.83 * kWidth), y(0.0, 0.92 * kHeight);
    int hits = 0;
    int others = 0;
    for (int round = 0; round < 300; ++round) {
      const double px = x(random), py = y(random);
      const auto [gridX, gridY] = canvas.scene.GridAt(px, py);
      const auto expected = BruteHit(frame, gridX, gridY);
      const auto hit = canvas.scene.HitAt(px, py);
      if (hit.has_value() != expected.has_value() ||
          (hit.has_value() && std::pair(hit->zone, hit->cell) != *expected)) {
        ++others;
        continue;
      }
      if (!hit.has_value()) continue;
      ++hits;
      ExpectNearestNode(*hit);
      const BlankedItems* const blanked = frame.Blanked(hit->zone);
      EXPECT_FALSE(blanked != nullptr && blanked->cells.Has(hit->cell - 1));
    }
    // Warped quadrilaterals may be cut either way by the two of them, at their rims.
    EXPECT_LE(others, 3);
    return hits;
  }

  void ExpectNearestNode(const ProbeHit& hit) {
    Zone& zone = *frame.Data()->FindZone(hit.zone);
    std::vector<std::int64_t> nodes;
    zone.CellNodes(hit.cell - 1, nodes);
    const auto distance = [&](std::int64_t node) {
      const auto at = zone.Position(node);
      return std::hypot(at[0] - hit.position[0], at[1] - hit.position[1], at[2] - hit.position[2]);
    };
    EXPECT_NE(std::find(nodes.begin(), nodes.end(), hit.node - 1), nodes.end());
    for (const std::int64_t node : nodes) EXPECT_LE(distance(hit.node - 1), distance(node));
  }

  Frame frame;
  PlotLook look;
  Canvas canvas{kWidth, kHeight};
};

TEST_P(Probe, HitsTheFaceNearestToTheViewer) {
  Random random(11);
  EXPECT_GT(Compare(random), 80);
}

TEST_P(Probe, HitsNoHiddenCell) {
  Random random(12);
  HideWhere(frame, 'X', 2.0);
  EXPECT_GT(Compare(random), 20);
  HideWhere(frame, 'Y', 1.5);
  EXPECT_GT(Compare(random), 20);
  HideWhere(frame, 'X', -10.0);
  EXPECT_EQ(Compare(random), 0);
}

TEST_P(Probe, HitsNoZoneThatIsNotShownOrAnAddOns) {
  Random random(13);
  frame.Data()->FindZone(1)->active = false;
  Compare(random);
  frame.Data()->FindZone(1)->active = true;
  // A square in front of everything.
  const LgIndex_t made = frame.Data()->AddZone("made", 2, 2, 1, ZoneType_Ordered, nullptr);
  ASSERT_GT(made, 0);
  for (LgIndex_t node = 0; node < 4; ++node) {
    const double place[3] = {node % 2 == 0 ? -9.0 : 9.0, node < 2 ? -9.0 : 9.0, 9.0};
    for (int axis = 0; axis < 3; ++axis) {
      QelFieldData* const field =
          frame.Data()->Writable(made, frame.Data()->CoordinateVariable("XYZ"[axis]));
      field->set(field, node, place[axis]);
    }
  }
  EXPECT_GT(Compare(random), 80);
}

INSTANTIATE_TEST_SUITE_P(FlatAndSolid, Probe, testing::Bool());

TEST(Moving, DragsWhatIsUnderThePointer) {
  Frame frame;
  ShowMeshes(frame, {WithValues(Volume(3, AddAsBrick))});
  frame.view.psiDeg = 30.0;
  const PlotLook look = LookAt(frame, "n");
  Canvas canvas(kWidth, kHeight);
  canvas.Update(frame, look);
  const auto held = canvas.scene.GridAt(100.0, 120.0);
  frame.view = canvas.scene.Panned(frame.view, 17.0, -9.0);
  canvas.Update(frame, look);
  EXPECT_NEAR(canvas.scene.PixelAt(held[0], held[1])[0], 117.0, 1e-9);
  EXPECT_NEAR(canvas.scene.PixelAt(held[0], held[1])[1], 111.0, 1e-9);
  const double unit = canvas.scene.GridPerPixel();
  frame.view = canvas.scene.ZoomedAt(frame.view, 117.0, 111.0, 2.5);
  canvas.Update(frame, look);
  EXPECT_NEAR(canvas.scene.PixelAt(held[0], held[1])[0], 117.0, 1e-9);
  EXPECT_NEAR(canvas.scene.PixelAt(held[0], held[1])[1], 111.0, 1e-9);
  EXPECT_NEAR(canvas.scene.GridPerPixel(), unit / 2.5, 1e-12);
}

TEST(Moving, TurningKeepsTheSizeOnTheScreen) {
  Frame frame;
  ShowMeshes(frame, {WithValues(Structured(9, 2, 1))});
  const PlotLook look = LookAt(frame, "n");
  frame.plotType = PlotType_Cartesian3D;
  Canvas canvas(kWidth, kHeight);
  canvas.Update(frame, look);
  const double unit = canvas.scene.GridPerPixel();
  for (int step = 0; step < 20; ++step) {
    frame.view = canvas.scene.Rotated(frame.view, 13.0, 7.0);
    canvas.Update(frame, look);
    EXPECT_NEAR(canvas.scene.GridPerPixel(), unit, 1e-12);
  }
}

TEST(Moving, ManyFacesAreDrawnFewerAndLookAlike) {
  Frame frame;
  ShowMeshes(frame, {WithValues(Image(700, 700, 0))});
  PlotLook look = LookAt(frame, "n");
  vtkDataArray* const n = frame.Data()->FindZone(1)->Block()->GetPointData()->GetArray("n");
  for (vtkIdType node = 0; node < n->GetNumberOfTuples(); ++node) {
    n->SetComponent(node, 0, static_cast<double>(node % 701) / 700.0);
  }
  look.min = 0.0;
  look.max = 1.0;
  Canvas canvas(kWidth, kHeight);
  const Pixels whole = canvas.Draw(frame, look);
  canvas.scene.SetInteracting(true);
  EXPECT_LT(canvas.Draw(frame, look).CountOthers(whole), kWidth * kHeight / 50);
  // Near and far, and moved further than what was made at first.
  for (const auto& [magnification, x] : {std::pair(20.0, 0.0), {20.0, -300.0}, {0.5, 0.0}}) {
    frame.view.magnification = magnification;
    frame.view.translation = {x, 0.0};
    const Pixels rough = canvas.Draw(frame, look);
    canvas.scene.SetInteracting(false);
    EXPECT_LT(rough.CountOthers(canvas.Draw(frame, look)), kWidth * kHeight / 50) << magnification;
    canvas.scene.SetInteracting(true);
    EXPECT_LT(rough.CountNear({255, 255, 255}, 0),
              magnification > 1.0 ? kWidth * kHeight / 3 : kWidth * kHeight);
    EXPECT_EQ(canvas.Draw(frame, look).rgb, rough.rgb);
  }
  canvas.scene.SetInteracting(false);
  frame.view = frame.FirstView();
  EXPECT_EQ(canvas.Draw(frame, look).rgb, whole.rgb);
}

}  // namespace
}  // namespace rendertests
