// The kinds of actors that plots are made of.
#pragma once

#include <vtkActor.h>
#include <vtkActor2D.h>
#include <vtkPolyData.h>
#include <vtkSmartPointer.h>
#include <vtkTextActor.h>

#include <string>

#include "ColourMaps.h"
#include "qelvane/Types.h"

namespace qelhost {

/// The contract's colour indices.
Colour IndexedColour(LgIndex_t index);

/// Faces in one colour until they are given others.
vtkSmartPointer<vtkActor> MakeFacesActor(vtkPolyData* faces);
/// Lines, or the edges of faces, that lie on faces and are seen there.
vtkSmartPointer<vtkActor> MakeLinesActor(vtkPolyData* lines);
/// Points as small squares that lie on faces and are seen there.
vtkSmartPointer<vtkActor> MakePointsActor(vtkPolyData* points);

/// Lines or faces in pixels of a renderer, over everything else in it.
vtkSmartPointer<vtkActor2D> MakeFlatActor(vtkPolyData* drawn, const Colour& colour, double width);

/// Text whose size is in pixels, at a place in pixels of the renderer.
vtkSmartPointer<vtkTextActor> MakeText(const std::string& words, double x, double y, double size);

}  // namespace qelhost
