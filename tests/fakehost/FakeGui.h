#pragma once

#include "FakeControls.h"

#include <deque>

namespace fakehost {

/// Every dialog and control of the process, in the order in which they were made. The id is the
/// place, counted from 1; addresses stay.
std::deque<Control>& AllControls();

/// Null when there is none of that id, or of that id and kind.
Control* FindControl(LgIndex_t id);
Control* FindControl(LgIndex_t id, ControlKind kind);

/// The place of a page among its parent's pages, from 1.
LgIndex_t PlaceOfPage(const Control& page);

}  // namespace fakehost
