// How cells that are hidden by a cell array go into a file.
#pragma once

#include <string>

#include "DataSetFiles.h"
#include "FileTree.h"

namespace qelhost {

/// The source as it is to be written: blocks with cells to treat are replaced by copies, the others
/// are the same objects. Nothing that the source holds is changed.
FileSource WithHiddenCells(const FileSource& source, const HiddenCells& hidden);

/// Whether leaving cells out would turn a block of the source into another kind of mesh.
bool IsStructured(vtkDataSet* block);

}  // namespace qelhost
