// Files of meshes with hidden cells, written and read by VTK alone, and everything that is in them.
#pragma once

#include "DataSetFiles.h"
#include "FileTesting.h"

#include <vtkAbstractArray.h>
#include <vtkDataObject.h>
#include <vtkDataSet.h>
#include <vtkSmartPointer.h>

#include <string>

namespace hiddencells {

using Treatment = qelhost::HiddenCells::Treatment;

qelhost::WriteOptions With(Treatment treatment);

void SaveMesh(vtkDataObject* mesh, const std::string& path);
vtkSmartPointer<vtkDataSet> Load(const std::string& path);

std::string BytesOf(vtkAbstractArray* array, vtkIdType tuple);

/// Everything that a block holds, as bytes.
std::string AllOf(vtkDataSet* block);

/// The block with the hidden bit set as it should be, in addition to the bits that are there.
vtkSmartPointer<vtkDataSet> Marked(vtkDataSet* block);

}  // namespace hiddencells
