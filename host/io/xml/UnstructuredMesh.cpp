// The mesh of an unstructured grid, read in parallel.
#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkTypeInt32Array.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <initializer_list>
#include <limits>

#include "../FileError.h"
#include "../ReadWatch.h"
#include "LargeMemory.h"
#include "XmlSource.h"

namespace qelhost {
namespace {

constexpr std::int64_t kMostNarrow = std::numeric_limits<std::int32_t>::max();

/// The numbers in the layout of the arrays that make a mesh; -1 for none.
struct MeshArrays {
  int points = -1;
  int connectivity = -1;
  int offsets = -1;
  int types = -1;
  bool areAll = true;  ///< there is no array beside them

  bool AreThere() const {
    return points >= 0 && connectivity >= 0 && offsets >= 0 && types >= 0 && areAll;
  }
};

bool IsIndexType(int vtkType) {
  return vtkType == VTK_ID_TYPE || vtkType == VTK_LONG_LONG || vtkType == VTK_INT;
}

void Take(int number, int& role, MeshArrays& found) {
  if (role >= 0) found.areAll = false;
  role = number;
}

MeshArrays FindMeshArrays(const XmlLayout& layout) {
  MeshArrays found;
  for (std::size_t n = 0; n < layout.arrays.size(); ++n) {
    const XmlArray& array = layout.arrays[n];
    const int number = static_cast<int>(n);
    const bool isReal = array.vtkType == VTK_FLOAT || array.vtkType == VTK_DOUBLE;
    if (array.section == XmlSection::FieldData) found.areAll = false;
    if (array.section != XmlSection::Mesh) continue;
    const bool isOfCells = array.part == "Cells";
    if (array.part == "Points" && array.components == 3 && isReal && !array.hasOtherKeys) {
      Take(number, found.points, found);
    } else if (isOfCells && array.name == "connectivity" && IsIndexType(array.vtkType)) {
      Take(number, found.connectivity, found);
    } else if (isOfCells && array.name == "offsets" && IsIndexType(array.vtkType)) {
      Take(number, found.offsets, found);
    } else if (isOfCells && array.name == "types" && array.vtkType == VTK_UNSIGNED_CHAR) {
      Take(number, found.types, found);
    } else {
      found.areAll = false;
    }
  }
  return found;
}

std::shared_ptr<const StoredArray> OpenArray(const XmlSource& source, int number,
                                             std::int64_t valueCount) {
  const XmlArray& array = source.layout.arrays[static_cast<std::size_t>(number)];
  if (array.isText) return nullptr;
  const auto format =
      PayloadFormat::Of(source.layout, array.isInline || source.layout.isAppendedText);
  if (!format) return nullptr;
  const auto type =
      vtkSmartPointer<vtkDataArray>::Take(vtkDataArray::CreateDataArray(array.vtkType));
  return StoredArray::Open(source.file, *format, array, valueCount, type->GetDataTypeSize());
}

/// Stores indices of the file's width in 32 bits. False when one does not fit.
template <class Index>
bool ReadNarrow(const StoredArray& stored, std::int32_t* to) {
  std::atomic<bool> areFitting{true};
  stored.ForEachBlock([&](std::int64_t first, const char* bytes, std::int64_t count) {
    std::int32_t* const place = to + first / static_cast<std::int64_t>(sizeof(Index));
    const std::int64_t valueCount = count / static_cast<std::int64_t>(sizeof(Index));
    Index misfits = 0;
    for (std::int64_t i = 0; i < valueCount; ++i) {
      Index value;
      std::memcpy(&value, bytes + i * static_cast<std::int64_t>(sizeof(Index)), sizeof(Index));
      misfits |= static_cast<Index>(value < 0 || value > Index{kMostNarrow});
      place[i] = static_cast<std::int32_t>(value);
    }
    if (misfits != 0) areFitting = false;
  });
  return areFitting;
}

bool ReadNarrow(const StoredArray& stored, std::int32_t* to) {
  return stored.ValueSize() == 8 ? ReadNarrow<std::int64_t>(stored, to)
                                 : ReadNarrow<std::int32_t>(stored, to);
}

std::shared_ptr<const StoredArray> OpenIndices(const XmlSource& source, int number,
                                               std::int64_t valueCount) {
  auto stored = OpenArray(source, number, valueCount);
  return stored == nullptr || stored->ValueCount() > kMostNarrow ? nullptr : stored;
}

vtkSmartPointer<vtkTypeInt32Array> MakeIndices(std::int64_t count) {
  auto indices = vtkSmartPointer<vtkTypeInt32Array>::New();
  indices->SetNumberOfValues(count);
  PreferLargePages(indices->GetPointer(0), count * static_cast<std::int64_t>(sizeof(std::int32_t)));
  return indices;
}

/// Reads the arrays one after the other, each as much of the whole as it has bytes.
class MeshProgress {
 public:
  MeshProgress(std::initializer_list<const StoredArray*> arrays) {
    for (const StoredArray* array : arrays) m_all += BytesOf(*array);
  }
  template <class Read>
  auto Of(const StoredArray& array, const Read& read) {
    const std::int64_t from = m_done;
    m_done += BytesOf(array);
    const ReadPart part(from, m_done, m_all);
    return read();
  }

 private:
  static std::int64_t BytesOf(const StoredArray& array) { return array.Table().byteCount; }

  std::int64_t m_done = 0;
  std::int64_t m_all = 0;
};

}  // namespace

vtkSmartPointer<vtkDataSet> ReadUnstructuredMesh(XmlSource& source) {
  const XmlLayout& layout = source.layout;
  const MeshArrays numbers = FindMeshArrays(layout);
  const bool areCountsGood = layout.points > 0 && layout.points <= kMostNarrow &&
                             layout.cells > 0 && layout.cells < kMostNarrow;
  if (layout.type != "UnstructuredGrid" || !areCountsGood || !numbers.AreThere()) return nullptr;
  const auto points = OpenArray(source, numbers.points, 3 * layout.points);
  const auto nodes = OpenIndices(source, numbers.connectivity, StoredArray::kAsStored);
  const auto ends = OpenIndices(source, numbers.offsets, layout.cells);
  const auto types = OpenArray(source, numbers.types, layout.cells);
  if (points == nullptr || nodes == nullptr || ends == nullptr || types == nullptr) return nullptr;

  const auto placesNumber = static_cast<std::size_t>(numbers.points);
  const auto places = vtkSmartPointer<vtkDataArray>::Take(
      vtkDataArray::CreateDataArray(layout.arrays[placesNumber].vtkType));
  places->SetName(layout.arrays[placesNumber].name.c_str());
  places->SetNumberOfComponents(3);
  places->SetNumberOfTuples(layout.points);
  PreferLargePages(places->GetVoidPointer(0), points->Table().byteCount);
  MeshProgress progress({points.get(), nodes.get(), ends.get(), types.get()});
  progress.Of(*points, [&] { points->ReadAll(static_cast<char*>(places->GetVoidPointer(0))); });

  const auto offsets = MakeIndices(layout.cells + 1);
  offsets->SetValue(0, 0);
  const auto connectivity = MakeIndices(nodes->ValueCount());
  const auto readIndices = [&progress](const StoredArray& stored, std::int32_t* to) {
    return progress.Of(stored, [&] { return ReadNarrow(stored, to); });
  };
  if (!readIndices(*ends, offsets->GetPointer(1)) ||
      !readIndices(*nodes, connectivity->GetPointer(0))) {
    throw FileError(source.file->Path(), "damaged: its cells refer to nodes that do not exist");
  }
  vtkNew<vtkUnsignedCharArray> cellTypes;
  cellTypes->SetNumberOfValues(layout.cells);
  progress.Of(*types, [&] { types->ReadAll(reinterpret_cast<char*>(cellTypes->GetPointer(0))); });
  const unsigned char* const firstType = cellTypes->GetPointer(0);
  const unsigned char* const typesEnd = firstType + layout.cells;
  if (std::find(firstType, typesEnd, VTK_POLYHEDRON) != typesEnd) return nullptr;

  vtkNew<vtkPoints> pointSet;
  pointSet->SetData(places);
  vtkNew<vtkCellArray> cells;
  cells->SetData(offsets, connectivity);
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(pointSet);
  grid->SetCells(cellTypes, cells);
  source.stored[placesNumber] = points;
  source.arrays[placesNumber] = places;
  return grid;
}

}  // namespace qelhost
