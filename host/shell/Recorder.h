#pragma once

#include "PlotState.h"

#include <map>
#include <string>
#include <vector>

namespace qelhost {

/// The journal being recorded. While a line is played, only that line itself is written, verbatim.
///
/// An add-on's line means the same when it is played only if the plot then looks the same, so what
/// changed of it and stands in no line yet is written before.
class Recorder {
 public:
  /// The first line of every journal.
  static constexpr const char* kHeader = "# marquell journal 1";

  /// Begins a new journal with its header. first: the plot as it will be when the journal is
  /// played.
  void Start(const PlotState& first);
  void Stop() { m_isRecording = false; }
  /// What add-ons are told: recording, and not playing a line.
  bool IsActive() const { return m_isRecording && m_playDepth == 0; }

  /// Each does nothing while recording is not active. now: the plot as it is.
  void AddAddOnCommand(const std::string& addOn, const std::string& command, const PlotState& now);
  /// What changed of the plot and stands in no line yet.
  void AddStateLines(const PlotState& now);
  /// A line break in the command ends it.
  void AddRawCommand(const std::string& command);
  /// A command that the user's action amounts to, and the plot as it left it.
  void AddAction(const std::string& command, const PlotState& now);
  /// Whether value blanking is on stands in a line that was just recorded.
  void TakeBlankingAsRecorded(const ValueBlanking& blanking) {
    if (IsActive()) m_recorded.blanking.include = blanking.include;
  }

  /// The view is as a line that is about to be recorded will leave it.
  void TakeViewAsRecorded(const View& view) {
    if (IsActive()) m_recorded.view = view;
  }

  /// Brackets the playing of a line; a recording that is on gets the line when it was carried out.
  void BeginPlaying() { ++m_playDepth; }
  void EndPlaying(const std::string& line, bool wasCarriedOut, const PlotState& now);

  /// The lines so far, the header first.
  const std::vector<std::string>& Lines() const { return m_lines; }

 private:
  void TakeAsRecorded(const PlotState& now);

  bool m_isRecording = false;
  int m_playDepth = 0;
  std::vector<std::string> m_lines;
  PlotState m_recorded;                   ///< of the frame that was active last
  std::map<LgIndex_t, PlotState> m_left;  ///< of the others, as they were left
};

}  // namespace qelhost
