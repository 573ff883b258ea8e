#include "Host.h"

#include "DataSetFiles.h"
#include "PlotActions.h"

#include "qelvane/Keywords.h"

#include <algorithm>
#include <utility>

namespace qelhost {

Host& Host::Instance() {
  static Host host;
  return host;
}

Frame& Host::OpenFile(const std::string& path) {
  // Read first: a file that cannot be read leaves the frames as they are.
  return ShowFile(ReadDataSet(path), path);
}

Frame& Host::ShowFile(DataSetPtr data, const std::string& path) {
  Frame& frame = ShowDataSet(std::move(data));
  frame.fileName = path;
  return frame;
}

Frame& Host::ShowDataSet(DataSetPtr data) {
  const HostAction action(lock);
  const Frame* const before = frames.Active();
  const bool hadPlot =
      before != nullptr && (before->plotType != PlotType_None || before->Data() != nullptr);
  Frame& frame = frames.Add();
  notices.Send(StateChange_NewActiveFrame);
  // The new frame is empty as yet, so both steps may change what an add-on takes for granted.
  if (hadPlot) notices.SendStyle({SV_PLOTTYPE});
  frame.Show(std::move(data));
  notices.Send(StateChange_DataSetReset);
  notices.SendStyle({SV_PLOTTYPE});
  return frame;
}

void Host::CloseAll() {
  const HostAction action(lock);
  for (LgIndex_t n = 1; n <= frames.Count(); ++n) {
    if (frames.At(n)->Data() != nullptr) history.Forget(frames.At(n)->Data()->Id());
  }
  frames.Clear();
  notices.Send(StateChange_NewLayout);
  notices.Send(StateChange_FrameDeleted);
}

void Host::LoadAddOns(const std::vector<std::string>& files) {
  for (const std::string& file : files.empty() ? AddOnFilesToLoad() : files) {
    LoadAddOnLibrary(file);
  }
}

void Host::Quit() {
  const HostAction action(lock);
  notices.Send(StateChange_QuitHost);
}

void AlterationWatch::Start() {
  m_isOn = true;
  m_watched.clear();
}

void AlterationWatch::BeforeWriting(const DataSetPtr& data, LgIndex_t zone, LgIndex_t variable) {
  if (!m_isOn || data == nullptr) return;
  // Zones that add-ons draw with are no data of the user's.
  const Zone* const written = data->FindZone(zone);
  if (written == nullptr || !written->IsFromFile()) return;
  if (Find(data, zone, variable) != nullptr) return;
  m_watched.push_back(
      {data, zone, variable, data->ZoneRange(zone, variable), data->ZoneWrites(zone, variable)});
}

void AlterationWatch::Altered(const DataSetPtr& data, LgIndex_t zone, LgIndex_t variable,
                              std::int64_t count) {
  Watched* const watched = Find(data, zone, variable);
  if (!m_isOn || watched == nullptr || count < 0) return;
  watched->reportedCount = watched->reportedCount.value_or(0) + count;
}

AlterationWatch::Watched* AlterationWatch::Find(const DataSetPtr& data, LgIndex_t zone,
                                                LgIndex_t variable) {
  for (Watched& watched : m_watched) {
    if (watched.data == data && watched.zone == zone && watched.variable == variable) {
      return &watched;
    }
  }
  return nullptr;
}

namespace {

void Widen(Range& range, const Range& by) {
  if (!by.hasValues) return;
  if (!range.hasValues) {
    range = by;
    return;
  }
  range.min = std::min(range.min, by.min);
  range.max = std::max(range.max, by.max);
}

}  // namespace

std::vector<Alteration> AlterationWatch::Finish() {
  m_isOn = false;
  std::vector<Alteration> alterations;
  std::map<std::pair<const DataSet*, LgIndex_t>, std::size_t> places;
  for (const Watched& watched : m_watched) {
    const WriteTally now = watched.data->ZoneWrites(watched.zone, watched.variable);
    const std::int64_t written = now.writes - watched.tallyBefore.writes;
    // Fewer than before: its values were allocated anew after it was handed out.
    if (written <= 0) continue;
    const std::int64_t picked = watched.reportedCount.value_or(written);
    if (picked == 0) continue;
    const auto [place, isFirst] =
        places.emplace(std::make_pair(watched.data.get(), watched.variable), alterations.size());
    if (isFirst) alterations.emplace_back();
    Alteration& alteration = alterations[place->second];
    alteration.variable = watched.variable;
    alteration.variableName = watched.data->FindVariable(watched.variable)->name;
    alteration.location = watched.data->FindField(watched.zone, watched.variable)->location;
    alteration.zones.push_back(watched.zone);
    alteration.pickedCount += picked;
    alteration.changedCount += now.changed - watched.tallyBefore.changed;
    Widen(alteration.before, watched.before);
    Widen(alteration.after, watched.data->ZoneRange(watched.zone, watched.variable));
  }
  m_watched.clear();
  return alterations;
}

}  // namespace qelhost
