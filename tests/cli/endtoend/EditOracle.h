// What edits must do to data, computed from VTK's own cells and points by the plainest means.
#pragma once

#include "DataFiles.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <vtkDataSet.h>

namespace clitest {

/// An area in X and Y, and the journal line that picks it.
struct Area {
  std::string line;
  std::function<bool(double, double)> isInside;
};
Area RectangleArea(double x, double y, double width, double height);
Area CircleArea(double x, double y, double radius);
Area PolygonArea(const std::vector<std::pair<double, double>>& corners);

enum class Rule { kAnyInside, kAnyOutside, kAllInside, kAllOutside };
enum class Place { kNodes, kCells };

/// One component of one array, and what the program calls it.
struct Target {
  Place place;
  const char* array;
  int component;
  const char* variable;
};

struct Modifier {
  char op;
  double operand;
};

/// Journal lines of one alteration.
std::vector<std::string> LinesOf(const Area& area, Rule rule, const Target& target,
                                 const Modifier& modifier);
std::string LineOfElement(const Target& target, const Modifier& modifier, int zone, int element);

/// Does the same to every leaf of the data.
void AlterArea(vtkDataObject* data, const Area& area, Rule rule, const Target& target,
               const Modifier& modifier);
/// Does the same to one block; element counts from 1: a node, or a cell of those that can be
/// picked.
void AlterElement(vtkDataSet* block, const Target& target, const Modifier& modifier, int element);

/// The data sets of the data that have points, in order.
std::vector<vtkDataSet*> BlocksOf(vtkDataObject* data);

/// The cells that can be picked: those of the highest dimension, but no vertices, polylines,
/// strips.
std::vector<vtkIdType> PickableCells(vtkDataSet* block);

}  // namespace clitest
