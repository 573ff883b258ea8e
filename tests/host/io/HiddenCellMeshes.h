// Meshes of every kind some of whose cells an array hides.
#pragma once

#include <vtkDataSet.h>
#include <vtkSmartPointer.h>

#include <array>

namespace hiddencells {

inline constexpr char kHiding[] = "PICK_BLANK";

// Boxes of unequal sizes at numbers that no float holds.
vtkSmartPointer<vtkDataSet> Bricks();
/// With quadrilaterals, lines, vertices and a node of no cell beside bricks and wedges.
vtkSmartPointer<vtkDataSet> MixedCells();
vtkSmartPointer<vtkDataSet> Polyhedra();
vtkSmartPointer<vtkDataSet> Polygons();
/// Polygons, and vertices, lines and strips beside them.
vtkSmartPointer<vtkDataSet> Surface();
vtkSmartPointer<vtkDataSet> Structured();
vtkSmartPointer<vtkDataSet> Rectilinear();
vtkSmartPointer<vtkDataSet> ImageOfBoxes();

/// 1 for some cells that are of the zone, never for the points and lines beside them.
void AddHiding(vtkDataSet* block, unsigned seed);

/// Marks that a reader or another program made: cells are another piece's, or of an unstructured
/// mesh also refined ones, and one is hidden.
void AddGhosts(vtkDataSet* block, bool isStructured);

bool IsHidden(vtkDataSet* block, vtkIdType cell);

using Position = std::array<double, 3>;
Position PositionOf(vtkDataSet* mesh, vtkIdType point);

}  // namespace hiddencells
