// Checking the numbers of a VTK XML file before VTK's reader meets them.
#pragma once

#include <memory>

#include "ByteFile.h"
#include "XmlLayout.h"

namespace qelhost {

/// VTK's reader takes lengths and counts at their word: wrong ones end the process, fill the memory
/// or leave values as they lay there. Throws FileError for an array whose type is unknown, whose
/// payload is not as long as its header says or is no base64, or whose strings are not as many as
/// it has room for; for polyhedra that do not end where they say; and for arrays that share their
/// numbers beyond measure. Other numbers that are compressed are not looked into.
void CheckPayloads(const std::shared_ptr<const ByteFile>& file, const XmlLayout& layout);

}  // namespace qelhost
