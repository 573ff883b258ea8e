// Pictures of a run: the data before the first line, after the last, or both side by side.
#pragma once

#include "ByProducts.h"
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

/// Draws and stages the pictures of the active frame. The data before are read anew from the
/// frame's file; both pictures show the same variable in the same colours.
///
/// throws  PictureError, FileError, TargetError; WriteCancelled when the run is to end
void StagePictures(qelhost::Painter& painter, qelhost::Frame& frame, const RunOptions& options,
                   const RunRecord& record, ByProducts& byProducts);

}  // namespace marquell::cli
