#include "ReadOut.h"

#include <fmt/format.h>

#include "PendingArray.h"

namespace marquell::workbench {

namespace {

bool IsOfPlace(const qelhost::Field& field, bool isNode) {
  return (field.location == ValueLocation_Nodal) == isNode;
}

/// Empty when the variable has no value there.
std::string ValueOf(qelhost::DataSet& data, LgIndex_t zone, LgIndex_t variable, LgIndex_t index) {
  const std::string& name = data.FindVariable(variable)->name;
  try {
    const QelFieldData* const field = data.Readable(zone, variable);
    if (field == nullptr || index < 1 || index > field->count) return {};
    return fmt::format("  {} = {:.7g}", name, field->get(field, index - 1));
  } catch (const qelhost::ValuesError&) {
    return fmt::format("  {} cannot be read", name);
  }
}

}  // namespace

std::string ReadOut(qelhost::Frame& frame, LgIndex_t zone, LgIndex_t cell, LgIndex_t node) {
  qelhost::DataSet& data = *frame.Data();
  const qelhost::Zone* const found = data.FindZone(zone);
  if (found == nullptr) return {};
  const bool isNode = node > 0;
  const LgIndex_t index = isNode ? node : cell;
  std::string text =
      fmt::format("Zone {} \"{}\", {} {}:", zone, found->name, isNode ? "node" : "cell", index);
  if (!isNode) {
    // Where the cell lies says more than its number.
    std::vector<std::int64_t> nodes;
    data.FindZone(zone)->CellNodes(cell - 1, nodes);
    std::array<double, 3> middle{0.0, 0.0, 0.0};
    for (const std::int64_t corner : nodes) {
      const auto at = found->Position(corner);
      for (std::size_t axis = 0; axis < middle.size(); ++axis) {
        middle[axis] += at[axis] / static_cast<double>(nodes.size());
      }
    }
    text += fmt::format(" at ({:.6g}, {:.6g}, {:.6g})", middle[0], middle[1], middle[2]);
  }
  for (LgIndex_t variable = 1; variable <= data.VariableCount(); ++variable) {
    if (!IsOfPlace(*data.FindField(zone, variable), isNode)) continue;
    text += ValueOf(data, zone, variable, index);
  }
  return text;
}

}  // namespace marquell::workbench
