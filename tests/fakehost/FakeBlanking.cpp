// Value blanking, written down from its definition: slow, and nothing to get wrong.
#include "FakeCall.h"

#include <algorithm>

namespace fakehost {

namespace {

bool Compares(LgIndex_t relOp, double a, double b) {
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
    case BlankRelOp_NotEqualTo:
      return a != b;
    default:
      return false;
  }
}

/// A passive variable reads as 0, and so does an item that the zone does not have.
double ValueAt(LgIndex_t zone, LgIndex_t var, LgIndex_t index) {
  const Values& values = *Host().ValuesAt(zone, var);
  if (values.storage == nullptr || index < 1 || index > values.storage->count) return 0.0;
  return values.storage->Get(index - 1);
}

bool IsCellCentred(LgIndex_t zone, LgIndex_t var) {
  return Host().ValuesAt(zone, var)->location == ValueLocation_CellCentered;
}

/// What a cell has at one of its corners: for a cell-centred variable its own value.
double ValueAtCorner(LgIndex_t zone, LgIndex_t var, LgIndex_t cell, LgIndex_t node) {
  return ValueAt(zone, var, IsCellCentred(zone, var) ? cell : node);
}

/// What a node has; of a cell-centred variable the mean over the cells around it.
double ValueAtNode(LgIndex_t zone, LgIndex_t var, LgIndex_t node) {
  if (!IsCellCentred(zone, var)) return ValueAt(zone, var, node);
  const NumberLists& around = Host().ZoneAt(zone)->mesh.Derived().cellsAroundNodes;
  double sum = 0.0;
  for (LgIndex_t n = 1; n <= around.CountOf(node); ++n) {
    sum += ValueAt(zone, var, around.At(node, n));
  }
  return around.CountOf(node) == 0 ? 0.0 : sum / around.CountOf(node);
}

/// Calls value(variable) for what the constraint compares.
template <class ValueOf>
bool IsMet(const Constraint& constraint, const ValueOf& value) {
  const bool hasConstant = constraint.op2Mode == ConstraintOp2Mode_UseConstant;
  return Compares(constraint.relOp, value(constraint.varA),
                  hasConstant ? constraint.cutoff : value(constraint.varB));
}

/// The constraints that are on and about variables that there are, when the zone heeds them.
std::vector<Constraint> ConstraintsFor(LgIndex_t zone) {
  std::vector<Constraint> active;
  const Zone* const found = Host().ZoneAt(zone);
  const Blanking& blanking = Host().ActiveFrame().blanking;
  if (found == nullptr || !blanking.include || !found->fieldMap.usesValueBlanking) return active;
  for (const auto& [number, constraint] : blanking.constraints) {
    if (number < 1 || number > kConstraintCount || !constraint.include) continue;
    const bool usesB = constraint.op2Mode == ConstraintOp2Mode_UseVar;
    if (Host().ValuesAt(zone, constraint.varA) == nullptr) continue;
    if (usesB && Host().ValuesAt(zone, constraint.varB) == nullptr) continue;
    active.push_back(constraint);
  }
  return active;
}

bool HidesCell(const Constraint& constraint, LgIndex_t zone, LgIndex_t cell) {
  const std::vector<LgIndex_t> corners = Host().ZoneAt(zone)->mesh.Corners(cell);
  if (corners.empty()) return false;
  const auto isMetAt = [&](LgIndex_t node) {
    return IsMet(constraint, [&](LgIndex_t var) { return ValueAtCorner(zone, var, cell, node); });
  };
  const Blanking& blanking = Host().ActiveFrame().blanking;
  switch (blanking.blankEntireCell ? blanking.cellMode : LgIndex_t{BlankCellMode_AllCorners}) {
    case BlankCellMode_AnyCorner:
      return std::any_of(corners.begin(), corners.end(), isMetAt);
    case BlankCellMode_PrimaryValue:
      return isMetAt(corners.front());
    default:
      return std::all_of(corners.begin(), corners.end(), isMetAt);
  }
}

/// True for an item of the zone that is shown.
bool Shows(LgIndex_t zone, LgIndex_t count, LgIndex_t item, bool isBlanked) {
  return Host().ZoneAt(zone) != nullptr && item >= 1 && item <= count && !isBlanked;
}

LgIndex_t CellCount(LgIndex_t zone) {
  const Zone* const found = Host().ZoneAt(zone);
  return found == nullptr ? 0 : found->mesh.CellCount();
}

LgIndex_t NodeCount(LgIndex_t zone) {
  const Zone* const found = Host().ZoneAt(zone);
  return found == nullptr ? 0 : found->mesh.NodeCount();
}

void ReportWhenOrdered(LgIndex_t zone, bool isOrdered, const char* function) {
  const Zone* const found = Host().ZoneAt(zone);
  if (found == nullptr || (found->mesh.type == ZoneType_Ordered) != isOrdered) return;
  Host().Report(std::string(function) + " was asked about a zone of the other kind");
}

}  // namespace

bool FakeHost::IsBlankedCell(LgIndex_t zone, LgIndex_t cell) {
  if (cell < 1 || cell > CellCount(zone)) return false;
  const std::vector<Constraint> constraints = ConstraintsFor(zone);
  return std::any_of(constraints.begin(), constraints.end(), [&](const Constraint& constraint) {
    return HidesCell(constraint, zone, cell);
  });
}

bool FakeHost::IsBlankedNode(LgIndex_t zone, LgIndex_t node) {
  if (node < 1 || node > NodeCount(zone)) return false;
  for (const Constraint& constraint : ConstraintsFor(zone)) {
    if (!IsCellCentred(zone, constraint.varA)) {
      const auto value = [&](LgIndex_t var) { return ValueAtNode(zone, var, node); };
      if (IsMet(constraint, value)) return true;
      continue;
    }
    const NumberLists& around = ZoneAt(zone)->mesh.Derived().cellsAroundNodes;
    if (around.CountOf(node) > 0 &&
        std::all_of(around.begin(node), around.end(node),
                    [&](LgIndex_t cell) { return IsBlankedCell(zone, cell); })) {
      return true;
    }
  }
  return false;
}

}  // namespace fakehost

using namespace fakehost;

bool QelUtilBlankingIsActive() {
  return !Fails(__func__) && Host().HasFrame() && Host().ActiveFrame().blanking.include;
}

bool QelUtilBlankingCheckDataPoint(LgIndex_t zone, LgIndex_t node) {
  if (Fails(__func__, zone, node)) return false;
  return Shows(zone, NodeCount(zone), node, Host().IsBlankedNode(zone, node));
}

bool QelUtilBlankingCheckFECell(LgIndex_t zone, LgIndex_t element) {
  const bool fails = Fails(__func__, zone, element);
  ReportWhenOrdered(zone, true, __func__);
  return !fails && Shows(zone, CellCount(zone), element, Host().IsBlankedCell(zone, element));
}

bool QelUtilBlankingCheckIJKCell(LgIndex_t zone, LgIndex_t plane, LgIndex_t cellIndex) {
  const bool fails = Fails(__func__, zone, plane, cellIndex);
  ReportWhenOrdered(zone, false, __func__);
  // Of the planes this host knows but the volume.
  if (fails || plane != 0) return false;
  return Shows(zone, CellCount(zone), cellIndex, Host().IsBlankedCell(zone, cellIndex));
}
