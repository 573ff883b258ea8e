// Pictures of a run: the data before the first line, after the last, or both side by side.
#pragma once

#include "Picture.h"
#include "RunReport.h"

#include <memory>
#include <string>

namespace marquell::cli {

/// Whether the options ask for a picture.
bool AsksForPictures(const RunOptions& options);

/// Loads what draws, before any long work.
///
/// throws  PictureError
std::unique_ptr<qelhost::Painter> MakePainterFor(const RunOptions& options);

/// Draws and writes the pictures of the active frame. The data before are read anew from the
/// frame's file; both pictures show the same variable in the same colours.
///
/// throws  PictureError, FileError
void WritePictures(qelhost::Painter& painter, qelhost::Frame& frame, const RunOptions& options,
                   const RunRecord& record);

}  // namespace marquell::cli
