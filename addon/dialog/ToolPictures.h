#pragma once

#include <array>
#include <cstddef>

namespace qelvane::qelutiltools {

constexpr int kToolPictureEdge = 32;
constexpr std::size_t kToolPictureBytes = std::size_t{3} * kToolPictureEdge * kToolPictureEdge;

/// 32 x 32 pixels, top row first, a byte each of red, green and blue. White is see-through.
using ToolPicture = std::array<char, kToolPictureBytes>;

extern const ToolPicture kElementPicture;
extern const ToolPicture kRectanglePicture;
extern const ToolPicture kCirclePicture;
extern const ToolPicture kPolygonPicture;
extern const ToolPicture kCubePicture;
extern const ToolPicture kSpherePicture;

}  // namespace qelvane::qelutiltools
