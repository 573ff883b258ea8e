// The part of the window that shows the plot.
#pragma once

#include <QWidget>

#include <functional>
#include <string>

#include "PickPreview.h"

namespace marquell::workbench {

class Workspace;
struct LookSettings;

/// What the window asks of its plot. The view on VTK needs OpenGL and a display, so tests of
/// everything else hand the window a blank one.
class PlotArea {
 public:
  virtual ~PlotArea() = default;

  /// To be put into the window, which takes it over.
  virtual QWidget* Widget() = 0;
  /// The host may have changed.
  virtual void Follow() = 0;
  /// Marks what applying the pick in hand would change; an empty one marks nothing.
  virtual void ShowPreview(const qelhost::PickPreview& preview) = 0;
  /// Draws the plot as it looks now to a PNG file of that size.
  ///
  /// throws  qelhost::PictureError
  virtual void WritePicture(const std::string& path, int width, int height) = 0;
  /// Gives up a figure that is being drawn.
  virtual void CancelDrawing() = 0;

  /// Called with a line about what lies under the pointer, empty when it left the plot.
  std::function<void(const std::string& text)> onPointed;
  /// Called with a line about what was probed.
  std::function<void(const std::string& text)> onProbed;
};

/// Shows nothing and draws nothing.
class BlankPlotArea : public QWidget, public PlotArea {
 public:
  QWidget* Widget() override { return this; }
  void Follow() override {}
  void ShowPreview(const qelhost::PickPreview&) override {}
  void WritePicture(const std::string&, int, int) override {}
  void CancelDrawing() override {}
};

/// Makes one that its window will own, as a widget.
using MakePlotArea = std::function<PlotArea*(Workspace&, LookSettings&)>;

}  // namespace marquell::workbench
