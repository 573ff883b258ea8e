#pragma once

#include <vtkPolyData.h>
#include <vtkSmartPointer.h>

#include "ZoneSurface.h"

namespace qelhost {

/// Lines of equal value over a surface; values are one a point, places on the colour map.
vtkSmartPointer<vtkPolyData> IsolinesOf(const ZoneSurface& surface,
                                        const std::vector<float>& values,
                                        const std::vector<float>& levels);

}  // namespace qelhost
