// A place in a file that goes forwards, for what looks at a file before its reader does.
#pragma once

#include <cstdint>
#include <string>

#include "xml/ByteFile.h"

namespace qelhost {

/// Keeps a block of the file in memory, however long its lines and words are. A file that shrinks
/// meanwhile is a FileError of any of these calls.
class FileCursor {
 public:
  /// file: outlives it.
  explicit FileCursor(const ByteFile& file);

  std::int64_t Place() const { return m_first + m_at; }
  std::int64_t Size() const { return m_file.Size(); }
  std::int64_t BytesLeft() const { return m_file.Size() - Place(); }
  bool IsAtEnd() const { return BytesLeft() == 0; }

  /// place: in the file.
  void GoTo(std::int64_t place);

  /// The bytes from here on, at most so many; none of them is passed.
  std::string Peek(std::int64_t most) const;
  /// Not at the end.
  unsigned char Take();
  /// The rest of the line, whose end is passed too; of a longer one the first kLongestKept bytes.
  std::string Line();
  /// Passes the rest of the line: whether there are only blanks in it.
  bool PassLineIsBlank();
  /// The next word; "" at the end, and of a longer one the first kLongestKept bytes.
  std::string Word();
  /// The same word, only passed; false at the end.
  bool PassWord();

  static constexpr std::size_t kLongestKept = 4096;

 private:
  bool Fill();
  template <class Test>
  void PassWhile(const Test& test);
  template <class Test>
  std::string KeepWhile(const Test& test);
  void PassLineEnd();

  const ByteFile& m_file;
  std::string m_block;
  std::int64_t m_first = 0;  ///< the block's place in the file
  std::int64_t m_at = 0;     ///< in the block
  std::int64_t m_held = 0;   ///< bytes of the block that are the file's
};

}  // namespace qelhost
