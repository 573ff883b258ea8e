#include "Recorder.h"

namespace qelhost {

void JournalTape::Start(const PlotState& first) {
  m_isOn = true;
  m_lines = {Recorder::kHeader};
  m_recorded = first;
  m_left.clear();
}

void JournalTape::AddStateLines(const PlotState& now) {
  if (!m_isOn) return;
  const auto left = m_left.find(now.frame);
  const bool isBack = now.frame != m_recorded.frame && left != m_left.end();
  const PlotState before = isBack ? left->second : m_recorded;
  if (isBack) AddLine("$!FRAME " + std::to_string(now.frame));
  for (const std::string& line : CommandsBetween(before, now)) AddLine(line);
  TakeAsRecorded(now);
  // The view matters, and is said, in a 3D plot alone.
  if (now.plotType != PlotType_Cartesian3D) m_recorded.view = before.view;
}

void JournalTape::AddLine(const std::string& line) {
  if (!m_isOn) return;
  m_lines.push_back(line.substr(0, line.find_first_of("\r\n")));
  if (onLine) onLine(m_lines.back());
}

void JournalTape::TakeAsRecorded(const PlotState& now) {
  if (now.frame != m_recorded.frame) m_left[m_recorded.frame] = m_recorded;
  m_recorded = now;
}

void JournalTape::TakeBlankingAsRecorded(const ValueBlanking& blanking) {
  m_recorded.blanking.include = blanking.include;
}

void JournalTape::TakeViewAsRecorded(const View& view) { m_recorded.view = view; }

void Recorder::AddAddOnCommand(const std::string& addOn, const std::string& command,
                               const PlotState& now) {
  OnTapes([&](JournalTape& tape) {
    tape.AddStateLines(now);
    tape.AddLine(addOn + ' ' + command);
  });
}

void Recorder::AddStateLines(const PlotState& now) {
  OnTapes([&](JournalTape& tape) { tape.AddStateLines(now); });
}

void Recorder::AddRawCommand(const std::string& command) {
  OnTapes([&](JournalTape& tape) { tape.AddLine(command); });
}

void Recorder::AddAction(const std::string& command, const PlotState& now) {
  OnTapes([&](JournalTape& tape) {
    tape.AddLine(command);
    tape.TakeAsRecorded(now);
  });
}

void Recorder::TakeBlankingAsRecorded(const ValueBlanking& blanking) {
  OnTapes([&](JournalTape& tape) { tape.TakeBlankingAsRecorded(blanking); });
}

void Recorder::TakeViewAsRecorded(const View& view) {
  OnTapes([&](JournalTape& tape) { tape.TakeViewAsRecorded(view); });
}

void Recorder::EndPlaying(const std::string& line, bool wasCarriedOut, const PlotState& now) {
  --m_playDepth;
  if (!wasCarriedOut) return;
  OnTapes([&](JournalTape& tape) {
    tape.AddLine(line);
    tape.TakeAsRecorded(now);
  });
}

}  // namespace qelhost
