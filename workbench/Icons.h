// The pictures on buttons, drawn as lines in the palette's own colour, so that they are crisp at
// any scale and legible in a dark window.
#pragma once

#include <QIcon>

namespace marquell::workbench {

enum class Glyph {
  Open,
  Save,
  Undo,
  Redo,
  Select,
  Rotate,
  Pan,
  Zoom,
  Probe,
  Polygon,
  Rectangle,
  Square,
  Circle,
  Ellipse,
  Fit,
  AlongX,
  AlongY,
  AlongZ,
  Corner,
  Picture,
  Application
};

QIcon IconOf(Glyph glyph);

}  // namespace marquell::workbench
