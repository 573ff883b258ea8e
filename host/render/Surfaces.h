// The surfaces of zones, ready to be coloured.
#pragma once

#include <vtkPolyData.h>
#include <vtkSmartPointer.h>

#include "Frame.h"

namespace qelhost {

/// The name of the array that colours a surface, at its points or at its cells.
constexpr char kColours[] = "colours";

/// The surface of what is shown of a zone. variable 0: without colours.
vtkSmartPointer<vtkPolyData> SurfaceOf(Frame& frame, LgIndex_t zoneNum, LgIndex_t variable);

}  // namespace qelhost
