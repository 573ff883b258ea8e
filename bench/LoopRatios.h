#pragma once

namespace marquell::bench {

class Scene;

/// Single loops of the add-on, called directly on what the host shows them, against a plain loop
/// over the same memory.
void RegisterLoopRatios(Scene& scene);

}  // namespace marquell::bench
