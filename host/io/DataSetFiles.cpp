#include "DataSetFiles.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>
#include <new>
#include <stdexcept>
#include <utility>

#include "Formats.h"
#include "HiddenCells.h"
#include "InputFile.h"
#include "ReadWatch.h"
#include "Writers.h"

namespace qelhost {
namespace fs = std::filesystem;
namespace {

/// Zones in the order of the tree; strands by the block's path, so that a block keeps its strand
/// from step to step.
class BlockCollector {
 public:
  explicit BlockCollector(bool hasTimes) : m_hasTimes(hasTimes) {}

  void Add(const FileStep& step) {
    m_time = step.time;
    if (step.root.isGroup) {
      const std::string part = step.root.name;
      m_usedInStep.clear();
      for (const FileNode& child : step.root.children) Add(child, "", part);
    } else {
      m_usedInStep.clear();
      Add(step.root, "", step.root.name);
    }
  }

  std::vector<BlockEntry> entries;

 private:
  void Add(const FileNode& node, const std::string& parent, const std::string& part) {
    const bool both = !parent.empty() && !node.name.empty();
    const std::string path = parent + (both ? "/" : "") + node.name;
    for (const FileNode& child : node.children) Add(child, path, part);
    if (node.block == nullptr) return;
    BlockEntry entry;
    entry.name = path.empty() ? part : path;
    entry.block = node.block;
    if (node.xml != nullptr) entry.pending = node.xml->pending;
    entry.solutionTime = m_time;
    if (m_hasTimes) entry.strand = StrandOf(part + "\n" + path);
    entries.push_back(std::move(entry));
  }

  /// Blocks of one step that share a path are told apart by their order.
  LgIndex_t StrandOf(const std::string& key) {
    const std::pair<std::string, int> own{key, m_usedInStep[key]++};
    return m_strands.emplace(own, static_cast<LgIndex_t>(m_strands.size()) + 1).first->second;
  }

  bool m_hasTimes;
  double m_time = 0;
  std::map<std::pair<std::string, int>, LgIndex_t> m_strands;
  std::map<std::string, int> m_usedInStep;
};

const FileSource& SourceOf(const DataSet& dataSet, const std::string& path) {
  const auto* source = dynamic_cast<const FileSource*>(dataSet.GetSource().get());
  if (source == nullptr) throw FileError(path, "the data set did not come from a file");
  return *source;
}

const Format& WritableFormat(const std::string& path) {
  const Format* format = FindFormat(path);
  if (format == nullptr) {
    throw FileError(path, "unknown format \"" + ExtensionOf(path) + "\"");
  }
  if (format->write == nullptr) {
    throw FileError(path, std::string(format->help) + " cannot be written; write a " +
                              format->writtenAs + " file");
  }
  return *format;
}

}  // namespace

DataSetPtr ReadDataSet(const std::string& path) {
  RequireFile(path);
  const Format* format = FindFormat(path);
  if (format == nullptr) {
    throw FileError(path, "unknown format \"" + ExtensionOf(path) + "\"");
  }
  auto source = std::make_shared<FileSource>();
  source->path = path;
  source->extension = format->extension;
  try {
    format->read(path, *source);
    BlockCollector blocks(source->hasTimes);
    for (const FileStep& step : source->steps) blocks.Add(step);
    return std::make_shared<DataSet>(StemOf(path), blocks.entries, source);
  } catch (const FileError&) {
    throw;
  } catch (const ReadCancelled&) {
    throw;
  } catch (const ValuesError&) {
    throw;  // it names the file that could not be read
  } catch (const fs::filesystem_error& reason) {
    throw FileError(path, reason.code().message());
  } catch (const std::bad_alloc&) {
    throw FileError(path, "not enough memory to read it");
  } catch (const std::length_error&) {
    throw FileError(path, "damaged: it asks for more than any memory holds");
  } catch (const std::exception& reason) {
    throw FileError(path, reason.what());
  }
}

void CheckFormat(const DataSet& dataSet, const std::string& path, const WriteOptions& options) {
  const std::string extension = WritableFormat(path).extension;
  const FileSource& source = SourceOf(dataSet, path);
  if (extension == ".vtm" && source.steps.size() != 1) {
    throw FileError(path, "cannot hold " + std::to_string(source.steps.size()) +
                              " time steps; write a .pvd file");
  }
  if (extension == ".vtm" || extension == ".pvd") return;
  vtkDataSet* const block = RequireSingle(source, path).block;
  const bool drops = options.hidden.treatment == HiddenCells::Treatment::Drop;
  if (drops && IsStructured(block) && extension != ".vtu" && extension != ".vtk") {
    throw FileError(path, "cannot hold a mesh with cells left out; write a .vtu file");
  }
}

void CheckWritable(const DataSet& dataSet, const std::string& path, const WriteOptions& options) {
  CheckFormat(dataSet, path, options);
  std::error_code error;
  const fs::path target = fs::weakly_canonical(fs::absolute(path), error);
  if (error) throw FileError(path, error.message());
  if (fs::is_directory(target, error)) throw FileError(path, "Is a directory");
  if (!options.overwrite && fs::exists(target, error)) throw FileError(path, "File exists");
  if (!fs::is_directory(target.parent_path(), error)) {
    throw FileError(path, "its folder does not exist");
  }
  if (access(target.parent_path().c_str(), W_OK | X_OK) != 0) {
    throw FileError(path, std::strerror(errno));
  }
}

void WriteDataSet(const DataSet& dataSet, const std::string& path, const WriteOptions& options) {
  CheckWritable(dataSet, path, options);
  try {
    const FileSource& source = SourceOf(dataSet, path);
    const bool keeps = options.hidden.treatment == HiddenCells::Treatment::Keep;
    WritableFormat(path).write(keeps ? source : WithHiddenCells(source, options.hidden),
                               dataSet.TouchedArrays(), path);
  } catch (const FileError& error) {
    // It may name a file that is gone by now: the one beside the target.
    throw FileError(path, error.Reason());
  } catch (const ValuesError&) {
    throw;  // it names the file that could not be read
  } catch (const fs::filesystem_error& reason) {
    throw FileError(path, reason.code().message());
  } catch (const std::bad_alloc&) {
    throw FileError(path, "not enough memory to write it");
  }
}

}  // namespace qelhost
