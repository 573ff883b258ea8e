#pragma once

#include "MacroCommand.h"
#include "MacroVocabulary.h"

#include <cstdint>
#include <string>
#include <vector>

namespace qelvane::qelutiltools {

/// The grammar of the add-on's command lines, both ways: it turns a line into a typed command and a
/// typed command into the line that is recorded. It also holds the last error text, which a failed
/// macro command gives back to the host.
///
/// A line is COMMAND ATTRIBUTE=value ..., where a value is a number, a keyword or one or more
/// strings in double quotes with commas between them. Outside quotes case does not matter.
class CMacroEngine {
 public:
  CMacroEngine();
  virtual ~CMacroEngine() = default;
  CMacroEngine(const CMacroEngine&) = delete;
  CMacroEngine& operator=(const CMacroEngine&) = delete;

  // Parsing and errors
  // -----------------------------------------------------------------------------

  /// Parses one line of any length. An empty line succeeds and leaves out.Command as it was.
  /// On failure the reason is the error text; attributes read before the fault stay in out.
  bool ParseCommand(const std::string& text, MacroCommand& out);

  /// Formats like printf, a text of any length. Never called on success: who wants a fresh text
  /// clears it.
  void SetError(const char* format, ...) __attribute__((format(printf, 2, 3)));
  const std::string& GlobalError() const { return m_globalError; }

  /// The keyword of an id, empty for an unknown one.
  const std::string& CommandName(std::int32_t id) const { return m_commands.TextOf(id); }
  const std::string& AttributeName(std::int32_t id) const { return m_attributes.TextOf(id); }
  const std::string& KeywordName(std::int32_t id) const { return m_keywords.TextOf(id); }

  // Typed getters: false, with the reason as error text and out untouched, for another type
  // ----------

  /// The first string, empty when the list is.
  bool GetString(const MacroValue& value, std::string& out);
  bool GetStringList(const MacroValue& value, std::vector<std::string>& out);
  bool GetBoolean(const MacroValue& value, bool& out);
  bool GetDouble(const MacroValue& value, double& out);
  bool GetDoubleInRange(const MacroValue& value, double min, double max, double& out);
  /// Truncated toward zero; what an int cannot hold becomes the nearest that it can, NaN 0.
  bool GetInt(const MacroValue& value, std::int32_t& out);
  bool GetIntInRange(const MacroValue& value, std::int32_t min, std::int32_t max,
                     std::int32_t& out);
  /// The position, from 1, of the value's keyword among count keyword ids.
  bool GetKeywordIndex(const MacroValue& value, std::int32_t count, const std::int32_t* keywords,
                       std::int32_t& out);
  /// Pairs of (keyword id, result) follow, ended by Keyword_EndOfList: the result of the value's
  /// keyword.
  bool GetKeywordMapped(const MacroValue& value, std::int32_t* out, std::int32_t key1, ...);

  // Recording: set CurrentCommand's command, clear its attributes, add them in order, commit
  // ---------

  void AddStringAttribute(std::int32_t attribute, const std::string& text);
  void AddRangeAttribute(std::int32_t attribute, std::int32_t first, std::int32_t last);
  /// An empty list adds nothing: a polygon without corners has no CORNERS.
  void AddStringListAttribute(std::int32_t attribute, const std::vector<std::string>& list);
  void AddNumberAttribute(std::int32_t attribute, double number);
  void AddBooleanAttribute(std::int32_t attribute, bool flag);
  void AddKeywordAttribute(std::int32_t attribute, std::int32_t keyword);

  /// Records CurrentCommand, or queues it while recording is deferred.
  void CommitCommand();

  /// Writes a command to the host's recorder; nothing while the host does not record.
  ///
  /// throws  std::runtime_error when the host refuses the line
  void RecordCommand(const MacroCommand& command);

  void BeginDeferredRecording() { Deferring = true; }
  /// Records the queued commands in order and ends deferring.
  void FlushDeferredCommands();

  bool Deferring = false;
  std::vector<MacroCommand> PendingCommands;
  MacroCommand CurrentCommand;

 private:
  std::string LineOf(const MacroCommand& command) const;
  void AddAttribute(std::int32_t attribute, MacroValue value);

  MacroVocabulary m_commands;
  MacroVocabulary m_attributes;
  MacroVocabulary m_keywords;

 public:
  /// True while a command from the host is parsed and carried out.
  bool PlayingBack = false;

 private:
  std::string m_globalError;
};

/// The process-wide engine; made at first use.
CMacroEngine& TheMacroEngine();
extern CMacroEngine& MacroEngine;

}  // namespace qelvane::qelutiltools
