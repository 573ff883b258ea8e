#include <filesystem>
#include <fstream>
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

/// Writes the pieces of one multi-block index and the index' text.
class BlockWriter {
 public:
  /// Pieces become folder/stem_0.vtu and so on; the index names them as relative/stem_0.vtu.
  BlockWriter(std::string folder, std::string relative, std::string stem,
              const TouchedArrays& touched)
      : m_folder(std::move(folder)),
        m_relative(std::move(relative)),
        m_stem(std::move(stem)),
        m_touched(touched) {}

  std::string Write(const FileStep& step) {
    m_blockCount = CountBlocks(step.root);
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
      WriteChildren(step.root, "    ");
    } else {
      WriteNode(step.root, 0, "    ");
    }
    m_text << "  </vtkMultiBlockDataSet>\n" << step.indexFieldData << "</VTKFile>\n";
    return m_text.str();
  }

 private:
  static std::int64_t CountBlocks(const FileNode& node) {
    std::int64_t count = node.block == nullptr && node.carriedFile.empty() ? 0 : 1;
    for (const FileNode& child : node.children) count += CountBlocks(child);
    return count;
  }

  void WriteChildren(const FileNode& group, const std::string& indent) {
    for (std::size_t i = 0; i < group.children.size(); ++i) {
      WriteNode(group.children[i], i, indent);
    }
  }

  void WriteNode(const FileNode& node, std::size_t place, const std::string& indent) {
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
      WriteChildren(node, indent + "  ");
      m_text << indent << "</" << tag << ">\n";
      return;
    }
    const std::string file = WriteBlock(node);
    if (!file.empty()) m_text << " file" << Quoted(m_relative + "/" + file);
    m_text << "/>\n";
  }

  std::string WriteBlock(const FileNode& node) {
    if (node.block == nullptr && node.carriedFile.empty()) return {};
    const std::string extension =
        node.block != nullptr ? ExtensionFor(node.block) : ExtensionOf(node.carriedFile);
    const std::string file = m_stem + "_" + std::to_string(m_count++) + extension;
    const std::string path = m_folder + "/" + file;
    std::filesystem::create_directories(m_folder);
    if (node.block != nullptr) {
      const WritePart part(m_count - 1, m_blockCount);
      WriteBlockFile(node, m_touched, path);
    } else {
      std::filesystem::copy_file(node.carriedFile, path);
    }
    return file;
  }

  std::string m_folder, m_relative, m_stem;
  const TouchedArrays& m_touched;
  std::ostringstream m_text;
  int m_count = 0;
  std::int64_t m_blockCount = 0;
};

void WriteText(const std::string& path, const std::string& text) {
  std::ofstream out(path, std::ios::binary);
  out << text;
  out.close();
  if (!out) throw FileError(path, "cannot be written");
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
    BlockWriter writer(target.FolderPath(), target.FolderName(), target.Stem(), touched);
    WriteText(target.TemporaryPath(), writer.Write(source.steps[0]));
    target.Commit();
  });
}

void WriteCollection(const FileSource& source, const TouchedArrays& touched,
                     const std::string& path) {
  WithFileErrors(path, [&] {
    StagedTarget target(path, FilesNamedBy(path));
    std::filesystem::create_directories(target.FolderPath());
    std::ostringstream text;
    text << "<?xml version=\"1.0\"?>\n"
            "<VTKFile type=\"Collection\" version=\"0.1\" byte_order=\"LittleEndian\">\n"
            "  <Collection>\n";
    for (std::size_t i = 0; i < source.steps.size(); ++i) {
      const FileStep& step = source.steps[i];
      const std::string stem = target.Stem() + "_" + std::to_string(i);
      const bool isLeaf = !step.root.isGroup && step.root.block != nullptr;
      const std::string file = stem + (isLeaf ? ExtensionFor(step.root.block) : ".vtm");
      const std::string piece = target.FolderPath() + "/" + file;
      const WritePart part(static_cast<std::int64_t>(i),
                           static_cast<std::int64_t>(source.steps.size()));
      if (isLeaf) {
        WriteBlockFile(step.root, touched, piece);
      } else {
        BlockWriter writer(target.FolderPath() + "/" + stem, stem, stem, touched);
        WriteText(piece, writer.Write(step));
      }
      XmlAttributes attributes = step.attributes;
      if (attributes.empty()) {
        attributes = {{"timestep", ShortestNumber(step.time)}, {"group", ""}, {"part", "0"}};
      }
      text << "    <DataSet" << Printed(attributes) << " file"
           << Quoted(target.FolderName() + "/" + file) << "/>\n";
    }
    text << "  </Collection>\n</VTKFile>\n";
    WriteText(target.TemporaryPath(), text.str());
    target.Commit();
  });
}

}  // namespace qelhost
