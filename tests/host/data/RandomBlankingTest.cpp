// Value blanking of random meshes against a slow reading of its rules.
#include "BlankingMeshes.h"
#include "BlankingReference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace qelhost {
namespace {

using blankingtesting::AddVariables;
using blankingtesting::kNan;
using blankingtesting::MeshKind;
using blankingtesting::MeshKinds;
using blankingtesting::Pick;
using blankingtesting::Random;
using blankingtesting::Reference;
using blankingtesting::WithPassiveVariables;

ValueBlanking SomeSettings(Random& random, const std::vector<LgIndex_t>& variables, int most) {
  ValueBlanking settings;
  settings.blankEntireCell = Pick(random, 0, 3) > 0;
  settings.cellMode = static_cast<QelBlankCellMode_e>(Pick(random, 0, 2));
  const auto variable = [&] {
    return variables[static_cast<std::size_t>(
        Pick(random, 0, static_cast<int>(variables.size()) - 1))];
  };
  for (int n = Pick(random, 1, most); n > 0; --n) {
    BlankConstraint& constraint =
        settings.constraints[static_cast<std::size_t>(Pick(random, 0, 7))];
    constraint.include = Pick(random, 0, 4) > 0;
    constraint.varA = variable();
    constraint.varB = variable();
    constraint.relOp = static_cast<QelBlankRelOp_e>(Pick(random, 0, 5));
    constraint.op2Mode = static_cast<QelConstraintOp2Mode_e>(Pick(random, 0, 1));
    constraint.cutoff = Pick(random, 0, 19) == 0 ? kNan : Pick(random, 0, 6) / 2.0;
  }
  return settings;
}

std::string DifferenceOf(const ItemBits& actual, const std::vector<bool>& expected) {
  if (actual.count != static_cast<std::int64_t>(expected.size())) return "another count";
  if (actual.words.size() != (expected.size() + 63) / 64) return "another number of words";
  std::string difference;
  for (std::size_t word = 0; word < actual.words.size(); ++word) {
    for (std::size_t bit = 0; bit < 64; ++bit) {
      const std::size_t item = word * 64 + bit;
      const bool isSet = ((actual.words[word] >> bit) & 1) != 0;
      const bool isWanted = item < expected.size() && expected[item];
      if (isSet != isWanted) difference += ' ' + std::to_string(item);
    }
  }
  return difference;
}

std::string TextOf(const ValueBlanking& settings) {
  std::string text = "entire " + std::to_string(settings.blankEntireCell) + " mode " +
                     std::to_string(settings.cellMode);
  for (const BlankConstraint& c : settings.constraints) {
    if (!c.include) continue;
    text += " [" + std::to_string(c.varA) + " op " + std::to_string(c.relOp) +
            (c.op2Mode == ConstraintOp2Mode_UseVar ? " variable " + std::to_string(c.varB)
                                                   : " number " + std::to_string(c.cutoff)) +
            "]";
  }
  return text;
}

class BlankingOfMesh : public ::testing::TestWithParam<MeshKind> {};

/// Neither all nor nothing hidden, so that the comparison says something.
struct Variety {
  int someCells = 0;
  int someNodes = 0;
  void Add(const std::vector<bool>& cells, const std::vector<bool>& nodes) {
    const auto isMixed = [](const std::vector<bool>& items) {
      const auto count = std::count(items.begin(), items.end(), true);
      return count > 0 && count < static_cast<std::ptrdiff_t>(items.size());
    };
    someCells += isMixed(cells) ? 1 : 0;
    someNodes += isMixed(nodes) ? 1 : 0;
  }
};

void CompareOnSettings(const MeshKind& kind, unsigned seed, int constraints, Variety& variety) {
  Random random(seed);
  const vtkSmartPointer<vtkDataSet> block = kind.make(random);
  AddVariables(random, block);
  const DataSetPtr data = WithPassiveVariables(random, block);
  ASSERT_EQ(data->FindZone(1)->Type(), kind.type);
  const Reference reference(block, *data);
  ASSERT_EQ(data->FindZone(1)->CellCount(), reference.CellCount());
  std::vector<LgIndex_t> variables = {0, data->VariableCount() + 1, -1};
  for (LgIndex_t n = 1; n <= data->VariableCount(); ++n) {
    variables.push_back(n);
    variables.push_back(n);
  }
  for (int n = 0; n < 40; ++n) {
    const ValueBlanking settings = SomeSettings(random, variables, constraints);
    const BlankedItems items = EvaluateBlanking(*data, 1, settings);
    const std::vector<bool> cells = reference.BlankedCells(settings);
    const std::vector<bool> nodes = reference.BlankedNodes(settings);
    ASSERT_EQ(DifferenceOf(items.cells, cells), "") << "cells, " << TextOf(settings);
    ASSERT_EQ(DifferenceOf(items.nodes, nodes), "") << "nodes, " << TextOf(settings);
    variety.Add(cells, nodes);
  }
}

TEST_P(BlankingOfMesh, HidesByOneConstraintWhatTheRulesSay) {
  Variety variety;
  for (unsigned seed = 1; seed <= 6; ++seed) CompareOnSettings(GetParam(), seed, 1, variety);
  EXPECT_GT(variety.someCells, 10);
  EXPECT_GT(variety.someNodes, 10);
}

TEST_P(BlankingOfMesh, HidesWhatAnyOfSeveralConstraintsHides) {
  Variety variety;
  for (unsigned seed = 11; seed <= 16; ++seed) CompareOnSettings(GetParam(), seed, 5, variety);
  EXPECT_GT(variety.someCells, 10);
  EXPECT_GT(variety.someNodes, 10);
}

INSTANTIATE_TEST_SUITE_P(Kinds, BlankingOfMesh, ::testing::ValuesIn(MeshKinds()),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace qelhost
