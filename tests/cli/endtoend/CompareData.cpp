#include "CompareData.h"

#include <cstring>
#include <string>

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCompositeDataSet.h>
#include <vtkDataArray.h>
#include <vtkFieldData.h>
#include <vtkImageData.h>
#include <vtkInformation.h>
#include <vtkMatrix3x3.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkRectilinearGrid.h>
#include <vtkStringArray.h>
#include <vtkStructuredGrid.h>
#include <vtkUnstructuredGrid.h>

namespace clitest {

namespace {

using Answer = ::testing::AssertionResult;

Answer Same() { return ::testing::AssertionSuccess(); }

Answer Differ(const std::string& what) { return ::testing::AssertionFailure() << what; }

template <class T>
Answer SameValue(const T& expected, const T& actual, const std::string& what) {
  if (expected == actual) return Same();
  return ::testing::AssertionFailure() << what << ": " << actual << " in place of " << expected;
}

Answer SameStrings(vtkStringArray* expected, vtkStringArray* actual, const std::string& what) {
  if (actual == nullptr || actual->GetNumberOfValues() != expected->GetNumberOfValues()) {
    return Differ(what + ": not the same strings");
  }
  for (vtkIdType i = 0; i < expected->GetNumberOfValues(); ++i) {
    if (expected->GetValue(i) != actual->GetValue(i)) return Differ(what + ": another string");
  }
  return Same();
}

std::string FirstOtherValue(vtkDataArray* expected, vtkDataArray* actual) {
  for (vtkIdType tuple = 0; tuple < expected->GetNumberOfTuples(); ++tuple) {
    for (int c = 0; c < expected->GetNumberOfComponents(); ++c) {
      const double e = expected->GetComponent(tuple, c);
      const double a = actual->GetComponent(tuple, c);
      if (e != a) {
        return "tuple " + std::to_string(tuple) + " component " + std::to_string(c) + ": " +
               std::to_string(a) + " in place of " + std::to_string(e);
      }
    }
  }
  return "other bytes of the same numbers";
}

Answer SameNumbers(vtkDataArray* expected, vtkDataArray* actual, const std::string& what) {
  if (actual == nullptr) return Differ(what + ": no numbers");
  if (Answer a = SameValue(expected->GetDataType(), actual->GetDataType(), what + " type"); !a) {
    return a;
  }
  if (Answer a = SameValue(expected->GetNumberOfComponents(), actual->GetNumberOfComponents(),
                           what + " components");
      !a) {
    return a;
  }
  if (Answer a =
          SameValue(expected->GetNumberOfTuples(), actual->GetNumberOfTuples(), what + " tuples");
      !a) {
    return a;
  }
  const std::size_t bytes = static_cast<std::size_t>(expected->GetNumberOfValues()) *
                            static_cast<std::size_t>(expected->GetDataTypeSize());
  if (bytes == 0 ||
      std::memcmp(expected->GetVoidPointer(0), actual->GetVoidPointer(0), bytes) == 0) {
    return Same();
  }
  return Differ(what + ": " + FirstOtherValue(expected, actual));
}

Answer SameArray(vtkAbstractArray* expected, vtkAbstractArray* actual, const std::string& where) {
  const auto nameOf = [](vtkAbstractArray* array) {
    return std::string(array->GetName() == nullptr ? "" : array->GetName());
  };
  const std::string what = where + " array \"" + nameOf(expected) + '"';
  if (Answer a = SameValue(nameOf(expected), nameOf(actual), what + " name"); !a) return a;
  for (vtkIdType c = 0; c < expected->GetNumberOfComponents(); ++c) {
    const char* const e = expected->GetComponentName(c);
    const char* const a = actual->GetComponentName(c);
    if (std::string(e == nullptr ? "" : e) != (a == nullptr ? "" : a)) {
      return Differ(what + ": another component name");
    }
  }
  if (auto* const strings = vtkStringArray::SafeDownCast(expected)) {
    return SameStrings(strings, vtkStringArray::SafeDownCast(actual), what);
  }
  return SameNumbers(vtkDataArray::SafeDownCast(expected), vtkDataArray::SafeDownCast(actual),
                     what);
}

Answer SameFields(vtkFieldData* expected, vtkFieldData* actual, const std::string& where) {
  if (expected == nullptr) return Same();
  if (Answer a = SameValue(expected->GetNumberOfArrays(), actual->GetNumberOfArrays(),
                           where + " array count");
      !a) {
    return a;
  }
  for (int i = 0; i < expected->GetNumberOfArrays(); ++i) {
    if (Answer a = SameArray(expected->GetAbstractArray(i), actual->GetAbstractArray(i), where);
        !a) {
      return a;
    }
  }
  return Same();
}

Answer SameAttributes(vtkDataSetAttributes* expected, vtkDataSetAttributes* actual,
                      const std::string& where) {
  int active[2][vtkDataSetAttributes::NUM_ATTRIBUTES];
  expected->GetAttributeIndices(active[0]);
  actual->GetAttributeIndices(active[1]);
  if (std::memcmp(active[0], active[1], sizeof active[0]) != 0) {
    return Differ(where + ": other arrays are active");
  }
  return SameFields(expected, actual, where);
}

Answer SameCells(vtkCellArray* expected, vtkCellArray* actual, const std::string& what) {
  if (Answer a =
          SameValue(expected->GetNumberOfCells(), actual->GetNumberOfCells(), what + " count");
      !a) {
    return a;
  }
  if (Answer a =
          SameNumbers(expected->GetOffsetsArray(), actual->GetOffsetsArray(), what + " offsets");
      !a) {
    return a;
  }
  return SameNumbers(expected->GetConnectivityArray(), actual->GetConnectivityArray(),
                     what + " corners");
}

Answer SamePoints(vtkPointSet* expected, vtkPointSet* actual) {
  if (expected->GetPoints() == nullptr) {
    return SameValue(vtkIdType{0}, actual->GetNumberOfPoints(), "points");
  }
  if (actual->GetPoints() == nullptr) return Differ("no points");
  return SameNumbers(expected->GetPoints()->GetData(), actual->GetPoints()->GetData(), "points");
}

Answer SameGrid(vtkUnstructuredGrid* expected, vtkUnstructuredGrid* actual) {
  if (Answer a = SamePoints(expected, actual); !a) return a;
  if (expected->GetNumberOfCells() == 0) {
    return SameValue(vtkIdType{0}, actual->GetNumberOfCells(), "cells");
  }
  if (Answer a = SameCells(expected->GetCells(), actual->GetCells(), "cells"); !a) return a;
  if (Answer a =
          SameNumbers(expected->GetCellTypesArray(), actual->GetCellTypesArray(), "cell types");
      !a) {
    return a;
  }
  if (expected->GetFaces() == nullptr) return Same();
  if (actual->GetFaces() == nullptr) return Differ("no faces");
  return SameNumbers(expected->GetFaces(), actual->GetFaces(), "faces");
}

Answer SamePolyData(vtkPolyData* expected, vtkPolyData* actual) {
  if (Answer a = SamePoints(expected, actual); !a) return a;
  if (Answer a = SameCells(expected->GetVerts(), actual->GetVerts(), "vertices"); !a) return a;
  if (Answer a = SameCells(expected->GetLines(), actual->GetLines(), "lines"); !a) return a;
  if (Answer a = SameCells(expected->GetPolys(), actual->GetPolys(), "polygons"); !a) return a;
  return SameCells(expected->GetStrips(), actual->GetStrips(), "strips");
}

Answer SameExtent(const int* expected, const int* actual) {
  return std::memcmp(expected, actual, 6 * sizeof(int)) == 0 ? Same() : Differ("another extent");
}

Answer SameImage(vtkImageData* expected, vtkImageData* actual) {
  for (int i = 0; i < 3; ++i) {
    if (expected->GetOrigin()[i] != actual->GetOrigin()[i] ||
        expected->GetSpacing()[i] != actual->GetSpacing()[i]) {
      return Differ("another origin or spacing");
    }
  }
  for (int i = 0; i < 9; ++i) {
    if (expected->GetDirectionMatrix()->GetData()[i] !=
        actual->GetDirectionMatrix()->GetData()[i]) {
      return Differ("another direction");
    }
  }
  return SameExtent(expected->GetExtent(), actual->GetExtent());
}

Answer SameRectilinear(vtkRectilinearGrid* expected, vtkRectilinearGrid* actual) {
  if (Answer a = SameExtent(expected->GetExtent(), actual->GetExtent()); !a) return a;
  if (Answer a = SameNumbers(expected->GetXCoordinates(), actual->GetXCoordinates(), "X"); !a) {
    return a;
  }
  if (Answer a = SameNumbers(expected->GetYCoordinates(), actual->GetYCoordinates(), "Y"); !a) {
    return a;
  }
  return SameNumbers(expected->GetZCoordinates(), actual->GetZCoordinates(), "Z");
}

Answer SameStructure(vtkDataSet* expected, vtkDataSet* actual) {
  if (auto* const grid = vtkUnstructuredGrid::SafeDownCast(expected)) {
    return SameGrid(grid, vtkUnstructuredGrid::SafeDownCast(actual));
  }
  if (auto* const poly = vtkPolyData::SafeDownCast(expected)) {
    return SamePolyData(poly, vtkPolyData::SafeDownCast(actual));
  }
  if (auto* const image = vtkImageData::SafeDownCast(expected)) {
    return SameImage(image, vtkImageData::SafeDownCast(actual));
  }
  if (auto* const grid = vtkRectilinearGrid::SafeDownCast(expected)) {
    return SameRectilinear(grid, vtkRectilinearGrid::SafeDownCast(actual));
  }
  auto* const grid = vtkStructuredGrid::SafeDownCast(expected);
  auto* const other = vtkStructuredGrid::SafeDownCast(actual);
  if (grid == nullptr || other == nullptr) return Differ("a kind of data that is not compared");
  if (Answer a = SameExtent(grid->GetExtent(), other->GetExtent()); !a) return a;
  return SamePoints(grid, other);
}

std::string BlockName(vtkMultiBlockDataSet* blocks, unsigned i) {
  if (!blocks->HasMetaData(i)) return {};
  const char* const name = blocks->GetMetaData(i)->Get(vtkCompositeDataSet::NAME());
  return name == nullptr ? "" : name;
}

Answer SameBlocks(vtkMultiBlockDataSet* expected, vtkMultiBlockDataSet* actual) {
  if (Answer a =
          SameValue(expected->GetNumberOfBlocks(), actual->GetNumberOfBlocks(), "block count");
      !a) {
    return a;
  }
  for (unsigned i = 0; i < expected->GetNumberOfBlocks(); ++i) {
    const std::string what = "block " + std::to_string(i);
    if (Answer a = SameValue(BlockName(expected, i), BlockName(actual, i), what + " name"); !a) {
      return a;
    }
    const bool isThere = expected->GetBlock(i) != nullptr;
    if (isThere != (actual->GetBlock(i) != nullptr)) return Differ(what + ": there or not there");
    if (!isThere) continue;
    if (Answer a = IsSameData(expected->GetBlock(i), actual->GetBlock(i)); !a) {
      return Differ(what + ": " + a.message());
    }
  }
  return Same();
}

}  // namespace

::testing::AssertionResult IsSameData(vtkDataObject* expected, vtkDataObject* actual) {
  if (expected == nullptr || actual == nullptr) return Differ("there is no data");
  if (Answer a = SameValue(std::string(expected->GetClassName()),
                           std::string(actual->GetClassName()), "kind of data");
      !a) {
    return a;
  }
  if (Answer a = SameFields(expected->GetFieldData(), actual->GetFieldData(), "field data"); !a) {
    return a;
  }
  if (auto* const blocks = vtkMultiBlockDataSet::SafeDownCast(expected)) {
    return SameBlocks(blocks, vtkMultiBlockDataSet::SafeDownCast(actual));
  }
  auto* const e = vtkDataSet::SafeDownCast(expected);
  auto* const a = vtkDataSet::SafeDownCast(actual);
  if (Answer answer = SameStructure(e, a); !answer) return answer;
  if (Answer answer = SameAttributes(e->GetPointData(), a->GetPointData(), "node"); !answer) {
    return answer;
  }
  return SameAttributes(e->GetCellData(), a->GetCellData(), "cell");
}

}  // namespace clitest
