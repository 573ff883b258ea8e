#pragma once

#include <functional>

namespace qelhost {

/// How far the work in hand is, as an add-on says: 0 to 1, and 0 again when it is over.
struct WorkProgress {
  double fraction = 0.0;
  std::function<void(double fraction)> changed;

  void Set(double now) {
    if (now == fraction) return;
    fraction = now;
    if (changed) changed(now);
  }
};

}  // namespace qelhost
