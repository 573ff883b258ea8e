// What a picture shows, as a VTK scene.
#pragma once

#include <vtkRenderer.h>
#include <vtkSmartPointer.h>

#include "Picture.h"

namespace qelhost {

/// The plot in its part of the picture, and what stands around it.
struct Scene {
  vtkSmartPointer<vtkRenderer> plot;
  vtkSmartPointer<vtkRenderer> margin;
};

Scene MakeScene(Frame& frame, const PictureOptions& options);

}  // namespace qelhost
