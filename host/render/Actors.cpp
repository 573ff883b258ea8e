#include "Actors.h"

#include <vtkNew.h>
#include <vtkPolyDataMapper.h>
#include <vtkPolyDataMapper2D.h>
#include <vtkProperty.h>
#include <vtkProperty2D.h>
#include <vtkTextProperty.h>

#include <iterator>

namespace qelhost {
namespace {

constexpr Colour kIndexed[] = {{0, 0, 0}, {1, 0, 0},     {0, 0.6, 0}, {0, 0, 1},     {0, 0.8, 0.8},
                               {1, 1, 0}, {0.6, 0, 0.8}, {1, 1, 1},   {1, 0.5, 0.05}};

/// How far lines and points stand before the faces that they lie on, in steps of the depth buffer:
/// a square of a few pixels on a steep face reaches some way into it. A hundred are 0.2 percent of
/// what the picture is deep.
constexpr double kLinesForward = -24.0;
constexpr double kPointsForward = -200.0;

vtkSmartPointer<vtkActor> MakeActor(vtkPolyData* drawn) {
  vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetInputData(drawn);
  mapper->ScalarVisibilityOff();
  mapper->UseLookupTableScalarRangeOn();
  mapper->SetInterpolateScalarsBeforeMapping(true);
  mapper->SetScalarModeToDefault();
  auto actor = vtkSmartPointer<vtkActor>::New();
  actor->SetMapper(mapper);
  return actor;
}

}  // namespace

Colour IndexedColour(LgIndex_t index) {
  const bool isKnown = index >= 0 && index < static_cast<LgIndex_t>(std::size(kIndexed));
  return isKnown ? kIndexed[index] : kInk;
}

vtkSmartPointer<vtkActor> MakeFacesActor(vtkPolyData* faces) {
  auto actor = MakeActor(faces);
  // Colours stand for numbers, so a light may shade them but little.
  actor->GetProperty()->SetAmbient(0.55);
  actor->GetProperty()->SetDiffuse(0.45);
  return actor;
}

vtkSmartPointer<vtkActor> MakeLinesActor(vtkPolyData* lines) {
  auto actor = MakeActor(lines);
  vtkMapper* const mapper = actor->GetMapper();
  vtkMapper::SetResolveCoincidentTopologyToPolygonOffset();
  mapper->SetRelativeCoincidentTopologyLineOffsetParameters(0.0, kLinesForward);
  actor->GetProperty()->SetRepresentationToWireframe();
  actor->GetProperty()->SetLighting(false);
  return actor;
}

vtkSmartPointer<vtkActor> MakePointsActor(vtkPolyData* points) {
  auto actor = MakeActor(points);
  vtkMapper* const mapper = actor->GetMapper();
  vtkMapper::SetResolveCoincidentTopologyToPolygonOffset();
  mapper->SetRelativeCoincidentTopologyPointOffsetParameter(kPointsForward);
  actor->GetProperty()->SetRepresentationToPoints();
  actor->GetProperty()->SetLighting(false);
  return actor;
}

vtkSmartPointer<vtkActor2D> MakeFlatActor(vtkPolyData* drawn, const Colour& colour, double width) {
  vtkNew<vtkPolyDataMapper2D> mapper;
  mapper->SetInputData(drawn);
  mapper->ScalarVisibilityOff();
  auto actor = vtkSmartPointer<vtkActor2D>::New();
  actor->SetMapper(mapper);
  actor->GetProperty()->SetColor(colour[0], colour[1], colour[2]);
  actor->GetProperty()->SetLineWidth(static_cast<float>(width));
  return actor;
}

vtkSmartPointer<vtkTextActor> MakeText(const std::string& words, double x, double y, double size) {
  auto text = vtkSmartPointer<vtkTextActor>::New();
  text->SetInput(words.c_str());
  vtkTextProperty* const look = text->GetTextProperty();
  look->SetColor(kInk[0], kInk[1], kInk[2]);
  look->SetFontSize(static_cast<int>(size));
  look->SetFontFamilyToArial();
  look->ItalicOff();
  look->ShadowOff();
  look->BoldOff();
  text->SetPosition(x, y);
  return text;
}

}  // namespace qelhost
