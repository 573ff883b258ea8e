#include "Recorder.h"

namespace qelhost {

namespace {

std::string FirstLineOf(const std::string& text) {
  return text.substr(0, text.find_first_of("\r\n"));
}

}  // namespace

void Recorder::Start() {
  m_isRecording = true;
  m_lines = {kHeader};
}

void Recorder::AddAddOnCommand(const std::string& addOn, const std::string& command) {
  if (IsActive()) m_lines.push_back(FirstLineOf(addOn + ' ' + command));
}

void Recorder::AddRawCommand(const std::string& command) {
  if (IsActive()) m_lines.push_back(FirstLineOf(command));
}

void Recorder::EndPlaying(const std::string& line, bool wasCarriedOut) {
  --m_playDepth;
  if (wasCarriedOut) AddRawCommand(line);
}

}  // namespace qelhost
