#include "Pictures.h"

#include "DataSetFiles.h"
#include "Terminal.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

namespace marquell::cli {

namespace {

using qelhost::DataSet;
using qelhost::Frame;
using qelhost::Picture;
using qelhost::PictureOptions;
using qelhost::Range;

bool IsWorthShowing(const DataSet& data, LgIndex_t variable) {
  const qelhost::Variable* const found = data.FindVariable(variable);
  return found != nullptr && found->coordinateAxis < 0 && found->name != kBlankingVariable;
}

/// The variable that colours the pictures: the one asked for, else the first that the run altered,
/// else the first that is neither a coordinate nor says what is hidden; 0 when there is none.
LgIndex_t VariableToShow(const DataSet& data, const RunOptions& options, const RunRecord& record) {
  if (!options.imageVariable.empty()) {
    const LgIndex_t asked = data.VariableNumber(options.imageVariable);
    if (asked == 0) throw qelhost::PictureError("there is no variable " + options.imageVariable);
    return asked;
  }
  for (const PlayedLine& line : record.lines) {
    for (const qelhost::Alteration& alteration : line.alterations) {
      const LgIndex_t altered = data.VariableNumber(alteration.variableName);
      if (IsWorthShowing(data, altered)) return altered;
    }
  }
  for (LgIndex_t variable = 1; variable <= data.VariableCount(); ++variable) {
    if (IsWorthShowing(data, variable)) return variable;
  }
  return 0;
}

/// The data as they were, looked at as they are now.
std::unique_ptr<Frame> FrameBefore(const Frame& frame) {
  auto before = std::make_unique<Frame>();
  before->Show(qelhost::ReadDataSet(frame.fileName));
  before->plotType = frame.plotType;
  before->view = frame.view;
  before->solutionTime = frame.solutionTime;
  before->styles.layerActive = frame.styles.layerActive;
  for (LgIndex_t zone = 1; zone <= before->Data()->ZoneCount(); ++zone) {
    before->Data()->FindZone(zone)->active = frame.Data()->FindZone(zone)->active;
  }
  return before;
}

void Widen(PictureOptions& picture, const Range& range, bool isFirst) {
  if (!range.hasValues) return;
  picture.min = isFirst ? range.min : std::min(picture.min, range.min);
  picture.max = isFirst ? range.max : std::max(picture.max, range.max);
}

Picture DrawWith(qelhost::Painter& painter, Frame& frame, PictureOptions options,
                 const char* caption) {
  options.caption = caption;
  return painter.Draw(frame, options);
}

}  // namespace

bool AsksForPictures(const RunOptions& options) {
  return !options.image.empty() || !options.imageBefore.empty() || !options.imagePair.empty();
}

std::unique_ptr<qelhost::Painter> MakePainterFor(const RunOptions& options) {
  return AsksForPictures(options) ? qelhost::LoadPainter() : nullptr;
}

void StagePictures(qelhost::Painter& painter, Frame& frame, const RunOptions& options,
                   const RunRecord& record, ByProducts& byProducts) {
  const bool showsBefore = !options.imageBefore.empty() || !options.imagePair.empty();
  const std::unique_ptr<Frame> before = showsBefore ? FrameBefore(frame) : nullptr;
  DataSet& data = *frame.Data();

  PictureOptions picture;
  picture.width = options.imageWidth;
  picture.height = options.imageHeight;
  picture.variable = VariableToShow(data, options, record);
  if (picture.variable > 0) {
    Widen(picture, data.VariableRange(picture.variable), true);
    if (before != nullptr) {
      Widen(picture, before->Data()->VariableRange(picture.variable), false);
    }
  }
  const bool isPair = !options.imagePair.empty();
  std::optional<Picture> first;
  if (before != nullptr) {
    if (before->Data()->FindVariable(picture.variable) == nullptr && picture.variable > 0) {
      throw qelhost::PictureError("there was no variable " + options.imageVariable + " before");
    }
    first = DrawWith(painter, *before, picture, "before");
  }
  if (!options.imageBefore.empty()) byProducts.Add(options.imageBefore, painter.Png({*first}));
  if (options.image.empty() && !isPair) return;
  const Picture second = DrawWith(painter, frame, picture, showsBefore ? "after" : "");
  if (!options.image.empty()) byProducts.Add(options.image, painter.Png({second}));
  if (isPair) byProducts.Add(options.imagePair, painter.Png({*first, second}));
}

}  // namespace marquell::cli
