// Writers of one block.
#pragma once

#include <string>

#include "FileTree.h"

namespace qelhost {

/// The extension of the XML format that holds such a block.
std::string ExtensionFor(vtkDataSet* block);

/// Writes a node's block where nothing else looks yet; the format goes by the extension. What is
/// not touched is copied from the file that it came from, where that can be. Throws FileError and
/// may leave a damaged file behind.
void WriteBlockFile(const FileNode& node, const TouchedArrays& touched, const std::string& path);

/// Writes a source of one step and one block in a format of one file, complete or not at all.
void WriteSingle(const FileSource& source, const TouchedArrays& touched, const std::string& path);

/// The one block of the source. Throws FileError unless WriteSingle could hold it.
const FileNode& RequireSingle(const FileSource& source, const std::string& path);

}  // namespace qelhost
