// The pictures that add-ons give to their buttons.
#pragma once

#include <QIcon>
#include <QPalette>

#include "DialogModel.h"

namespace marquell::workbench {

/// A bitmap as an icon, without its transparent colour and with square pixels at every scale. On a
/// dark palette light and dark change places, so that dark lines stay visible; hues stay.
QIcon IconOf(const qelhost::Bitmap& bitmap, const QPalette& palette);

}  // namespace marquell::workbench
