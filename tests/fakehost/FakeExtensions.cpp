// Which services the host offers, and what it hears of progress.
#include "FakeExtensions.h"

#include "FakeCall.h"

#include "qelvane/Extensions.h"

#include <cstdlib>
#include <map>
#include <sstream>
#include <stdexcept>

namespace fakehost {

namespace {

struct ServiceRow {
  const char* name;
  Service service;
  const char* id;
  const void* (*members)();
};

constexpr ServiceRow kServices[] = {
    {"bulk", Service::Bulk, QEL_EXTENSION_BULK_ACCESS, BulkService},
    {"parallel", Service::Parallel, QEL_EXTENSION_PARALLEL, ParallelService},
    {"progress", Service::Progress, QEL_EXTENSION_PROGRESS, ProgressService},
    {"query", Service::PickQuery, QEL_EXTENSION_PICK_QUERY, PickQueryService},
    {"handles", Service::ShapeHandles, QEL_EXTENSION_SHAPE_HANDLES, ShapeHandlesService},
    {"history", Service::History, QEL_EXTENSION_HISTORY, HistoryService}};

const ServiceRow& RowNamed(const std::string& name) {
  for (const ServiceRow& row : kServices) {
    if (name == row.name) return row;
  }
  throw std::invalid_argument("no service of a host is called \"" + name + "\"");
}

void Choose(const std::string& word, SpanVariant& variant) {
  static const std::map<std::string, bool SpanVariant::*> kWords = {
      {"interleaved", &SpanVariant::isInterleaved}, {"points", &SpanVariant::hasPoints},
      {"partial", &SpanVariant::isPartial},         {"wide", &SpanVariant::isWide},
      {"zero", &SpanVariant::startsAtZero},         {"bent", &SpanVariant::isBent}};
  const auto known = kWords.find(word);
  if (known == kWords.end()) {
    throw std::invalid_argument("no variant of spans is called \"" + word + "\"");
  }
  variant.*known->second = true;
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

void Report(double fraction) {
  Note("report", fraction);
  if (!(fraction >= 0.0 && fraction <= 1.0)) Host().Report("a progress lies outside of 0 to 1");
  Host().progress.push_back({fraction, 0, 0, 0});
}

void Changed(LgIndex_t zone, LgIndex_t var, std::int64_t count) {
  Note("changed", zone, var, count);
  const Values* const values = Host().ValuesAt(zone, var);
  if (values == nullptr || values->storage == nullptr || count < 0 ||
      count > values->storage->count) {
    Host().Report("values were told of that there are not");
  }
  Host().progress.push_back({-1.0, zone, var, count});
}

const QelProgress_s kProgress = {Report, Changed};

}  // namespace

std::pair<std::vector<Service>, SpanVariant> ServicesNamed(const std::string& text) {
  std::pair<std::vector<Service>, SpanVariant> chosen;
  for (const std::string& part : Split(text, ',')) {
    const std::size_t colon = part.find(':');
    const ServiceRow& row = RowNamed(part.substr(0, colon));
    chosen.first.push_back(row.service);
    if (colon == std::string::npos) continue;
    if (row.service != Service::Bulk) throw std::invalid_argument("only bulk access has variants");
    for (const std::string& word : Split(part.substr(colon + 1), '+')) Choose(word, chosen.second);
  }
  return chosen;
}

const void* ProgressService() { return &kProgress; }

void FakeHost::OfferExtensions(const std::vector<Service>& services, const SpanVariant& variant) {
  for (const ServiceRow& row : kServices) extensions.erase(row.id);
  spans = variant;
  for (const ServiceRow& row : kServices) {
    for (const Service service : services) {
      if (service == row.service) extensions[row.id] = row.members();
    }
  }
}

void FakeHost::OfferAlso(Service service) {
  for (const ServiceRow& row : kServices) {
    if (service == row.service) extensions[row.id] = row.members();
  }
}

void FakeHost::Withhold(Service service) {
  for (const ServiceRow& row : kServices) {
    if (service == row.service) extensions.erase(row.id);
  }
}

void FakeHost::OfferWhatTheEnvironmentSays() {
  const char* const text = std::getenv("MARQUELL_FAKE_EXTENSIONS");
  if (text == nullptr) return;
  const auto [services, variant] = ServicesNamed(text);
  OfferExtensions(services, variant);
}

}  // namespace fakehost
