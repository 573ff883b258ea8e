#pragma once

#include <functional>

namespace qelhost {

/// How far the work in hand is, as an add-on says: 0 to 1, which is what is told last.
struct WorkProgress {
  double fraction = 0.0;
  std::function<void(double fraction)> changed;

  void Set(double now) {
    if (now == fraction) return;
    fraction = now;
    if (changed) changed(now);
  }

  /// The work is over, whether its end was reported or not.
  void End() {
    if (fraction == 0.0) return;
    Set(1.0);
    fraction = 0.0;
  }
};

}  // namespace qelhost
