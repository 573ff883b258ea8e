// Value blanking: which cells and nodes are hidden because of the values of variables.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "DataSet.h"
#include "qelvane/Types.h"

namespace qelhost {

/// One constraint of value blanking: variable A against variable B or a number.
struct BlankConstraint {
  bool include = false;
  LgIndex_t varA = 0;
  LgIndex_t varB = 0;
  QelBlankRelOp_e relOp = BlankRelOp_LessThanOrEqual;
  QelConstraintOp2Mode_e op2Mode = ConstraintOp2Mode_UseVar;
  double cutoff = 0.0;
  bool isAddOns = false;  ///< an add-on set it last; its own commands set it again
};

/// The settings of value blanking in a frame.
struct ValueBlanking {
  static constexpr std::size_t kConstraintCount = 8;

  bool include = false;
  bool blankEntireCell = false;
  QelBlankCellMode_e cellMode = BlankCellMode_AllCorners;
  bool isCellModeAddOns = false;  ///< an add-on set one of the two above last
  std::array<BlankConstraint, kConstraintCount> constraints;
};

/// One bit an item, items from 0; bits past the last are 0.
struct ItemBits {
  std::int64_t count = 0;
  std::vector<std::uint64_t> words;

  ItemBits() = default;
  explicit ItemBits(std::int64_t itemCount)
      : count(itemCount), words(static_cast<std::size_t>((itemCount + 63) / 64), 0) {}
  bool Has(std::int64_t item) const { return ((words[item / 64] >> (item % 64)) & 1) != 0; }
  void Add(std::int64_t item) { words[item / 64] |= std::uint64_t{1} << (item % 64); }
};

/// What blanking hides in one zone.
struct BlankedItems {
  ItemBits cells;
  ItemBits nodes;
};

/// Evaluates the constraints that are on, whether value blanking as a whole is on or not.
///
/// A cell-centred operand has one value for all corners of its cell; at a node it is the mean of
/// the cells around. A constraint on variables that do not exist is never met. Comparisons with NaN
/// fail but for "not equal". One pass over the cells' corners a constraint.
BlankedItems EvaluateBlanking(DataSet& data, LgIndex_t zoneNum, const ValueBlanking& settings);

/// The results of evaluations, each kept until a setting that matters, a value of a variable that
/// it is about or the zone's connectivity changes.
class BlankingCache {
 public:
  const BlankedItems& Of(DataSet& data, LgIndex_t zoneNum, const ValueBlanking& settings);
  void Clear() { m_entries.clear(); }
  /// How many evaluations were made.
  std::int64_t EvaluationCount() const { return m_evaluationCount; }

 private:
  /// The storage of an operand, and how often it had been written. Held, so that no other storage
  /// can be taken for it.
  struct Operand {
    std::shared_ptr<Storage> storage;
    std::int64_t writes = 0;
  };
  struct Entry {
    ValueBlanking settings;
    std::vector<Operand> operands;
    BlankedItems items;
  };
  static std::vector<Operand> OperandsOf(const DataSet& data, LgIndex_t zoneNum,
                                         const ValueBlanking& settings);
  static bool IsStillTrue(const Entry& entry, const DataSet& data, LgIndex_t zoneNum,
                          const ValueBlanking& settings);

  std::map<std::int64_t, Entry> m_entries;  ///< by the zone's version
  std::int64_t m_evaluationCount = 0;
};

}  // namespace qelhost
