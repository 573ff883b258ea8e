#include "Journal.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "FileError.h"
#include "Staging.h"

namespace qelhost {

namespace {

/// A million lines and more. Some devices have no end.
constexpr std::size_t kLongestJournal = std::size_t{128} << 20;
constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";

/// The bytes of the UTF-8 sequence at text[at]; 0 when it is none.
std::size_t SequenceLength(const std::string& text, std::size_t at) {
  const auto byte = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(at);
  std::size_t length = 0;
  if (lead < 0x80) {
    return lead == 0 ? 0 : 1;
  } else if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
  } else {
    return 0;
  }
  if (at + length > text.size()) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) return 0;
  }
  // Overlong forms, surrogates and what lies past the last code point.
  const unsigned char second = byte(at + 1);
  if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
      (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F)) {
    return 0;
  }
  return length;
}

bool IsText(const std::string& line) {
  for (std::size_t at = 0; at < line.size();) {
    const std::size_t length = SequenceLength(line, at);
    if (length == 0) return false;
    at += length;
  }
  return true;
}

/// The line from its first word on, without carriage returns at its end; empty when it is blank. An
/// add-on's command may end in blanks that belong to it.
std::string CommandOf(const std::string& line) {
  const std::size_t first = line.find_first_not_of(" \t\r");
  if (first == std::string::npos) return {};
  return line.substr(first, line.find_last_not_of('\r') - first + 1);
}

}  // namespace

std::vector<JournalLine> ParseJournal(const std::string& text, const std::string& name) {
  std::istringstream lines(text.rfind(kByteOrderMark, 0) == 0 ? text.substr(3) : text);
  std::vector<JournalLine> journal;
  int number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    if (!IsText(line)) {
      throw JournalError(name + ":" + std::to_string(number) + ": is not UTF-8 text");
    }
    const std::string command = CommandOf(line);
    if (!command.empty() && command.front() != '#') journal.push_back({number, command});
  }
  return journal;
}

std::vector<JournalLine> ReadJournal(const std::string& path) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) {
    throw JournalError(path + ": is a folder, not a journal");
  }
  std::ifstream file(path, std::ios::binary);
  if (!file) throw JournalError(path + ": cannot be read: " + std::strerror(errno));
  std::string text;
  std::vector<char> block(1 << 20);
  while (file.read(block.data(), static_cast<std::streamsize>(block.size())) || file.gcount() > 0) {
    text.append(block.data(), static_cast<std::size_t>(file.gcount()));
    if (text.size() > kLongestJournal) throw JournalError(path + ": is longer than any journal");
  }
  if (file.bad()) throw JournalError(path + ": cannot be read: " + std::strerror(errno));
  return ParseJournal(text, path);
}

void WriteJournal(const std::string& path, const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  try {
    StagedTarget target(path);
    WriteBytes(target.TemporaryPath(), text);
    target.Commit();
  } catch (const FileError& error) {
    // The file may be named by the place that it has for now.
    throw JournalError(path + ": cannot be written: " + error.Reason());
  }
}

}  // namespace qelhost
