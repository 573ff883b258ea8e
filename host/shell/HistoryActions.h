#pragma once

namespace qelhost {

class Host;

/// Undo and redo of the last step of the active frame's data set: the values are put back, the
/// notice is sent that they were altered, and add-ons that asked for it are told that this was
/// undo or redo. The caller holds the lock in the host's name; it is let go for the last.
///
/// Each answers false, and changes nothing, when there is no such step.
bool UndoValues(Host& host);
bool RedoValues(Host& host);

}  // namespace qelhost
