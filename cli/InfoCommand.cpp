// marquell info: what data sets hold.
#include "DataSetFiles.h"
#include "Subcommand.h"
#include "Table.h"
#include "Terminal.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include <memory>
#include <string>
#include <vector>

namespace marquell::cli {

namespace {

using Json = nlohmann::ordered_json;

struct InfoOptions {
  std::vector<std::string> files;
  bool json = false;
};

struct ZoneTypeName {
  QelZoneType_e type;
  const char* name;
};

constexpr ZoneTypeName kZoneTypeNames[] = {
    {ZoneType_Ordered, "ordered"},       {ZoneType_FETriangle, "triangles"},
    {ZoneType_FEQuad, "quadrilaterals"}, {ZoneType_FETetra, "tetrahedra"},
    {ZoneType_FEBrick, "bricks"},        {ZoneType_FELineSeg, "line segments"},
    {ZoneType_FEPolygon, "polygons"},    {ZoneType_FEPolyhedron, "polyhedra"},
};

const char* NameOf(QelZoneType_e type) {
  for (const ZoneTypeName& entry : kZoneTypeNames) {
    if (entry.type == type) return entry.name;
  }
  return "unknown";
}

struct CarriedName {
  const char* key;
  const char* text;
  std::int64_t qelhost::CarriedCounts::*count;
};

constexpr CarriedName kCarriedNames[] = {
    {"lowerDimensionCells", "cells of lower dimension",
     &qelhost::CarriedCounts::lowerDimensionCells},
    {"vertices", "vertices", &qelhost::CarriedCounts::vertices},
    {"polylines", "polylines", &qelhost::CarriedCounts::polylines},
    {"strips", "triangle strips", &qelhost::CarriedCounts::strips},
    {"otherCells", "other cells", &qelhost::CarriedCounts::otherCells},
    {"ghostCells", "ghost cells", &qelhost::CarriedCounts::ghostCells},
    {"hiddenCells", "hidden cells", &qelhost::CarriedCounts::hiddenCells},
};

Json CarriedJson(const qelhost::CarriedCounts& carried) {
  Json json = Json::object();
  for (const CarriedName& entry : kCarriedNames) {
    if (carried.*entry.count > 0) json[entry.key] = carried.*entry.count;
  }
  return json;
}

Json ZoneJson(qelhost::Zone& zone, LgIndex_t zoneNum) {
  Json json = {{"zone", zoneNum},
               {"name", zone.name},
               {"type", NameOf(zone.Type())},
               {"nodes", zone.NodeCount()},
               {"cells", zone.CellCount()},
               {"strand", zone.strand},
               {"solutionTime", zone.solutionTime},
               {"carried", CarriedJson(zone.Carried())}};
  if (zone.IsOrdered()) json["size"] = zone.IJK();
  if (zone.ComputedCoordinatesKind() != nullptr) {
    json["computedCoordinates"] = zone.ComputedCoordinatesKind();
  }
  return json;
}

Json VariableJson(qelhost::DataSet& data, LgIndex_t varNum) {
  std::vector<LgIndex_t> passiveIn;
  std::vector<LgIndex_t> sharedIn;
  std::string location;
  for (LgIndex_t zone = 1; zone <= data.ZoneCount(); ++zone) {
    const qelhost::Field* field = data.FindField(zone, varNum);
    if (field == nullptr || field->IsPassive()) {
      passiveIn.push_back(zone);
      continue;
    }
    if (data.ShareCount(zone, varNum) > 1) sharedIn.push_back(zone);
    const char* here = field->location == ValueLocation_CellCentered ? "cells" : "nodes";
    if (location.empty()) {
      location = here;
    } else if (location != here) {
      location = "nodes or cells";
    }
  }
  const qelhost::Range range = data.VariableRange(varNum);
  Json json = {{"variable", varNum},
               {"name", data.FindVariable(varNum)->name},
               {"location", location},
               {"passiveInZones", passiveIn},
               {"sharedInZones", sharedIn}};
  json["min"] = range.hasValues ? Json(range.min) : Json();
  json["max"] = range.hasValues ? Json(range.max) : Json();
  return json;
}

Json FileJson(const std::string& path) {
  const qelhost::DataSetPtr data = qelhost::ReadDataSet(path);
  Json json = {{"file", path}, {"zones", Json::array()}, {"variables", Json::array()}};
  for (LgIndex_t zone = 1; zone <= data->ZoneCount(); ++zone) {
    json["zones"].push_back(ZoneJson(*data->FindZone(zone), zone));
  }
  for (LgIndex_t variable = 1; variable <= data->VariableCount(); ++variable) {
    json["variables"].push_back(VariableJson(*data, variable));
  }
  return json;
}

std::string ZoneSize(const Json& zone) {
  std::string text;
  if (zone.contains("size")) {
    text = fmt::format("{}, ", fmt::join(zone["size"].get<std::vector<LgIndex_t>>(), " x "));
  }
  return text + fmt::format("{} nodes, {} cells", zone["nodes"].get<LgIndex_t>(),
                            zone["cells"].get<LgIndex_t>());
}

/// What is worth a word beside the numbers.
std::string ZoneNotes(const Json& zone) {
  std::vector<std::string> notes;
  if (zone.contains("computedCoordinates")) {
    notes.push_back(
        fmt::format("coordinates computed ({})", zone["computedCoordinates"].get<std::string>()));
  }
  for (const CarriedName& entry : kCarriedNames) {
    if (!zone["carried"].contains(entry.key)) continue;
    notes.push_back(fmt::format("{} {} carried through",
                                zone["carried"][entry.key].get<std::int64_t>(), entry.text));
  }
  return fmt::format("{}", fmt::join(notes, "; "));
}

std::vector<std::string> ZoneRow(const Json& zone) {
  const bool isInTime = zone["strand"].get<LgIndex_t>() > 0;
  return {fmt::format("{}", zone["zone"].get<int>()),
          zone["name"].get<std::string>(),
          zone["type"].get<std::string>(),
          ZoneSize(zone),
          isInTime ? fmt::format("{}", zone["strand"].get<LgIndex_t>()) : "",
          isInTime ? Number(zone["solutionTime"].get<double>()) : "",
          ZoneNotes(zone)};
}

std::vector<std::string> VariableRow(const Json& variable) {
  const auto number = [&variable](const char* key) {
    return variable[key].is_null() ? "" : Number(variable[key].get<double>());
  };
  const auto zones = [&variable](const char* key) {
    return fmt::format("{}", fmt::join(variable[key].get<std::vector<LgIndex_t>>(), ", "));
  };
  return {fmt::format("{}", variable["variable"].get<int>()),
          variable["name"].get<std::string>(),
          variable["location"].get<std::string>(),
          number("min"),
          number("max"),
          zones("passiveInZones"),
          zones("sharedInZones")};
}

std::string Counted(std::size_t count, const char* what) {
  return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

std::string FileText(const Json& file) {
  std::vector<std::vector<std::string>> zones;
  for (const Json& zone : file["zones"]) zones.push_back(ZoneRow(zone));
  std::vector<std::vector<std::string>> variables;
  for (const Json& variable : file["variables"]) variables.push_back(VariableRow(variable));
  return fmt::format("{}: {}, {}\n\n", file["file"].get<std::string>(),
                     Counted(zones.size(), "zone"), Counted(variables.size(), "variable")) +
         TableText({{"zone", true},
                    {"name"},
                    {"type"},
                    {"size"},
                    {"strand", true},
                    {"time", true},
                    {"notes"}},
                   zones) +
         "\n" +
         TableText({{"variable", true},
                    {"name"},
                    {"at"},
                    {"min", true},
                    {"max", true},
                    {"passive in zones"},
                    {"shared by zones"}},
                   variables);
}

int Info(const InfoOptions& options) {
  Json all = Json::array();
  for (const std::string& file : options.files) {
    const Json json = FileJson(file);
    if (options.json) {
      all.push_back(json);
    } else {
      Print(FileText(json));
    }
  }
  if (options.json) Print(all.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
  return kDone;
}

}  // namespace

std::function<int()> DefineInfo(CLI::App& app) {
  auto options = std::make_shared<InfoOptions>();
  app.add_option("FILE", options->files, "Data sets to look at")->required();
  app.add_flag("--json", options->json, "Print JSON: a list with one entry a file");
  return [options] { return Info(*options); };
}

}  // namespace marquell::cli
