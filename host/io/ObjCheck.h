#pragma once

#include <string>

namespace qelhost {

/// Throws FileError when a cell of a Wavefront file names nodes, texture coordinates or normals
/// that the file does not have: VTK's reader takes for them what lies in memory. False where cells
/// are written in more than one way, or as none is known: then they are unchecked.
bool CheckObjFile(const std::string& path);

}  // namespace qelhost
