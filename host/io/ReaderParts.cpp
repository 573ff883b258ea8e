#include "ReaderParts.h"

#include <vtkCompositeDataSet.h>
#include <vtkInformation.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkPartitionedDataSet.h>
#include <vtkXMLDataElement.h>

#include "FileError.h"
#include "Formats.h"
#include "InputFile.h"
#include "MeshCheck.h"
#include "TrialRead.h"

namespace qelhost {
namespace {

std::string NameIn(vtkInformation* info, unsigned int child, unsigned int count) {
  const char* name = info == nullptr ? nullptr : info->Get(vtkCompositeDataSet::NAME());
  if (name != nullptr && *name != '\0') return name;
  return count == 1 ? std::string() : "Block " + std::to_string(child + 1);
}

}  // namespace

void RequireNoError(const std::string& path, const VtkErrorCapture& errors) {
  if (errors.HasError()) throw FileError(path, "damaged or unreadable: " + errors.FirstError());
}

std::string AttributeOf(vtkXMLDataElement* element, const char* name) {
  const char* const value = element->GetAttribute(name);
  return value == nullptr ? std::string() : value;
}

FileNode NodeOf(vtkDataObject* data, const FileEncoding& encoding) {
  FileNode node;
  node.encoding = encoding;
  const auto add = [&](vtkDataObject* child, vtkInformation* info, unsigned int i,
                       unsigned int count) {
    node.children.push_back(NodeOf(child, encoding));
    node.children.back().name = NameIn(info, i, count);
  };
  if (auto* blocks = vtkMultiBlockDataSet::SafeDownCast(data)) {
    node.isGroup = true;
    const unsigned int count = blocks->GetNumberOfBlocks();
    for (unsigned int i = 0; i < count; ++i) {
      add(blocks->GetBlock(i), blocks->HasMetaData(i) ? blocks->GetMetaData(i) : nullptr, i, count);
    }
  } else if (auto* pieces = vtkPartitionedDataSet::SafeDownCast(data)) {
    node.isGroup = true;
    const unsigned int count = pieces->GetNumberOfPartitions();
    for (unsigned int i = 0; i < count; ++i) {
      add(pieces->GetPartitionAsDataObject(i),
          pieces->HasMetaData(i) ? pieces->GetMetaData(i) : nullptr, i, count);
    }
  } else {
    node.block = vtkDataSet::SafeDownCast(data);
  }
  return node;
}

void TakeBlock(FileSource& source, vtkDataSet* block, const FileEncoding& encoding) {
  source.steps.resize(1);
  FileNode& root = source.steps[0].root;
  root.name = StemOf(source.path);
  root.block = block;
  root.encoding = encoding;
}

void ReadAfterTrial(const std::string& path, std::int64_t (*bytes)(const std::string&),
                    void (*read)(const std::string&, FileSource&), FileSource& source) {
  RequireFile(path);
  ReadForTrial(path, TrialLimits::For(bytes(path)), [&] {
    FileSource trial;
    trial.path = source.path;
    read(path, trial);
  });
  read(path, source);
}

void CheckMeshes(const std::string& path, const FileNode& node) {
  if (node.block != nullptr) CheckMesh(path, node.block);
  for (const FileNode& child : node.children) CheckMeshes(path, child);
}

}  // namespace qelhost
