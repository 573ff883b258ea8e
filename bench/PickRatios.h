#pragma once

namespace marquell::bench {

class Scene;

/// Whole picks, played as lines, against the filters that do the nearest thing.
void RegisterPickRatios(Scene& scene);

}  // namespace marquell::bench
