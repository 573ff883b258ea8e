#include "ValueBlanking.h"

#include <algorithm>
#include <utility>

namespace qelhost {
namespace {

bool Compare(double a, QelBlankRelOp_e relOp, double b) {
  switch (relOp) {
    case BlankRelOp_LessThanOrEqual:
      return a <= b;
    case BlankRelOp_GreaterThanOrEqual:
      return a >= b;
    case BlankRelOp_LessThan:
      return a < b;
    case BlankRelOp_GreaterThan:
      return a > b;
    case BlankRelOp_EqualTo:
      return a == b;
    default:
      return a != b;
  }
}

bool UsesVariableB(const BlankConstraint& constraint) {
  return constraint.op2Mode == ConstraintOp2Mode_UseVar;
}

/// Whether the constraint is on and its variables exist.
bool IsInForce(const DataSet& data, const BlankConstraint& constraint) {
  return constraint.include && data.FindVariable(constraint.varA) != nullptr &&
         (!UsesVariableB(constraint) || data.FindVariable(constraint.varB) != nullptr);
}

/// One side of a comparison, at the corners of cells and at nodes.
class OperandValues {
 public:
  OperandValues(DataSet& data, LgIndex_t zoneNum, LgIndex_t varNum)
      : m_isCellCentred(data.FindField(zoneNum, varNum)->location == ValueLocation_CellCentered),
        m_own(data.Readable(zoneNum, varNum)),
        m_atNodes(data.ReadableAtNodes(zoneNum, varNum)) {}
  explicit OperandValues(double constant) : m_constant(constant) {}

  bool IsCellCentred() const { return m_isCellCentred; }
  double AtCorner(std::int64_t cell, std::int64_t node) const {
    return At(m_own, m_isCellCentred ? cell : node);
  }
  double AtNode(std::int64_t node) const { return At(m_atNodes, node); }

 private:
  double At(const QelFieldData* field, std::int64_t item) const {
    return field == nullptr ? m_constant : field->get(field, static_cast<LgIndex_t>(item));
  }

  bool m_isCellCentred = false;
  const QelFieldData* m_own = nullptr;
  const QelFieldData* m_atNodes = nullptr;
  double m_constant = 0.0;
};

/// A constraint with its operands in one zone.
class Comparison {
 public:
  Comparison(DataSet& data, LgIndex_t zoneNum, const BlankConstraint& constraint)
      : m_relOp(constraint.relOp),
        m_a(data, zoneNum, constraint.varA),
        m_b(UsesVariableB(constraint) ? OperandValues(data, zoneNum, constraint.varB)
                                      : OperandValues(constraint.cutoff)) {}

  bool IsAboutCells() const { return m_a.IsCellCentred(); }
  bool IsMetAtNode(std::int64_t node) const {
    return Compare(m_a.AtNode(node), m_relOp, m_b.AtNode(node));
  }
  bool IsMetInCell(std::int64_t cell, const std::vector<std::int64_t>& corners,
                   QelBlankCellMode_e mode) const {
    const auto isMet = [this, cell](std::int64_t node) {
      return Compare(m_a.AtCorner(cell, node), m_relOp, m_b.AtCorner(cell, node));
    };
    if (corners.empty()) return false;
    if (mode == BlankCellMode_PrimaryValue) return isMet(corners.front());
    return mode == BlankCellMode_AnyCorner ? std::any_of(corners.begin(), corners.end(), isMet)
                                           : std::all_of(corners.begin(), corners.end(), isMet);
  }

 private:
  QelBlankRelOp_e m_relOp;
  OperandValues m_a;
  OperandValues m_b;
};

/// Hides the nodes that have cells, all of which are hidden.
void BlankNodesOfBlankedCells(Zone& zone, BlankedItems& items) {
  ItemBits hasCell(items.nodes.count);
  ItemBits hasShownCell(items.nodes.count);
  std::vector<std::int64_t> corners;
  for (std::int64_t cell = 0; cell < items.cells.count; ++cell) {
    zone.CellNodes(cell, corners);
    ItemBits& found = items.cells.Has(cell) ? hasCell : hasShownCell;
    for (const std::int64_t node : corners) found.Add(node);
  }
  for (std::size_t word = 0; word < items.nodes.words.size(); ++word) {
    items.nodes.words[word] |= hasCell.words[word] & ~hasShownCell.words[word];
  }
}

bool AreSame(const BlankConstraint& a, const BlankConstraint& b) {
  if (!a.include && !b.include) return true;
  if (a.include != b.include || a.varA != b.varA || a.relOp != b.relOp || a.op2Mode != b.op2Mode) {
    return false;
  }
  return UsesVariableB(a) ? a.varB == b.varB : a.cutoff == b.cutoff;
}

/// Whether two settings hide the same whatever the values are.
bool AreSame(const ValueBlanking& a, const ValueBlanking& b) {
  return a.blankEntireCell == b.blankEntireCell && a.cellMode == b.cellMode &&
         std::equal(a.constraints.begin(), a.constraints.end(), b.constraints.begin(),
                    [](const auto& one, const auto& other) { return AreSame(one, other); });
}

}  // namespace

BlankedItems EvaluateBlanking(DataSet& data, LgIndex_t zoneNum, const ValueBlanking& settings) {
  Zone& zone = *data.FindZone(zoneNum);
  BlankedItems items{ItemBits(zone.CellCount()), ItemBits(zone.NodeCount())};
  const QelBlankCellMode_e mode =
      settings.blankEntireCell ? settings.cellMode : BlankCellMode_AllCorners;
  bool isAboutCells = false;
  std::vector<std::int64_t> corners;
  for (const BlankConstraint& constraint : settings.constraints) {
    if (!IsInForce(data, constraint)) continue;
    const Comparison comparison(data, zoneNum, constraint);
    for (std::int64_t cell = 0; cell < items.cells.count; ++cell) {
      if (items.cells.Has(cell)) continue;
      zone.CellNodes(cell, corners);
      if (comparison.IsMetInCell(cell, corners, mode)) items.cells.Add(cell);
    }
    if (comparison.IsAboutCells()) {
      isAboutCells = true;
      continue;
    }
    for (std::int64_t node = 0; node < items.nodes.count; ++node) {
      if (comparison.IsMetAtNode(node)) items.nodes.Add(node);
    }
  }
  if (isAboutCells) BlankNodesOfBlankedCells(zone, items);
  return items;
}

std::vector<BlankingCache::Operand> BlankingCache::OperandsOf(const DataSet& data,
                                                              LgIndex_t zoneNum,
                                                              const ValueBlanking& settings) {
  std::vector<Operand> operands;
  const auto add = [&](LgIndex_t varNum) {
    const Field& field = *data.FindField(zoneNum, varNum);
    operands.push_back({field.storage, data.ZoneWrites(zoneNum, varNum).writes});
  };
  for (const BlankConstraint& constraint : settings.constraints) {
    if (!IsInForce(data, constraint)) continue;
    add(constraint.varA);
    if (UsesVariableB(constraint)) add(constraint.varB);
  }
  return operands;
}

bool BlankingCache::IsStillTrue(const Entry& entry, const DataSet& data, LgIndex_t zoneNum,
                                const ValueBlanking& settings) {
  if (!AreSame(entry.settings, settings)) return false;
  auto known = entry.operands.begin();
  const auto isAsKnown = [&](LgIndex_t varNum) {
    if (known == entry.operands.end()) return false;
    const Operand& operand = *known++;
    return operand.storage == data.FindField(zoneNum, varNum)->storage &&
           operand.writes == data.ZoneWrites(zoneNum, varNum).writes;
  };
  for (const BlankConstraint& constraint : settings.constraints) {
    if (!IsInForce(data, constraint)) continue;
    if (!isAsKnown(constraint.varA)) return false;
    if (UsesVariableB(constraint) && !isAsKnown(constraint.varB)) return false;
  }
  return known == entry.operands.end();
}

const BlankedItems& BlankingCache::Of(DataSet& data, LgIndex_t zoneNum,
                                      const ValueBlanking& settings) {
  const std::int64_t version = data.FindZone(zoneNum)->Version();
  const auto found = m_entries.find(version);
  if (found != m_entries.end() && IsStillTrue(found->second, data, zoneNum, settings)) {
    return found->second.items;
  }
  ++m_evaluationCount;
  Entry& entry = m_entries[version];
  entry = {settings, OperandsOf(data, zoneNum, settings),
           EvaluateBlanking(data, zoneNum, settings)};
  return entry.items;
}

}  // namespace qelhost
