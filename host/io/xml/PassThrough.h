// Writing a file anew by copying what nobody changed.
#pragma once

#include <vtkDataArray.h>

#include <set>
#include <string>

#include "XmlSource.h"

namespace qelhost {

/// Writes the block as its own file with the values that it has now: bytes of arrays that are not
/// touched are copied, blocks of a compressed array that hold other values are encoded anew, arrays
/// that the file did not have are added. False, with nothing written, when VTK must write the
/// block. Throws FileError for the target and ValuesError for the source.
///
/// touched  the block's arrays whose values may have changed
bool WritePassingThrough(const XmlSource& source, vtkDataSet* block,
                         const std::set<vtkDataArray*>& touched, const std::string& path);

}  // namespace qelhost
