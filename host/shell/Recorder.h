#pragma once

#include "PlotState.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace qelhost {

/// One journal as it is being written.
///
/// An add-on's line means the same when it is played only if the plot then looks the same, so what
/// changed of it and stands in no line yet is written before.
class JournalTape {
 public:
  /// Begins a new journal with its header. first: the plot as it will be when the journal is
  /// played.
  void Start(const PlotState& first);
  void Stop() { m_isOn = false; }
  bool IsOn() const { return m_isOn; }

  // Each does nothing while the tape is off. now: the plot as it is.
  // -------------------------------------

  /// What changed of the plot and stands in no line yet.
  void AddStateLines(const PlotState& now);
  /// A line break in the command ends it.
  void AddLine(const std::string& line);
  /// The plot is as the lines so far leave it.
  void TakeAsRecorded(const PlotState& now);
  void TakeBlankingAsRecorded(const ValueBlanking& blanking);
  void TakeViewAsRecorded(const View& view);

  /// The lines so far, the header first.
  const std::vector<std::string>& Lines() const { return m_lines; }

  /// Told of every line behind the header.
  std::function<void(const std::string& line)> onLine;

 private:
  bool m_isOn = false;
  std::vector<std::string> m_lines;
  PlotState m_recorded;                   ///< of the frame that was active last
  std::map<LgIndex_t, PlotState> m_left;  ///< of the others, as they were left
};

/// The journal that the user records, and one that a program may keep besides for itself. While a
/// line is played, only that line itself is written, verbatim.
class Recorder {
 public:
  /// The first line of every journal.
  static constexpr const char* kHeader = "# marquell journal 1";

  void Start(const PlotState& first) { m_journal.Start(first); }
  void Stop() { m_journal.Stop(); }
  /// Whether the user's journal is being recorded.
  bool IsRecording() const { return m_journal.IsOn(); }
  /// What add-ons are told: their commands are wanted, and no line is being played.
  bool IsActive() const { return (m_journal.IsOn() || m_log.IsOn()) && m_playDepth == 0; }

  /// Each does nothing while recording is not active. now: the plot as it is.
  void AddAddOnCommand(const std::string& addOn, const std::string& command, const PlotState& now);
  /// What changed of the plot and stands in no line yet.
  void AddStateLines(const PlotState& now);
  /// A line break in the command ends it.
  void AddRawCommand(const std::string& command);
  /// A command that the user's action amounts to, and the plot as it left it.
  void AddAction(const std::string& command, const PlotState& now);
  /// Whether value blanking is on stands in a line that was just recorded.
  void TakeBlankingAsRecorded(const ValueBlanking& blanking);
  /// The view is as a line that is about to be recorded will leave it.
  void TakeViewAsRecorded(const View& view);

  /// Brackets the playing of a line; a recording that is on gets the line when it was carried out.
  void BeginPlaying() { ++m_playDepth; }
  void EndPlaying(const std::string& line, bool wasCarriedOut, const PlotState& now);

  /// The lines of the user's journal so far, the header first.
  const std::vector<std::string>& Lines() const { return m_journal.Lines(); }
  /// The program's own journal.
  JournalTape& Log() { return m_log; }

 private:
  /// Does it on each tape, while recording is active.
  template <class Deed>
  void OnTapes(const Deed& deed) {
    if (!IsActive()) return;
    for (JournalTape* const tape : {&m_journal, &m_log}) deed(*tape);
  }

  int m_playDepth = 0;
  JournalTape m_journal;
  JournalTape m_log;
};

}  // namespace qelhost
