#include "LoopRatios.h"

#include "Peers.h"
#include "ReadLimit.h"
#include "Scene.h"
#include "Stopwatch.h"

#include "Bits.h"
#include "CMacroEngine.h"
#include "ClippingCube.h"
#include "CornerRule.h"
#include "HostLock.h"
#include "HostServices.h"
#include "InsideSet.h"
#include "NodeSpanCells.h"
#include "OrderedCells.h"
#include "TakenItems.h"
#include "ValueModifier.h"
#include "WritePath.h"

#include "qelvane/QelUtil.h"

#include <vtkSMPTools.h>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace marquell::bench {

namespace {

namespace add_on = qelvane::qelutiltools;

constexpr LgIndex_t kZone = 1;

LgIndex_t VariableNamed(const char* name) {
  for (LgIndex_t var = 1; var <= QelUtilDataSetGetNumVars(); ++var) {
    char* text = nullptr;
    if (!QelUtilVarGetName(var, &text)) continue;
    const std::string found = text;
    QelUtilStringDealloc(&text);
    if (found == name) return var;
  }
  throw std::runtime_error(std::string("no variable ") + name);
}

/// One that tests the box's faces against every node: all coordinates have to be looked at.
void SetToBox(add_on::CClippingCube& cube, const Bounds3& box) {
  const std::string line =
      fmt::format("PICKCUBE ANCHORX={} ANCHORY={} ANCHORZ={} SIZEX={} SIZEY={} SIZEZ={}",
                  box.low[0], box.low[1], box.low[2], box.high[0] - box.low[0],
                  box.high[1] - box.low[1], box.high[2] - box.low[2]);
  add_on::MacroCommand command;
  if (!add_on::MacroEngine.ParseCommand(line, command) || !cube.SetFromMacro(command)) {
    throw std::runtime_error(line + ": " + add_on::MacroEngine.GlobalError());
  }
}

/// What one of the two in turn took, in the same benchmark: their speeds change together.
void MeasureBoth(benchmark::State& state, int threads, const std::function<void()>& ours,
                 const std::function<void()>& peer) {
  UseThreads(threads);
  ours();
  peer();
  for ([[maybe_unused]] const auto& iteration : state) {
    const Took our = Timed(ours);
    const Took their = Timed(peer);
    const bool isWall = threads > 1;
    state.SetIterationTime(1e-3 * (isWall ? our.wall : our.cpu));
    state.counters["ours"] = isWall ? our.wall : our.cpu;
    state.counters["peer"] = isWall ? their.wall : their.cpu;
  }
}

void Read(const void* first, std::int64_t byteCount) {
  benchmark::DoNotOptimize(ReadAll(first, byteCount));
}

/// Marks the nodes in a box that holds all of them.
void MeasureMarking(benchmark::State& state, const Scene& scene,
                    const std::array<const char*, 3>& names) {
  const add_on::HostLock lock;
  const add_on::HostServices services = add_on::AskHostServices();
  std::array<LgIndex_t, 3> vars{};
  std::transform(names.begin(), names.end(), vars.begin(), VariableNamed);
  std::array<QelFieldSpan_s, 3> spans{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const QelFieldData* const field = QelUtilDataValueGetReadableNLRef(kZone, vars[axis]);
    if (!services.bulk->fieldSpan(field, &spans[axis])) {
      throw std::runtime_error(std::string("the host does not show ") + names[axis]);
    }
  }
  add_on::CClippingCube cube([] { return false; });
  SetToBox(cube, {{-1.0, -1.0, -1.0}, {2.0, 2.0, 2.0}});
  add_on::InsideSet inside(scene.NodeCount());
  const std::int64_t valueSize = spans[0].type == FieldDataType_Double ? 8 : 4;
  const bool isInterleaved = spans[0].stride > valueSize;
  const auto limit = [&] {
    if (isInterleaved) {
      Read(spans[0].first, 3 * valueSize * scene.NodeCount());
      return;
    }
    for (const QelFieldSpan_s& span : spans) Read(span.first, valueSize * scene.NodeCount());
  };
  MeasureBoth(
      state, 1, [&] { cube.MarkInside(kZone, vars[0], vars[1], vars[2], inside, services); },
      limit);
  if (!inside.Contains(scene.NodeCount() - 1)) state.SkipWithError("the box does not hold all");
}

/// Nodes of a box in the middle, as a pick would mark them.
add_on::InsideSet NodesOfBox(const Scene& scene, double part) {
  const add_on::HostLock lock;
  add_on::CClippingCube cube([] { return false; });
  SetToBox(cube, BoxOf(scene, part));
  add_on::InsideSet inside(scene.NodeCount());
  cube.MarkInside(kZone, VariableNamed("x"), VariableNamed("y"), VariableNamed("z"), inside,
                  add_on::AskHostServices());
  return inside;
}

struct Rule {
  const char* name;
  add_on::PickRule rule;
};

constexpr Rule kRules[] = {{"all", add_on::PickRule::AllInside},
                           {"any", add_on::PickRule::AnyInside}};

QelNodeSpan_s BrickNodes(const add_on::HostServices& services) {
  QelNodeSpan_s span{};
  if (!services.bulk->nodeMapSpan(QelUtilDataNodeGetReadableRef(kZone), &span)) {
    throw std::runtime_error("the host does not show the bricks' nodes");
  }
  return span;
}

/// Decides all the zone's cells, some at a time as a pick does, and answers how many it took.
template <class Decide>
std::int64_t DecideAll(std::int64_t cellCount, const Decide& decide) {
  constexpr std::int64_t kWordsAtOnce = 256;
  std::array<std::uint64_t, kWordsAtOnce> words{};
  std::int64_t taken = 0;
  const std::int64_t wordCount = add_on::WordsFor(cellCount);
  for (std::int64_t word = 0; word < wordCount; word += kWordsAtOnce) {
    const std::int64_t count = std::min(kWordsAtOnce, wordCount - word);
    decide(word, count, words.data());
    for (std::int64_t n = 0; n < count; ++n) {
      taken += __builtin_popcountll(words[static_cast<std::size_t>(n)]);
    }
  }
  return taken;
}

void MeasureCorners(benchmark::State& state, const Scene& scene, add_on::PickRule rule,
                    double part) {
  const add_on::HostLock lock;
  const QelNodeSpan_s span = BrickNodes(add_on::AskHostServices());
  const add_on::InsideSet inside = NodesOfBox(scene, part);
  MeasureBoth(
      state, 1,
      [&] {
        benchmark::DoNotOptimize(DecideAll(
            span.count, [&](std::int64_t first, std::int64_t count, std::uint64_t* words) {
              add_on::DecideSpanCells(span, add_on::CornerRule(rule), inside, first, count, words);
            }));
      },
      [&] { Read(span.first, span.count * span.nodesPerElement * span.indexWidth); });
}

/// The same cells as an ordered zone has them and as bricks.
void MeasureOrdered(benchmark::State& state, const Scene& scene, add_on::PickRule rule,
                    double part) {
  const add_on::HostLock lock;
  const QelNodeSpan_s span = BrickNodes(add_on::AskHostServices());
  const add_on::InsideSet inside = NodesOfBox(scene, part);
  const std::int64_t nodes = scene.Edge() + 1;
  const add_on::OrderedCells cells({nodes, nodes, nodes}, add_on::CornerRule(rule), inside);
  std::int64_t ordered = 0;
  std::int64_t bricks = 0;
  MeasureBoth(
      state, 1,
      [&] {
        ordered =
            DecideAll(span.count, [&](std::int64_t first, std::int64_t count,
                                      std::uint64_t* words) { cells.Words(first, count, words); });
      },
      [&] {
        bricks = DecideAll(
            span.count, [&](std::int64_t first, std::int64_t count, std::uint64_t* words) {
              add_on::DecideSpanCells(span, add_on::CornerRule(rule), inside, first, count, words);
            });
      });
  if (ordered != bricks) {
    state.SkipWithError(fmt::format("took {} cells, of bricks {}", ordered, bricks).c_str());
  }
}

/// Alters every cell, once it is known that all are taken.
void MeasureModifier(benchmark::State& state, const Scene& scene) {
  const add_on::HostLock lock;
  const add_on::HostServices services = add_on::AskHostServices();
  const LgIndex_t var = VariableNamed("k");
  add_on::FieldWriter writer{kZone, var, true, QelUtilDataValueGetWritableNativeRef(kZone, var)};
  if (writer.field == nullptr) throw std::runtime_error("k cannot be written");
  add_on::TakenItems all;
  all.count = scene.CellCount();
  all.decide = [](std::int64_t, std::int64_t wordCount, std::uint64_t* words) {
    std::fill_n(words, wordCount, ~std::uint64_t{0});
  };
  bool isUp = false;
  MeasureBoth(
      state, 2,
      [&] {
        isUp = !isUp;
        const add_on::ValueModifier modifier{add_on::ValueModifier::kMultiply, isUp ? 1.4 : 0.7};
        if (add_on::AlterTaken(writer, modifier, all, services) != all.count) {
          throw std::runtime_error("not all cells were altered");
        }
      },
      [&] { Calculate(scene.PeerGrid()); });
}

/// What a second thread gives a loop that does nothing but read: how much of the two the machine
/// has to spare just now, and what rows on two threads can hope for.
void MeasureSecondThread(benchmark::State& state) {
  const QelNodeSpan_s span = BrickNodes(add_on::AskHostServices());
  const auto* const first = static_cast<const char*>(span.first);
  const std::int64_t byteCount = span.count * span.nodesPerElement * span.indexWidth;
  constexpr std::int64_t kPiece = 1 << 20;
  const auto readAll = [&] {
    vtkSMPTools::For(0, byteCount / kPiece, [&](vtkIdType from, vtkIdType to) {
      Read(first + from * kPiece, (to - from) * kPiece);
    });
  };
  for ([[maybe_unused]] const auto& iteration : state) {
    UseThreads(1);
    const Took one = Timed(readAll);
    UseThreads(2);
    const Took two = Timed(readAll);
    state.SetIterationTime(1e-3 * two.wall);
    state.counters["ours"] = two.wall;
    state.counters["peer"] = one.wall;
  }
}

template <class Measure>
void Register(const std::string& name, const Measure& measure, int repetitions = 15) {
  benchmark::RegisterBenchmark(name.c_str(), measure)
      ->Iterations(1)
      ->Repetitions(repetitions)
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

}  // namespace

void RegisterLoopRatios(Scene& scene) {
  Register(
      "modifier", [&](benchmark::State& state) { MeasureModifier(state, scene); }, 7);
  Register("second_thread", MeasureSecondThread);
  const auto marking = [&](const char* name, const std::array<const char*, 3>& vars) {
    Register(fmt::format("mark/{}", name),
             [&scene, vars](benchmark::State& state) { MeasureMarking(state, scene, vars); });
  };
  marking("planar_float", {"x", "y", "z"});
  marking("planar_double", {"xd", "yd", "zd"});
  marking("interleaved_float", {"X", "Y", "Z"});
  for (const int percent : {1, 50}) {
    for (const Rule& rule : kRules) {
      const auto kind = rule.rule;
      const double part = 0.01 * percent;
      Register(fmt::format("corners/{}/{}", rule.name, percent),
               [&scene, kind, part](benchmark::State& state) {
                 MeasureCorners(state, scene, kind, part);
               });
      Register(fmt::format("ordered/{}/{}", rule.name, percent),
               [&scene, kind, part](benchmark::State& state) {
                 MeasureOrdered(state, scene, kind, part);
               });
    }
  }
}

}  // namespace marquell::bench
