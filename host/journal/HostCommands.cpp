#include "HostCommands.h"

#include "GeometryCommands.h"
#include "HistoryActions.h"
#include "Host.h"
#include "PlotActions.h"

#include "FileError.h"

#include "qelvane/Keywords.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace qelhost {

namespace {

void Demand(bool isDone, const std::string& reason) {
  if (!isDone) throw CommandError(reason);
}

CommandAction ParsePlotType(const std::string& rest) {
  static const std::map<std::string, QelPlotType_e> types = {{"CARTESIAN3D", PlotType_Cartesian3D},
                                                             {"CARTESIAN2D", PlotType_Cartesian2D},
                                                             {"LINE", PlotType_Line},
                                                             {"POLAR", PlotType_Polar},
                                                             {"SKETCH", PlotType_Sketch}};
  const CommandText text = ParseCommandText(rest);
  text.Allow(1, {});
  const auto type = types.find(text.Word(0, "the plot type"));
  if (type == types.end()) throw CommandError("there is no plot type " + text.words[0]);
  return
      [type = type->second](Host& host) { Demand(SetPlotType(host, type), "there is no frame"); };
}

CommandAction ParseView(const std::string& rest) {
  const CommandText text = ParseCommandText(rest);
  if (!text.words.empty()) {
    text.Allow(1, {});
    if (text.words[0] != "FIT" && text.words[0] != "FITSURFACES") {
      throw CommandError("\"" + text.words[0] + "\" is not understood");
    }
    return [](Host& host) { Demand(FitView(host), "there is no frame"); };
  }
  text.Allow(0, {"PSI", "ALPHA", "THETA", "ORIGINX", "ORIGINY", "ORIGINZ"});
  if (text.values.empty()) throw CommandError("FIT, FITSURFACES or angles are missing");
  std::map<std::string, double> numbers;
  for (const auto& [name, value] : text.values) numbers[name] = NumberOf(value, name);
  return [numbers](Host& host) {
    Demand(host.frames.Active() != nullptr, "there is no frame");
    View view = host.frames.Active()->view;
    const auto take = [&numbers](const char* name, double& target) {
      const auto number = numbers.find(name);
      if (number != numbers.end()) target = number->second;
    };
    take("PSI", view.psiDeg);
    take("ALPHA", view.alphaDeg);
    take("THETA", view.thetaDeg);
    take("ORIGINX", view.origin[0]);
    take("ORIGINY", view.origin[1]);
    take("ORIGINZ", view.origin[2]);
    SetView(host, view);
  };
}

/// The settings of "VALUE{...}", which addons record without its closing brace.
struct BlankingSetting {
  StyleAddress address;
  double value = 0.0;
};

bool IsBlankingSetting(const std::string& name, bool ofConstraint) {
  static const std::set<std::string> general = {SV_INCLUDE, SV_BLANKENTIRECELL,
                                                SV_VALUEBLANKCELLMODE};
  static const std::set<std::string> constraint = {
      SV_INCLUDE, SV_VARA, SV_VARB, SV_RELOP, SV_CONSTRAINTOP2MODE, SV_VALUECUTOFF};
  return (ofConstraint ? constraint : general).count(name) > 0;
}

double BlankingValue(const CommandText& text, const std::string& name) {
  if (name == SV_INCLUDE || name == SV_BLANKENTIRECELL) return text.Flag(name) ? 1.0 : 0.0;
  const double number = text.Number(name);
  if (name != SV_VALUECUTOFF && number != std::trunc(number)) {
    throw CommandError(name + " is not a whole number: \"" + text.values.at(name) + "\"");
  }
  return number;
}

std::vector<BlankingSetting> BlankingSettings(const CommandText& text) {
  std::vector<std::string> path = {SV_BLANKING, SV_VALUE};
  LgIndex_t constraint = 0;
  if (text.words.size() > 1) {
    if (text.words[1] != SV_CONSTRAINT) {
      throw CommandError("\"" + text.words[1] + "\" is not understood");
    }
    constraint = text.Count(2, "the constraint's number");
    if (constraint < 1 || constraint > static_cast<LgIndex_t>(ValueBlanking::kConstraintCount)) {
      throw CommandError("there is no constraint " + std::to_string(constraint));
    }
    path.emplace_back(SV_CONSTRAINT);
    if (text.words.size() > 3) throw CommandError("\"" + text.words[3] + "\" is not understood");
  }
  std::vector<BlankingSetting> settings;
  for (const auto& [name, value] : text.values) {
    if (!IsBlankingSetting(name, constraint > 0)) {
      throw CommandError("there is no blanking setting " + name);
    }
    BlankingSetting setting{{path, constraint, {}}, BlankingValue(text, name)};
    setting.address.path.push_back(name);
    settings.push_back(setting);
  }
  return settings;
}

CommandAction ParseBlanking(const std::string& rest) {
  std::string plain = rest;
  std::replace_if(
      plain.begin(), plain.end(), [](char c) { return c == '{' || c == '}'; }, ' ');
  const CommandText text = ParseCommandText(plain);
  if (text.Word(0, "VALUE") != SV_VALUE) {
    throw CommandError("\"" + text.words[0] + "\" is not understood");
  }
  const std::vector<BlankingSetting> settings = BlankingSettings(text);
  if (settings.empty()) throw CommandError("a setting is missing");
  return [settings](Host& host) {
    Demand(host.frames.Active() != nullptr, "there is no frame");
    for (const BlankingSetting& setting : settings) {
      const QelSetValueResult_e result =
          ApplyStyle(host, setting.address, IntegerOf(setting.value), setting.value);
      Demand(result == SetValueResult_Ok || result == SetValueResult_Duplicate,
             setting.address.path.back() + " cannot be set to this value");
    }
  };
}

CommandAction ParseZone(const std::string& rest) {
  const CommandText text = ParseCommandText(rest);
  text.Allow(1, {"ACTIVE"});
  const LgIndex_t zone = text.Count(0, "the zone's number");
  const bool isActive = text.Flag("ACTIVE");
  return [zone, isActive](Host& host) {
    Demand(SetZonesActive(host, {zone}, isActive ? AssignOp_PlusEquals : AssignOp_MinusEquals),
           "there is no zone " + std::to_string(zone));
  };
}

CommandAction ParseTime(const std::string& rest) {
  const CommandText text = ParseCommandText(rest);
  text.Allow(1, {});
  const double time = NumberOf(text.Word(0, "the time"), "the time");
  return [time](Host& host) { Demand(SetSolutionTime(host, time), "there is no frame"); };
}

CommandAction ParseFrame(const std::string& rest) {
  const CommandText text = ParseCommandText(rest);
  text.Allow(1, {});
  const LgIndex_t n = text.Count(0, "the frame's number");
  return [n](Host& host) {
    const Frame* const frame = host.frames.At(n);
    Demand(frame != nullptr, "there is no frame " + std::to_string(n));
    ActivateFrame(host, frame->Id());
  };
}

CommandAction ParseLayer(const std::string& rest) {
  const CommandText text = ParseCommandText(rest);
  if (!text.words.empty() || text.values.empty()) {
    throw CommandError("a layer and YES or NO are missing, as in SHOWMESH=YES");
  }
  std::vector<std::pair<Layer, bool>> layers;
  for (const auto& [name, value] : text.values) {
    Layer layer{};
    if (!LayerOfKeyword(name, layer)) throw CommandError("there is no layer " + name);
    layers.emplace_back(layer, text.Flag(name));
  }
  return [layers](Host& host) {
    for (const auto& [layer, isActive] : layers) {
      Demand(SetLayerActive(host, layer, isActive), "there is no frame");
    }
  };
}

CommandAction ParseOpen(const std::string& rest) {
  const std::size_t first = rest.find_first_not_of(" \t");
  if (first == std::string::npos) throw CommandError("the file is missing");
  std::string file = rest.substr(first, rest.find_last_not_of(" \t") - first + 1);
  if (file.size() > 1 && file.front() == '"' && file.back() == '"') {
    file = file.substr(1, file.size() - 2);
  }
  return [file](Host& host) {
    try {
      host.OpenFile(file);
    } catch (const FileError& e) {
      throw CommandError(e.what());
    }
  };
}

void DemandStep(Host& host, bool isDone, const char* reason) {
  if (isDone) return;
  Demand(host.history.isKept, "no history is kept");
  Demand(!host.history.IsAltering(), "values are being altered");
  throw CommandError(reason);
}

CommandAction ParseUndo(const std::string& rest) {
  ParseCommandText(rest).Allow(0, {});
  return [](Host& host) { DemandStep(host, UndoValues(host), "there is nothing to undo"); };
}

CommandAction ParseRedo(const std::string& rest) {
  ParseCommandText(rest).Allow(0, {});
  return [](Host& host) { DemandStep(host, RedoValues(host), "there is nothing to redo"); };
}

struct HostCommand {
  const char* name;
  const char* usage;
  CommandAction (*parse)(const std::string& rest);
};

constexpr HostCommand kCommands[] = {
    {"PLOTTYPE", "CARTESIAN2D|CARTESIAN3D|LINE|POLAR|SKETCH", ParsePlotType},
    {"VIEW", "FIT|FITSURFACES|PSI=deg ALPHA=deg THETA=deg ORIGINX=x ORIGINY=y ORIGINZ=z",
     ParseView},
    {"BLANKING", "VALUE{setting = value ...}|VALUE{CONSTRAINT n {setting = value ...}}",
     ParseBlanking},
    {"GEOMETRY",
     "RECTANGLE|SQUARE|CIRCLE|ELLIPSE|POLYLINE X=x Y=y ...|SELECT n|MOVE n X=x Y=y|DELETE n",
     ParseGeometry},
    {"ZONE", "n ACTIVE=YES|NO", ParseZone},
    {"TIME", "t", ParseTime},
    {"FRAME", "n", ParseFrame},
    {"LAYER", "SHOWEDGE|SHOWMESH|SHOWSHADE|SHOWCONTOUR|SHOWSCATTER|SHOWVECTOR=YES|NO", ParseLayer},
    {"OPEN", "\"file\"", ParseOpen},
    {"UNDO", "", ParseUndo},
    {"REDO", "", ParseRedo},
};

constexpr char kPrefix[] = "$!";

}  // namespace

bool IsHostCommand(const std::string& line) { return line.rfind(kPrefix, 0) == 0; }

bool IsBlankingCommand(const std::string& line) { return line.rfind("$!BLANKING", 0) == 0; }

bool NeedsHistory(const std::string& line) {
  if (!IsHostCommand(line)) return false;
  const std::string text = line.substr(0, line.find_first_of("\r\n \t"));
  const std::string name = UpperCase(text.substr(sizeof kPrefix - 1));
  return name == "UNDO" || name == "REDO";
}

CommandAction ParseHostCommand(const std::string& line) {
  const std::string text = line.substr(0, line.find_first_of("\r\n"));
  if (!IsHostCommand(text)) throw CommandError("a host command begins with $!");
  const std::size_t first = sizeof kPrefix - 1;
  const std::size_t end = std::min(text.find_first_of(" \t", first), text.size());
  const std::string name = UpperCase(text.substr(first, end - first));
  for (const HostCommand& command : kCommands) {
    if (name != command.name) continue;
    try {
      return command.parse(text.substr(end));
    } catch (const CommandError& e) {
      throw CommandError(kPrefix + name + ": " + e.what());
    }
  }
  throw CommandError("there is no host command " + text.substr(0, end));
}

void RunHostCommand(Host& host, const std::string& line) {
  const CommandAction action = ParseHostCommand(line);
  const HostAction lock(host.lock);
  action(host);
}

std::vector<HostCommandHelp> KnownHostCommands() {
  std::vector<HostCommandHelp> commands;
  for (const HostCommand& command : kCommands) {
    commands.push_back({std::string(kPrefix) + command.name, command.usage});
  }
  return commands;
}

}  // namespace qelhost
