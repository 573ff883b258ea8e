// Writers of one block.
#pragma once

#include <string>

#include "FileTree.h"

namespace qelhost {

/// The extension of the XML format that holds such a block.
std::string ExtensionFor(vtkDataSet* block);

/// Writes a block where nothing else looks yet; the format goes by the extension. Throws FileError
/// and may leave a damaged file behind.
void WriteBlockFile(vtkDataSet* block, const FileEncoding& encoding, const std::string& path);

/// Writes a source of one step and one block in a format of one file, complete or not at all.
void WriteSingle(const FileSource& source, const std::string& path);

/// Throws FileError unless WriteSingle could hold the source.
vtkDataSet* RequireSingle(const FileSource& source, const std::string& path,
                          FileEncoding* encoding);

/// The shortest decimal text that reads back as the same number.
std::string ShortestNumber(double value);

}  // namespace qelhost
