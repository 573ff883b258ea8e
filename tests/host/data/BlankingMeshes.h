// Random meshes of every kind with values that blanking may go by.
#pragma once

#include "DataSet.h"

#include <vtkDataSet.h>
#include <vtkSmartPointer.h>

#include <functional>
#include <limits>
#include <random>
#include <vector>

namespace blankingtesting {

inline constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

using Random = std::mt19937;

int Pick(Random& random, int first, int last);

struct MeshKind {
  const char* name;
  QelZoneType_e type;
  std::function<vtkSmartPointer<vtkDataSet>(Random&)> make;
};

const std::vector<MeshKind>& MeshKinds();

/// "p" and "q" at the nodes, "c" and "d" at the cells, some of their values no numbers.
void AddVariables(Random& random, vtkDataSet* block);

/// A second zone that alone has values of "onlyNodes" and "onlyCells", which so are passive in the
/// first.
qelhost::DataSetPtr WithPassiveVariables(Random& random, vtkDataSet* block);

}  // namespace blankingtesting
