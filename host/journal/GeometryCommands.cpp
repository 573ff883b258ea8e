#include "GeometryCommands.h"

#include "Geometry.h"
#include "Host.h"
#include "PlotActions.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <sstream>
#include <utility>

namespace qelhost {

namespace {

/// "x,y x,y ...".
std::vector<std::array<double, 2>> PointsOf(const std::string& text) {
  std::vector<std::array<double, 2>> points;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const std::size_t comma = word.find(',');
    if (comma == std::string::npos) throw CommandError("a point is not x,y: \"" + word + "\"");
    points.push_back(
        {NumberOf(word.substr(0, comma), "a point"), NumberOf(word.substr(comma + 1), "a point")});
  }
  return points;
}

struct ShapeRow {
  const char* name;
  QelGeomType_e type;
  std::vector<std::string> sizes;  ///< names of the numbers that go into the geometry's size
};

const std::vector<ShapeRow>& ShapeTable() {
  static const std::vector<ShapeRow> shapes = {
      {"RECTANGLE", GeomType_Rectangle, {"WIDTH", "HEIGHT"}},
      {"SQUARE", GeomType_Square, {"SIZE"}},
      {"CIRCLE", GeomType_Circle, {"RADIUS"}},
      {"ELLIPSE", GeomType_Ellipse, {"WIDTH", "HEIGHT"}},
      {"POLYLINE", GeomType_LineSegs, {}},
  };
  return shapes;
}

CommandAction ParseShape(const ShapeRow& shape, const CommandText& text) {
  std::vector<std::string> names = {"X", "Y"};
  names.insert(names.end(), shape.sizes.begin(), shape.sizes.end());
  if (shape.type == GeomType_LineSegs) names.emplace_back("POINTS");
  text.Allow(1, names);

  Geometry geometry;
  geometry.type = shape.type;
  const bool isPolyline = shape.type == GeomType_LineSegs;
  // A polyline may give absolute points and no anchor.
  if (!isPolyline || text.Has("X")) geometry.anchor[0] = text.Number("X");
  if (!isPolyline || text.Has("Y")) geometry.anchor[1] = text.Number("Y");
  for (std::size_t i = 0; i < shape.sizes.size(); ++i) {
    geometry.size[i] = text.Number(shape.sizes[i]);
  }
  if (isPolyline) {
    if (!text.Has("POINTS")) throw CommandError("POINTS is missing");
    geometry.points = PointsOf(text.values.at("POINTS"));
    if (geometry.points.empty()) throw CommandError("a polyline needs points");
  }
  return [geometry](Host& host) {
    if (AddGeometry(host, geometry) == 0) throw CommandError("there is no frame");
  };
}

CommandAction OnGeometry(LgIndex_t n, std::function<bool(Host&)> change) {
  return [n, change = std::move(change)](Host& host) {
    if (!change(host)) throw CommandError("there is no geometry " + std::to_string(n));
  };
}

}  // namespace

CommandAction ParseGeometry(const std::string& rest) {
  const CommandText text = ParseCommandText(rest);
  const std::string& word = text.Word(0, "the kind of geometry");
  for (const ShapeRow& shape : ShapeTable()) {
    if (word == shape.name) return ParseShape(shape, text);
  }
  if (word != "SELECT" && word != "MOVE" && word != "DELETE") {
    throw CommandError("\"" + word + "\" is not understood");
  }
  const LgIndex_t n = text.Count(1, "the geometry's number");
  if (word == "MOVE") {
    text.Allow(2, {"X", "Y"});
    const double x = text.Number("X");
    const double y = text.Number("Y");
    return OnGeometry(n, [n, x, y](Host& host) { return MoveGeometry(host, n, x, y); });
  }
  text.Allow(2, {});
  if (word == "SELECT") return OnGeometry(n, [n](Host& host) { return SelectGeometry(host, n); });
  return OnGeometry(n, [n](Host& host) { return DeleteGeometry(host, n); });
}

std::string TextOf(const Geometry& geometry) {
  const std::vector<ShapeRow>& shapes = ShapeTable();
  const auto shape = std::find_if(shapes.begin(), shapes.end(),
                                  [&](const ShapeRow& row) { return row.type == geometry.type; });
  std::string text =
      fmt::format("{} X={:g} Y={:g}", shape->name, geometry.anchor[0], geometry.anchor[1]);
  for (std::size_t i = 0; i < shape->sizes.size(); ++i) {
    text += fmt::format(" {}={:g}", shape->sizes[i], geometry.size[i]);
  }
  if (geometry.type != GeomType_LineSegs) return text;
  std::vector<std::string> points;
  for (const auto& [x, y] : geometry.points) points.push_back(fmt::format("{:g},{:g}", x, y));
  return text + fmt::format(" POINTS=\"{}\"", fmt::join(points, " "));
}

}  // namespace qelhost
