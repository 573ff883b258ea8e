// The one table of formats.
#pragma once

#include <string>
#include <vector>

#include "FileTree.h"

namespace qelhost {

struct Format {
  const char* extension;
  /// Fills steps and hasTimes; throws FileError.
  void (*read)(const std::string& path, FileSource& source);
  /// Writes steps; null: files of the format are written as `writtenAs`.
  void (*write)(const FileSource& source, const TouchedArrays& touched, const std::string& path);
  const char* writtenAs;
  const char* help;
};

const std::vector<Format>& Formats();
/// By the path's extension in either case; null when unknown.
const Format* FindFormat(const std::string& path);
/// With its dot, lower case.
std::string ExtensionOf(const std::string& path);
/// The file's name without folder and extension.
std::string StemOf(const std::string& path);

}  // namespace qelhost
