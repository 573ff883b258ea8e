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
  m_left.clear();
}

void Recorder::AddAddOnCommand(const std::string& addOn, const std::string& command,
                               const PlotState& now) {
  if (!IsActive()) return;
  AddStateLines(now);
  m_lines.push_back(FirstLineOf(addOn + ' ' + command));
}

void Recorder::AddStateLines(const PlotState& now) {
  if (!IsActive()) return;
  const auto left = m_left.find(now.frame);
  const bool isBack = now.frame != m_recorded.frame && left != m_left.end();
  const PlotState before = isBack ? left->second : m_recorded;
  if (isBack) AddRawCommand("$!FRAME " + std::to_string(now.frame));
  for (const std::string& line : CommandsBetween(before, now)) AddRawCommand(line);
  TakeAsRecorded(now);
  // The view matters, and is said, in a 3D plot alone.
  if (now.plotType != PlotType_Cartesian3D) m_recorded.view = before.view;
}

void Recorder::TakeAsRecorded(const PlotState& now) {
  if (now.frame != m_recorded.frame) m_left[m_recorded.frame] = m_recorded;
  m_recorded = now;
}

void Recorder::AddRawCommand(const std::string& command) {
  if (IsActive()) m_lines.push_back(FirstLineOf(command));
}

void Recorder::AddAction(const std::string& command, const PlotState& now) {
  if (!IsActive()) return;
  AddRawCommand(command);
  TakeAsRecorded(now);
}

void Recorder::EndPlaying(const std::string& line, bool wasCarriedOut, const PlotState& now) {
  --m_playDepth;
  if (!wasCarriedOut) return;
  AddRawCommand(line);
  TakeAsRecorded(now);
}

}  // namespace qelhost
