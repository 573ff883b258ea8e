#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace qelhost {

/// A journal that cannot be read. what() is one line: the file, the line where it is known, the
/// reason.
class JournalError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One command of a journal. number: its line in the file, from 1.
struct JournalLine {
  int number = 0;
  std::string text;
};

/// Reads a journal: UTF-8 text, one command a line; blank lines and lines that begin with # are
/// left out, as are a byte-order mark, carriage returns and blanks before a command.
///
/// throws  JournalError when there is no such file, or it holds bytes that are no text
std::vector<JournalLine> ReadJournal(const std::string& path);

/// The same from the text of a journal; name is for messages.
std::vector<JournalLine> ParseJournal(const std::string& text, const std::string& name);

/// Writes lines as a journal, complete or not at all: what stood there before stays until all of it
/// is on the disk. A link stays one.
///
/// throws  JournalError
void WriteJournal(const std::string& path, const std::vector<std::string>& lines);

}  // namespace qelhost
