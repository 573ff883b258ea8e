// Runs one piece of the add-on's work on a small fixed input, in the host in memory, for a tool
// that counts instructions: see scripts/instructions.sh. Only what MeasuredWork calls is to be
// counted.
//
// usage: bench_instructions       prints the names
//        bench_instructions NAME  does that piece of work
#include "MeasuredWork.h"

#include "FakeHost.h"

#include "CMacroEngine.h"
#include "CornerRule.h"
#include "InsideSet.h"
#include "OrderedCells.h"

#include <cstdint>
#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

/// The add-on's one exported function.
extern "C" void InitQelAddOn113();

namespace {

namespace add_on = qelvane::qelutiltools;
using fakehost::Host;
using fakehost::MakeLattice;
using fakehost::Service;
using fakehost::StoredType;

using marquell::bench::Work;

/// Carries out a line; one that fails would cost next to nothing, so that is the end.
void Play(const std::string& line) {
  const fakehost::PlayResult result = Host().Play(line);
  if (!result.isDone) throw std::runtime_error(line + ": " + result.error);
}

constexpr LgIndex_t kEdge = 24;

/// A lattice of cells with floats "n" at nodes and "c" at cells, seen from above; the host has one
/// thread.
void Load(QelZoneType_e type, const std::vector<Service>& services) {
  fakehost::FakeHost& host = Host();
  host.Reset();
  host.OfferExtensions(services);
  host.AddFrame(PlotType_Cartesian3D);
  host.AddZone(MakeLattice(type, kEdge, kEdge, kEdge), StoredType::Float);
  for (const auto& [name, location] :
       {std::pair{"n", ValueLocation_Nodal}, std::pair{"c", ValueLocation_CellCentered}}) {
    host.AddVariable(name, location, StoredType::Float,
                     [](LgIndex_t, LgIndex_t item) { return 1.0 + item; });
  }
  host.keepsCalls = false;
  host.ZoneAt(1)->mesh.Derived();  // the host's own
  InitQelAddOn113();
}

constexpr const char* kBox =
    "PICKCUBE ANCHORX=4.5 ANCHORY=4.5 ANCHORZ=4.5 SIZEX=15 SIZEY=15 SIZEZ=15";
constexpr const char* kAlterCells = "ALTERAREA VARIABLE=\"c\" MODIFIER=\"*1.4\" RULE=";

/// A pick by a shape and a rule: the shape is placed before, the alteration counts.
Work Pick(QelZoneType_e type, const std::vector<Service>& services, const std::string& shape,
          const std::string& alter) {
  Load(type, services);
  Play(shape);
  Play(alter);  // what is made once and kept is there from now on
  return [alter] { Play(alter); };
}

const std::vector<Service> kBulk = {Service::Bulk};

Work PickBricks(const std::string& shape, const std::string& rule) {
  return Pick(ZoneType_FEBrick, kBulk, shape, kAlterCells + rule);
}

std::string ManyCorners() {
  std::string corners;
  for (int n = 0; n < 32; ++n) {
    // Around a square, every other corner pushed in.
    const int side = n / 8;
    const double along = 2.5 * (n % 8);
    const double depth = n % 2 == 1 ? 1.0 : 0.0;
    const double places[4][2] = {{-10 + along, -10 + depth},
                                 {10 - depth, -10 + along},
                                 {10 - along, 10 - depth},
                                 {-10 + depth, 10 - along}};
    corners += (n == 0 ? "" : ",") + std::to_string(places[side][0]) + "," +
               std::to_string(places[side][1]);
  }
  return "PICKPOLYGON CORNERS=\"" + corners + "\"";
}

Work ParseLines() {
  const std::vector<std::string> lines = {kBox, std::string(kAlterCells) + "ALLINSIDE",
                                          ManyCorners(),
                                          "BLANKSURFACE ZONE=1 SEEDPOINT=17 RULE=ANYINSIDE"};
  auto engine = std::make_shared<add_on::CMacroEngine>();
  return [=] {
    for (int run = 0; run < 20; ++run) {
      for (const std::string& line : lines) {
        add_on::MacroCommand command;
        if (!engine->ParseCommand(line, command)) throw std::runtime_error(engine->GlobalError());
      }
    }
  };
}

Work DecideOrderedCells() {
  constexpr std::int64_t kNodes = 97;
  auto inside = std::make_shared<add_on::InsideSet>(kNodes * kNodes * kNodes);
  for (std::int64_t node = 0; node < inside->NodeCount(); node += 7) inside->Insert(node);
  return [inside] {
    const add_on::OrderedCells cells({kNodes, kNodes, kNodes},
                                     add_on::CornerRule(add_on::PickRule::AnyInside), *inside);
    const add_on::OrderedGrid grid{kNodes, kNodes, kNodes};
    std::vector<std::uint64_t> words(static_cast<std::size_t>(add_on::WordsFor(grid.CellCount())));
    cells.Words(0, static_cast<std::int64_t>(words.size()), words.data());
    if (words[0] == 0) throw std::runtime_error("no cell was taken");
  };
}

struct Piece {
  const char* name;
  std::function<Work()> prepare;
};

const std::vector<Piece>& Pieces() {
  static const std::vector<Piece> pieces = {
      {"box", [] { return PickBricks(kBox, "ALLINSIDE"); }},
      {"box-turned", [] { return PickBricks(std::string(kBox) + " ROTATEZ=30", "ALLINSIDE"); }},
      {"sphere",
       [] {
         return PickBricks("PICKSPHERE ANCHORX=12 ANCHORY=12 ANCHORZ=12 RADIUS=9", "ALLINSIDE");
       }},
      {"polygon", [] { return PickBricks(ManyCorners(), "ALLINSIDE"); }},
      {"any-corner", [] { return PickBricks(kBox, "ANYINSIDE"); }},
      {"ordered-cells", DecideOrderedCells},
      {"write-nodes",
       [] {
         return Pick(ZoneType_FEBrick, kBulk,
                     "PICKCUBE ANCHORX=-1 ANCHORY=-1 ANCHORZ=-1 SIZEX=90 SIZEY=90 SIZEZ=90",
                     "ALTERAREA VARIABLE=\"n\" MODIFIER=\"*1.4\" RULE=ALLINSIDE");
       }},
      {"box-by-functions",
       [] { return Pick(ZoneType_FEBrick, {}, kBox, std::string(kAlterCells) + "ALLINSIDE"); }},
      {"surface",
       [] {
         return Pick(ZoneType_FEBrick, kBulk,
                     "PICKRECTANGLE ANCHORX=-8 ANCHORY=-8 SIZEX=16 SIZEY=16",
                     "ALTERSURFACE ZONE=1 SEEDPOINT=300 VARIABLE=\"n\" MODIFIER=\"*1.4\" "
                     "RULE=ANYINSIDE");
       }},
      {"hide", [] { return Pick(ZoneType_FEBrick, kBulk, kBox, "BLANKAREA RULE=ANYINSIDE"); }},
      {"parse", ParseLines},
  };
  return pieces;
}

}  // namespace

int main(int argc, char* argv[]) {
  try {
    for (const Piece& piece : Pieces()) {
      if (argc < 2) {
        std::puts(piece.name);
      } else if (piece.name == std::string(argv[1])) {
        MeasuredWork(piece.prepare());
        return 0;
      }
    }
    if (argc < 2) return 0;
    std::fprintf(stderr, "bench_instructions: no piece of work is called %s\n", argv[1]);
    return 2;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "bench_instructions: %s\n", e.what());
    return 1;
  }
}
