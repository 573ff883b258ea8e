// Pictures of frames, without a window system. This header is what programs see; the library behind
// it, libqelrender.so, is loaded when the first picture is asked for.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "Frame.h"

namespace qelhost {

/// A picture that cannot be drawn; what() is one line.
class PictureError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Pixels, top row first, a byte each of red, green and blue.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<unsigned char> rgb;
};

/// What is drawn of a frame.
///
/// variable  colours the surfaces; 0: none, the surfaces are grey
/// min, max  of the colours, so that pictures compare
/// caption   stands above the plot; may be empty
struct PictureOptions {
  int width = 800;
  int height = 600;
  LgIndex_t variable = 0;
  double min = 0.0;
  double max = 0.0;
  std::string caption;
};

/// Draws pictures; made by LoadPainter.
class Painter {
 public:
  virtual ~Painter() = default;

  /// The zones that are active and apply at the frame's time, without what value blanking hides, by
  /// the frame's view and layers; the geometries over them; a legend of the colours.
  ///
  /// throws  PictureError
  virtual Picture Draw(Frame& frame, const PictureOptions& options) = 0;

  /// The bytes of a PNG file with pictures of one height side by side.
  ///
  /// throws  PictureError
  virtual std::string Png(const std::vector<Picture>& pictures) = 0;
};

/// Loads the library, which lies beside the one that holds this function or where the system finds
/// it, and makes a painter.
///
/// throws  PictureError when there is none, or no picture can be drawn on this machine
std::unique_ptr<Painter> LoadPainter();

/// The name of the library's one entry: a function that makes a Painter.
constexpr char kPainterEntry[] = "QelMakePainter";
using MakePainter = Painter* (*)();

}  // namespace qelhost
