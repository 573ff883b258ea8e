#pragma once

#include "Geometry.h"
#include "Host.h"

#include <string>

namespace qelhost {

/// What a user does in a window, by way of the host's own commands: each is carried out with the
/// lock in the host's name, then written into a journal that is being recorded, after whatever
/// add-ons recorded at its notices; then the idle queue runs.
///
/// throws  CommandError when there is no such command or it cannot be carried out; nothing is
///         recorded then
void Act(Host& host, const std::string& command);

/// The command that draws a geometry. Its numbers are rounded to six significant digits: what is
/// drawn by hand is drawn with numbers that a line of a journal carries whole.
std::string DrawCommand(const Geometry& geometry);

/// A user's choice of a mouse mode, which no journal needs.
bool ChooseMouseMode(Host& host, QelMouseMode_e mode);

/// A user's choice of a menu entry; false when there is none or it is greyed. The lock is not held.
bool ChooseMenu(Host& host, const std::string& path, const std::string& label);

}  // namespace qelhost
