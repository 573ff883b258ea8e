#include "WritableBlock.h"

#include <vtkAbstractArray.h>
#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkFieldData.h>
#include <vtkInformation.h>
#include <vtkInformationDoubleVectorKey.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPointSet.h>
#include <vtkPoints.h>
#include <vtkRectilinearGrid.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>

#include "FileError.h"
#include "xml/XmlTags.h"

namespace qelhost {
namespace {

using ArrayPtr = vtkSmartPointer<vtkAbstractArray>;

/// Another array that shares the values where it can.
ArrayPtr ShallowCopyOf(vtkAbstractArray* array) {
  auto copy = ArrayPtr::Take(array->NewInstance());
  if (auto* const numbers = vtkDataArray::SafeDownCast(copy)) {
    numbers->ShallowCopy(vtkDataArray::SafeDownCast(array));
  } else {
    copy->DeepCopy(array);
  }
  return copy;
}

// ---- names ----

/// A name as it must stand in an XML file. VTK's writers print names as they are.
std::string NameInXml(const char* name, const std::string& path) {
  const std::optional<std::string> text = AttributeText(name);
  if (text) return *text;
  throw FileError(path, "no file of this format can hold an array's name; write a .vtk file");
}

bool IsNamedPlainly(vtkAbstractArray* array, const std::string& path) {
  const auto isPlain = [&path](const char* name) {
    return name == nullptr || NameInXml(name, path) == name;
  };
  if (!isPlain(array->GetName())) return false;
  if (!array->HasAComponentName()) return true;
  for (int n = 0; n < array->GetNumberOfComponents(); ++n) {
    if (!isPlain(array->GetComponentName(n))) return false;
  }
  return true;
}

ArrayPtr NamedForXml(vtkAbstractArray* array, const std::string& path) {
  ArrayPtr named = ShallowCopyOf(array);
  if (array->GetName() != nullptr) named->SetName(NameInXml(array->GetName(), path).c_str());
  for (int n = 0; array->HasAComponentName() && n < array->GetNumberOfComponents(); ++n) {
    const char* const component = array->GetComponentName(n);
    if (component != nullptr) named->SetComponentName(n, NameInXml(component, path).c_str());
  }
  return named;
}

// ---- lengths of vectors ----

/// The lengths' range is written beside an array, where readers fail on "inf". Nothing stays of the
/// question: writers would tell its answer.
bool HasInfiniteLength(vtkAbstractArray* array) {
  auto* const numbers = vtkDataArray::SafeDownCast(array);
  if (numbers == nullptr || numbers->GetNumberOfComponents() < 2) return false;
  vtkInformation* const told = numbers->GetInformation();
  const bool isTold = told->Has(vtkDataArray::L2_NORM_RANGE()) != 0;
  double range[2] = {0, 0};
  numbers->GetRange(range, -1);
  if (!isTold) told->Remove(vtkDataArray::L2_NORM_RANGE());
  return !std::isfinite(range[0]) || !std::isfinite(range[1]);
}

/// Legacy files tell the range where somebody has asked for it before.
bool TellsInfiniteLength(vtkAbstractArray* array) {
  return array->HasInformation() && array->GetInformation()->Has(vtkDataArray::L2_NORM_RANGE()) &&
         HasInfiniteLength(array);
}

/// Until its values are altered, or it is made the data of points.
void TellFiniteLengths(vtkDataArray* numbers) {
  double range[2] = {0, 0};
  numbers->GetFiniteRange(range, -1);
  numbers->GetInformation()->Remove(vtkDataArray::L2_NORM_FINITE_RANGE());
  numbers->GetInformation()->Set(vtkDataArray::L2_NORM_RANGE(), range, 2);
}

// ---- blocks ----

/// What stands for each array that has to differ.
using Replacements = std::map<vtkAbstractArray*, ArrayPtr>;

ArrayPtr Replaced(vtkAbstractArray* array, const Replacements& replacements) {
  const auto found = replacements.find(array);
  return found == replacements.end() ? ArrayPtr(array) : found->second;
}

vtkSmartPointer<vtkDataArray> ReplacedNumbers(vtkDataArray* array,
                                              const Replacements& replacements) {
  return vtkDataArray::SafeDownCast(Replaced(array, replacements));
}

void ReplaceArrays(vtkFieldData* data, const Replacements& replacements) {
  const auto replaced = vtkSmartPointer<vtkFieldData>::Take(data->NewInstance());
  for (int i = 0; i < data->GetNumberOfArrays(); ++i) {
    replaced->AddArray(Replaced(data->GetAbstractArray(i), replacements));
  }
  if (auto* const attributes = vtkDataSetAttributes::SafeDownCast(data)) {
    int active[vtkDataSetAttributes::NUM_ATTRIBUTES];
    attributes->GetAttributeIndices(active);
    auto* const to = vtkDataSetAttributes::SafeDownCast(replaced);
    for (int type = 0; type < vtkDataSetAttributes::NUM_ATTRIBUTES; ++type) {
      if (active[type] >= 0) to->SetActiveAttribute(active[type], type);
    }
  }
  data->ShallowCopy(replaced);
}

vtkSmartPointer<vtkDataSet> WithArrays(vtkDataSet* block, const Replacements& replacements) {
  if (replacements.empty()) return block;
  auto other = vtkSmartPointer<vtkDataSet>::Take(block->NewInstance());
  other->ShallowCopy(block);
  ReplaceArrays(other->GetPointData(), replacements);
  ReplaceArrays(other->GetCellData(), replacements);
  ReplaceArrays(other->GetFieldData(), replacements);
  auto* const set = vtkPointSet::SafeDownCast(other);
  if (set != nullptr && set->GetPoints() != nullptr) {
    vtkNew<vtkPoints> points;
    points->SetData(ReplacedNumbers(set->GetPoints()->GetData(), replacements));
    set->SetPoints(points);
  }
  if (auto* const grid = vtkRectilinearGrid::SafeDownCast(other)) {
    grid->SetXCoordinates(ReplacedNumbers(grid->GetXCoordinates(), replacements));
    grid->SetYCoordinates(ReplacedNumbers(grid->GetYCoordinates(), replacements));
    grid->SetZCoordinates(ReplacedNumbers(grid->GetZCoordinates(), replacements));
  }
  for (const auto& replacement : replacements) {
    if (HasInfiniteLength(replacement.second)) {
      TellFiniteLengths(vtkDataArray::SafeDownCast(replacement.second));
    }
  }
  return other;
}

template <class T>
bool AreFinite(vtkDataArray* array) {
  const auto* const values = static_cast<const T*>(array->GetVoidPointer(0));
  return std::all_of(values, values + array->GetNumberOfValues(),
                     [](T value) { return std::isfinite(value); });
}

bool AreFinite(vtkAbstractArray* array) {
  auto* const numbers = vtkDataArray::SafeDownCast(array);
  if (numbers == nullptr) return true;
  if (numbers->GetDataType() == VTK_FLOAT) return AreFinite<float>(numbers);
  if (numbers->GetDataType() == VTK_DOUBLE) return AreFinite<double>(numbers);
  return true;
}

template <class Replace>
vtkSmartPointer<vtkDataSet> WithEachArray(vtkDataSet* block, const Replace& replace) {
  Replacements replacements;
  for (vtkAbstractArray* const array : ArraysOf(block)) {
    if (array == nullptr) continue;
    const ArrayPtr other = replace(array);
    if (other != array) replacements[array] = other;
  }
  return WithArrays(block, replacements);
}

}  // namespace

std::vector<vtkAbstractArray*> ArraysOf(vtkDataSet* block) {
  std::vector<vtkAbstractArray*> arrays;
  for (vtkFieldData* data :
       {static_cast<vtkFieldData*>(block->GetPointData()),
        static_cast<vtkFieldData*>(block->GetCellData()), block->GetFieldData()}) {
    for (int i = 0; i < data->GetNumberOfArrays(); ++i) arrays.push_back(data->GetAbstractArray(i));
  }
  auto* const set = vtkPointSet::SafeDownCast(block);
  if (set != nullptr && set->GetPoints() != nullptr) arrays.push_back(set->GetPoints()->GetData());
  if (auto* const grid = vtkRectilinearGrid::SafeDownCast(block)) {
    arrays.insert(arrays.end(),
                  {grid->GetXCoordinates(), grid->GetYCoordinates(), grid->GetZCoordinates()});
  }
  return arrays;
}

bool FitsText(vtkDataSet* block) {
  const std::vector<vtkAbstractArray*> arrays = ArraysOf(block);
  return std::all_of(arrays.begin(), arrays.end(),
                     [](vtkAbstractArray* array) { return AreFinite(array); });
}

vtkSmartPointer<vtkDataSet> WritableAsXml(vtkDataSet* block, const std::string& path) {
  return WithEachArray(block, [&path](vtkAbstractArray* array) {
    if (!IsNamedPlainly(array, path)) return NamedForXml(array, path);
    return HasInfiniteLength(array) ? ShallowCopyOf(array) : ArrayPtr(array);
  });
}

vtkSmartPointer<vtkDataSet> WritableAsLegacy(vtkDataSet* block) {
  return WithEachArray(block, [](vtkAbstractArray* array) {
    return TellsInfiniteLength(array) ? ShallowCopyOf(array) : ArrayPtr(array);
  });
}

}  // namespace qelhost
