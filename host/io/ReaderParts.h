// What readers of several formats have in common.
#pragma once

#include <vtkDataObject.h>
#include <vtkDataSet.h>

#include <cstdint>
#include <string>

#include "FileTree.h"
#include "VtkErrors.h"

class vtkXMLDataElement;

namespace qelhost {

void RequireNoError(const std::string& path, const VtkErrorCapture& errors);

/// "" when there is none.
std::string AttributeOf(vtkXMLDataElement* element, const char* name);

/// The tree of what a reader gave.
FileNode NodeOf(vtkDataObject* data, const FileEncoding& encoding);

/// The only step of a file of one block.
void TakeBlock(FileSource& source, vtkDataSet* block, const FileEncoding& encoding);

/// Reads a file for trial first, and then for good. bytes: of all that belongs to it. Throws
/// FileError.
void ReadAfterTrial(const std::string& path, std::int64_t (*bytes)(const std::string&),
                    void (*read)(const std::string&, FileSource&), FileSource& source);

/// Readers of VTK's hand on whatever connectivity a file has. Throws FileError.
void CheckMeshes(const std::string& path, const FileNode& node);

}  // namespace qelhost
