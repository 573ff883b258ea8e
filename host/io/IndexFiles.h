// Files that only name others: multi-block indexes (.vtm) and collections (.pvd).
#pragma once

#include <string>
#include <vector>

#include "FileTree.h"

namespace qelhost {

void ReadMultiBlock(const std::string& path, FileSource& source);
void ReadCollection(const std::string& path, FileSource& source);
void WriteMultiBlock(const FileSource& source, const TouchedArrays& touched,
                     const std::string& path);
void WriteCollection(const FileSource& source, const TouchedArrays& touched,
                     const std::string& path);

/// Files that an index names, and those that these name; empty when it cannot be read.
std::vector<std::string> FilesNamedBy(const std::string& path);

}  // namespace qelhost
