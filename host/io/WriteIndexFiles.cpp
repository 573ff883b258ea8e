#include <filesystem>
#include <optional>
#include <sstream>

#include "FileError.h"
#include "Formats.h"
#include "IndexFiles.h"
#include "Staging.h"
#include "WriteCancel.h"
#include "Writers.h"
#include "XmlText.h"
#include "xml/XmlTags.h"

namespace qelhost {
namespace {

std::string Quoted(const std::string& value) {
  const std::optional<std::string> text = AttributeText(value);
  if (text) return "=\"" + *text + "\"";
  throw FileError(value, "no file that names others can hold this name");
}

std::string Printed(const XmlAttributes& attributes) {
  std::string text;
  for (const auto& [name, value] : attributes) text += " " + name + Quoted(value);
  return text;
}

/// Writes the pieces of one multi-block index, then its text.
class BlockWriter {
 public:
  /// Pieces become folder/stem_0.vtu and so on.
  BlockWriter(std::string folder, std::string stem, const TouchedArrays& touched)
      : m_folder(std::move(folder)), m_stem(std::move(stem)), m_touched(touched) {}

  void WritePieces(const FileStep& step) {
    m_blockCount = CountBlocks(step.root);
    WriteBlocks(step.root);
  }
  bool HasPieces() const { return !m_files.empty(); }

  /// The index of the pieces written before, named as relative/stem_0.vtu.
  std::string Index(const FileStep& step, const std::string& relative) {
    m_relative = relative;
    XmlAttributes attributes = step.indexAttributes;
    if (attributes.empty()) {
      attributes = {{"type", "vtkMultiBlockDataSet"},
                    {"version", "1.0"},
                    {"byte_order", "LittleEndian"},
                    {"header_type", "UInt64"}};
    }
    m_text << "<?xml version=\"1.0\"?>\n<VTKFile" << Printed(attributes)
           << ">\n  <vtkMultiBlockDataSet>\n";
    if (step.root.isGroup) {
      NameChildren(step.root, "    ");
    } else {
      NameNode(step.root, 0, "    ");
    }
    m_text << "  </vtkMultiBlockDataSet>\n" << step.indexFieldData << "</VTKFile>\n";
    return m_text.str();
  }

 private:
  static bool HasFile(const FileNode& node) {
    return node.block != nullptr || !node.carriedFile.empty();
  }

  static std::int64_t CountBlocks(const FileNode& node) {
    std::int64_t count = HasFile(node) ? 1 : 0;
    for (const FileNode& child : node.children) count += CountBlocks(child);
    return count;
  }

  void WriteBlocks(const FileNode& node) {
    if (!node.isGroup && HasFile(node)) WriteBlock(node);
    if (!node.isGroup) return;
    for (const FileNode& child : node.children) WriteBlocks(child);
  }

  void WriteBlock(const FileNode& node) {
    const std::string extension =
        node.block != nullptr ? ExtensionFor(node.block) : ExtensionOf(node.carriedFile);
    const auto place = static_cast<std::int64_t>(m_files.size());
    m_files.push_back(m_stem + "_" + std::to_string(place) + extension);
    const std::string path = m_folder + "/" + m_files.back();
    std::filesystem::create_directories(m_folder);
    if (node.block != nullptr) {
      const WritePart part(place, m_blockCount);
      WriteBlockFile(node, m_touched, path);
    } else {
      std::filesystem::copy_file(node.carriedFile, path);
    }
  }

  void NameChildren(const FileNode& group, const std::string& indent) {
    for (std::size_t i = 0; i < group.children.size(); ++i) {
      NameNode(group.children[i], i, indent);
    }
  }

  void NameNode(const FileNode& node, std::size_t place, const std::string& indent) {
    const std::string tag = !node.tag.empty() ? node.tag : node.isGroup ? "Block" : "DataSet";
    XmlAttributes attributes = node.attributes;
    if (node.tag.empty()) {
      attributes.emplace_back("index", std::to_string(place));
      if (!node.name.empty()) attributes.emplace_back("name", node.name);
    }
    m_text << indent << "<" << tag << Printed(attributes);
    // A piece that was itself an index becomes a group of this one.
    if (node.isGroup) {
      m_text << ">\n";
      NameChildren(node, indent + "  ");
      m_text << indent << "</" << tag << ">\n";
      return;
    }
    if (HasFile(node)) m_text << " file" << Quoted(m_relative + "/" + m_files[m_named++]);
    m_text << "/>\n";
  }

  std::string m_folder, m_relative, m_stem;
  const TouchedArrays& m_touched;
  std::ostringstream m_text;
  std::vector<std::string> m_files;
  std::size_t m_named = 0;
  std::int64_t m_blockCount = 0;
};

/// Writes a step of a collection into the folder and gives the name of the file that stands for it.
std::string WriteStep(const FileStep& step, const TouchedArrays& touched, const std::string& folder,
                      const std::string& stem) {
  const bool isLeaf = !step.root.isGroup && step.root.block != nullptr;
  std::string file = stem + (isLeaf ? ExtensionFor(step.root.block) : ".vtm");
  if (isLeaf) {
    WriteBlockFile(step.root, touched, folder + "/" + file);
  } else {
    BlockWriter writer(folder + "/" + stem, stem, touched);
    writer.WritePieces(step);
    WriteBytes(folder + "/" + file, writer.Index(step, stem));
  }
  return file;
}

/// Gives the failures of folders and copies the same form as all others.
template <class Body>
void WithFileErrors(const std::string& path, Body&& body) {
  try {
    body();
  } catch (const std::filesystem::filesystem_error& error) {
    throw FileError(path, error.code().message());
  }
}

}  // namespace

void WriteMultiBlock(const FileSource& source, const TouchedArrays& touched,
                     const std::string& path) {
  if (source.steps.size() != 1) {
    throw FileError(path, "cannot hold " + std::to_string(source.steps.size()) +
                              " time steps; write a .pvd file");
  }
  WithFileErrors(path, [&] {
    StagedTarget target(path, FilesNamedBy(path));
    BlockWriter writer(target.PiecesPath(), target.Stem(), touched);
    writer.WritePieces(source.steps[0]);
    const std::string folder = writer.HasPieces() ? target.PlacePieces() : "";
    WriteBytes(target.TemporaryPath(), writer.Index(source.steps[0], folder));
    target.Commit();
  });
}

void WriteCollection(const FileSource& source, const TouchedArrays& touched,
                     const std::string& path) {
  WithFileErrors(path, [&] {
    StagedTarget target(path, FilesNamedBy(path));
    std::filesystem::create_directories(target.PiecesPath());
    std::vector<std::string> files;
    for (const FileStep& step : source.steps) {
      const WritePart part(static_cast<std::int64_t>(files.size()),
                           static_cast<std::int64_t>(source.steps.size()));
      const std::string stem = target.Stem() + "_" + std::to_string(files.size());
      files.push_back(WriteStep(step, touched, target.PiecesPath(), stem));
    }
    const std::string folder = target.PlacePieces();
    std::ostringstream text;
    text << "<?xml version=\"1.0\"?>\n"
            "<VTKFile type=\"Collection\" version=\"0.1\" byte_order=\"LittleEndian\">\n"
            "  <Collection>\n";
    for (std::size_t i = 0; i < source.steps.size(); ++i) {
      XmlAttributes attributes = source.steps[i].attributes;
      if (attributes.empty()) {
        attributes = {
            {"timestep", ShortestNumber(source.steps[i].time)}, {"group", ""}, {"part", "0"}};
      }
      text << "    <DataSet" << Printed(attributes) << " file" << Quoted(folder + "/" + files[i])
           << "/>\n";
    }
    text << "  </Collection>\n</VTKFile>\n";
    WriteBytes(target.TemporaryPath(), text.str());
    target.Commit();
  });
}

}  // namespace qelhost
