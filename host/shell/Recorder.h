#pragma once

#include <string>
#include <vector>

namespace qelhost {

/// The journal being recorded. While a line is played, only that line itself is written, verbatim.
class Recorder {
 public:
  /// The first line of every journal.
  static constexpr const char* kHeader = "# marquell journal 1";

  /// Begins a new journal with its header.
  void Start();
  void Stop() { m_isRecording = false; }
  /// What add-ons are told: recording, and not playing a line.
  bool IsActive() const { return m_isRecording && m_playDepth == 0; }

  /// Each does nothing while recording is not active.
  void AddAddOnCommand(const std::string& addOn, const std::string& command);
  /// A line break in the command ends it.
  void AddRawCommand(const std::string& command);

  /// Brackets the playing of a line; a recording that is on gets the line when it was carried out.
  void BeginPlaying() { ++m_playDepth; }
  void EndPlaying(const std::string& line, bool wasCarriedOut);

  /// The lines so far, the header first.
  const std::vector<std::string>& Lines() const { return m_lines; }

 private:
  bool m_isRecording = false;
  int m_playDepth = 0;
  std::vector<std::string> m_lines;
};

}  // namespace qelhost
