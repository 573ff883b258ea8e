#include "XmlSource.h"

#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkPointData.h>
#include <vtkPointSet.h>
#include <vtkPoints.h>

#include <set>
#include <utility>

#include "../FileError.h"
#include "../XmlText.h"
#include "LargeMemory.h"
#include "PayloadCheck.h"

namespace qelhost {
namespace {

/// What is read while somebody writes the file would be half of the old and half of the new.
void ReadValues(const StoredArray& stored, vtkDataArray* array, std::int64_t tupleCount) {
  stored.File().RequireUnchanged();
  array->SetNumberOfTuples(tupleCount);
  void* const memory = array->GetVoidPointer(0);
  PreferLargePages(memory, stored.Table().byteCount);
  stored.ReadAll(static_cast<char*>(memory));
  stored.File().RequireUnchanged();
  array->Modified();
}

class PendingXmlArray : public PendingArray {
 public:
  PendingXmlArray(std::shared_ptr<const StoredArray> stored, vtkDataArray* array,
                  std::int64_t tupleCount)
      : m_stored(std::move(stored)), m_array(array), m_tupleCount(tupleCount) {}

  std::int64_t TupleCount() const override { return m_tupleCount; }

 private:
  void Fill() override { ReadValues(*m_stored, m_array, m_tupleCount); }

  std::shared_ptr<const StoredArray> m_stored;
  vtkDataArray* m_array;  ///< which is kept beside this
  std::int64_t m_tupleCount;
};

/// Whether the array can be made here exactly as VTK's reader would make it.
bool IsPlainVariable(const XmlArray& array) {
  if (array.vtkType == 0 || array.name.empty() || array.hasOtherKeys) return false;
  for (const XmlAttribute& attribute : array.tag.attributes) {
    const bool isVerbatim = attribute.value.find_first_of("&\t\r\n") == std::string::npos;
    if (attribute.name != "Name" && !isVerbatim) return false;
  }
  return true;
}

vtkSmartPointer<vtkDataArray> MakePlaceholder(const XmlArray& array) {
  auto made = vtkSmartPointer<vtkDataArray>::Take(vtkDataArray::CreateDataArray(array.vtkType));
  made->SetName(array.name.c_str());
  made->SetNumberOfComponents(array.components);
  for (int component = 0; component < array.components; ++component) {
    const std::string key = "ComponentName" + std::to_string(component);
    if (const XmlAttribute* const name = array.tag.Find(key.c_str())) {
      made->SetComponentName(component, name->value.c_str());
    }
  }
  return made;
}

bool IsVariable(const XmlArray& array) {
  return array.section == XmlSection::PointData || array.section == XmlSection::CellData;
}

vtkDataSetAttributes* AttributesOf(vtkDataSet* block, XmlSection section) {
  if (section == XmlSection::PointData) return block->GetPointData();
  return block->GetCellData();
}

/// Scalars="p" and so on, as the section's tag has them.
void SetActiveAttributes(const XmlTag& section, vtkDataSetAttributes* attributes) {
  for (int type = 0; type < vtkDataSetAttributes::NUM_ATTRIBUTES; ++type) {
    const XmlAttribute* const name =
        section.Find(vtkDataSetAttributes::GetAttributeTypeAsString(type));
    const auto text = name == nullptr ? std::nullopt : Unescaped(name->value);
    if (text) attributes->SetActiveAttribute(text->c_str(), type);
  }
}

/// The arrays of both sections with what reads them; false when one is not stored as it should be.
bool OpenVariables(XmlSource& source, vtkDataSet* block) {
  for (std::size_t n = 0; n < source.layout.arrays.size(); ++n) {
    const XmlArray& array = source.layout.arrays[n];
    if (!IsVariable(array)) continue;
    const bool isNodal = array.section == XmlSection::PointData;
    const std::int64_t tuples = isNodal ? block->GetNumberOfPoints() : block->GetNumberOfCells();
    const auto format =
        PayloadFormat::Of(source.layout, array.isInline || source.layout.isAppendedText);
    const vtkSmartPointer<vtkDataArray> placeholder = MakePlaceholder(array);
    if (!format || tuples > (std::int64_t{1} << 40) / array.components) return false;
    std::shared_ptr<const StoredArray> stored = StoredArray::Open(
        source.file, *format, array, tuples * array.components, placeholder->GetDataTypeSize());
    if (stored == nullptr) return false;
    // Whoever looks at the mesh looks at its marks.
    if (array.name == vtkDataSetAttributes::GhostArrayName()) {
      ReadValues(*stored, placeholder, tuples);
    } else {
      (*source.pending)[placeholder] =
          std::make_shared<PendingXmlArray>(stored, placeholder, tuples);
    }
    source.stored[n] = std::move(stored);
    source.arrays[n] = placeholder;
  }
  return true;
}

/// The array of the nodes' places, as VTK has read it, so that altered ones can be written.
void KnowPoints(XmlSource& source, vtkDataSet* block) {
  auto* const nodes = vtkPointSet::SafeDownCast(block);
  if (nodes == nullptr || nodes->GetPoints() == nullptr) return;
  vtkDataArray* const places = nodes->GetPoints()->GetData();
  for (std::size_t n = 0; n < source.arrays.size(); ++n) {
    const XmlArray& array = source.layout.arrays[n];
    if (array.part != "Points" || source.arrays[n] != nullptr) continue;
    const auto format =
        PayloadFormat::Of(source.layout, array.isInline || source.layout.isAppendedText);
    const bool isPlain = !array.isText && !array.hasOtherKeys && array.components == 3;
    if (!isPlain || !format || array.vtkType != places->GetDataType()) continue;
    source.stored[n] = StoredArray::Open(source.file, *format, array, places->GetNumberOfValues(),
                                         places->GetDataTypeSize());
    if (source.stored[n] != nullptr) source.arrays[n] = places;
  }
}

}  // namespace

std::shared_ptr<XmlSource> OpenXmlSource(const std::string& path) {
  const bool mayStayOpen = ByteFile::MayOpenAnother();
  auto source = std::make_shared<XmlSource>();
  source->file = std::make_shared<const ByteFile>(path);
  std::optional<XmlLayout> layout = ReadXmlLayout(path);
  // VTK's reader would take at its word what nobody has looked at.
  if (!layout) throw FileError(path, "damaged, or marked up as no VTK file is");
  CheckPayloads(source->file, *layout);
  if (!layout->isPlain || !mayStayOpen) return nullptr;
  source->layout = std::move(*layout);
  std::set<std::pair<XmlSection, std::string>> names;
  for (const XmlArray& array : source->layout.arrays) {
    if (!IsVariable(array)) continue;
    // VTK makes marks of them.
    if (array.name == kOldGhostName) return nullptr;
    if (!IsPlainVariable(array) || !names.insert({array.section, array.name}).second)
      return nullptr;
  }
  source->stored.resize(source->layout.arrays.size());
  source->arrays.resize(source->layout.arrays.size());
  return source;
}

bool HasArrays(const XmlSource& source, XmlSection section, const std::vector<std::string>& names) {
  std::vector<std::string> own;
  for (const XmlArray& array : source.layout.arrays) {
    if (array.section == section) own.push_back(array.name);
  }
  return own == names;
}

bool AttachArrays(XmlSource& source, vtkDataSet* block) {
  if (!OpenVariables(source, block)) return false;
  for (std::size_t n = 0; n < source.arrays.size(); ++n) {
    const XmlArray& array = source.layout.arrays[n];
    if (!IsVariable(array)) continue;
    AttributesOf(block, array.section)->AddArray(source.arrays[n]);
  }
  KnowPoints(source, block);
  for (const XmlTag& section : source.layout.attributeSections) {
    const bool isNodal = section.name == "PointData";
    SetActiveAttributes(
        section, AttributesOf(block, isNodal ? XmlSection::PointData : XmlSection::CellData));
  }
  return true;
}

void LoadAll(const XmlSource& source) {
  for (const auto& [array, pending] : *source.pending) pending->Load();
}

}  // namespace qelhost
