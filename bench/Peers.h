#pragma once

#include <vtkSmartPointer.h>
#include <vtkType.h>
#include <vtkUnstructuredGrid.h>

#include <array>
#include <vector>

class vtkImplicitFunction;

/// What a user of VTK alone would run instead. Each answers how many cells it took.
namespace marquell::bench {

using Corner = std::array<double, 2>;

/// An upright box as VTK says it.
struct Bounds3 {
  std::array<double, 3> low;
  std::array<double, 3> high;
};

vtkSmartPointer<vtkImplicitFunction> BoxFunction(const Bounds3& box);
vtkSmartPointer<vtkImplicitFunction> SphereFunction(double radius);  ///< around the middle
/// The box turned by an angle in degrees about the Z axis through its lowest corner.
vtkSmartPointer<vtkImplicitFunction> TurnedBoxFunction(const Bounds3& box, double degrees);
/// Seen along Z, the corners measured from the middle.
vtkSmartPointer<vtkImplicitFunction> LoopFunction(const std::vector<Corner>& corners);

/// vtkExtractGeometry: the cells with all corners inside.
vtkIdType ExtractGeometry(vtkUnstructuredGrid* grid, vtkImplicitFunction* inside);

/// vtkExtractSelection: the cells that touch the box, given as a frustum.
vtkIdType ExtractFrustum(vtkUnstructuredGrid* grid, const Bounds3& box);

/// vtkArrayCalculator: `k*1.4` of all cells, as floats.
vtkIdType Calculate(vtkUnstructuredGrid* grid);

}  // namespace marquell::bench
