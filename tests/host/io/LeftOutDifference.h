#pragma once

#include <vtkDataSet.h>

#include <string>

namespace hiddencells {

/// How the cells and what belongs to them differ from the cells of a block that are not hidden.
std::string DropDifference(vtkDataSet* before, vtkDataSet* after);

}  // namespace hiddencells
