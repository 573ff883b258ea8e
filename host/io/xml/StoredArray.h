// The numbers of one array as a VTK XML file stores them.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "BlockCodec.h"
#include "ByteFile.h"
#include "XmlLayout.h"

namespace qelhost {

/// How the numbers of a file are turned into bytes.
struct PayloadFormat {
  const BlockCodec* codec = nullptr;  ///< null: not compressed
  bool wideHeader = false;            ///< header entries of 8 bytes against 4
  bool bigEndian = false;
  bool isText = false;  ///< base64

  /// Nothing for a compressor that is not known.
  static std::optional<PayloadFormat> Of(const XmlLayout& layout, bool isText);
  std::int64_t EntrySize() const { return wideHeader ? 8 : 4; }
  /// Whether this machine has the other byte order.
  bool IsSwapped() const;
};

/// Where the parts of a payload stand. It is a header and, one behind the other, blocks that were
/// each encoded by itself; without a compressor it is cut here into blocks of a handy size.
struct PayloadTable {
  std::int64_t begin = 0;  ///< of the header, in the file
  std::int64_t dataBegin =
      0;                 ///< of the first block; in the file, or behind the decoded text's start
  std::int64_t end = 0;  ///< in the file
  std::int64_t byteCount = 0;           ///< of the numbers
  std::int64_t blockSize = 1;           ///< of numbers, in bytes; the last block may be smaller
  std::vector<std::int64_t> blockEnds;  ///< encoded, behind dataBegin; empty without a compressor

  std::int64_t BlockCount() const { return (byteCount + blockSize - 1) / blockSize; }
  std::int64_t BlockBytes(std::int64_t block) const;
  std::int64_t EncodedBegin(std::int64_t block) const;
  std::int64_t EncodedEnd(std::int64_t block) const;
};

class StoredArray {
 public:
  static constexpr std::int64_t kAsStored = -1;

  /// Nothing when the payload is not what valueCount values of valueSize bytes (kAsStored: as many
  /// as there are) would be stored as. Throws FileError when the file cannot be read.
  static std::unique_ptr<StoredArray> Open(std::shared_ptr<const ByteFile> file,
                                           const PayloadFormat& format, const XmlArray& array,
                                           std::int64_t valueCount, int valueSize);

  /// Whether a compressed array is stored as one of no values, which is left to VTK.
  static bool HasNoBlocks(std::shared_ptr<const ByteFile> file, const PayloadFormat& format,
                          const XmlArray& array);

  /// Throws FileError when a text is no base64 of the right length; where there is none it does
  /// nothing.
  void CheckText() const;

  /// Reads every value to memory that has room for all of them, in the byte order of this machine,
  /// in parallel. Throws FileError.
  void ReadAll(char* to) const;

  /// Gives the values, in this machine's byte order, to somebody who stores them in another form:
  /// take(first byte, bytes, count) is called for each block, from several threads at once. Throws
  /// FileError.
  using Take = std::function<void(std::int64_t first, const char* bytes, std::int64_t count)>;
  void ForEachBlock(const Take& take) const;

  const PayloadFormat& Format() const { return m_format; }
  const PayloadTable& Table() const { return m_table; }
  const ByteFile& File() const { return *m_file; }
  int ValueSize() const { return m_valueSize; }
  std::int64_t ValueCount() const { return m_table.byteCount / m_valueSize; }

 private:
  class EncodedBytes;
  /// Without the blanks around it.
  struct TextRange {
    std::int64_t begin;
    std::int64_t end;
  };

  StoredArray() = default;
  bool ReadTable(const XmlArray& array);
  TextRange TextOf(const XmlArray& array) const;
  bool ReadTextTable(const XmlArray& array);
  bool ReadEntries(std::int64_t position, std::vector<std::uint64_t>& entries) const;
  bool ReadHeader(std::int64_t limit, std::int64_t& entryCount);
  bool TakeLength(std::uint64_t length);
  bool TakeBlockSizes(const std::vector<std::uint64_t>& sizes);
  std::int64_t EncodedSize() const;
  template <class Body>
  void ForEachBlockNumber(const Body& body) const;
  void DecodeBlock(const EncodedBytes& encoded, std::int64_t block, char* to) const;

  std::shared_ptr<const ByteFile> m_file;
  PayloadFormat m_format;
  PayloadTable m_table;
  int m_valueSize = 1;
};

/// Turns the bytes of each value round.
void SwapBytes(char* bytes, std::int64_t byteCount, int valueSize);

}  // namespace qelhost
