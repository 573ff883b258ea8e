// Files before anybody reads them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qelhost {

/// Throws FileError unless a regular file stands there that may be read. Whoever opened a pipe, or
/// read a device, could wait for ever.
void RequireFile(const std::string& path);

/// Of a file; 0 when there is none.
std::int64_t FileBytes(const std::string& path);

/// Throws FileError when the markup of an index is not what VTK's parser can take in: elements that
/// lie too deep in one another, are too long or have too many attributes, declarations, text that
/// is marked as such.
void CheckIndexMarkup(const std::string& path);

}  // namespace qelhost
