#include "StoredArray.h"

#include <vtkType.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "../FileError.h"
#include "../ReadWatch.h"
#include "Parallel.h"

namespace qelhost {
namespace {

constexpr std::int64_t kRawBlock = 1 << 20;
constexpr char kDamaged[] = "damaged: an array cannot be decoded";

bool IsThisMachineBigEndian() {
  const std::uint16_t one = 1;
  unsigned char first = 0;
  std::memcpy(&first, &one, 1);
  return first == 0;
}

template <class Word>
void SwapWords(char* bytes, std::int64_t byteCount) {
  for (std::int64_t at = 0; at + static_cast<std::int64_t>(sizeof(Word)) <= byteCount;
       at += sizeof(Word)) {
    std::reverse(bytes + at, bytes + at + sizeof(Word));
  }
}

/// Of base64.
std::int64_t CharactersFor(std::int64_t bytes) { return (bytes + 2) / 3 * 4; }

}  // namespace

void SwapBytes(char* bytes, std::int64_t byteCount, int valueSize) {
  switch (valueSize) {
    case 2:
      return SwapWords<std::uint16_t>(bytes, byteCount);
    case 4:
      return SwapWords<std::uint32_t>(bytes, byteCount);
    case 8:
      return SwapWords<std::uint64_t>(bytes, byteCount);
    default:
      return;
  }
}

std::optional<PayloadFormat> PayloadFormat::Of(const XmlLayout& layout, bool isText) {
  PayloadFormat format{nullptr, layout.wideHeader, layout.bigEndian, isText};
  if (layout.compressor.empty()) return format;
  format.codec = FindCodec(layout.compressor);
  if (format.codec == nullptr) return std::nullopt;
  return format;
}

bool PayloadFormat::IsSwapped() const { return bigEndian != IsThisMachineBigEndian(); }

std::int64_t PayloadTable::BlockBytes(std::int64_t block) const {
  return std::min(blockSize, byteCount - block * blockSize);
}

std::int64_t PayloadTable::EncodedBegin(std::int64_t block) const {
  if (blockEnds.empty()) return dataBegin + block * blockSize;
  return dataBegin + (block == 0 ? 0 : blockEnds[static_cast<std::size_t>(block - 1)]);
}

std::int64_t PayloadTable::EncodedEnd(std::int64_t block) const {
  if (blockEnds.empty()) return dataBegin + std::min((block + 1) * blockSize, byteCount);
  return dataBegin + blockEnds[static_cast<std::size_t>(block)];
}

/// The encoded blocks: read from the file piece by piece or, out of text, all at once.
class StoredArray::EncodedBytes {
 public:
  explicit EncodedBytes(const StoredArray& array) : m_file(*array.m_file) {
    if (!array.m_format.isText) return;
    const PayloadTable& table = array.m_table;
    std::string text(static_cast<std::size_t>(table.end - table.begin), '\0');
    m_file.ReadAt(table.begin, text.data(), table.end - table.begin);
    // A compressed payload's header is a text of its own, with its own padding.
    std::size_t used = 0;
    bool isGood = true;
    if (array.m_format.codec != nullptr) {
      const auto header = static_cast<std::size_t>(CharactersFor(table.dataBegin));
      isGood = DecodeBase64(text.data(), header, m_decoded, used) && used == header &&
               static_cast<std::int64_t>(m_decoded.size()) == table.dataBegin;
      text.erase(0, header);
    }
    isGood = isGood && DecodeBase64(text.data(), text.size(), m_decoded, used) &&
             used == text.size() &&
             static_cast<std::int64_t>(m_decoded.size()) == table.dataBegin + array.EncodedSize();
    if (!isGood) throw FileError(m_file.Path(), kDamaged);
  }

  /// The bytes of a range of the table's places; they stay valid until the next call with the same
  /// scratch.
  const char* Get(std::int64_t begin, std::int64_t end, std::vector<char>& scratch) const {
    if (!m_decoded.empty()) {
      if (end > static_cast<std::int64_t>(m_decoded.size()))
        throw FileError(m_file.Path(), kDamaged);
      return m_decoded.data() + begin;
    }
    scratch.resize(static_cast<std::size_t>(end - begin));
    Copy(begin, end, scratch.data());
    return scratch.data();
  }

  void Copy(std::int64_t begin, std::int64_t end, char* to) const {
    if (m_decoded.empty()) return m_file.ReadAt(begin, to, end - begin);
    if (end > static_cast<std::int64_t>(m_decoded.size())) throw FileError(m_file.Path(), kDamaged);
    std::memcpy(to, m_decoded.data() + begin, static_cast<std::size_t>(end - begin));
  }

 private:
  const ByteFile& m_file;
  std::vector<char> m_decoded;
};

std::unique_ptr<StoredArray> StoredArray::Open(std::shared_ptr<const ByteFile> file,
                                               const PayloadFormat& format, const XmlArray& array,
                                               std::int64_t valueCount, int valueSize) {
  std::unique_ptr<StoredArray> stored(new StoredArray);
  stored->m_file = std::move(file);
  stored->m_format = format;
  stored->m_valueSize = valueSize;
  if (valueCount > std::numeric_limits<std::int64_t>::max() / valueSize) return nullptr;
  const bool isRead = format.isText ? stored->ReadTextTable(array) : stored->ReadTable(array);
  const PayloadTable& table = stored->m_table;
  if (!isRead || table.end > array.payloadLimit || table.byteCount % valueSize != 0) return nullptr;
  if (valueCount != kAsStored && table.byteCount != valueCount * valueSize) return nullptr;
  return stored;
}

bool StoredArray::HasNoBlocks(std::shared_ptr<const ByteFile> file, const PayloadFormat& format,
                              const XmlArray& array) {
  StoredArray stored;
  stored.m_file = std::move(file);
  stored.m_format = format;
  std::vector<std::uint64_t> count(1);
  const std::int64_t begin = format.isText ? stored.TextOf(array).begin : array.payloadBegin;
  return format.codec != nullptr && stored.ReadEntries(begin, count) && count[0] == 0;
}

/// Header entries from a place of the file on, or out of text.
bool StoredArray::ReadEntries(std::int64_t position, std::vector<std::uint64_t>& entries) const {
  const std::int64_t size = m_format.EntrySize();
  const std::int64_t length = size * static_cast<std::int64_t>(entries.size());
  std::vector<char> bytes;
  if (m_format.isText) {
    std::string text(static_cast<std::size_t>((length + 2) / 3 * 4), '\0');
    if (position + static_cast<std::int64_t>(text.size()) > m_file->Size()) return false;
    m_file->ReadAt(position, text.data(), static_cast<std::int64_t>(text.size()));
    std::size_t used = 0;
    if (!DecodeBase64(text.data(), text.size(), bytes, used)) return false;
    if (static_cast<std::int64_t>(bytes.size()) < length) return false;
  } else {
    if (position + length > m_file->Size()) return false;
    bytes.resize(static_cast<std::size_t>(length));
    m_file->ReadAt(position, bytes.data(), length);
  }
  if (m_format.IsSwapped()) {
    SwapBytes(bytes.data(), length, static_cast<int>(size));
  }
  for (std::size_t i = 0; i < entries.size(); ++i) {
    entries[i] = 0;
    if (size == 8) {
      std::memcpy(&entries[i], bytes.data() + 8 * i, 8);
    } else {
      std::uint32_t narrow = 0;
      std::memcpy(&narrow, bytes.data() + 4 * i, 4);
      entries[i] = narrow;
    }
  }
  return true;
}

/// Without a compressor the header is the number of bytes.
bool StoredArray::TakeLength(std::uint64_t length) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::int64_t>::max() / 4;
  if (length > kMost) return false;
  m_table.byteCount = static_cast<std::int64_t>(length);
  m_table.blockSize = kRawBlock;
  return true;
}

/// sizes: number of blocks, their size, the last one's size (0: it is whole), then their encoded
/// sizes.
bool StoredArray::TakeBlockSizes(const std::vector<std::uint64_t>& sizes) {
  const std::uint64_t count = sizes[0];
  const std::uint64_t partial = sizes[2];
  constexpr std::uint64_t kMost = std::numeric_limits<std::int64_t>::max() / 4;
  if (sizes[1] == 0 || partial > sizes[1] || sizes[1] > kMost / count) return false;
  const auto growth = static_cast<std::uint64_t>(m_format.codec->mostGrowth);
  const std::uint64_t whole = partial == 0 ? count : count - 1;
  m_table.byteCount = static_cast<std::int64_t>(whole * sizes[1] + partial);
  m_table.blockSize = static_cast<std::int64_t>(sizes[1]);
  std::int64_t end = 0;
  for (std::size_t block = 3; block < sizes.size(); ++block) {
    const bool isPartial = block + 1 == sizes.size() && partial > 0;
    const std::uint64_t wanted = isPartial ? partial : sizes[1];
    // Nobody need make room for numbers that cannot be in it.
    if (sizes[block] > static_cast<std::uint64_t>(m_file->Size() - end)) return false;
    if (wanted / growth > sizes[block]) return false;
    end += static_cast<std::int64_t>(sizes[block]);
    m_table.blockEnds.push_back(end);
  }
  return true;
}

/// The whole header, from the table's begin on and before the limit; entryCount receives how many
/// entries it has.
bool StoredArray::ReadHeader(std::int64_t limit, std::int64_t& entryCount) {
  std::vector<std::uint64_t> entries(1);
  if (!ReadEntries(m_table.begin, entries)) return false;
  entryCount = 1;
  if (m_format.codec == nullptr) return TakeLength(entries[0]);
  // An array without blocks is left to VTK.
  const auto most = static_cast<std::uint64_t>((limit - m_table.begin) / m_format.EntrySize());
  if (entries[0] == 0 || entries[0] > most) return false;
  entries.resize(3 + static_cast<std::size_t>(entries[0]));
  entryCount = static_cast<std::int64_t>(entries.size());
  return ReadEntries(m_table.begin, entries) && TakeBlockSizes(entries);
}

bool StoredArray::ReadTable(const XmlArray& array) {
  m_table.begin = array.payloadBegin;
  std::int64_t entryCount = 0;
  if (!ReadHeader(array.payloadLimit, entryCount)) return false;
  m_table.dataBegin = m_table.begin + entryCount * m_format.EntrySize();
  m_table.end = m_table.dataBegin + EncodedSize();
  return true;
}

/// Where its text stands in the file.
StoredArray::TextRange StoredArray::TextOf(const XmlArray& array) const {
  std::string text(static_cast<std::size_t>(array.payloadLimit - array.payloadBegin), '\0');
  m_file->ReadAt(array.payloadBegin, text.data(), static_cast<std::int64_t>(text.size()));
  constexpr char kBlanks[] = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string::npos) return {array.payloadBegin, array.payloadBegin};
  const std::size_t last = text.find_last_not_of(kBlanks);
  return {array.payloadBegin + static_cast<std::int64_t>(first),
          array.payloadBegin + static_cast<std::int64_t>(last) + 1};
}

bool StoredArray::ReadTextTable(const XmlArray& array) {
  const TextRange range = TextOf(array);
  m_table.begin = range.begin;
  m_table.end = range.end;
  std::int64_t entryCount = 0;
  if (range.begin == range.end || !ReadHeader(m_table.end, entryCount)) return false;
  m_table.dataBegin = entryCount * m_format.EntrySize();
  // A compressed payload's header is a text of its own.
  const std::int64_t characters =
      m_format.codec == nullptr ? CharactersFor(m_table.dataBegin + EncodedSize())
                                : CharactersFor(m_table.dataBegin) + CharactersFor(EncodedSize());
  return range.end - range.begin == characters;
}

std::int64_t StoredArray::EncodedSize() const {
  return m_table.blockEnds.empty() ? m_table.byteCount : m_table.blockEnds.back();
}

void StoredArray::DecodeBlock(const EncodedBytes& encoded, std::int64_t block, char* to) const {
  const std::int64_t size = m_table.BlockBytes(block);
  const std::int64_t begin = m_table.EncodedBegin(block);
  const std::int64_t end = m_table.EncodedEnd(block);
  if (m_format.codec == nullptr) {
    encoded.Copy(begin, end, to);
  } else {
    thread_local std::vector<char> scratch;
    const char* const from = encoded.Get(begin, end, scratch);
    if (!m_format.codec->decode(from, static_cast<std::size_t>(end - begin), to,
                                static_cast<std::size_t>(size))) {
      throw FileError(m_file->Path(), kDamaged);
    }
  }
  // A value may lie across two blocks: then all are turned round at the end.
  if (m_format.IsSwapped() && m_table.blockSize % m_valueSize == 0)
    SwapBytes(to, size, m_valueSize);
}

/// In parallel; by batches where somebody wants to know how far it is.
template <class Body>
void StoredArray::ForEachBlockNumber(const Body& body) const {
  constexpr std::int64_t kBatchBytes = 16 << 20;
  const std::int64_t count = m_table.BlockCount();
  const std::int64_t batch =
      IsReadWatched() ? std::max<std::int64_t>(kBatchBytes / m_table.blockSize, 1) : count;
  for (std::int64_t first = 0; first < count; first += batch) {
    TellRead(static_cast<double>(first) / static_cast<double>(count));
    ForEachInParallel(std::min(batch, count - first), 1,
                      [&body, first](std::int64_t n) { body(first + n); });
  }
}

void StoredArray::CheckText() const { const EncodedBytes encoded(*this); }

void StoredArray::ReadAll(char* to) const {
  const EncodedBytes encoded(*this);
  ForEachBlockNumber(
      [&](std::int64_t block) { DecodeBlock(encoded, block, to + block * m_table.blockSize); });
  if (m_format.IsSwapped() && m_table.blockSize % m_valueSize != 0) {
    SwapBytes(to, m_table.byteCount, m_valueSize);
  }
}

void StoredArray::ForEachBlock(const Take& take) const {
  if (m_table.blockSize % m_valueSize != 0) {
    std::vector<char> all(static_cast<std::size_t>(m_table.byteCount));
    ReadAll(all.data());
    take(0, all.data(), m_table.byteCount);
    return;
  }
  const EncodedBytes encoded(*this);
  ForEachBlockNumber([&](std::int64_t block) {
    thread_local std::vector<char> decoded;
    decoded.resize(static_cast<std::size_t>(m_table.BlockBytes(block)));
    DecodeBlock(encoded, block, decoded.data());
    take(block * m_table.blockSize, decoded.data(), m_table.BlockBytes(block));
  });
}

}  // namespace qelhost
