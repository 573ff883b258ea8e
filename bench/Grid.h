#pragma once

#include <vtkSmartPointer.h>
#include <vtkUnstructuredGrid.h>

namespace marquell::bench {

/// A cube of n x n x n bricks, one unit wide, its lowest corner at the origin. At nodes float p,
/// double T and the float vector U, at cells float k.
vtkSmartPointer<vtkUnstructuredGrid> MakeGrid(vtkIdType n);

}  // namespace marquell::bench
