#include "InputFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>

#include "FileError.h"
#include "xml/XmlTags.h"

namespace qelhost {

void RequireFile(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) throw FileError(path, std::strerror(errno));
  if (S_ISDIR(status.st_mode)) throw FileError(path, "Is a directory");
  if (!S_ISREG(status.st_mode)) throw FileError(path, "is no regular file");
  if (access(path.c_str(), R_OK) != 0) throw FileError(path, std::strerror(errno));
}

std::int64_t FileBytes(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) ? status.st_size : 0;
}

void CheckIndexMarkup(const std::string& path) {
  constexpr int kDeepest = 64;
  constexpr std::size_t kMostAttributes = 64;
  std::ifstream in(path, std::ios::binary);
  if (!in) throw FileError(path, std::strerror(errno));
  XmlTagScanner tags(in);
  int depth = 0;
  for (XmlTag tag; tags.Next(tag) && tag.name != "AppendedData";) {
    const char first = tag.name.empty() ? '\0' : tag.name.front();
    if (first == '!' && tag.name != "!--") {
      throw FileError(path, "damaged: it has declarations or marked text");
    }
    if (first == '!' || first == '?') continue;
    if (tag.attributes.size() > kMostAttributes) {
      throw FileError(path, "damaged: an element has more attributes than any needs");
    }
    if (tag.isClosed) continue;
    depth += first == '/' ? -1 : 1;
    if (depth > kDeepest)
      throw FileError(path, "damaged: its elements lie too deep in one another");
  }
  // What lies behind it was not looked at.
  if (tags.IsStuck()) throw FileError(path, "damaged: an element is longer than any can be");
}

}  // namespace qelhost
