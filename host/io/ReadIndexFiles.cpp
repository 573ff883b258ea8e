#include <vtkSmartPointer.h>
#include <vtkXMLDataElement.h>
#include <vtkXMLUtilities.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "FileError.h"
#include "Formats.h"
#include "IndexFiles.h"
#include "IndexWalk.h"
#include "InputFile.h"
#include "ReadWatch.h"
#include "ReaderParts.h"
#include "VtkErrors.h"

namespace qelhost {
namespace {

using Element = vtkSmartPointer<vtkXMLDataElement>;

constexpr char kMultiBlockType[] = "vtkMultiBlockDataSet";
constexpr char kCollectionType[] = "Collection";

/// The VTKFile element, which has one of the type given in it; throws FileError.
Element ParseIndex(const std::string& path, const std::string& type) {
  RequireFile(path);
  CheckIndexMarkup(path);
  VtkErrorCapture errors;
  auto root = Element::Take(vtkXMLUtilities::ReadElementFromFile(path.c_str()));
  if (root == nullptr || errors.HasError()) {
    throw FileError(path, "damaged or no VTK XML file: " + errors.FirstError());
  }
  const char* holds = root->GetAttribute("type");
  if (std::string(root->GetName()) != "VTKFile" || holds == nullptr) {
    throw FileError(path, "not a VTK XML file");
  }
  if (type != holds)
    throw FileError(path, "holds " + std::string(holds) + " where " + type + " belongs");
  if (root->FindNestedElementWithName(type.c_str()) == nullptr) {
    throw FileError(path, "damaged: it names no blocks");
  }
  return root;
}

/// The field data of a multi-block index, as its text: it follows the blocks, and VTK's parser does
/// not give the numbers back in their place.
std::string FieldDataOf(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream whole;
  whole << in.rdbuf();
  const std::string text = whole.str();
  const std::size_t blocksEnd = text.rfind(std::string("</") + kMultiBlockType);
  const std::size_t first = text.find("<FieldData", blocksEnd);
  constexpr char kEnd[] = "</FieldData>";
  const std::size_t last = text.find(kEnd, first);
  if (blocksEnd == std::string::npos || last == std::string::npos) return {};
  return "  " + text.substr(first, last - first) + kEnd + "\n";
}

XmlAttributes AttributesOf(vtkXMLDataElement* element) {
  XmlAttributes attributes;
  for (int i = 0; i < element->GetNumberOfAttributes(); ++i) {
    const std::string name = element->GetAttributeName(i);
    if (name != "file") attributes.emplace_back(name, element->GetAttributeValue(i));
  }
  return attributes;
}

std::string Beside(const std::string& index, const std::string& file) {
  return (std::filesystem::path(index).parent_path() / file).string();
}

FileNode ReadPiece(const std::string& file) {
  OpenIndex::CountFile(file);
  const Format* format = FindFormat(file);
  if (format == nullptr) {
    RequireFile(file);
    FileNode node;
    node.carriedFile = file;
    return node;
  }
  TellRead(0.0);
  FileSource piece;
  piece.path = file;
  format->read(file, piece);
  if (piece.steps.size() != 1) throw FileError(file, "a series of time steps inside a block");
  return std::move(piece.steps[0].root);
}

/// How many of an index' files were read.
struct PieceCount {
  std::int64_t done = 0;
  std::int64_t all = 0;
};

std::int64_t CountFiles(vtkXMLDataElement* element) {
  std::int64_t count = AttributeOf(element, "file").empty() ? 0 : 1;
  for (int i = 0; i < element->GetNumberOfNestedElements(); ++i) {
    count += CountFiles(element->GetNestedElement(i));
  }
  return count;
}

FileNode NodeOf(const std::string& path, vtkXMLDataElement* element, int place,
                PieceCount& pieces) {
  const std::string tag = element->GetName();
  const std::string file = AttributeOf(element, "file");
  FileNode node;
  if (tag == "DataSet") {
    if (!file.empty()) {
      const ReadPart part(pieces.done, pieces.done + 1, pieces.all);
      ++pieces.done;
      node = ReadPiece(Beside(path, file));
    }
  } else {
    node.isGroup = true;
    for (int i = 0; i < element->GetNumberOfNestedElements(); ++i) {
      node.children.push_back(NodeOf(path, element->GetNestedElement(i), i, pieces));
    }
  }
  node.tag = tag;
  node.attributes = AttributesOf(element);
  node.name = AttributeOf(element, "name");
  if (node.name.empty()) node.name = "Block " + std::to_string(place + 1);
  return node;
}

}  // namespace

void ReadMultiBlock(const std::string& path, FileSource& source) {
  RequireFile(path);
  const OpenIndex open(path);
  const Element file = ParseIndex(path, kMultiBlockType);
  vtkXMLDataElement* index = file->FindNestedElementWithName(kMultiBlockType);
  FileStep step;
  step.root.isGroup = true;
  step.root.name = StemOf(path);
  PieceCount pieces{0, CountFiles(index)};
  const auto isBlock = [](vtkXMLDataElement* element) {
    const std::string tag = element->GetName();
    return tag == "Block" || tag == "Piece" || tag == "DataSet";
  };
  for (int i = 0; i < index->GetNumberOfNestedElements(); ++i) {
    vtkXMLDataElement* element = index->GetNestedElement(i);
    if (isBlock(element)) {
      const int place = static_cast<int>(step.root.children.size());
      step.root.children.push_back(NodeOf(path, element, place, pieces));
    }
  }
  step.indexAttributes = AttributesOf(file);
  step.indexFieldData = FieldDataOf(path);
  source.steps.push_back(std::move(step));
}

void ReadCollection(const std::string& path, FileSource& source) {
  RequireFile(path);
  const OpenIndex open(path);
  const Element collection = ParseIndex(path, kCollectionType);
  vtkXMLDataElement* index = collection->FindNestedElementWithName(kCollectionType);
  for (int i = 0; i < index->GetNumberOfNestedElements(); ++i) {
    vtkXMLDataElement* element = index->GetNestedElement(i);
    const std::string file = AttributeOf(element, "file");
    if (std::string(element->GetName()) != "DataSet" || file.empty()) continue;
    FileStep step;
    const std::string time = AttributeOf(element, "timestep");
    step.time = std::strtod(time.c_str(), nullptr);
    source.hasTimes = source.hasTimes || !time.empty();
    const std::string pieceFile = Beside(path, file);
    const Format* format = FindFormat(pieceFile);
    if (format == nullptr || ExtensionOf(pieceFile) == ".pvd") {
      throw FileError(pieceFile, "no mesh that a collection can hold");
    }
    const ReadPart share(i, i + 1, index->GetNumberOfNestedElements());
    TellRead(0.0);
    OpenIndex::CountFile(pieceFile);
    FileSource piece;
    piece.path = pieceFile;
    format->read(pieceFile, piece);
    if (piece.steps.size() != 1) throw FileError(pieceFile, "a series of time steps inside a step");
    step.root = std::move(piece.steps[0].root);
    step.indexAttributes = piece.steps[0].indexAttributes;
    step.indexFieldData = piece.steps[0].indexFieldData;
    step.attributes = AttributesOf(element);
    step.root.name = StemOf(path);
    const std::string part = AttributeOf(element, "part");
    if (!part.empty() && part != "0") step.root.name += " part " + part;
    source.steps.push_back(std::move(step));
  }
  if (source.steps.empty()) throw FileError(path, "it names no files");
}

namespace {

void CollectNamed(const std::string& path, vtkXMLDataElement* element,
                  std::vector<std::string>& files) {
  const std::string file = AttributeOf(element, "file");
  if (!file.empty()) files.push_back(Beside(path, file));
  for (int i = 0; i < element->GetNumberOfNestedElements(); ++i) {
    CollectNamed(path, element->GetNestedElement(i), files);
  }
}

/// Those that one index names; none when it is no index of ours: then nothing is known to belong to
/// it.
std::vector<std::string> FilesNamedIn(const std::string& path) {
  const std::string extension = ExtensionOf(path);
  std::vector<std::string> files;
  if (extension != ".vtm" && extension != ".pvd") return files;
  try {
    CollectNamed(path, ParseIndex(path, extension == ".vtm" ? kMultiBlockType : kCollectionType),
                 files);
  } catch (const FileError&) {
    return {};
  }
  return files;
}

}  // namespace

std::vector<std::string> FilesNamedBy(const std::string& path) {
  std::vector<std::string> files;
  std::vector<std::string> indexes = {path};
  std::set<std::string> seen;
  while (!indexes.empty()) {
    const std::string index = std::move(indexes.back());
    indexes.pop_back();
    if (!seen.insert(RealPath(index)).second) continue;
    for (std::string& file : FilesNamedIn(index)) {
      indexes.push_back(file);
      files.push_back(std::move(file));
    }
  }
  return files;
}

}  // namespace qelhost
