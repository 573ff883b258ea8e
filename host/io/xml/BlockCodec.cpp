#include "BlockCodec.h"

#include <libdeflate.h>
#include <lz4.h>
#include <lzma.h>

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>

namespace qelhost {
namespace {

/// zlib's own default, which VTK's writers use as well.
constexpr int kDeflateLevel = 6;
constexpr std::uint32_t kLzmaLevel = 5;
/// Twice what the highest level of any writer needs.
constexpr std::uint64_t kMostLzmaMemory = std::uint64_t{128} << 20;

struct FreeDeflate {
  void operator()(libdeflate_compressor* c) const { libdeflate_free_compressor(c); }
  void operator()(libdeflate_decompressor* d) const { libdeflate_free_decompressor(d); }
};

bool Inflate(const char* from, std::size_t size, char* to, std::size_t decodedSize) {
  thread_local const std::unique_ptr<libdeflate_decompressor, FreeDeflate> decompressor(
      libdeflate_alloc_decompressor());
  if (decompressor == nullptr) throw std::bad_alloc();
  std::size_t actual = 0;
  const libdeflate_result result =
      libdeflate_zlib_decompress(decompressor.get(), from, size, to, decodedSize, &actual);
  return result == LIBDEFLATE_SUCCESS && actual == decodedSize;
}

std::vector<char> Deflate(const char* from, std::size_t size) {
  thread_local const std::unique_ptr<libdeflate_compressor, FreeDeflate> compressor(
      libdeflate_alloc_compressor(kDeflateLevel));
  if (compressor == nullptr) throw std::bad_alloc();
  std::vector<char> to(libdeflate_zlib_compress_bound(compressor.get(), size));
  to.resize(libdeflate_zlib_compress(compressor.get(), from, size, to.data(), to.size()));
  return to;
}

constexpr std::size_t kMostInt = std::numeric_limits<int>::max();

bool DecodeLz4(const char* from, std::size_t size, char* to, std::size_t decodedSize) {
  if (size > kMostInt || decodedSize > kMostInt) return false;
  const int wanted = static_cast<int>(decodedSize);
  return LZ4_decompress_safe(from, to, static_cast<int>(size), wanted) == wanted;
}

std::vector<char> EncodeLz4(const char* from, std::size_t size) {
  if (size > LZ4_MAX_INPUT_SIZE) throw std::bad_alloc();  // blocks are made smaller than that
  const int bound = LZ4_compressBound(static_cast<int>(size));
  std::vector<char> to(static_cast<std::size_t>(bound));
  const int length = LZ4_compress_default(from, to.data(), static_cast<int>(size), bound);
  to.resize(static_cast<std::size_t>(length));
  return to;
}

const std::uint8_t* Bytes(const char* from) { return reinterpret_cast<const std::uint8_t*>(from); }
std::uint8_t* Bytes(char* to) { return reinterpret_cast<std::uint8_t*>(to); }

bool DecodeLzma(const char* from, std::size_t size, char* to, std::size_t decodedSize) {
  std::uint64_t memoryLimit = kMostLzmaMemory;
  std::size_t read = 0;
  std::size_t written = 0;
  const lzma_ret result = lzma_stream_buffer_decode(&memoryLimit, 0, nullptr, Bytes(from), &read,
                                                    size, Bytes(to), &written, decodedSize);
  return result == LZMA_OK && written == decodedSize;
}

std::vector<char> EncodeLzma(const char* from, std::size_t size) {
  std::vector<char> to(lzma_stream_buffer_bound(size));
  std::size_t written = 0;
  const lzma_ret result =
      lzma_easy_buffer_encode(kLzmaLevel, LZMA_CHECK_CRC32, nullptr, Bytes(from), size,
                              Bytes(to.data()), &written, to.size());
  if (result != LZMA_OK) throw std::bad_alloc();  // the buffer is as large as it can need
  to.resize(written);
  return to;
}

constexpr BlockCodec kCodecs[] = {
    {"vtkZLibDataCompressor", 1040, Inflate, Deflate},
    {"vtkLZ4DataCompressor", 256, DecodeLz4, EncodeLz4},
    {"vtkLZMADataCompressor", 32768, DecodeLzma, EncodeLzma},
};

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::array<std::int16_t, 256> DigitTable() {
  std::array<std::int16_t, 256> digits{};
  digits.fill(-1);
  for (int digit = 0; digit < 64; ++digit) {
    digits[static_cast<unsigned char>(kAlphabet[digit])] = static_cast<std::int16_t>(digit);
  }
  return digits;
}

}  // namespace

const BlockCodec* FindCodec(const std::string& compressor) {
  for (const BlockCodec& codec : kCodecs) {
    if (compressor == codec.compressor) return &codec;
  }
  return nullptr;
}

bool DecodeBase64(const char* text, std::size_t length, std::vector<char>& bytes,
                  std::size_t& used) {
  static const std::array<std::int16_t, 256> kDigits = DigitTable();
  const auto digit = [text](std::size_t at) {
    return kDigits[static_cast<unsigned char>(text[at])];
  };
  for (used = 0; used + 4 <= length; used += 4) {
    const int a = digit(used);
    const int b = digit(used + 1);
    const int c = digit(used + 2);
    const int d = digit(used + 3);
    const bool isPadded = text[used + 3] == '=';
    const bool isPaddedTwice = isPadded && text[used + 2] == '=';
    if (a < 0 || b < 0 || (c < 0 && !isPaddedTwice) || (d < 0 && !isPadded)) return false;
    bytes.push_back(static_cast<char>(a << 2 | b >> 4));
    if (!isPaddedTwice) bytes.push_back(static_cast<char>((b & 15) << 4 | c >> 2));
    if (!isPadded) bytes.push_back(static_cast<char>((c & 3) << 6 | d));
    if (isPadded) {
      used += 4;
      return true;
    }
  }
  return used == length;
}

void AppendBase64(const char* bytes, std::size_t size, std::string& text) {
  text.reserve(text.size() + (size + 2) / 3 * 4);
  const auto byte = [bytes, size](std::size_t at) {
    return at < size ? static_cast<unsigned char>(bytes[at]) : 0U;
  };
  for (std::size_t at = 0; at < size; at += 3) {
    const unsigned bits = byte(at) << 16 | byte(at + 1) << 8 | byte(at + 2);
    text += kAlphabet[bits >> 18];
    text += kAlphabet[bits >> 12 & 63];
    text += at + 1 < size ? kAlphabet[bits >> 6 & 63] : '=';
    text += at + 2 < size ? kAlphabet[bits & 63] : '=';
  }
}

}  // namespace qelhost
