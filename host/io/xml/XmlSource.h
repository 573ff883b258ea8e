// An XML file whose arrays are read when they are needed and copied through when they are not
// changed.
#pragma once

#include <vtkDataSet.h>
#include <vtkSmartPointer.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "DataSet.h"
#include "StoredArray.h"
#include "XmlLayout.h"

namespace qelhost {

/// The array of marks in files that are older than vtkGhostType.
constexpr char kOldGhostName[] = "vtkGhostLevels";

/// What stays known of a file of one mesh while its data set is open.
struct XmlSource {
  std::shared_ptr<const ByteFile> file;
  XmlLayout layout;
  /// By number in the layout. Null for arrays that only VTK reads.
  std::vector<std::shared_ptr<const StoredArray>> stored;
  /// The array of the block behind each number; null where none is known.
  std::vector<vtkSmartPointer<vtkAbstractArray>> arrays;
  std::shared_ptr<PendingArrays> pending = std::make_shared<PendingArrays>();
};

/// Opens a file for that; null when VTK must read it. Throws FileError.
std::shared_ptr<XmlSource> OpenXmlSource(const std::string& path);

/// Whether each array of the section, in the file's order, has the name given.
bool HasArrays(const XmlSource& source, XmlSection section, const std::vector<std::string>& names);

/// Gives a block that was read without them its arrays at nodes and cells, in the file's order, to
/// be read when they are needed. False, with the block as it was, when one of them is not stored as
/// the mesh would have it.
bool AttachArrays(XmlSource& source, vtkDataSet* block);

/// Reads the mesh alone of an unstructured grid without polyhedra; connectivity of 32 bits wherever
/// it fits. Null when VTK must read it. Throws FileError.
vtkSmartPointer<vtkDataSet> ReadUnstructuredMesh(XmlSource& source);

/// Reads what was not read yet. Throws ValuesError.
void LoadAll(const XmlSource& source);

}  // namespace qelhost
