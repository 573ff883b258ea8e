#pragma once

#include "Geometry.h"
#include "Host.h"
#include "Player.h"

#include <array>
#include <functional>
#include <string>

namespace qelhost {

/// Everything that a user does in a window runs through here: the deed, then the idle queue, as one
/// operation of the history, so that the user takes back in one step what was done in one. name:
/// for the user; the variables that were altered are put behind it. One within another belongs to
/// it.
void Perform(Host& host, const std::string& name, const std::function<void()>& deed);

/// What a user does by way of the host's own commands: each is carried out with the lock in the
/// host's name, then written into a journal that is being recorded, after whatever add-ons recorded
/// at its notices.
///
/// throws  CommandError when there is no such command or it cannot be carried out; nothing is
///         recorded then
void Act(Host& host, const std::string& command);

/// The same with a deed that does what the command says in another way, such as with a file that
/// was read already.
void ActAs(Host& host, const std::string& command, const std::function<void(Host&)>& deed);

/// Undo and redo of the last step of the active frame's data set.
///
/// throws  CommandError when there is none
void UndoLast(Host& host);
void RedoLast(Host& host);

/// The command that draws a geometry. Its numbers are rounded to six significant digits: what is
/// drawn by hand is drawn with numbers that a line of a journal carries whole.
std::string DrawCommand(const Geometry& geometry);

/// A user's choice of a mouse mode, which no journal needs.
bool ChooseMouseMode(Host& host, QelMouseMode_e mode);

/// A user's choice of a menu entry; false when there is none or it is greyed. The lock is not held.
bool ChooseMenu(Host& host, const std::string& path, const std::string& label);

/// A user's click in probe mode; 0 where there is no zone, cell or node.
bool Probe(Host& host, LgIndex_t zone, LgIndex_t cell, LgIndex_t node, bool isCtrlHeld);

/// The user has moved, sized or turned the shape that an add-on shows in the plot. Its numbers are
/// rounded to six significant digits, which is what the add-on's dialog shows and records. False
/// when no shape is shown or a number is not finite.
bool UserDragsShape(Host& host, const std::array<double, 3>& anchor,
                    const std::array<double, 3>& size, const std::array<double, 3>& rotationDeg);

/// One line of a journal, played by the user.
LineResult PlayLine(Host& host, Player& player, const std::string& line);

// What a user does in an add-on's dialog; false when the control cannot be acted on
// -------------------------------------

bool PressControl(Host& host, LgIndex_t button);
bool ToggleControl(Host& host, LgIndex_t toggle, bool on);
bool ChooseItem(Host& host, LgIndex_t menuOrRadioBox, LgIndex_t item);
bool EnterText(Host& host, LgIndex_t field, const std::string& text);
bool Spin(Host& host, LgIndex_t field, bool up);
bool TurnToPage(Host& host, LgIndex_t tab, LgIndex_t page);
bool CloseDialog(Host& host, LgIndex_t dialog);
bool AskForHelp(Host& host, LgIndex_t dialog);

}  // namespace qelhost
