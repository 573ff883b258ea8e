// Small meshes, and how they are written and read by VTK alone.
#pragma once

#include <vtkDataSet.h>
#include <vtkSmartPointer.h>

#include <functional>
#include <string>
#include <vector>

namespace clitests {

enum class MeshKind { kImage, kRectilinear, kStructured, kBricks, kMixed, kBlocks };

/// A mesh on the nodes of 4 x 3 x 3 unit boxes, with p (double), U (3 floats) and both (double) at
/// points, c (float), id (int32) and both (float) at cells, and a note as field data. Mixed boxes
/// take turns as a brick and a quadrilateral, or two wedges and a line.
vtkSmartPointer<vtkDataObject> MakeMesh(MeshKind kind);

/// In the format of the extension.
void WriteMesh(vtkDataObject* mesh, const std::string& path);
vtkSmartPointer<vtkDataObject> ReadMesh(const std::string& path);

/// The data sets in it, in order; itself when it is one.
std::vector<vtkDataSet*> Leaves(vtkDataObject* mesh);

using Inside = std::function<bool(double x, double y)>;
using Change = std::function<double(double)>;

/// Changes the values at the nodes inside.
void ChangeAtNodes(vtkDataSet* mesh, const char* array, const Inside& inside, const Change& change);
/// Changes the values at the cells that have all corners (isAll) or any corner inside.
void ChangeAtCells(vtkDataSet* mesh, const char* array, const Inside& inside, bool isAll,
                   const Change& change);

/// Empty when points, cells and arrays are the same to the byte; else what differs.
std::string Difference(vtkDataSet* expected, vtkDataSet* actual);

}  // namespace clitests
