#include "RunReport.h"

#include "ByProducts.h"
#include "Terminal.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

namespace marquell::cli {

namespace {

using Json = nlohmann::ordered_json;

const char* LocationName(QelValueLocation_e location) {
  return location == ValueLocation_CellCentered ? "cells" : "nodes";
}

std::string RangeText(const qelhost::Range& range) {
  if (!range.hasValues) return "no values";
  return fmt::format("{} to {}", Number(range.min), Number(range.max));
}

std::string PickedText(const qelhost::Alteration& alteration) {
  const bool isOne = alteration.pickedCount == 1;
  const bool isCell = alteration.location == ValueLocation_CellCentered;
  return fmt::format("{} {}{}", alteration.pickedCount, isCell ? "cell" : "node", isOne ? "" : "s");
}

std::string AlterationText(const qelhost::Alteration& alteration) {
  return fmt::format("      {} in zone{} {}: {} picked, {} changed; was {}, is {}\n",
                     alteration.variableName, alteration.zones.size() == 1 ? "" : "s",
                     fmt::join(alteration.zones, ", "), PickedText(alteration),
                     alteration.changedCount, RangeText(alteration.before),
                     RangeText(alteration.after));
}

Json RangeJson(const qelhost::Range& range) {
  if (!range.hasValues) return nullptr;
  return {{"min", range.min}, {"max", range.max}};
}

Json AlterationJson(const qelhost::Alteration& alteration) {
  return {{"variable", alteration.variableName}, {"location", LocationName(alteration.location)},
          {"zones", alteration.zones},           {"picked", alteration.pickedCount},
          {"changed", alteration.changedCount},  {"before", RangeJson(alteration.before)},
          {"after", RangeJson(alteration.after)}};
}

Json LineJson(const PlayedLine& played) {
  Json json = {{"line", played.line.number},
               {"command", played.line.text},
               {"done", played.failure.empty()},
               {"seconds", played.seconds}};
  if (!played.failure.empty()) json["failure"] = played.failure;
  if (!played.messages.empty()) json["messages"] = played.messages;
  json["changes"] = Json::array();
  for (const qelhost::Alteration& alteration : played.alterations) {
    json["changes"].push_back(AlterationJson(alteration));
  }
  return json;
}

}  // namespace

std::string SummaryText(const RunRecord& record) {
  std::string text;
  for (const PlayedLine& played : record.lines) {
    text += fmt::format("{:>4}  {}\n", played.line.number, played.line.text);
    if (!played.failure.empty()) text += fmt::format("      failed: {}\n", played.failure);
    for (const qelhost::Alteration& alteration : played.alterations) {
      text += AlterationText(alteration);
    }
  }
  return text;
}

void WriteReport(const RunOptions& options, const RunRecord& record) {
  Json json = {{"journal", options.journal},          {"inputs", options.inputs},
               {"written", record.written},           {"readSeconds", record.readSeconds},
               {"writeSeconds", record.writeSeconds}, {"lines", Json::array()}};
  for (const PlayedLine& played : record.lines) json["lines"].push_back(LineJson(played));

  ByProducts files;
  // File names need not be UTF-8, JSON must be.
  files.Add(options.report, json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n');
  files.Commit();
}

}  // namespace marquell::cli
