#pragma once

namespace qelvane::qelutiltools {

// A host may let the user drag, size and turn the box or the sphere in the plot. It is told of the
// shape while the dialog is open on it and its zone is there.

/// Tells the host what has changed about that, if anything. The last thing that a door does through
/// which the shape, its zone, the dialog or the session can change. Contained; takes the lock.
void FollowShape();

/// The same after an entry in a field, which makes a sphere's zone anew once the host is idle.
void FollowShapeEntered();

}  // namespace qelvane::qelutiltools
