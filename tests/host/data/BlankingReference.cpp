#include "BlankingReference.h"

#include <vtkCell.h>
#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkIdList.h>
#include <vtkPointData.h>

#include <algorithm>

namespace blankingtesting {

using qelhost::BlankConstraint;
using qelhost::DataSet;
using qelhost::ValueBlanking;

namespace {

bool IsMet(double a, QelBlankRelOp_e relOp, double b) {
  return relOp == BlankRelOp_LessThanOrEqual      ? a <= b
         : relOp == BlankRelOp_GreaterThanOrEqual ? a >= b
         : relOp == BlankRelOp_LessThan           ? a < b
         : relOp == BlankRelOp_GreaterThan        ? a > b
         : relOp == BlankRelOp_EqualTo            ? a == b
                                                  : a != b;
}

}  // namespace

Reference::Reference(vtkDataSet* block, const DataSet& data) : m_block(block) {
  int dimension = 0;
  for (vtkIdType cell = 0; cell < block->GetNumberOfCells(); ++cell) {
    dimension = std::max(dimension, block->GetCell(cell)->GetCellDimension());
  }
  for (vtkIdType cell = 0; cell < block->GetNumberOfCells(); ++cell) {
    if (block->GetCell(cell)->GetCellDimension() == dimension) m_cells.push_back(cell);
  }
  for (int axis = 0; axis < 3; ++axis) TakeCoordinate(axis, data);
  for (const char* name : {"p", "q"}) Take(block->GetPointData(), name, false, data);
  for (const char* name : {"c", "d"}) Take(block->GetCellData(), name, true, data);
  m_variables[data.VariableNumber("onlyNodes")] = {
      false, std::vector<double>(static_cast<std::size_t>(block->GetNumberOfPoints()), 0.0)};
  m_variables[data.VariableNumber("onlyCells")] = {
      true, std::vector<double>(static_cast<std::size_t>(block->GetNumberOfCells()), 0.0)};
}

std::vector<bool> Reference::BlankedCells(const ValueBlanking& settings) const {
  std::vector<bool> blanked;
  for (const vtkIdType cell : m_cells) {
    bool isBlanked = false;
    for (const BlankConstraint& constraint : settings.constraints) {
      if (IsOn(constraint) && MeetsInCell(constraint, settings, cell)) isBlanked = true;
    }
    blanked.push_back(isBlanked);
  }
  return blanked;
}

std::vector<bool> Reference::BlankedNodes(const ValueBlanking& settings) const {
  const std::vector<bool> cells = BlankedCells(settings);
  std::vector<bool> blanked;
  for (vtkIdType node = 0; node < m_block->GetNumberOfPoints(); ++node) {
    bool isBlanked = false;
    for (const BlankConstraint& constraint : settings.constraints) {
      if (!IsOn(constraint)) continue;
      if (m_variables.at(constraint.varA).atCells) {
        const std::vector<std::size_t> around = CellsAround(node);
        isBlanked = isBlanked || (!around.empty() &&
                                  std::all_of(around.begin(), around.end(),
                                              [&cells](std::size_t cell) { return cells[cell]; }));
      } else {
        const double b = constraint.op2Mode == ConstraintOp2Mode_UseVar
                             ? AtNode(constraint.varB, node)
                             : constraint.cutoff;
        isBlanked = isBlanked || IsMet(AtNode(constraint.varA, node), constraint.relOp, b);
      }
    }
    blanked.push_back(isBlanked);
  }
  return blanked;
}

void Reference::TakeCoordinate(int axis, const DataSet& data) {
  Values values;
  for (vtkIdType node = 0; node < m_block->GetNumberOfPoints(); ++node) {
    values.values.push_back(m_block->GetPoint(node)[axis]);
  }
  m_variables[data.CoordinateVariable("XYZ"[axis])] = values;
}

void Reference::Take(vtkDataSetAttributes* from, const char* name, bool atCells,
                     const DataSet& data) {
  vtkDataArray* const array = from->GetArray(name);
  Values values{atCells, {}};
  for (vtkIdType n = 0; n < array->GetNumberOfTuples(); ++n) {
    values.values.push_back(array->GetTuple1(n));
  }
  m_variables[data.VariableNumber(name)] = values;
}

bool Reference::IsOn(const BlankConstraint& constraint) const {
  return constraint.include && m_variables.count(constraint.varA) > 0 &&
         (constraint.op2Mode == ConstraintOp2Mode_UseConstant ||
          m_variables.count(constraint.varB) > 0);
}

bool Reference::MeetsAtCorner(const BlankConstraint& constraint, vtkIdType cell,
                              vtkIdType node) const {
  const auto valueOf = [&](LgIndex_t variable) {
    const Values& values = m_variables.at(variable);
    return values.values[static_cast<std::size_t>(values.atCells ? cell : node)];
  };
  const double b =
      constraint.op2Mode == ConstraintOp2Mode_UseVar ? valueOf(constraint.varB) : constraint.cutoff;
  return IsMet(valueOf(constraint.varA), constraint.relOp, b);
}

bool Reference::MeetsInCell(const BlankConstraint& constraint, const ValueBlanking& settings,
                            vtkIdType cell) const {
  vtkIdList* const corners = m_block->GetCell(cell)->GetPointIds();
  vtkIdType metCount = 0;
  for (vtkIdType n = 0; n < corners->GetNumberOfIds(); ++n) {
    if (MeetsAtCorner(constraint, cell, corners->GetId(n))) ++metCount;
  }
  if (!settings.blankEntireCell || settings.cellMode == BlankCellMode_AllCorners) {
    return metCount == corners->GetNumberOfIds();
  }
  if (settings.cellMode == BlankCellMode_AnyCorner) return metCount > 0;
  return MeetsAtCorner(constraint, cell, corners->GetId(0));
}

std::vector<std::size_t> Reference::CellsAround(vtkIdType node) const {
  std::vector<std::size_t> around;
  for (std::size_t n = 0; n < m_cells.size(); ++n) {
    if (m_block->GetCell(m_cells[n])->GetPointIds()->IsId(node) >= 0) around.push_back(n);
  }
  return around;
}

double Reference::AtNode(LgIndex_t variable, vtkIdType node) const {
  const Values& values = m_variables.at(variable);
  if (!values.atCells) return values.values[static_cast<std::size_t>(node)];
  const std::vector<std::size_t> around = CellsAround(node);
  double sum = 0.0;
  for (const std::size_t n : around) sum += values.values[static_cast<std::size_t>(m_cells[n])];
  return around.empty() ? 0.0 : sum / static_cast<double>(around.size());
}

}  // namespace blankingtesting
