// Measures picks and the loops under them beside what else could do the same, in one process and on
// the same mesh, in turn. Options are those of the benchmark library; see scripts/bench.sh.
//   MARQUELL_BENCH_CELLS  cells on an edge of the cube
#include "LoopRatios.h"
#include "PickRatios.h"
#include "Scene.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

int main(int argc, char* argv[]) {
  benchmark::Initialize(&argc, argv);
  constexpr int kSmallestEdge = 20;
  constexpr int kLargestEdge = 400;
  const char* const cells = std::getenv("MARQUELL_BENCH_CELLS");
  const int edge = cells == nullptr ? 200 : std::atoi(cells);
  if (argc != 2 || edge < kSmallestEdge || edge > kLargestEdge) {
    std::fprintf(stderr, "usage: [MARQUELL_BENCH_CELLS=20..400] bench_ratios [OPTION...] ADD-ON\n");
    return 2;
  }
  try {
    marquell::bench::Scene scene(argv[1], edge);
    marquell::bench::RegisterPickRatios(scene);
    marquell::bench::RegisterLoopRatios(scene);
    benchmark::AddCustomContext("cells_on_an_edge", std::to_string(edge));
    benchmark::RunSpecifiedBenchmarks();
  } catch (const std::exception& e) {
    std::fprintf(stderr, "bench_ratios: %s\n", e.what());
    return 1;
  }
  benchmark::Shutdown();
  return 0;
}
