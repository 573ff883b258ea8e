// Where the controls of an add-on's dialog stand, in pixels.
#pragma once

#include <QRect>
#include <QSize>

#include <vector>

#include "DialogModel.h"

namespace marquell::workbench {

/// Places and sizes of controls are hundredths of a unit.
constexpr double kHundredths = 100.0;

/// Pixels of a character's width and of a line's height.
struct LayoutUnits {
  double x = 1.0;
  double y = 1.0;
};

/// A control as the layout sees it.
struct LayoutItem {
  qelhost::ControlPlace place;
  QSize need;           ///< the smallest size in which nothing is cut off
  int wishedWidth = 0;  ///< taken as far as there is room to the right
  int barHeight = 0;    ///< of a tab: its bar stands above the place that the dialog's author gave
  QSize frame{0, 0};    ///< of a tab: what of its place its pages do not get
  int lineHeight = 0;   ///< of a label: of its first line, which is centred in the author's line
};

/// What a layout lacks for all of its controls to stand free of each other.
struct Shortage {
  bool inWidth = false;
  bool inHeight = false;

  bool IsAny() const { return inWidth || inHeight; }
  void Add(const Shortage& other) {
    inWidth = inWidth || other.inWidth;
    inHeight = inHeight || other.inHeight;
  }
};

/// Places the controls that stand side by side in a room of that size. A control that needs more
/// than its author gave it grows about its middle line and to the right.
///
/// rects    one for each item, a tab's bar included
/// returns  what hinders: controls that overlap though their author set them apart, or that stick
///          out of the room
Shortage PlaceSiblings(const std::vector<LayoutItem>& items, const LayoutUnits& units,
                       const QSize& room, std::vector<QRect>& rects);

}  // namespace marquell::workbench
