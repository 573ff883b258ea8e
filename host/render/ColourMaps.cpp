#include "ColourMaps.h"

#include <algorithm>
#include <vector>

#include "PlotScene.h"

namespace qelhost {
namespace {

/// Colours at even distances, from low to high.
struct ColourMap {
  const char* name;
  std::vector<Colour> anchors;
};

Colour FromHex(unsigned hex) {
  return {(hex >> 16) / 255.0, ((hex >> 8) & 0xff) / 255.0, (hex & 0xff) / 255.0};
}

std::vector<Colour> FromHexes(const std::vector<unsigned>& hexes) {
  std::vector<Colour> colours;
  std::transform(hexes.begin(), hexes.end(), std::back_inserter(colours), FromHex);
  return colours;
}

/// The first three grow evenly lighter from low to high, also for eyes that see fewer colours:
/// "viridis" and "inferno" by S. van der Walt and N. Smith, 2015; "cividis" by J. Nunez,
/// C. Anderton and R. Renslow, 2018. "cool-warm" by K. Moreland, 2009, has its middle stand out.
const std::vector<ColourMap>& ColourMaps() {
  static const std::vector<ColourMap> maps = {
      {"viridis",
       {{0.267, 0.005, 0.329},
        {0.279, 0.175, 0.483},
        {0.230, 0.322, 0.546},
        {0.173, 0.449, 0.558},
        {0.128, 0.567, 0.551},
        {0.158, 0.684, 0.502},
        {0.369, 0.789, 0.383},
        {0.678, 0.864, 0.190},
        {0.993, 0.906, 0.144}}},
      {"cividis", FromHexes({0x00204d, 0x00336f, 0x39486b, 0x575c6d, 0x707173, 0x8a8779, 0xa69d75,
                             0xc4b56c, 0xe4cf5b, 0xffea46})},
      {"inferno", FromHexes({0x000004, 0x1b0c42, 0x4b0c6b, 0x781c6d, 0xa52c60, 0xcf4446, 0xed6925,
                             0xfb9a06, 0xf7d13d, 0xfcffa4})},
      {"cool-warm",
       {{0.2298, 0.2987, 0.7537},
        {0.3830, 0.5094, 0.9174},
        {0.5530, 0.6889, 0.9954},
        {0.7222, 0.8140, 0.9766},
        {0.8654, 0.8654, 0.8654},
        {0.9589, 0.7698, 0.6780},
        {0.9580, 0.6028, 0.4818},
        {0.8692, 0.3783, 0.3003},
        {0.7057, 0.0156, 0.1502}}},
      {"grey", {{0.1, 0.1, 0.1}, {0.95, 0.95, 0.95}}}};
  return maps;
}

}  // namespace

std::vector<std::string> ColourMapNames() {
  std::vector<std::string> names;
  for (const ColourMap& map : ColourMaps()) names.emplace_back(map.name);
  return names;
}

Colour ColourAt(const std::string& colourMap, double place) {
  const std::vector<ColourMap>& maps = ColourMaps();
  const auto found = std::find_if(maps.begin(), maps.end(),
                                  [&](const ColourMap& map) { return map.name == colourMap; });
  const std::vector<Colour>& anchors = (found == maps.end() ? maps.front() : *found).anchors;
  const std::size_t steps = anchors.size() - 1;
  const double at = std::clamp(place, 0.0, 1.0) * static_cast<double>(steps);
  const std::size_t step = std::min(static_cast<std::size_t>(at), steps - 1);
  const double part = at - static_cast<double>(step);
  Colour mixed;
  for (std::size_t c = 0; c < mixed.size(); ++c) {
    mixed[c] = (1.0 - part) * anchors[step][c] + part * anchors[step + 1][c];
  }
  return mixed;
}

}  // namespace qelhost
