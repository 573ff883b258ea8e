#include "PickRatios.h"

#include "AllocationMeter.h"
#include "Peers.h"
#include "Scene.h"
#include "Stopwatch.h"

#include "Extensions.h"
#include "qelvane/Extensions.h"

#include <vtkImplicitFunction.h>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace marquell::bench {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kTurnDegrees = 30.0;

/// A pick and the filter that it is compared with.
struct Pick {
  std::string name;
  std::string line;
  std::function<vtkIdType()> peer;
  bool takesTheSame = true;      ///< the filter takes the same cells
  bool peerUsesThreads = false;  ///< the filter does
  int repetitions = 5;
  std::string rule = "ALLINSIDE";
};

std::string BoxLine(const Bounds3& box, double degrees = 0.0) {
  return fmt::format(
      "Marquell PICKCUBE ANCHORX={} ANCHORY={} ANCHORZ={} SIZEX={} SIZEY={} SIZEZ={} ROTATEZ={}",
      box.low[0], box.low[1], box.low[2], box.high[0] - box.low[0], box.high[1] - box.low[1],
      box.high[2] - box.low[2], degrees);
}

std::string SphereLine(double radius) {
  return fmt::format("Marquell PICKSPHERE ANCHORX=0.5 ANCHORY=0.5 ANCHORZ=0.5 RADIUS={}", radius);
}

std::string PolygonLine(const std::vector<Corner>& corners) {
  std::string text;
  for (const Corner& corner : corners) {
    text += fmt::format("{}{},{}", text.empty() ? "" : ",", corner[0], corner[1]);
  }
  return "Marquell PICKPOLYGON CORNERS=\"" + text + "\"";
}

/// In the middle of the cube once it is turned. A box of half the cube is as high as the cube, or
/// its corners would stick out.
Bounds3 BoxToTurn(double part) {
  const bool isHigh = part > 0.1;
  const double height = isHigh ? 1.2 : std::cbrt(part);
  const double width = isHigh ? std::sqrt(part) : height;
  const double angle = kTurnDegrees * kPi / 180.0;
  const double half = 0.5 * width;
  const double x = 0.5 - half * (std::cos(angle) - std::sin(angle));
  const double y = 0.5 - half * (std::sin(angle) + std::cos(angle));
  const double z = 0.5 - 0.5 * height;
  return {{x, y, z}, {x + width, y + width, z + height}};
}

Corner OnCircle(double radius, double turn) {
  return {radius * std::cos(2.0 * kPi * turn), radius * std::sin(2.0 * kPi * turn)};
}

constexpr int kHullCorners = 12;

double HullRadius(double part) {
  return std::sqrt(part / (0.5 * kHullCorners * std::sin(2.0 * kPi / kHullCorners)));
}

/// Convex, and of about this part of the cube's face.
std::vector<Corner> Hull(double part) {
  std::vector<Corner> corners;
  for (int n = 0; n < kHullCorners; ++n) {
    corners.push_back(OnCircle(HullRadius(part), static_cast<double>(n) / kHullCorners));
  }
  return corners;
}

/// The same hull with 20 corners pushed in: two on each of eight edges, one on each of the others.
std::vector<Corner> HullWithPockets(double part) {
  constexpr int kEdgesWithTwo = 8;
  const double depth = 0.9 * HullRadius(part);
  std::vector<Corner> corners;
  for (int n = 0; n < kHullCorners; ++n) {
    corners.push_back(Hull(part)[static_cast<std::size_t>(n)]);
    const int pushed = n < kEdgesWithTwo ? 2 : 1;
    for (int m = 1; m <= pushed; ++m) {
      const double along = static_cast<double>(m) / (pushed + 1);
      corners.push_back(OnCircle(depth, (n + along) / kHullCorners));
    }
  }
  return corners;
}

void WithholdServices(bool withhold) {
  for (const char* id :
       {QEL_EXTENSION_BULK_ACCESS, QEL_EXTENSION_PARALLEL, QEL_EXTENSION_PROGRESS}) {
    qelhost::WithholdExtension(id, withhold);
  }
}

Took WithThreads(int count, const std::function<void()>& work) {
  UseThreads(count);
  return Timed(work);
}

void CountPeer(benchmark::State& state, const Pick& pick) {
  vtkIdType cells = 0;
  const Took one = WithThreads(1, [&] { cells = pick.peer(); });
  state.counters["peer_1t"] = one.cpu;
  state.counters["peer_2t"] = pick.peerUsesThreads ? WithThreads(2, pick.peer).wall : one.wall;
  state.counters["peer_cells"] = static_cast<double>(cells);
}

/// All of them in turn: what slows the machine down slows down all.
void MeasurePick(benchmark::State& state, Scene& scene, const Pick& pick) {
  const auto play = [&] { scene.PickAndAlter(pick.line, pick.rule); };
  for ([[maybe_unused]] const auto& iteration : state) {
    const Took one = WithThreads(1, play);
    CountPeer(state, pick);
    const Took two = WithThreads(2, play);
    WithholdServices(true);
    const Took getters = WithThreads(1, play);
    WithholdServices(false);
    state.SetIterationTime(1e-3 * one.cpu);
    state.counters["ours_1t"] = one.cpu;
    state.counters["ours_2t"] = two.wall;
    state.counters["ours_getters"] = getters.cpu;
  }
  const auto ours = static_cast<double>(scene.PickedBy(pick.line, pick.rule));
  const double peers = state.counters["peer_cells"];
  state.counters["cells"] = ours;
  if (pick.takesTheSame && ours != peers) {  // a ratio of different answers would say nothing
    state.SkipWithError(fmt::format("took {} cells, the filter {}", ours, peers).c_str());
  }
}

/// The filter allocates its output, which is its answer; a pick's answer lies in arrays that are
/// there.
void MeasureMemory(benchmark::State& state, Scene& scene, const std::string& line,
                   const std::string& rule) {
  UseThreads(1);
  scene.PickAndAlter(line, rule);  // what is made once and kept is no cost of the next pick
  for ([[maybe_unused]] const auto& iteration : state) {
    const AllocationMeter meter;
    scene.PickAndAlter(line, rule);
    const double bits = 8.0 * static_cast<double>(meter.PeakBytes());
    state.SetIterationTime(1e-9);
    state.counters["bits_a_node"] =
        (bits - static_cast<double>(scene.CellCount())) / static_cast<double>(scene.NodeCount());
    state.counters["megabytes"] = 1e-6 * bits / 8.0;
  }
}

std::vector<Pick> Picks(Scene& scene) {
  std::vector<Pick> picks;
  vtkUnstructuredGrid* const grid = scene.PeerGrid();
  const auto add = [&](std::string name, std::string line,
                       const vtkSmartPointer<vtkImplicitFunction>& function) -> Pick& {
    picks.push_back({std::move(name), std::move(line),
                     [grid, function] { return ExtractGeometry(grid, function); }});
    return picks.back();
  };
  for (const int percent : {1, 50}) {
    const double part = 0.01 * percent;
    const auto named = [&](const char* shape) { return fmt::format("{}/{}", shape, percent); };
    const Bounds3 box = BoxOf(scene, part);
    add(named("box"), BoxLine(box), BoxFunction(box));
    const double radius = std::cbrt(part * 0.75 / kPi);
    add(named("sphere"), SphereLine(radius), SphereFunction(radius));
    const Bounds3 turned = BoxToTurn(part);
    add(named("turned_box"), BoxLine(turned, kTurnDegrees),
        TurnedBoxFunction(turned, kTurnDegrees));
    const std::vector<Corner> corners = HullWithPockets(part);
    Pick& same = add(named("polygon"), PolygonLine(corners), LoopFunction(corners));
    same.repetitions = 1;  // many seconds
    Pick& easier = add(named("polygon_hull"), PolygonLine(corners), LoopFunction(Hull(part)));
    easier.takesTheSame = false;
    easier.repetitions = 1;
    Pick frustum{named("frustum"), BoxLine(box), [grid, box] { return ExtractFrustum(grid, box); }};
    frustum.rule = "ANYINSIDE";
    frustum.peerUsesThreads = true;
    frustum.repetitions = 3;
    picks.push_back(std::move(frustum));
  }
  return picks;
}

}  // namespace

void RegisterPickRatios(Scene& scene) {
  for (const Pick& pick : Picks(scene)) {
    benchmark::RegisterBenchmark(
        pick.name.c_str(),
        [&scene, pick](benchmark::State& state) { MeasurePick(state, scene, pick); })
        ->Iterations(1)
        ->Repetitions(pick.repetitions)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
  }
  for (const int percent : {1, 50}) {
    const std::string line = BoxLine(BoxOf(scene, 0.01 * percent));
    benchmark::RegisterBenchmark(
        fmt::format("memory/{}", percent).c_str(),
        [&scene, line](benchmark::State& state) { MeasureMemory(state, scene, line, "ANYINSIDE"); })
        ->Iterations(1)
        ->Repetitions(1)
        ->UseManualTime();
  }
}

}  // namespace marquell::bench
