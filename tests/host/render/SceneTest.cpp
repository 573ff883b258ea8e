// Scenes of frames: what is seen, what lies under the pointer, and that what was kept from before
// looks like what is made anew.
#include <vtkCellData.h>
#include <vtkDoubleArray.h>
#include <vtkPointData.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>

#include "Canvas.h"
#include "RandomMeshes.h"
#include "ZoneFaces.h"

namespace rendertests {
namespace {

using namespace qelhost;

constexpr int kWidth = 400;
constexpr int kHeight = 300;

/// At nodes "n", at cells "c"; both vary from item to item.
vtkSmartPointer<vtkDataSet> WithValues(vtkSmartPointer<vtkDataSet> mesh) {
  vtkNew<vtkDoubleArray> n, c;
  n->SetName("n");
  c->SetName("c");
  for (vtkIdType item = 0; item < mesh->GetNumberOfPoints(); ++item) {
    n->InsertNextValue(std::sin(0.9 * static_cast<double>(item)));
  }
  for (vtkIdType item = 0; item < mesh->GetNumberOfCells(); ++item) {
    c->InsertNextValue(static_cast<double>(item % 7));
  }
  mesh->GetPointData()->AddArray(n);
  mesh->GetCellData()->AddArray(c);
  return mesh;
}

void ShowMeshes(Frame& frame, const std::vector<vtkSmartPointer<vtkDataSet>>& meshes) {
  std::vector<BlockEntry> blocks;
  for (const auto& mesh : meshes) {
    blocks.push_back({"z" + std::to_string(blocks.size()), mesh, 0, 0.0, nullptr});
  }
  frame.Show(std::make_shared<DataSet>("test", blocks, nullptr));
}

PlotLook LookAt(Frame& frame, const std::string& variable) {
  PlotLook look;
  look.variable = frame.Data()->VariableNumber(variable);
  const Range range = frame.Data()->VariableRange(look.variable);
  look.min = range.min;
  look.max = range.max;
  return look;
}

void HideWhere(Frame& frame, char axis, double above) {
  ValueBlanking& blanking = frame.styles.blanking;
  blanking.include = true;
  blanking.blankEntireCell = true;
  blanking.constraints[0] = {true,
                             frame.Data()->CoordinateVariable(axis),
                             0,
                             BlankRelOp_GreaterThan,
                             ConstraintOp2Mode_UseConstant,
                             above,
                             false};
}

vtkSmartPointer<vtkDataSet> ShiftedBricks(int n, double x) {
  auto mesh = Volume(n, AddAsBrick);
  for (vtkIdType node = 0; node < mesh->GetNumberOfPoints(); ++node) {
    double at[3];
    mesh->GetPoint(node, at);
    mesh->GetPoints()->SetPoint(node, at[0] + x, at[1], at[2]);
  }
  return mesh;
}

/// One random deed of a user; most of the time most is shown.
void ChangeSomething(Frame& frame, PlotLook& look, Random& random) {
  const auto number = [&random](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  DataSet& data = *frame.Data();
  const auto layer = static_cast<std::size_t>(random() % 5);
  switch (random() % 11) {
    case 0: {
      if (look.variable == 0) break;
      QelFieldData* const field = data.Writable(1, look.variable);
      for (int n = 0; n < 20; ++n) {
        field->set(field, static_cast<LgIndex_t>(random() % field->count), number(-1.0, 6.0));
      }
      break;
    }
    case 1:
      HideWhere(frame, "XYZ"[random() % 3], number(1.5, 5.0));
      break;
    case 2:
      frame.styles.blanking.include = random() % 3 == 0;
      break;
    case 3: {
      Zone& zone = *data.FindZone(static_cast<LgIndex_t>(random() % data.ZoneCount()) + 1);
      zone.active = random() % 4 != 0;
      break;
    }
    case 4:
      frame.styles.layerActive[layer] = random() % 3 != 0;
      break;
    case 5:
      frame.view.psiDeg = number(0.0, 180.0);
      frame.view.alphaDeg = number(-180.0, 180.0);
      break;
    case 6:
      frame.view.magnification = number(0.5, 2.0);
      frame.view.translation = {number(-1.0, 1.0), number(-1.0, 1.0)};
      break;
    case 7:
      look.colourMap = ColourMapNames()[random() % ColourMapNames().size()];
      break;
    case 8:
      look.variable = random() % 3 == 0 ? 0 : data.VariableNumber(random() % 2 == 0 ? "n" : "c");
      look.max = number(0.5, 6.0);
      break;
    case 9: {
      QelFieldData* const x = data.Writable(1, data.CoordinateVariable('X'));
      x->set(x, static_cast<LgIndex_t>(random() % x->count), number(0.0, 4.0));
      break;
    }
    default:
      look.showAxes = !look.showAxes;
      look.showOrientation = !look.showOrientation;
  }
  if (look.variable == 0 && random() % 2 == 0) look.variable = data.VariableNumber("c");
}

TEST(Scene, KeptFromBeforeLooksLikeOneMadeAnew) {
  Random random(5);
  Frame frame;
  ShowMeshes(frame, {WithValues(Volume(4, AddMixed)), WithValues(ShiftedBricks(3, 4.5))});
  PlotLook look = LookAt(frame, "c");
  Canvas kept(kWidth, kHeight);
  kept.Draw(frame, look);
  int pictures = 0;
  for (int round = 0; round < 120; ++round) {
    do {
      ChangeSomething(frame, look, random);
    } while (random() % 3 == 0);
    Canvas fresh(kWidth, kHeight);
    const Pixels expected = fresh.Draw(frame, look);
    ASSERT_TRUE(kept.Draw(frame, look).rgb == expected.rgb) << "round " << round;
    pictures += expected.CountNear({255, 255, 255}, 0) < kWidth * kHeight * 9 / 10 ? 1 : 0;
  }
  EXPECT_GT(pictures, 80) << "most pictures show something";
}

TEST(Windows, DrawBesideEachOtherAndAfterOthersAreGone) {
  Frame flat, solid;
  ShowMeshes(flat, {WithValues(Sheet(4, AddAsQuad))});
  ShowMeshes(solid, {WithValues(Volume(2, AddAsBrick))});
  Canvas first(kWidth, kHeight);
  const Pixels expected = first.Draw(flat, LookAt(flat, "n"));
  {
    Canvas second(kWidth, kHeight);
    EXPECT_GT(second.Draw(solid, LookAt(solid, "n")).CountOthers(expected), 2000);
    EXPECT_EQ(first.Draw(flat, LookAt(flat, "n")).rgb, expected.rgb);
  }
  EXPECT_EQ(first.Draw(flat, LookAt(flat, "n")).rgb, expected.rgb);
}

/// Draws before and after the change, and after it anew.
template <class Change>
void ExpectToBeSeen(const std::vector<vtkSmartPointer<vtkDataSet>>& meshes,
                    const std::string& variable, Change change) {
  Frame frame;
  ShowMeshes(frame, meshes);
  frame.view.psiDeg = 50.0;
  frame.view.alphaDeg = 20.0;
  for (std::size_t layer = 0; layer < 5; ++layer) frame.styles.layerActive[layer] = true;
  PlotLook look = LookAt(frame, variable);
  Canvas kept(kWidth, kHeight);
  Canvas fresh(kWidth, kHeight);
  const Pixels before = kept.Draw(frame, look);
  change(frame, look);
  const Pixels after = kept.Draw(frame, look);
  EXPECT_GT(after.CountOthers(before), 50);
  EXPECT_EQ(after.rgb, fresh.Draw(frame, look).rgb);
}

void Write(Frame& frame, LgIndex_t zone, LgIndex_t variable, LgIndex_t item, double value) {
  QelFieldData* const field = frame.Data()->Writable(zone, variable);
  field->set(field, item, value);
}

TEST(Scene, ShowsAlteredValues) {
  for (const std::string name : {"n", "c"}) {
    for (const bool isSolid : {true, false}) {
      const vtkSmartPointer<vtkDataSet> mesh =
          isSolid ? vtkSmartPointer<vtkDataSet>(Volume(3, AddAsBrick))
                  : vtkSmartPointer<vtkDataSet>(Sheet(3, AddAsQuad));
      ExpectToBeSeen({WithValues(mesh)}, name, [&](Frame& frame, const PlotLook& look) {
        for (LgIndex_t item = 0; item < 9; ++item) {
          Write(frame, 1, look.variable, item, item % 2 == 0 ? look.max : look.min);
        }
      });
    }
  }
}

TEST(Scene, ShowsMovedNodes) {
  ExpectToBeSeen({WithValues(Sheet(3, AddAsQuad))}, "c", [](Frame& frame, const PlotLook&) {
    Write(frame, 1, frame.Data()->CoordinateVariable('X'), 5, 1.6);
  });
}

TEST(Scene, ShowsOtherLooks) {
  const std::vector<std::function<void(Frame&, PlotLook&)>> changes = {
      [](Frame&, PlotLook& look) { look.colourMap = "inferno"; },
      [](Frame&, PlotLook& look) { look.max = 3.0; },
      [](Frame& frame, PlotLook& look) { look.variable = frame.Data()->VariableNumber("n"); },
      [](Frame&, PlotLook& look) { look.caption = "a caption"; },
      [](Frame&, PlotLook& look) { look.scale = 2.0; },
      [](Frame&, PlotLook& look) { look.showAxes = true; },
      [](Frame&, PlotLook& look) { look.showOrientation = true; },
      [](Frame& frame, PlotLook&) { frame.styles.layerActive[1] = false; },
      [](Frame& frame, PlotLook&) { frame.styles.MapOf(1).layers[1].color = ColorIndex_Red; },
      [](Frame& frame, PlotLook&) { frame.styles.MapOf(1).layers[1].lineThickness = 2.0; },
      [](Frame& frame, PlotLook&) { frame.plotType = PlotType_Cartesian2D; },
      [](Frame& frame, PlotLook&) { frame.Data()->FindZone(2)->active = false; }};
  for (const auto& change : changes) {
    SCOPED_TRACE(&change - changes.data());
    ExpectToBeSeen({WithValues(Volume(3, AddAsBrick)), WithValues(ShiftedBricks(2, 3.5))}, "c",
                   change);
  }
}

TEST(Scene, GivesBackWhatWasHidden) {
  Frame frame;
  ShowMeshes(frame, {WithValues(Sheet(4, AddAsQuad))});
  const PlotLook look = LookAt(frame, "n");
  Canvas canvas(kWidth, kHeight);
  const Pixels all = canvas.Draw(frame, look);
  HideWhere(frame, 'X', 2.5);
  const Pixels some = canvas.Draw(frame, look);
  EXPECT_GT(some.CountOthers(all), 2000);
  frame.styles.blanking.include = false;
  EXPECT_EQ(canvas.Draw(frame, look).rgb, all.rgb);
}

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

TEST(Highlight, ShowsCellsInTheAccentColour) {
  Frame frame;
  ShowMeshes(frame, {WithValues(Image(10, 10, 0))});
  PlotLook look = LookAt(frame, "n");
  look.variable = 0;
  Canvas canvas(kWidth, kHeight);
  const Pixels plain = canvas.Draw(frame, look);
  ZoneHighlight highlight{1, ValueLocation_CellCentered, ItemBits(100)};
  for (std::int64_t cell = 0; cell < 100; cell += 10)
    highlight.items.Add(cell);  // the first column
  canvas.scene.SetHighlight({highlight});
  const Pixels marked = canvas.Draw(frame, look);
  const auto differs = [&](double gridX, double gridY) {
    const auto [x, y] = canvas.scene.PixelAt(gridX, gridY);
    return Distance(plain.At(x, y), marked.At(x, y)) > 60;
  };
  EXPECT_TRUE(differs(0.5, 0.4));
  EXPECT_TRUE(differs(0.5, 9.6));
  EXPECT_FALSE(differs(1.5, 5.0));
  EXPECT_GT(marked.CountNear({255, 89, 0}, 60), 200) << "the outline";
  EXPECT_EQ(plain.CountNear({255, 89, 0}, 60), 0);
  canvas.scene.SetHighlight({});
  EXPECT_EQ(canvas.Draw(frame, look).rgb, plain.rgb);
}

TEST(Highlight, LeavesOutHiddenCellsAndInactiveZones) {
  Frame frame;
  ShowMeshes(frame, {WithValues(Image(10, 10, 0))});
  const PlotLook look = LookAt(frame, "n");
  Canvas canvas(kWidth, kHeight);
  ZoneHighlight highlight{1, ValueLocation_CellCentered, ItemBits(100)};
  highlight.items.Add(9);  // from X = 9 to 10
  canvas.scene.SetHighlight({highlight});
  EXPECT_GT(canvas.Draw(frame, look).CountNear({255, 89, 0}, 60), 20);
  HideWhere(frame, 'X', 8.5);
  EXPECT_EQ(canvas.Draw(frame, look).CountNear({255, 89, 0}, 60), 0);
  frame.styles.blanking.include = false;
  EXPECT_GT(canvas.Draw(frame, look).CountNear({255, 89, 0}, 60), 20);
  frame.Data()->FindZone(1)->active = false;
  EXPECT_EQ(canvas.Draw(frame, look).CountNear({255, 89, 0}, 60), 0);
}

TEST(Highlight, ShowsNodesAsPoints) {
  Frame frame;
  ShowMeshes(frame, {WithValues(Image(10, 10, 0))});
  const PlotLook look = LookAt(frame, "n");
  Canvas canvas(kWidth, kHeight);
  ZoneHighlight highlight{1, ValueLocation_Nodal, ItemBits(121)};
  highlight.items.Add(60);  // the middle
  canvas.scene.SetHighlight({highlight});
  const Pixels marked = canvas.Draw(frame, look);
  const auto [x, y] = canvas.scene.PixelAt(5.0, 5.0);
  EXPECT_LT(Distance(marked.At(x, y), {255, 89, 0}), 30);
  EXPECT_LT(marked.CountNear({255, 89, 0}, 30), 100);
}

TEST(Overlay, ShowsTheGeometryThatIsDrawnAndTheSelectedOne) {
  Frame frame;
  ShowMeshes(frame, {WithValues(Image(10, 10, 0))});
  const PlotLook look = LookAt(frame, "n");
  Canvas canvas(kWidth, kHeight);
  Geometry rectangle;
  rectangle.type = GeomType_Rectangle;
  rectangle.anchor = {2.0, 2.0, 0.0};
  rectangle.size = {4.0, 3.0};
  canvas.scene.SetRubberBand(rectangle);
  EXPECT_GT(canvas.Draw(frame, look).CountNear({255, 89, 0}, 40), 100);
  canvas.scene.SetRubberBand({});
  EXPECT_EQ(canvas.Draw(frame, look).CountNear({255, 89, 0}, 40), 0);
  const Pixel geometryColour = {217, 26, 140};
  const QelGeomID_t id = frame.geometries.Add(rectangle);
  const int plain = canvas.Draw(frame, look).CountNear(geometryColour, 30);
  EXPECT_GT(plain, 100);
  canvas.scene.SetSelectedGeometry(id);
  EXPECT_GT(canvas.Draw(frame, look).CountNear(geometryColour, 30), plain + 150);
}

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
