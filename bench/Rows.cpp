#include "Rows.h"

#include <fmt/format.h>

namespace marquell::bench {

namespace {

struct Goal {
  double gate;
  double aim;
};

/// What a pick is asked for when it takes 1 and 50 % of the cells.
struct Way {
  const char* text;
  const char* ours;
  const char* peer;
  Goal few;
  Goal many;
};

constexpr Way kWays[] = {
    {"1 thread", "ours_1t", "peer_1t", {7, 10}, {14, 25}},
    {"2 threads", "ours_2t", "peer_2t", {12, 16}, {22, 35}},
    {"values through the host's functions, 1 thread", "ours_getters", "peer_1t", {3.5, 5}, {6, 8}},
};

struct Shape {
  const char* text;
  const char* benchmark;
};

constexpr Shape kShapes[] = {{"box", "box"}, {"sphere", "sphere"}, {"turned box", "turned_box"}};

constexpr int kPercents[] = {1, 50};

void AddPicks(std::vector<Row>& rows) {
  for (const Way& way : kWays) {
    for (const Shape& shape : kShapes) {
      for (const int percent : kPercents) {
        const Goal& goal = percent == 1 ? way.few : way.many;
        rows.push_back({fmt::format("pick and alter {} % by {}, {}", percent, shape.text, way.text),
                        "vtkExtractGeometry", RatioKind::Speedup,
                        fmt::format("{}/{}", shape.benchmark, percent), way.ours, way.peer,
                        goal.gate, goal.aim});
      }
    }
  }
}

void AddPolygons(std::vector<Row>& rows) {
  for (const int percent : kPercents) {
    const std::string text = fmt::format(
        "pick and alter {} % by polygon, 12 hull corners and 20 in pockets, 1 thread", percent);
    rows.push_back({text, "vtkExtractGeometry, loop of the 12 hull corners", RatioKind::Speedup,
                    fmt::format("polygon_hull/{}", percent), "ours_1t", "peer_1t", 45, 100});
    rows.push_back({text, "vtkExtractGeometry, loop of all 32 corners", RatioKind::Speedup,
                    fmt::format("polygon/{}", percent), "ours_1t", "peer_1t", 45, 100});
  }
  for (const int percent : kPercents) {
    rows.push_back({fmt::format("pick and alter {} % by box, 2 threads", percent),
                    "vtkExtractSelection, frustum, 2 threads", RatioKind::Speedup,
                    fmt::format("frustum/{}", percent), "ours_2t", "peer_2t", 60, 90});
  }
}

void AddLoops(std::vector<Row>& rows) {
  rows.push_back({"alter all cells, 2 threads", "vtkArrayCalculator `k*1.4`, 2 threads",
                  RatioKind::Speedup, "modifier", "ours", "peer", 80, 200});
  const auto mark = [&](const char* text, const char* name, Goal goal) {
    rows.push_back({fmt::format("mark nodes, {}", text), "reading the coordinates",
                    RatioKind::OfLimit, fmt::format("mark/{}", name), "ours", "peer", goal.gate,
                    goal.aim});
  };
  mark("floats side by side", "planar_float", {0.85, 0.95});
  mark("doubles side by side", "planar_double", {0.75, 0.9});
  mark("floats as points", "interleaved_float", {0.5, 0.7});
  for (const int percent : kPercents) {
    for (const Shape& rule : {Shape{"ALL", "all"}, Shape{"ANY", "any"}}) {
      const bool isEasy = percent == 1 && rule.benchmark == std::string("all");
      const Goal goal = isEasy ? Goal{0.9, 0.95} : Goal{0.6, 0.75};
      rows.push_back({fmt::format("decide bricks by corners, {} of {} %", rule.text, percent),
                      "reading the corners", RatioKind::OfLimit,
                      fmt::format("corners/{}/{}", rule.benchmark, percent), "ours", "peer",
                      goal.gate, goal.aim});
      rows.push_back(
          {fmt::format("decide cells of an ordered zone, {} of {} %", rule.text, percent),
           "the same cells as bricks", RatioKind::Speedup,
           fmt::format("ordered/{}/{}", rule.benchmark, percent), "ours", "peer", 8, 15});
    }
  }
  rows.push_back({"read everything, 2 threads", "the same on 1 thread", RatioKind::Speedup,
                  "second_thread", "ours", "peer", 0, 0});
}

void AddMemory(std::vector<Row>& rows) {
  for (const int percent : kPercents) {
    rows.push_back({fmt::format("memory of a {} % pick beyond 1 bit a cell, bits a node", percent),
                    "", RatioKind::BitsANode, fmt::format("memory/{}", percent), "bits_a_node", "",
                    8, 1});
  }
}

void AddRuns(std::vector<Row>& rows) {
  struct Encoding {
    const char* name;
    Goal seconds;
  };
  for (const Encoding& encoding : {Encoding{"raw", {1.5, 2.5}}, Encoding{"zlib", {8, 20}}}) {
    const std::string text = fmt::format("`marquell run` on a .vtu, {}", encoding.name);
    rows.push_back({text, "VTK read and write", RatioKind::Speedup,
                    fmt::format("run/{}/seconds", encoding.name), "ours", "peer",
                    encoding.seconds.gate, encoding.seconds.aim});
    rows.push_back({text + ", peak memory", "the file uncompressed", RatioKind::Share,
                    fmt::format("run/{}/megabytes", encoding.name), "ours", "peer", 1.1, 0.5});
  }
}

}  // namespace

std::vector<Row> Rows() {
  std::vector<Row> rows;
  AddPicks(rows);
  AddPolygons(rows);
  AddLoops(rows);
  AddMemory(rows);
  AddRuns(rows);
  return rows;
}

}  // namespace marquell::bench
