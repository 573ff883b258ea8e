// Data compared to the last byte.
#pragma once

#include <gtest/gtest.h>

#include <vtkDataObject.h>

namespace clitest {

/// Structure, points, cells, names, order, types and values of every array, field data, block
/// names. The first difference found is told.
::testing::AssertionResult IsSameData(vtkDataObject* expected, vtkDataObject* actual);

}  // namespace clitest
