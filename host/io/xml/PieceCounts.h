// How many of everything a piece of a VTK XML file has.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "XmlTags.h"

namespace qelhost {

/// A whole number from 0 that fills the text but for blanks around it; nothing else.
std::optional<std::int64_t> NumberIn(const std::string& text);

/// What a piece has, as its tag says; or the mesh of all pieces.
struct PieceCounts {
  /// Many more than fit into memory, and few enough to be multiplied.
  static constexpr std::int64_t kMost = std::int64_t{1} << 40;

  std::map<std::string, std::int64_t> counts;  ///< "NumberOfPoints" and so on
  std::int64_t nodes = -1;                     ///< -1: it does not say
  std::int64_t cells = -1;
  std::array<std::int64_t, 3> ticks{-1, -1, -1};  ///< along each axis
  std::array<std::int32_t, 6> extent{};           ///< lowest and highest index along each axis
  bool hasExtent = false;
  bool areSound = true;

  static PieceCounts Of(const XmlTag& piece);
  /// 0 when the piece does not say.
  std::int64_t Of(const std::string& count) const;
  bool Contains(const PieceCounts& other) const;

 private:
  void TakeExtent(const std::string& text);
};

}  // namespace qelhost
