#include "RandomData.h"

#include "LatticeCells.h"

#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkIntArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkShortArray.h>
#include <vtkStructuredGrid.h>
#include <vtkTypeInt64Array.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <array>
#include <limits>
#include <string>
#include <vector>

namespace soak {

namespace {

using Dimensions = std::array<int, 3>;
using Block = vtkSmartPointer<vtkDataSet>;
using Array = vtkSmartPointer<vtkDataArray>;

vtkSmartPointer<vtkPoints> Points(Random& random, const Dimensions& nodes) {
  auto points = vtkSmartPointer<vtkPoints>::New();
  points->SetDataType(random.IsOneIn(2) ? VTK_FLOAT : VTK_DOUBLE);
  const auto off = [&random] { return random.Between(-0.3, 0.3); };
  for (int k = 0; k < nodes[2]; ++k) {
    for (int j = 0; j < nodes[1]; ++j) {
      for (int i = 0; i < nodes[0]; ++i) points->InsertNextPoint(i + off(), j + off(), k + off());
    }
  }
  return points;
}

Block Ordered(Random& random) {
  Dimensions nodes{1 + random.Below(7), 1 + random.Below(7), 1 + random.Below(5)};
  for (int& count : nodes) {
    if (random.IsOneIn(4)) count = 1;
  }
  auto grid = vtkSmartPointer<vtkStructuredGrid>::New();
  grid->SetDimensions(nodes.data());
  grid->SetPoints(Points(random, nodes));
  return grid;
}

using Cells = std::vector<std::vector<vtkIdType>>;

// The corners of a lattice cell that each element has, 0 to 3 around the bottom, 4 to 7 above.
const Cells kTriangles = {{0, 1, 2}, {0, 2, 3}};
const Cells kTetrahedra = {{0, 1, 3, 4}, {1, 2, 3, 6}, {1, 3, 4, 6}, {1, 4, 5, 6}, {3, 4, 6, 7}};
const Cells kBricks = {{0, 1, 2, 3, 4, 5, 6, 7}};
const Cells kWedges = {{0, 1, 2, 4, 5, 6}, {0, 2, 3, 4, 6, 7}};
const Cells kQuads = {{0, 1, 2, 3}};
const Cells kLines = {{0, 1}};

struct Kind {
  int vtkType;
  const Cells* cells;
  int dimensions;
};
constexpr Kind kKinds[] = {
    {VTK_TRIANGLE, &kTriangles, 2}, {VTK_QUAD, &kQuads, 2},        {VTK_TETRA, &kTetrahedra, 3},
    {VTK_HEXAHEDRON, &kBricks, 3},  {VTK_WEDGE, &kWedges, 3},      {VTK_LINE, &kLines, 1},
    {VTK_POLYGON, &kQuads, 2},      {VTK_POLYGON, &kTriangles, 2}, {VTK_POLYHEDRON, &kBricks, 3}};

Block Elements(Random& random) {
  const Kind& kind = random.OneOf(kKinds);
  Dimensions nodes{2 + random.Below(6), 2 + random.Below(6), 2 + random.Below(3)};
  for (std::size_t axis = static_cast<std::size_t>(kind.dimensions); axis < 3; ++axis) {
    nodes[axis] = 1;
  }
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(Points(random, nodes));
  const auto node = [&nodes](int i, int j, int k) {
    const auto at = [](int n, int count) { return n < count ? n : count - 1; };
    return vtkIdType{at(i, nodes[0]) + nodes[0] * (at(j, nodes[1]) + nodes[1] * at(k, nodes[2]))};
  };
  for (int k = 0; k < std::max(nodes[2] - 1, 1); ++k) {
    for (int j = 0; j < std::max(nodes[1] - 1, 1); ++j) {
      for (int i = 0; i < nodes[0] - 1; ++i) {
        const vtkIdType corners[] = {node(i, j, k),
                                     node(i + 1, j, k),
                                     node(i + 1, j + 1, k),
                                     node(i, j + 1, k),
                                     node(i, j, k + 1),
                                     node(i + 1, j, k + 1),
                                     node(i + 1, j + 1, k + 1),
                                     node(i, j + 1, k + 1)};
        for (const std::vector<vtkIdType>& cell : *kind.cells) {
          std::vector<vtkIdType> ids;
          for (const vtkIdType corner : cell) ids.push_back(corners[corner]);
          if (kind.vtkType == VTK_POLYHEDRON) {
            latticecells::InsertPolyhedron(grid, ids);
          } else {
            grid->InsertNextCell(kind.vtkType, static_cast<vtkIdType>(ids.size()), ids.data());
          }
        }
      }
    }
  }
  return grid;
}

template <class ArrayType>
Array New() {
  return vtkSmartPointer<ArrayType>::New();
}
constexpr Array (*kArrays[])() = {New<vtkFloatArray>,        New<vtkDoubleArray>,
                                  New<vtkIntArray>,          New<vtkShortArray>,
                                  New<vtkUnsignedCharArray>, New<vtkTypeInt64Array>};

double Value(Random& random, bool isStrange) {
  constexpr double kStrange[] = {std::numeric_limits<double>::quiet_NaN(),
                                 std::numeric_limits<double>::infinity(), -0.0, 1e300, -5e-324};
  if (isStrange && random.IsOneIn(10)) return random.OneOf(kStrange);
  return random.Between(-40, 200);
}

Array Values(Random& random, const std::string& name, int type, vtkIdType count) {
  const Array array = kArrays[type]();
  array->SetName(name.c_str());
  const bool isStrange = type < 2 && random.IsOneIn(3);
  for (vtkIdType n = 0; n < count; ++n) array->InsertNextTuple1(Value(random, isStrange));
  return array;
}

struct Plan {
  std::string name;
  bool isAtCells;
  int type;
};

void AddValues(Random& random, const Plan& plan, std::vector<Block>& blocks) {
  Array last;
  for (const Block& block : blocks) {
    // A zone of one node has it twice at most: not each zone has each variable.
    if (&block != &blocks.front() && random.IsOneIn(5)) continue;
    const vtkIdType count = plan.isAtCells ? block->GetNumberOfCells() : block->GetNumberOfPoints();
    const bool isShared =
        last != nullptr && last->GetNumberOfTuples() == count && random.IsOneIn(2);
    if (!isShared) last = Values(random, plan.name, plan.type, count);
    vtkDataSetAttributes* const to = plan.isAtCells
                                         ? static_cast<vtkDataSetAttributes*>(block->GetCellData())
                                         : block->GetPointData();
    to->AddArray(last);
  }
}

Block Copied(const Block& block) {
  Block copy;
  copy.TakeReference(block->NewInstance());
  copy->DeepCopy(block);
  return copy;
}

}  // namespace

qelhost::DataSetPtr MakeRandomData(Random& random) {
  std::vector<Block> blocks;
  const int blockCount = 1 + random.Below(4);
  while (static_cast<int>(blocks.size()) < blockCount) {
    // Only zones of one size can share values.
    if (!blocks.empty() && random.IsOneIn(3)) {
      blocks.push_back(Copied(blocks.back()));
    } else {
      blocks.push_back(random.IsOneIn(4) ? Ordered(random) : Elements(random));
    }
  }
  constexpr const char* kNames[] = {"n1", "c1", "n2", "c2", "n3"};
  for (const char* const name : kNames) {
    AddValues(random, {name, name[0] == 'c', random.Below(6)}, blocks);
  }
  std::vector<qelhost::BlockEntry> entries;
  const bool hasTimes = random.IsOneIn(3);
  for (const Block& block : blocks) {
    const auto number = static_cast<int>(entries.size());
    qelhost::BlockEntry entry{"block " + std::to_string(number + 1), block};
    if (hasTimes && random.IsOneIn(2)) {
      entry.strand = 1 + random.Below(2);
      entry.solutionTime = number;
    }
    entries.push_back(entry);
  }
  return std::make_shared<qelhost::DataSet>("random", entries, nullptr);
}

}  // namespace soak
