#pragma once

#include <functional>

namespace marquell::bench {

using Work = std::function<void()>;

}  // namespace marquell::bench

/// Does the work. Tools know where to begin and to end counting by this function's name.
extern "C" __attribute__((noinline)) void MeasuredWork(const marquell::bench::Work& work);
