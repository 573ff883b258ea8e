// Value blanking against a slow reading of its rules, and what a cache of it evaluates again.
#include "ValueBlanking.h"

#include <gtest/gtest.h>
#include <vtkCell.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkIdList.h>
#include <vtkImageData.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkStructuredGrid.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <set>

#include "Meshes.h"

namespace qelhost {
namespace {

using Random = std::mt19937;

int Pick(Random& random, int first, int last) {
  return std::uniform_int_distribution<int>(first, last)(random);
}

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// ---- meshes ----

vtkSmartPointer<vtkPoints> SomePoints(Random& random, vtkIdType count) {
  auto points = vtkSmartPointer<vtkPoints>::New();
  for (vtkIdType n = 0; n < count; ++n) {
    points->InsertNextPoint(Pick(random, 0, 3), Pick(random, 0, 3), Pick(random, 0, 3));
  }
  return points;
}

constexpr int kPointCount = 40;

std::vector<vtkIdType> SomeNodes(Random& random, int count) {
  // The last ones stay without a cell.
  std::vector<vtkIdType> nodes(kPointCount - 3);
  for (std::size_t n = 0; n < nodes.size(); ++n) nodes[n] = static_cast<vtkIdType>(n);
  std::shuffle(nodes.begin(), nodes.end(), random);
  nodes.resize(static_cast<std::size_t>(count));
  return nodes;
}

struct CellKind {
  int type;
  int nodeCount;
};

void AddPolyhedron(vtkUnstructuredGrid* grid, const std::vector<vtkIdType>& n) {
  vtkNew<vtkIdList> stream;
  stream->InsertNextId(5);
  for (const std::vector<int>& face :
       std::vector<std::vector<int>>{{0, 3, 2, 1}, {0, 1, 4}, {1, 2, 4}, {2, 3, 4}, {3, 0, 4}}) {
    stream->InsertNextId(static_cast<vtkIdType>(face.size()));
    for (const int corner : face) stream->InsertNextId(n[static_cast<std::size_t>(corner)]);
  }
  grid->InsertNextCell(VTK_POLYHEDRON, stream);
}

vtkSmartPointer<vtkDataSet> Mixed(Random& random, const std::vector<CellKind>& kinds) {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(SomePoints(random, kPointCount));
  for (int cell = 0; cell < 70; ++cell) {
    const CellKind& kind =
        kinds[cell < static_cast<int>(kinds.size())
                  ? static_cast<std::size_t>(cell)
                  : static_cast<std::size_t>(Pick(random, 0, static_cast<int>(kinds.size()) - 1))];
    const std::vector<vtkIdType> nodes = SomeNodes(random, kind.nodeCount);
    if (kind.type == VTK_POLYHEDRON) {
      AddPolyhedron(grid, nodes);
    } else {
      grid->InsertNextCell(kind.type, kind.nodeCount, nodes.data());
    }
  }
  return grid;
}

vtkSmartPointer<vtkDataSet> Ordered(Random& random, int nI, int nJ, int nK) {
  auto grid = vtkSmartPointer<vtkStructuredGrid>::New();
  grid->SetDimensions(nI, nJ, nK);
  grid->SetPoints(SomePoints(random, vtkIdType{nI} * nJ * nK));
  return grid;
}

vtkSmartPointer<vtkDataSet> SomeImage(Random& /*random*/) {
  auto image = vtkSmartPointer<vtkImageData>::New();
  image->SetDimensions(4, 3, 3);
  return image;
}

vtkSmartPointer<vtkDataSet> Surface(Random& random) {
  auto surface = vtkSmartPointer<vtkPolyData>::New();
  surface->SetPoints(SomePoints(random, kPointCount));
  const auto cells = [&random](const std::vector<int>& sizes) {
    auto array = vtkSmartPointer<vtkCellArray>::New();
    for (const int size : sizes) {
      const std::vector<vtkIdType> nodes = SomeNodes(random, size);
      array->InsertNextCell(size, nodes.data());
    }
    return array;
  };
  surface->SetVerts(cells({1, 1}));
  surface->SetLines(cells({2, 2, 3}));
  surface->SetPolys(cells({3, 4, 5, 6, 3, 4, 5, 3, 3}));
  return surface;
}

struct MeshKind {
  const char* name;
  QelZoneType_e type;
  std::function<vtkSmartPointer<vtkDataSet>(Random&)> make;
};

const MeshKind kMeshKinds[] = {
    {"OrderedLine", ZoneType_Ordered, [](Random& r) { return Ordered(r, 9, 1, 1); }},
    {"OrderedPlane", ZoneType_Ordered, [](Random& r) { return Ordered(r, 5, 4, 1); }},
    {"OrderedUprightPlane", ZoneType_Ordered, [](Random& r) { return Ordered(r, 1, 4, 5); }},
    {"OrderedVolume", ZoneType_Ordered, [](Random& r) { return Ordered(r, 4, 3, 3); }},
    {"Image", ZoneType_Ordered, SomeImage},
    {"Lines", ZoneType_FELineSeg,
     [](Random& r) {
       return Mixed(r, {{VTK_LINE, 2}});
     }},
    {"Triangles", ZoneType_FETriangle,
     [](Random& r) {
       return Mixed(r, {{VTK_TRIANGLE, 3}});
     }},
    {"Quads", ZoneType_FEQuad,
     [](Random& r) {
       return Mixed(r, {{VTK_QUAD, 4}, {VTK_TRIANGLE, 3}, {VTK_PIXEL, 4}});
     }},
    {"Tets", ZoneType_FETetra,
     [](Random& r) {
       return Mixed(r, {{VTK_TETRA, 4}});
     }},
    {"Bricks", ZoneType_FEBrick,
     [](Random& r) {
       return Mixed(
           r,
           {{VTK_HEXAHEDRON, 8}, {VTK_WEDGE, 6}, {VTK_PYRAMID, 5}, {VTK_TETRA, 4}, {VTK_VOXEL, 8}});
     }},
    {"BricksAmongLowerCells", ZoneType_FEBrick,
     [](Random& r) {
       return Mixed(
           r, {{VTK_HEXAHEDRON, 8}, {VTK_QUAD, 4}, {VTK_WEDGE, 6}, {VTK_LINE, 2}, {VTK_VERTEX, 1}});
     }},
    {"Polygons", ZoneType_FEPolygon,
     [](Random& r) {
       return Mixed(r, {{VTK_POLYGON, 5}, {VTK_POLYGON, 7}, {VTK_TRIANGLE, 3}, {VTK_QUAD, 4}});
     }},
    {"Surface", ZoneType_FEPolygon, Surface},
    {"Polyhedra", ZoneType_FEPolyhedron,
     [](Random& r) {
       return Mixed(r, {{VTK_POLYHEDRON, 5}, {VTK_HEXAHEDRON, 8}, {VTK_TETRA, 4}});
     }},
};

template <class Array>
void AddValues(Random& random, vtkDataSetAttributes* to, const char* name, vtkIdType count) {
  vtkNew<Array> array;
  array->SetName(name);
  for (vtkIdType n = 0; n < count; ++n) {
    array->InsertNextValue(Pick(random, 0, 9) == 0 ? kNan : Pick(random, 0, 3));
  }
  to->AddArray(array);
}

void AddVariables(Random& random, vtkDataSet* block) {
  AddValues<vtkDoubleArray>(random, block->GetPointData(), "p", block->GetNumberOfPoints());
  AddValues<vtkFloatArray>(random, block->GetPointData(), "q", block->GetNumberOfPoints());
  AddValues<vtkDoubleArray>(random, block->GetCellData(), "c", block->GetNumberOfCells());
  AddValues<vtkFloatArray>(random, block->GetCellData(), "d", block->GetNumberOfCells());
}

/// A second zone that alone has values of "onlyNodes" and "onlyCells", which so are passive in the
/// first.
DataSetPtr WithPassiveVariables(Random& random, vtkDataSet* block) {
  const vtkSmartPointer<vtkDataSet> other = Ordered(random, 2, 2, 2);
  AddValues<vtkDoubleArray>(random, other->GetPointData(), "onlyNodes", 8);
  AddValues<vtkDoubleArray>(random, other->GetCellData(), "onlyCells", 1);
  return std::make_shared<DataSet>("test", std::vector<BlockEntry>{{"a", block}, {"b", other}},
                                   nullptr);
}

// ---- the rules, read one by one ----

struct Values {
  bool atCells = false;
  std::vector<double> values;  ///< by node, or by cell of the block
};

/// A block as VTK has it, without the zone's view of it.
class Reference {
 public:
  Reference(vtkDataSet* block, const DataSet& data) : m_block(block) {
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

  std::int64_t CellCount() const { return static_cast<std::int64_t>(m_cells.size()); }

  std::vector<bool> BlankedCells(const ValueBlanking& settings) const {
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

  std::vector<bool> BlankedNodes(const ValueBlanking& settings) const {
    const std::vector<bool> cells = BlankedCells(settings);
    std::vector<bool> blanked;
    for (vtkIdType node = 0; node < m_block->GetNumberOfPoints(); ++node) {
      bool isBlanked = false;
      for (const BlankConstraint& constraint : settings.constraints) {
        if (!IsOn(constraint)) continue;
        if (m_variables.at(constraint.varA).atCells) {
          const std::vector<std::size_t> around = CellsAround(node);
          isBlanked =
              isBlanked ||
              (!around.empty() && std::all_of(around.begin(), around.end(),
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

 private:
  void TakeCoordinate(int axis, const DataSet& data) {
    Values values;
    for (vtkIdType node = 0; node < m_block->GetNumberOfPoints(); ++node) {
      values.values.push_back(m_block->GetPoint(node)[axis]);
    }
    m_variables[data.CoordinateVariable("XYZ"[axis])] = values;
  }
  void Take(vtkDataSetAttributes* from, const char* name, bool atCells, const DataSet& data) {
    vtkDataArray* const array = from->GetArray(name);
    Values values{atCells, {}};
    for (vtkIdType n = 0; n < array->GetNumberOfTuples(); ++n) {
      values.values.push_back(array->GetTuple1(n));
    }
    m_variables[data.VariableNumber(name)] = values;
  }

  bool IsOn(const BlankConstraint& constraint) const {
    return constraint.include && m_variables.count(constraint.varA) > 0 &&
           (constraint.op2Mode == ConstraintOp2Mode_UseConstant ||
            m_variables.count(constraint.varB) > 0);
  }
  static bool IsMet(double a, QelBlankRelOp_e relOp, double b) {
    return relOp == BlankRelOp_LessThanOrEqual      ? a <= b
           : relOp == BlankRelOp_GreaterThanOrEqual ? a >= b
           : relOp == BlankRelOp_LessThan           ? a < b
           : relOp == BlankRelOp_GreaterThan        ? a > b
           : relOp == BlankRelOp_EqualTo            ? a == b
                                                    : a != b;
  }
  bool MeetsAtCorner(const BlankConstraint& constraint, vtkIdType cell, vtkIdType node) const {
    const auto valueOf = [&](LgIndex_t variable) {
      const Values& values = m_variables.at(variable);
      return values.values[static_cast<std::size_t>(values.atCells ? cell : node)];
    };
    const double b = constraint.op2Mode == ConstraintOp2Mode_UseVar ? valueOf(constraint.varB)
                                                                    : constraint.cutoff;
    return IsMet(valueOf(constraint.varA), constraint.relOp, b);
  }
  bool MeetsInCell(const BlankConstraint& constraint, const ValueBlanking& settings,
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
  /// Places among the zone's cells.
  std::vector<std::size_t> CellsAround(vtkIdType node) const {
    std::vector<std::size_t> around;
    for (std::size_t n = 0; n < m_cells.size(); ++n) {
      if (m_block->GetCell(m_cells[n])->GetPointIds()->IsId(node) >= 0) around.push_back(n);
    }
    return around;
  }
  double AtNode(LgIndex_t variable, vtkIdType node) const {
    const Values& values = m_variables.at(variable);
    if (!values.atCells) return values.values[static_cast<std::size_t>(node)];
    const std::vector<std::size_t> around = CellsAround(node);
    double sum = 0.0;
    for (const std::size_t n : around) sum += values.values[static_cast<std::size_t>(m_cells[n])];
    return around.empty() ? 0.0 : sum / static_cast<double>(around.size());
  }

  vtkDataSet* m_block;
  std::vector<vtkIdType> m_cells;
  std::map<LgIndex_t, Values> m_variables;
};

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

INSTANTIATE_TEST_SUITE_P(Kinds, BlankingOfMesh, ::testing::ValuesIn(kMeshKinds),
                         [](const auto& row) { return std::string(row.param.name); });

// ---- single rules, by hand ----

/// Two bricks side by side: nodes 0 to 11, 1 4 7 10 between them.
DataSetPtr TwoBricks(const std::vector<double>& p, const std::vector<double>& c) {
  const auto grid = meshes::Bricks(2, 1, 1);
  const auto add = [](vtkDataSetAttributes* to, const char* name, const std::vector<double>& from) {
    vtkNew<vtkDoubleArray> array;
    array->SetName(name);
    for (const double value : from) array->InsertNextValue(value);
    to->AddArray(array);
  };
  add(grid->GetPointData(), "p", p);
  add(grid->GetCellData(), "c", c);
  return std::make_shared<DataSet>("test", std::vector<BlockEntry>{{"z", grid}}, nullptr);
}

ValueBlanking One(LgIndex_t varA, QelBlankRelOp_e relOp, double cutoff) {
  ValueBlanking settings;
  settings.constraints[7] = {true, varA, 0, relOp, ConstraintOp2Mode_UseConstant, cutoff};
  return settings;
}

std::vector<double> Steps(double first, int count) {
  std::vector<double> steps;
  for (int n = 0; n < count; ++n) steps.push_back(first + n);
  return steps;
}

TEST(ValueBlanking, ComparisonsWithNanFailButForNotEqual) {
  const DataSetPtr data = TwoBricks(Steps(0, 12), {kNan, 1.0});
  const LgIndex_t c = data->VariableNumber("c");
  for (int relOp = BlankRelOp_LessThanOrEqual; relOp <= BlankRelOp_NotEqualTo; ++relOp) {
    const BlankedItems items =
        EvaluateBlanking(*data, 1, One(c, static_cast<QelBlankRelOp_e>(relOp), 5.0));
    EXPECT_EQ(items.cells.Has(0), relOp == BlankRelOp_NotEqualTo) << relOp;
  }
}

TEST(ValueBlanking, NodesBetweenAHiddenAndAShownCellStay) {
  const DataSetPtr data = TwoBricks(Steps(0, 12), {1.0, 0.0});
  const BlankedItems items =
      EvaluateBlanking(*data, 1, One(data->VariableNumber("c"), BlankRelOp_EqualTo, 1.0));
  EXPECT_TRUE(items.cells.Has(0));
  EXPECT_FALSE(items.cells.Has(1));
  for (std::int64_t node = 0; node < 12; ++node) {
    EXPECT_EQ(items.nodes.Has(node), node % 3 == 0) << node;
  }
}

TEST(ValueBlanking, PartOfACellIsNotEnoughUntilEntireCellsAreAskedFor) {
  const DataSetPtr data = TwoBricks({0, 1, 1, 0, 1, 1, 0, 1, 1, 0, 1, 1}, {0, 0});
  ValueBlanking settings = One(data->VariableNumber("p"), BlankRelOp_EqualTo, 0.0);
  settings.cellMode = BlankCellMode_AnyCorner;
  EXPECT_FALSE(EvaluateBlanking(*data, 1, settings).cells.Has(0));
  settings.blankEntireCell = true;
  EXPECT_TRUE(EvaluateBlanking(*data, 1, settings).cells.Has(0));
  EXPECT_FALSE(EvaluateBlanking(*data, 1, settings).cells.Has(1));
  settings.cellMode = BlankCellMode_PrimaryValue;
  EXPECT_TRUE(EvaluateBlanking(*data, 1, settings).cells.Has(0));
  settings.cellMode = BlankCellMode_AllCorners;
  EXPECT_FALSE(EvaluateBlanking(*data, 1, settings).cells.Has(0));
}

TEST(ValueBlanking, IsEvaluatedWhetherItIsSwitchedOnOrNot) {
  const DataSetPtr data = TwoBricks(Steps(0, 12), {1.0, 0.0});
  ValueBlanking settings = One(data->VariableNumber("c"), BlankRelOp_EqualTo, 1.0);
  EXPECT_TRUE(EvaluateBlanking(*data, 1, settings).cells.Has(0));
  settings.include = true;
  EXPECT_TRUE(EvaluateBlanking(*data, 1, settings).cells.Has(0));
}

// ---- the cache ----

class CachedBlanking : public ::testing::Test {
 protected:
  CachedBlanking() : data(TwoBricks(Steps(0, 12), {1.0, 0.0})) {
    settings = One(data->VariableNumber("c"), BlankRelOp_EqualTo, 1.0);
    Ask();
  }
  const BlankedItems& Ask() { return cache.Of(*data, 1, settings); }
  /// How many evaluations it takes to answer once more.
  std::int64_t Again() {
    const std::int64_t before = cache.EvaluationCount();
    Ask();
    return cache.EvaluationCount() - before;
  }
  void Write(const char* variable, LgIndex_t offset, double value) {
    QelFieldData* const field = data->Writable(1, data->VariableNumber(variable));
    field->set(field, offset, value);
  }

  DataSetPtr data;
  ValueBlanking settings;
  BlankingCache cache;
};

TEST_F(CachedBlanking, EvaluatesOnce) {
  EXPECT_EQ(cache.EvaluationCount(), 1);
  EXPECT_EQ(Again(), 0);
  cache.Clear();
  EXPECT_EQ(Again(), 1);
}

TEST_F(CachedBlanking, EvaluatesAgainAfterAWriteToItsVariableAlone) {
  Write("p", 3, 100);
  EXPECT_EQ(Again(), 0);
  Write("c", 1, 1);
  EXPECT_EQ(Again(), 1);
  EXPECT_TRUE(Ask().cells.Has(1));
  settings.constraints[7].op2Mode = ConstraintOp2Mode_UseVar;
  settings.constraints[7].varB = data->VariableNumber("p");
  EXPECT_EQ(Again(), 1);
  Write("p", 3, 1);
  EXPECT_EQ(Again(), 1);
  EXPECT_EQ(Again(), 0);
}

TEST_F(CachedBlanking, EvaluatesAgainAfterChangesOfSettingsThatMatter) {
  BlankConstraint& constraint = settings.constraints[7];
  const std::vector<std::pair<const char*, std::function<void()>>> changes = {
      {"relation", [&] { constraint.relOp = BlankRelOp_LessThan; }},
      {"number", [&] { constraint.cutoff = 0.5; }},
      {"variable", [&] { constraint.varA = data->VariableNumber("p"); }},
      {"cell mode", [&] { settings.cellMode = BlankCellMode_AnyCorner; }},
      {"entire cells", [&] { settings.blankEntireCell = true; }},
      {"second constraint", [&] { settings.constraints[0] = constraint; }},
      {"first constraint off", [&] { constraint.include = false; }}};
  for (const auto& [name, change] : changes) {
    change();
    const BlankedItems expected = EvaluateBlanking(*data, 1, settings);
    EXPECT_EQ(Again(), 1) << name;
    EXPECT_EQ(Ask().cells.words, expected.cells.words) << name;
    EXPECT_EQ(Ask().nodes.words, expected.nodes.words) << name;
    EXPECT_EQ(Again(), 0) << name;
  }
}

TEST_F(CachedBlanking, KeepsItsAnswerWhenOnlyWhatDoesNotMatterChanges) {
  settings.constraints[3] = {
      false, data->VariableNumber("p"), 1, BlankRelOp_GreaterThan, ConstraintOp2Mode_UseConstant,
      3.0};
  EXPECT_EQ(Again(), 0) << "a constraint that is off";
  settings.constraints[3].cutoff = 4.0;
  EXPECT_EQ(Again(), 0) << "and set otherwise";
  settings.constraints[7].varB = data->VariableNumber("p");
  EXPECT_EQ(Again(), 0) << "the variable that a comparison with a number does not read";
  settings.constraints[7].isAddOns = true;
  settings.isCellModeAddOns = true;
  EXPECT_EQ(Again(), 0) << "who set it";
  settings.include = true;
  EXPECT_EQ(Again(), 0) << "whether it is switched on";
}

TEST_F(CachedBlanking, EvaluatesAgainWhenAMissingVariableComes) {
  settings.constraints[7].varA = data->VariableCount() + 1;
  EXPECT_EQ(Again(), 1);
  EXPECT_FALSE(Ask().cells.Has(0));
  const LgIndex_t added =
      data->AddVariable("v", {{FieldDataType_Byte, ValueLocation_CellCentered}}, true);
  ASSERT_EQ(added, settings.constraints[7].varA);
  EXPECT_EQ(Again(), 1);
  ASSERT_TRUE(data->AllocateValues(1, added));
  EXPECT_EQ(Again(), 1) << "allocated values";
  Write("v", 1, 1);
  EXPECT_EQ(Again(), 1);
  EXPECT_TRUE(Ask().cells.Has(1));
}

TEST_F(CachedBlanking, FollowsValuesThatAreSharedAndTakenApart) {
  const auto first = meshes::Bricks(1, 1, 1);
  const auto second = meshes::Bricks(1, 1, 1);
  vtkNew<vtkDoubleArray> shared;
  shared->SetName("c");
  shared->InsertNextValue(0.0);
  first->GetCellData()->AddArray(shared);
  second->GetCellData()->AddArray(shared);
  data =
      std::make_shared<DataSet>("t", std::vector<BlockEntry>{{"a", first}, {"b", second}}, nullptr);
  settings.constraints[7].varA = data->VariableNumber("c");
  ASSERT_EQ(data->ShareCount(2, settings.constraints[7].varA), 2);
  EXPECT_FALSE(Ask().cells.Has(0));
  EXPECT_FALSE(cache.Of(*data, 2, settings).cells.Has(0));
  Write("c", 0, 1.0);
  EXPECT_TRUE(cache.Of(*data, 2, settings).cells.Has(0)) << "written through the other zone";
  EXPECT_TRUE(Ask().cells.Has(0));
  ASSERT_TRUE(data->BranchShared(1, settings.constraints[7].varA));
  EXPECT_EQ(Again(), 1) << "unshared values";
  Write("c", 0, 0.0);
  EXPECT_FALSE(Ask().cells.Has(0));
  EXPECT_TRUE(cache.Of(*data, 2, settings).cells.Has(0)) << "kept its own";
}

TEST_F(CachedBlanking, EvaluatesAgainAfterAChangeOfConnectivity) {
  const LgIndex_t zone = data->AddZone("made", 4, 2, 0, ZoneType_FELineSeg, nullptr);
  ASSERT_EQ(zone, 2);
  ASSERT_TRUE(data->AllocateValues(zone, data->VariableNumber("p")));
  QelFieldData* const p = data->Writable(zone, data->VariableNumber("p"));
  for (LgIndex_t node = 0; node < 4; ++node) p->set(p, node, node);
  settings = One(data->VariableNumber("p"), BlankRelOp_GreaterThan, 1.5);
  QelNodeMap* const nodes = data->FindZone(zone)->WritableNodeMap();
  const auto connect = [&](std::int64_t element, std::int64_t a, std::int64_t b) {
    nodes->SetNode(element, 0, a);
    nodes->SetNode(element, 1, b);
    data->FindZone(zone)->DropDerivedMaps();
  };
  connect(0, 0, 1);
  connect(1, 1, 2);
  EXPECT_FALSE(cache.Of(*data, zone, settings).cells.Has(1));
  const std::int64_t before = cache.EvaluationCount();
  connect(1, 2, 3);
  EXPECT_TRUE(cache.Of(*data, zone, settings).cells.Has(1));
  EXPECT_EQ(cache.EvaluationCount(), before + 1);
}

TEST_F(CachedBlanking, DoesNotTakeANewZoneForADeletedOne) {
  ASSERT_EQ(data->AddZone("first", 2, 1, 0, ZoneType_FELineSeg, nullptr), 2);
  settings = One(data->VariableNumber("p"), BlankRelOp_EqualTo, 0.0);
  EXPECT_TRUE(cache.Of(*data, 2, settings).nodes.Has(1));
  ASSERT_TRUE(data->DeleteZones({2}));
  ASSERT_EQ(data->AddZone("second", 5, 3, 0, ZoneType_FELineSeg, nullptr), 2);
  EXPECT_EQ(cache.Of(*data, 2, settings).nodes.count, 5);
  EXPECT_EQ(cache.Of(*data, 2, settings).cells.count, 3);
}

}  // namespace
}  // namespace qelhost
