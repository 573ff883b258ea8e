// The rules of value blanking, read one by one and slowly.
#pragma once

#include "DataSet.h"
#include "ValueBlanking.h"

#include <vtkDataSet.h>
#include <vtkDataSetAttributes.h>

#include <cstdint>
#include <map>
#include <vector>

namespace blankingtesting {

struct Values {
  bool atCells = false;
  std::vector<double> values;  ///< by node, or by cell of the block
};

/// A block as VTK has it, without the zone's view of it.
class Reference {
 public:
  Reference(vtkDataSet* block, const qelhost::DataSet& data);

  std::int64_t CellCount() const { return static_cast<std::int64_t>(m_cells.size()); }
  std::vector<bool> BlankedCells(const qelhost::ValueBlanking& settings) const;
  std::vector<bool> BlankedNodes(const qelhost::ValueBlanking& settings) const;

 private:
  void TakeCoordinate(int axis, const qelhost::DataSet& data);
  void Take(vtkDataSetAttributes* from, const char* name, bool atCells,
            const qelhost::DataSet& data);
  bool IsOn(const qelhost::BlankConstraint& constraint) const;
  bool MeetsAtCorner(const qelhost::BlankConstraint& constraint, vtkIdType cell,
                     vtkIdType node) const;
  bool MeetsInCell(const qelhost::BlankConstraint& constraint,
                   const qelhost::ValueBlanking& settings, vtkIdType cell) const;
  /// Places among the zone's cells.
  std::vector<std::size_t> CellsAround(vtkIdType node) const;
  double AtNode(LgIndex_t variable, vtkIdType node) const;

  vtkDataSet* m_block;
  std::vector<vtkIdType> m_cells;
  std::map<LgIndex_t, Values> m_variables;
};

}  // namespace blankingtesting
