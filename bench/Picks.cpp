// Plays picks on cubes of bricks of several sizes, in memory, and prints what each costs: a pick
// that is linear costs the same for a cell whatever the size. A surface pick marks all nodes of the
// zone like the pick above it; what it costs more is the walk, divided by the nodes reached.
#include "Grid.h"

#include "DataSet.h"
#include "Host.h"
#include "Player.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace qelhost;

struct Pick {
  const char* name;
  std::vector<std::string> prepare;  ///< played once
  std::string apply;                 ///< played and timed
  bool isOnSurface = false;
};

constexpr double kPi = 3.14159265358979323846;

/// A star around the origin of the view plane, its inner corners reflex.
std::string Star(int cornerCount, double radius) {
  std::string corners;
  for (int corner = 0; corner < cornerCount; ++corner) {
    const double angle = 2.0 * kPi * corner / cornerCount;
    const double r = corner % 2 == 0 ? radius : 0.9 * radius;
    char text[64];
    std::snprintf(text, sizeof text, "%s%.9g,%.9g", corner == 0 ? "" : ",", r * std::cos(angle),
                  r * std::sin(angle));
    corners += text;
  }
  return "Marquell PICKPOLYGON CORNERS=\"" + corners + "\"";
}

std::vector<Pick> Picks(int edge) {
  const std::string alter = "Marquell ALTERAREA VARIABLE=\"k\" MODIFIER=\"*2\" RULE=ALLINSIDE";
  const std::string alterNodes = "Marquell ALTERAREA VARIABLE=\"p\" MODIFIER=\"*2\"";
  const std::string cube = "Marquell PICKCUBE ANCHORX=0.25 ANCHORY=0.25 ANCHORZ=0.25 ";
  const int middleOfTop = edge * (edge + 1) * (edge + 1) + (edge / 2) * (edge + 1) + edge / 2 + 1;
  return {
      {"box, cells", {cube + "SIZEX=0.5 SIZEY=0.5 SIZEZ=0.5"}, alter},
      {"box, nodes", {}, alterNodes},
      {"turned box", {cube + "SIZEX=0.5 SIZEY=0.5 SIZEZ=0.5 ROTATEX=20 ROTATEZ=30"}, alter},
      {"sphere", {"Marquell PICKSPHERE ANCHORX=0.5 ANCHORY=0.5 ANCHORZ=0.5 RADIUS=0.4"}, alter},
      {"rectangle",
       {"Marquell PICKRECTANGLE ANCHORX=-0.3 ANCHORY=-0.3 SIZEX=0.6 SIZEY=0.6"},
       alter},
      {"polygon, 24 corners", {Star(24, 0.4)}, alter},
      {"hide, 24 corners", {}, "Marquell BLANKAREA RULE=ANYINSIDE"},
      {"rectangle, nodes",
       {"Marquell PICKRECTANGLE ANCHORX=-0.4 ANCHORY=-0.4 SIZEX=0.8 SIZEY=0.8"},
       alterNodes + " RULE=ANYINSIDE"},
      {"the same on the surface",
       {},
       "Marquell ALTERSURFACE ZONE=1 SEEDPOINT=" + std::to_string(middleOfTop) +
           " VARIABLE=\"p\" MODIFIER=\"*2\" RULE=ANYINSIDE",
       true},
  };
}

double Play(Player& player, const std::string& line) {
  const LineResult result = player.Play(line);
  if (!result.isDone) throw std::runtime_error(line.substr(0, 60) + ": " + result.message);
  return result.seconds;
}

double BestOf(Player& player, const std::string& line, int runs) {
  double best = Play(player, line);
  for (int run = 1; run < runs; ++run) best = std::min(best, Play(player, line));
  return best;
}

/// The values that a line changes, asked for outside of the time taken.
std::int64_t PickedBy(Player& player, const std::string& line) {
  player.ReportAlterations(true);
  const LineResult result = player.Play(line);
  player.ReportAlterations(false);
  std::int64_t picked = 0;
  for (const Alteration& alteration : result.alterations) picked += alteration.pickedCount;
  return picked;
}

Player ShowCube(int edge) {
  Host& host = Host::Instance();
  host.CloseAll();
  const BlockEntry block{"cube", marquell::bench::MakeGrid(edge), 0, 0.0};
  host.ShowDataSet(std::make_shared<DataSet>("cube", std::vector<BlockEntry>{block}, nullptr));
  return Player(host);
}

void MeasureCube(int edge, int runs) {
  Player player = ShowCube(edge);
  const double cells = std::pow(edge, 3);
  std::printf("\n%.3g million bricks%34s%16s\n", cells / 1e6, "ms", "ns a cell");
  double secondsAbove = 0.0;
  for (const Pick& pick : Picks(edge)) {
    for (const std::string& line : pick.prepare) Play(player, line);
    const double seconds = BestOf(player, pick.apply, runs);
    std::printf("  %-32s%20.1f%16.2f", pick.name, 1e3 * seconds, 1e9 * seconds / cells);
    if (pick.isOnSurface) {
      const auto reached = static_cast<double>(PickedBy(player, pick.apply));
      std::printf("   %.0f nodes reached, %.0f ns each", reached,
                  1e9 * (seconds - secondsAbove) / reached);
    }
    std::printf("\n");
    secondsAbove = seconds;
  }
}

void MeasurePolygon(int cornerCount) {
  Player player = ShowCube(20);
  const double seconds = Play(player, Star(cornerCount, 0.4));
  const double applied =
      Play(player, "Marquell ALTERAREA VARIABLE=\"k\" MODIFIER=\"*2\" RULE=ALLINSIDE");
  std::printf("\npolygon of %d corners: read and built in %.3f s, picked 8000 bricks in %.3f s\n",
              cornerCount, seconds, applied);
}

}  // namespace

int main(int argc, char* argv[]) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: bench_picks ADD-ON CELLS-ON-AN-EDGE...\n");
    return 2;
  }
  try {
    constexpr int kRuns = 3;
    Host::Instance().LoadAddOns({argv[1]});
    for (int n = 2; n < argc; ++n) MeasureCube(std::atoi(argv[n]), kRuns);
    MeasurePolygon(100000);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "bench_picks: %s\n", e.what());
    return 1;
  }
  return 0;
}
