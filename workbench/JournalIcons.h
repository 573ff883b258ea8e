// The pictures of the journal panel, drawn in the palette's own colours.
#pragma once

#include <QColor>
#include <QIcon>
#include <QPalette>

namespace marquell::workbench {

/// None takes the room of a picture, so that texts below each other begin at one place.
enum class JournalIcon {
  Record,
  Stop,
  Play,
  Step,
  FromHere,
  Rewind,
  Clear,
  InHand,
  Done,
  Failed,
  None
};

QIcon IconOf(JournalIcon which);

/// A red that stands out from the palette's base as its text does.
QColor AlarmColor(const QPalette& palette);

}  // namespace marquell::workbench
