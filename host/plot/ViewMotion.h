// Views that follow from others by moving the data on the screen.
#pragma once

#include <array>

#include "View.h"

namespace qelhost {

/// The view with the angles of a rotation, row-major as a projection has it. Of the angles that
/// give it those are taken that keep psi's sign and, where psi leaves a choice, theta.
View WithRotation(const View& view, const std::array<double, 9>& rotation);

/// The view after turning the data as the viewer sees them: to the right about the screen's upright
/// axis, upwards about its level one.
View Turned(const View& view, double rightDeg, double upDeg);

}  // namespace qelhost
