#include "EncodedArray.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "Parallel.h"

namespace qelhost {
namespace {

/// VTK's own choice for new arrays.
constexpr std::int64_t kNewBlockSize = 32768;
constexpr std::int64_t kMostReused = std::int64_t{1} << 30;

/// The array's memory in blocks, each as the file has its numbers.
class NumberBlocks {
 public:
  NumberBlocks(vtkDataArray* array, std::int64_t blockSize, bool isSwapped)
      : m_memory(static_cast<const char*>(array->GetVoidPointer(0))),
        m_byteCount(array->GetNumberOfValues() * array->GetDataTypeSize()),
        m_blockSize(blockSize),
        m_valueSize(array->GetDataTypeSize()),
        m_isSwapped(isSwapped) {}

  std::int64_t ByteCount() const { return m_byteCount; }
  std::int64_t BlockSize() const { return m_blockSize; }
  bool IsSwapped() const { return m_isSwapped; }
  std::int64_t Count() const { return (m_byteCount + m_blockSize - 1) / m_blockSize; }
  std::int64_t SizeAt(std::int64_t block) const {
    return std::min(m_blockSize, m_byteCount - block * m_blockSize);
  }
  /// As they lie in memory.
  const char* Numbers(std::int64_t block) const { return m_memory + block * m_blockSize; }
  /// As the file has them; scratch keeps them where they must be turned round.
  const char* Stored(std::int64_t block, std::vector<char>& scratch) const {
    if (!m_isSwapped) return Numbers(block);
    scratch.assign(Numbers(block), Numbers(block) + SizeAt(block));
    SwapBytes(scratch.data(), SizeAt(block), m_valueSize);
    return scratch.data();
  }

 private:
  const char* m_memory;
  std::int64_t m_byteCount;
  std::int64_t m_blockSize;
  int m_valueSize;
  bool m_isSwapped;
};

void AppendEntry(std::vector<char>& header, const PayloadFormat& format, bool isSwapped,
                 std::int64_t value) {
  const std::size_t at = header.size();
  const auto size = static_cast<std::size_t>(format.EntrySize());
  header.resize(at + size);
  if (size == 8) {
    std::memcpy(&header[at], &value, size);
  } else {
    const auto narrow = static_cast<std::uint32_t>(value);
    std::memcpy(&header[at], &narrow, size);
  }
  if (isSwapped) SwapBytes(&header[at], format.EntrySize(), static_cast<int>(size));
}

EncodedRun Kept(std::vector<char> bytes) {
  EncodedRun run;
  run.bytes = std::move(bytes);
  return run;
}

/// Number by number, without a compressor.
EncodedRun Plain(const NumberBlocks& blocks) {
  EncodedRun run;
  if (!blocks.IsSwapped()) {
    run.memory = blocks.Numbers(0);
    run.memorySize = blocks.ByteCount();
    return run;
  }
  std::vector<char> all(static_cast<std::size_t>(blocks.ByteCount()));
  ForEachInParallel(blocks.Count(), 1, [&](std::int64_t block) {
    thread_local std::vector<char> scratch;
    std::memcpy(&all[static_cast<std::size_t>(block * blocks.BlockSize())],
                blocks.Stored(block, scratch), static_cast<std::size_t>(blocks.SizeAt(block)));
  });
  return Kept(std::move(all));
}

/// Which blocks hold the same numbers as they were stored with.
std::vector<char> UnchangedBlocks(const NumberBlocks& blocks, const StoredArray* before) {
  std::vector<char> isUnchanged(static_cast<std::size_t>(blocks.Count()), 0);
  if (before == nullptr || before->Table().byteCount != blocks.ByteCount()) return isUnchanged;
  before->ForEachBlock([&](std::int64_t first, const char* bytes, std::int64_t count) {
    const std::int64_t block = first / blocks.BlockSize();
    // The stored array may come in one piece.
    for (std::int64_t done = 0; done < count; done += blocks.BlockSize()) {
      const std::int64_t at = block + done / blocks.BlockSize();
      const auto size = static_cast<std::size_t>(blocks.SizeAt(at));
      isUnchanged[static_cast<std::size_t>(at)] =
          std::memcmp(bytes + done, blocks.Numbers(at), size) == 0 ? 1 : 0;
    }
  });
  return isUnchanged;
}

EncodedPayload Compressed(const NumberBlocks& blocks, const PayloadFormat& format,
                          bool isHeaderSwapped, const StoredArray* before) {
  const std::vector<char> isUnchanged = UnchangedBlocks(blocks, before);
  EncodedPayload runs(static_cast<std::size_t>(blocks.Count()));
  ForEachInParallel(blocks.Count(), 1, [&](std::int64_t block) {
    EncodedRun& run = runs[static_cast<std::size_t>(block)];
    if (isUnchanged[static_cast<std::size_t>(block)] != 0) {
      run.begin = before->Table().EncodedBegin(block);
      run.end = before->Table().EncodedEnd(block);
      return;
    }
    thread_local std::vector<char> scratch;
    run.bytes = format.codec->encode(blocks.Stored(block, scratch),
                                     static_cast<std::size_t>(blocks.SizeAt(block)));
  });
  std::vector<char> header;
  const std::int64_t partial = blocks.ByteCount() % blocks.BlockSize();
  for (const std::int64_t entry : {blocks.Count(), blocks.BlockSize(), partial}) {
    AppendEntry(header, format, isHeaderSwapped, entry);
  }
  for (const EncodedRun& run : runs) {
    AppendEntry(header, format, isHeaderSwapped, run.Size());
  }
  runs.insert(runs.begin(), Kept(std::move(header)));
  return runs;
}

void AppendText(const std::vector<char>& bytes, std::string& text) {
  AppendBase64(bytes.data(), bytes.size(), text);
}

/// The header is a text of its own where the numbers are compressed.
EncodedPayload AsText(const EncodedPayload& payload, const PayloadFormat& format) {
  std::string text;
  std::vector<char> bytes;
  for (std::size_t n = 0; n < payload.size(); ++n) {
    const EncodedRun& run = payload[n];
    const char* const from = run.memory != nullptr ? run.memory : run.bytes.data();
    bytes.insert(bytes.end(), from, from + run.Size());
    if (n == 0 && format.codec != nullptr) {
      AppendText(bytes, text);
      bytes.clear();
    }
  }
  AppendText(bytes, text);
  return {Kept({text.begin(), text.end()})};
}

}  // namespace

std::int64_t EncodedRun::Size() const {
  if (end > begin) return end - begin;
  return memory != nullptr ? memorySize : static_cast<std::int64_t>(bytes.size());
}

std::int64_t SizeOf(const EncodedPayload& payload) {
  std::int64_t size = 0;
  for (const EncodedRun& run : payload) size += run.Size();
  return size;
}

EncodedPayload Encode(vtkDataArray* array, const PayloadFormat& format, const StoredArray* before) {
  const bool isSwapped = format.IsSwapped();
  // Out of text, blocks cannot be copied by their places in the file; nor can those that end within
  // a number, or are longer than a codec takes.
  const bool isReusable = before != nullptr && format.codec != nullptr && !format.isText &&
                          before->Table().blockSize <= kMostReused &&
                          before->Table().blockSize % before->ValueSize() == 0;
  const StoredArray* const reusable = isReusable ? before : nullptr;
  const std::int64_t blockSize = isReusable ? before->Table().blockSize : kNewBlockSize;
  const NumberBlocks blocks(array, blockSize, isSwapped && array->GetDataTypeSize() > 1);
  EncodedPayload payload;
  if (format.codec != nullptr) {
    payload = Compressed(blocks, format, isSwapped, reusable);
  } else {
    std::vector<char> header;
    AppendEntry(header, format, isSwapped, blocks.ByteCount());
    payload.push_back(Kept(std::move(header)));
    payload.push_back(Plain(blocks));
  }
  return format.isText ? AsText(payload, format) : payload;
}

}  // namespace qelhost
