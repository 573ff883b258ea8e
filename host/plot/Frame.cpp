#include "Frame.h"

#include <algorithm>
#include <map>
#include <utility>

namespace qelhost {

namespace {

QelUniqueID_t NextFrameId() {
  static QelUniqueID_t lastId = 0;
  return ++lastId;
}

std::array<Range, 3> Extents(DataSet& data) {
  return {data.VariableRange(data.CoordinateVariable('X')),
          data.VariableRange(data.CoordinateVariable('Y')),
          data.VariableRange(data.CoordinateVariable('Z'))};
}

bool IsFlat(DataSet& data) {
  const LgIndex_t zVariable = data.CoordinateVariable('Z');
  for (LgIndex_t zone = 1; zone <= data.ZoneCount(); ++zone) {
    const Range z = data.ZoneRange(zone, zVariable);
    if (z.min != z.max) return false;
  }
  return true;
}

}  // namespace

Frame::Frame() : m_id(NextFrameId()) {}

void Frame::Show(DataSetPtr data) {
  m_data = std::move(data);
  styles = Styles();
  m_blankingCache.Clear();
  view = View();
  solutionTime = 0.0;
  if (m_data == nullptr) {
    plotType = PlotType_None;
    return;
  }
  const std::array<Range, 3> extents = Extents(*m_data);
  plotType = IsFlat(*m_data) ? PlotType_Cartesian2D : PlotType_Cartesian3D;
  for (std::size_t axis = 0; axis < extents.size(); ++axis) {
    view.origin[axis] = 0.5 * extents[axis].min + 0.5 * extents[axis].max;
  }
  const std::vector<double> times = m_data->SolutionTimes();
  if (!times.empty()) solutionTime = times.front();
  FixProjection();
  m_firstPlotType = plotType;
  m_firstView = view;
  m_firstSolutionTime = solutionTime;
}

const BlankedItems* Frame::Blanked(LgIndex_t zoneNum) {
  if (!styles.blanking.include || m_data == nullptr || m_data->FindZone(zoneNum) == nullptr ||
      !styles.MapOf(zoneNum).useValueBlanking) {
    return nullptr;
  }
  return &m_blankingCache.Of(*m_data, zoneNum, styles.blanking);
}

std::vector<LgIndex_t> Frame::ZonesAt(double time, bool ignoreStrands) const {
  std::vector<LgIndex_t> zones;
  if (m_data == nullptr) return zones;
  // The step that each strand shows: its latest that is not after the time, else its first.
  std::map<LgIndex_t, double> shown;
  for (LgIndex_t n = 1; n <= m_data->ZoneCount(); ++n) {
    const Zone& zone = *m_data->FindZone(n);
    const auto [entry, isFirst] = shown.emplace(zone.strand, zone.solutionTime);
    double& best = entry->second;
    const bool isCandidate = zone.solutionTime <= time;
    if (!isFirst && (isCandidate ? best > time || zone.solutionTime > best
                                 : best > time && zone.solutionTime < best)) {
      best = zone.solutionTime;
    }
  }
  for (LgIndex_t n = 1; n <= m_data->ZoneCount(); ++n) {
    const Zone& zone = *m_data->FindZone(n);
    if (ignoreStrands || zone.strand == 0 || zone.solutionTime == shown.at(zone.strand)) {
      zones.push_back(n);
    }
  }
  return zones;
}

Frame& FrameList::Add() {
  m_frames.push_back(std::make_unique<Frame>());
  m_active = m_frames.back().get();
  return *m_active;
}

Frame* FrameList::Find(QelUniqueID_t id) const {
  const auto found = std::find_if(m_frames.begin(), m_frames.end(),
                                  [id](const auto& frame) { return frame->Id() == id; });
  return found == m_frames.end() ? nullptr : found->get();
}

Frame* FrameList::At(LgIndex_t n) const {
  if (n < 1 || n > Count()) return nullptr;
  return m_frames[static_cast<std::size_t>(n - 1)].get();
}

bool FrameList::Activate(QelUniqueID_t id) {
  Frame* const frame = Find(id);
  if (frame == nullptr) return false;
  m_active = frame;
  return true;
}

void FrameList::Clear() {
  m_active = nullptr;
  m_frames.clear();
}

}  // namespace qelhost
