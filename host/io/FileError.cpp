#include "FileError.h"

#include <algorithm>

namespace qelhost {
namespace {

std::string OneLine(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

}  // namespace

FileError::FileError(const std::string& file, const std::string& reason)
    : std::runtime_error(OneLine(file + ": " + reason)), m_file(file), m_reason(OneLine(reason)) {}

}  // namespace qelhost
