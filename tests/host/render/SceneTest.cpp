// Scenes of frames: that what was kept from before looks like what is made anew.
#include <gtest/gtest.h>

#include <functional>

#include "SceneTesting.h"

namespace rendertests {
namespace {

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

}  // namespace
}  // namespace rendertests
