// The compressors of VTK's XML files, a block at a time, and base64.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace qelhost {

/// Thread-safe.
struct BlockCodec {
  const char* compressor;   ///< VTK's class name
  std::int64_t mostGrowth;  ///< no byte of it ever decodes to more bytes than these
  /// False unless the bytes decode to exactly so many.
  bool (*decode)(const char* from, std::size_t size, char* to, std::size_t decodedSize);
  /// Throws std::bad_alloc.
  std::vector<char> (*encode)(const char* from, std::size_t size);
};

/// Null for a compressor that is not known.
const BlockCodec* FindCodec(const std::string& compressor);

/// False when a character is none of base64's, or padding stands inside. Blanks may stand around
/// the text, not inside. Several padded texts may follow one another: the next begins at `used`.
bool DecodeBase64(const char* text, std::size_t length, std::vector<char>& bytes,
                  std::size_t& used);
void AppendBase64(const char* bytes, std::size_t size, std::string& text);

}  // namespace qelhost
