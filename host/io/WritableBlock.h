#pragma once

#include <vtkDataSet.h>
#include <vtkSmartPointer.h>

#include <string>
#include <vector>

class vtkAbstractArray;

namespace qelhost {

/// All arrays of a block but those of its cells, null ones among them.
std::vector<vtkAbstractArray*> ArraysOf(vtkDataSet* block);

/// Whether every number of a block is finite. VTK's writers have words for the others, which its
/// readers do not take.
bool FitsText(vtkDataSet* block);

/// A block as VTK's writers must have it, so that its readers take the file: the same mesh with the
/// same values, shared where they can be. The block itself when nothing of it has to differ.
///
/// In XML, names are spelt as the file must have them; `path` is for the error. In both forms, the
/// longest length of vectors that is told beside them is a finite one, because VTK's readers know
/// no other. Throws FileError where a name fits no XML file.
vtkSmartPointer<vtkDataSet> WritableAsXml(vtkDataSet* block, const std::string& path);
vtkSmartPointer<vtkDataSet> WritableAsLegacy(vtkDataSet* block);

}  // namespace qelhost
