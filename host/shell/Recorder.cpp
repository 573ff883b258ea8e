#include "Recorder.h"

namespace qelhost {

namespace {

std::string FirstLineOf(const std::string& text) {
  return text.substr(0, text.find_first_of("\r\n"));
}

}  // namespace

void Recorder::Start(const PlotState& first) {
  m_isRecording = true;
  m_lines = {kHeader};
  m_recorded = first;
}

void Recorder::AddAddOnCommand(const std::string& addOn, const std::string& command,
                               const PlotState& now) {
  if (!IsActive()) return;
  AddStateLines(now);
  m_lines.push_back(FirstLineOf(addOn + ' ' + command));
}

void Recorder::AddStateLines(const PlotState& now) {
  if (!IsActive()) return;
  for (const std::string& line : CommandsBetween(m_recorded, now)) AddRawCommand(line);
  const View stated = m_recorded.view;
  m_recorded = now;
  // The view matters, and is said, in a 3D plot alone.
  if (now.plotType != PlotType_Cartesian3D) m_recorded.view = stated;
}

void Recorder::AddRawCommand(const std::string& command) {
  if (IsActive()) m_lines.push_back(FirstLineOf(command));
}

void Recorder::EndPlaying(const std::string& line, bool wasCarriedOut, const PlotState& now) {
  --m_playDepth;
  if (!wasCarriedOut) return;
  AddRawCommand(line);
  m_recorded = now;
}

}  // namespace qelhost
