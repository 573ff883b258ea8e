#include "EditOracle.h"

#include <algorithm>
#include <cmath>
#include <map>

#include <vtkCell.h>
#include <vtkCellData.h>
#include <vtkCellTypes.h>
#include <vtkDataArray.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkPointData.h>
#include <vtkPointSet.h>

namespace clitest {

namespace {

std::string Text(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

const char* NameOf(Rule rule) {
  switch (rule) {
    case Rule::kAnyInside:
      return "ANYINSIDE";
    case Rule::kAnyOutside:
      return "ANYOUTSIDE";
    case Rule::kAllInside:
      return "ALLINSIDE";
    case Rule::kAllOutside:
      return "ALLOUTSIDE";
  }
  return "";
}

/// Corners come first among a cell's points; the nodes between them do not count.
vtkIdType CornerCount(vtkCell* cell) {
  static const std::map<int, vtkIdType> quadratic = {
      {VTK_QUADRATIC_EDGE, 2},       {VTK_QUADRATIC_TRIANGLE, 3}, {VTK_QUADRATIC_QUAD, 4},
      {VTK_QUADRATIC_TETRA, 4},      {VTK_QUADRATIC_PYRAMID, 5},  {VTK_QUADRATIC_WEDGE, 6},
      {VTK_QUADRATIC_HEXAHEDRON, 8}, {VTK_BIQUADRATIC_QUAD, 4}};
  const auto found = quadratic.find(cell->GetCellType());
  return found == quadratic.end() ? cell->GetNumberOfPoints() : found->second;
}

bool IsInside(const Area& area, vtkDataSet* block, vtkIdType node) {
  double at[3];
  block->GetPoint(node, at);
  return area.isInside(at[0], at[1]);
}

bool TakesCell(const Area& area, Rule rule, vtkDataSet* block, vtkIdType cellId) {
  vtkCell* const cell = block->GetCell(cellId);
  int inside = 0;
  const int corners = static_cast<int>(CornerCount(cell));
  for (int corner = 0; corner < corners; ++corner) {
    inside += IsInside(area, block, cell->GetPointId(corner)) ? 1 : 0;
  }
  switch (rule) {
    case Rule::kAnyInside:
      return inside > 0;
    case Rule::kAnyOutside:
      return inside < corners;
    case Rule::kAllInside:
      return inside == corners;
    case Rule::kAllOutside:
      return inside == 0;
  }
  return false;
}

bool TakesNode(const Area& area, Rule rule, vtkDataSet* block, vtkIdType node) {
  const bool wantsInside = rule == Rule::kAnyInside || rule == Rule::kAllInside;
  return IsInside(area, block, node) == wantsInside;
}

double Modified(double value, const Modifier& modifier) {
  switch (modifier.op) {
    case '=':
      return modifier.operand;
    case '+':
      return value + modifier.operand;
    case '-':
      return value - modifier.operand;
    case '*':
      return value * modifier.operand;
    default:
      return value / modifier.operand;
  }
}

void ModifyItem(vtkDataArray* array, int component, vtkIdType item, const Modifier& modifier) {
  double value = Modified(array->GetComponent(item, component), modifier);
  const int type = array->GetDataType();
  if (type != VTK_FLOAT && type != VTK_DOUBLE) {
    value = std::clamp(std::round(value), array->GetDataTypeMin(), array->GetDataTypeMax());
  }
  array->SetComponent(item, component, value);
}

vtkDataArray* ArrayOf(vtkDataSet* block, const Target& target) {
  if (target.place == Place::kNodes) return block->GetPointData()->GetArray(target.array);
  return block->GetCellData()->GetArray(target.array);
}

void AlterBlock(vtkDataSet* block, const Area& area, Rule rule, const Target& target,
                const Modifier& modifier) {
  vtkDataArray* const array = ArrayOf(block, target);
  if (array == nullptr) return;
  if (target.place == Place::kNodes) {
    for (vtkIdType node = 0; node < block->GetNumberOfPoints(); ++node) {
      if (TakesNode(area, rule, block, node)) ModifyItem(array, target.component, node, modifier);
    }
    return;
  }
  for (const vtkIdType cell : PickableCells(block)) {
    if (TakesCell(area, rule, block, cell)) ModifyItem(array, target.component, cell, modifier);
  }
}

void CollectBlocks(vtkDataObject* data, std::vector<vtkDataSet*>& blocks) {
  if (auto* const block = vtkDataSet::SafeDownCast(data)) {
    if (block->GetNumberOfPoints() > 0) blocks.push_back(block);
  } else if (auto* const composite = vtkMultiBlockDataSet::SafeDownCast(data)) {
    for (unsigned i = 0; i < composite->GetNumberOfBlocks(); ++i) {
      CollectBlocks(composite->GetBlock(i), blocks);
    }
  }
}

}  // namespace

Area RectangleArea(double x, double y, double width, double height) {
  return {"Marquell PICKRECTANGLE ANCHORX=" + Text(x) + " ANCHORY=" + Text(y) +
              " SIZEX=" + Text(width) + " SIZEY=" + Text(height),
          [=](double px, double py) {
            return px >= x && px <= x + width && py >= y && py <= y + height;
          }};
}

Area CircleArea(double x, double y, double radius) {
  return {
      "Marquell PICKCIRCLE ANCHORX=" + Text(x) + " ANCHORY=" + Text(y) + " RADIUS=" + Text(radius),
      [=](double px, double py) { return std::hypot(px - x, py - y) <= radius; }};
}

Area PolygonArea(const std::vector<std::pair<double, double>>& corners) {
  std::string line = "Marquell PICKPOLYGON CORNERS=";
  for (std::size_t i = 0; i < corners.size(); ++i) {
    line += std::string(i == 0 ? "" : ",") + '"' + Text(corners[i].first) + ", " +
            Text(corners[i].second) + '"';
  }
  // Counts the edges that a ray to the right crosses.
  return {line, [corners](double x, double y) {
            bool isInside = false;
            for (std::size_t i = 0, j = corners.size() - 1; i < corners.size(); j = i++) {
              const auto [xi, yi] = corners[i];
              const auto [xj, yj] = corners[j];
              if ((yi > y) != (yj > y) && x < (xj - xi) * (y - yi) / (yj - yi) + xi) {
                isInside = !isInside;
              }
            }
            return isInside;
          }};
}

std::vector<std::string> LinesOf(const Area& area, Rule rule, const Target& target,
                                 const Modifier& modifier) {
  return {area.line, std::string("Marquell ALTERAREA VARIABLE=\"") + target.variable +
                         "\" MODIFIER=\"" + modifier.op + Text(modifier.operand) +
                         "\" RULE=" + NameOf(rule)};
}

std::string LineOfElement(const Target& target, const Modifier& modifier, int zone, int element) {
  return std::string("Marquell ALTERELEMENT VARIABLE=\"") + target.variable + "\" MODIFIER=\"" +
         modifier.op + Text(modifier.operand) + "\" ZONE=" + std::to_string(zone) +
         " ELEMENT=" + std::to_string(element);
}

void AlterArea(vtkDataObject* data, const Area& area, Rule rule, const Target& target,
               const Modifier& modifier) {
  for (vtkDataSet* const block : BlocksOf(data)) AlterBlock(block, area, rule, target, modifier);
}

void AlterElement(vtkDataSet* block, const Target& target, const Modifier& modifier, int element) {
  vtkDataArray* const array = ArrayOf(block, target);
  const std::size_t n = static_cast<std::size_t>(element) - 1;
  const vtkIdType item =
      target.place == Place::kNodes ? static_cast<vtkIdType>(n) : PickableCells(block).at(n);
  ModifyItem(array, target.component, item, modifier);
}

std::vector<vtkDataSet*> BlocksOf(vtkDataObject* data) {
  std::vector<vtkDataSet*> blocks;
  CollectBlocks(data, blocks);
  return blocks;
}

std::vector<vtkIdType> PickableCells(vtkDataSet* block) {
  const bool isStructured = block->GetDataObjectType() != VTK_POLY_DATA &&
                            block->GetDataObjectType() != VTK_UNSTRUCTURED_GRID;
  const auto dimensionOf = [&](vtkIdType cell) {
    switch (block->GetCellType(cell)) {
      case VTK_EMPTY_CELL:
      case VTK_VERTEX:
      case VTK_POLY_VERTEX:
      case VTK_POLY_LINE:
      case VTK_TRIANGLE_STRIP:
        return isStructured ? 0 : -1;
      default:
        return block->GetCell(cell)->GetCellDimension();
    }
  };
  int highest = 0;
  for (vtkIdType cell = 0; cell < block->GetNumberOfCells(); ++cell) {
    highest = std::max(highest, dimensionOf(cell));
  }
  std::vector<vtkIdType> cells;
  for (vtkIdType cell = 0; cell < block->GetNumberOfCells(); ++cell) {
    if (dimensionOf(cell) == highest) cells.push_back(cell);
  }
  return cells;
}

}  // namespace clitest
