#pragma once

#include "xml/ByteFile.h"

namespace qelhost {

/// Throws FileError when a section of a legacy file ends before all values that its head announces:
/// VTK's reader takes what follows in memory for the rest, or crashes. False when it comes to a
/// section that it does not know: then what follows is unchecked.
bool CheckLegacyFile(const ByteFile& file);

}  // namespace qelhost
