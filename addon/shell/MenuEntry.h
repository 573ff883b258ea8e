#pragma once

namespace qelvane::qelutiltools {

constexpr char kMenuPath[] = "Data";
constexpr char kMenuLabel[] = "Marquell ...";

/// Opens the dialog.
void MenuCallback();

/// The entry can be chosen exactly when the active frame shows data in a 2D or 3D Cartesian plot.
void UpdateMenuSensitivity();

}  // namespace qelvane::qelutiltools
