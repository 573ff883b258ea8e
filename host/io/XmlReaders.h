// VTK's readers of XML files.
#pragma once

#include <vtkDataSet.h>
#include <vtkSmartPointer.h>

#include <string>

#include "FileTree.h"

namespace qelhost {

/// The type that the root of a file with the path's extension names.
std::string XmlTypeFor(const std::string& path);

/// Throws FileError when the file holds another one.
void RequireType(const std::string& path, const XmlOverview& overview, const std::string& type);

/// Runs the reader for the file's type. With a source the arrays at nodes and cells are left in the
/// file; null when that cannot be. Throws FileError.
vtkSmartPointer<vtkDataSet> RunXmlReader(const std::string& path, const XmlOverview& overview,
                                         XmlSource* source);

/// Reads a file of one mesh, whatever its name is, with every check. Throws FileError.
void ReadXmlOf(const std::string& path, const std::string& type, FileSource& source);

}  // namespace qelhost
