// Data sets from files and back.
#pragma once

#include <string>
#include <vector>

#include "DataSet.h"
#include "FileError.h"

namespace qelhost {

/// Reads a data set; the format goes by the extension. Throws FileError: missing, damaged or
/// foreign file, a piece that is not there, an unknown extension, no mesh inside; and
/// ReadCancelled. May run on any thread, on one at a time.
DataSetPtr ReadDataSet(const std::string& path);

/// What is done with the cells for which a cell array of the block holds 1.
struct HiddenCells {
  enum class Treatment {
    Keep,  ///< nothing
    Mark,  ///< they get the hidden bit of vtkGhostType besides
    Drop   ///< they are left out, and the points that only they had; structured blocks that have
           ///< such cells become unstructured
  };
  Treatment treatment = Treatment::Keep;
  std::string array;
};

struct WriteOptions {
  bool overwrite = true;  ///< false: an existing target is a FileError
  HiddenCells hidden = {};
};

/// Writes the zones that came from the data set's file, in the format of the path's extension.
/// Zones made since are left out. The target is complete or untouched. Throws FileError, among
/// others when the target's format cannot hold the data.
void WriteDataSet(const DataSet& dataSet, const std::string& path,
                  const WriteOptions& options = {});

/// Throws the FileError that WriteDataSet would throw, as far as it can be known beforehand:
/// format that cannot be written, folder missing or not writable, existing target.
void CheckWritable(const DataSet& dataSet, const std::string& path,
                   const WriteOptions& options = {});

/// The part of CheckWritable that does not look at the disk: whether the format can hold the data.
void CheckFormat(const DataSet& dataSet, const std::string& path, const WriteOptions& options = {});

/// One line a format, for the help.
struct FormatHelp {
  std::string extension;  ///< with its dot
  std::string help;
  bool writable;
  std::string writtenAs;  ///< the extension to use when it cannot be written itself
};
std::vector<FormatHelp> KnownFormats();

}  // namespace qelhost
