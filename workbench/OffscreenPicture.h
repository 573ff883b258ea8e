// A picture of a plot at any size, drawn by the window system's OpenGL.
#pragma once

#include <QImage>

#include "PlotScene.h"

namespace marquell::workbench {

/// Draws the frame as a window of that size would show it. Pictures without a window system have a
/// context of another kind, which does not go together with a window's in one process.
///
/// throws  qelhost::PictureError when there is no OpenGL
QImage DrawOffscreen(qelhost::Frame& frame, const qelhost::PlotLook& look, int width, int height);

}  // namespace marquell::workbench
