#pragma once

#include <vtkDataSet.h>

#include <string>

namespace qelhost {

/// Throws FileError when cells refer to nodes that do not exist or have fewer nodes than their
/// shape: everything behind this door reads connectivity unchecked. One pass over it.
void CheckMesh(const std::string& path, vtkDataSet* block);

}  // namespace qelhost
