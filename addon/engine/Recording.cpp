#include "CMacroEngine.h"
#include "HostCheck.h"
#include "HostLock.h"
#include "HostOwned.h"
#include "PickKeywords.h"
#include "Selvane.h"
#include "Utilities.h"

#include "qelvane/QelUtil.h"

namespace qelvane::qelutiltools {

namespace {

void BeginCommand(std::int32_t command) {
  MacroEngine.CurrentCommand.Command = command;
  MacroEngine.CurrentCommand.Attributes.clear();
}

void RecordWithoutAttributes(std::int32_t command) {
  BeginCommand(command);
  MacroEngine.CommitCommand();
}

void AddZoneAndItem(LgIndex_t zone, std::int32_t itemAttribute, LgIndex_t item) {
  MacroEngine.AddNumberAttribute(Attribute_Zone, static_cast<double>(zone));
  MacroEngine.AddNumberAttribute(itemAttribute, static_cast<double>(item));
}

}  // namespace

void Selvane::AddVariableAndModifier() const {
  // Before the user has chosen one, an apply changes nothing, and its line names nothing.
  if (m_alterVar > 0) {
    char* varName = nullptr;
    HOST_CHECK(QelUtilVarGetName(m_alterVar, &varName));
    const HostString owned(varName);
    if (varName == nullptr)
      ThrowAssertFailed("QelUtilVarGetName(m_alterVar, &varName)", __FILE__, __LINE__);
    MacroEngine.AddStringAttribute(Attribute_Variable, varName);
  }
  MacroEngine.AddStringAttribute(Attribute_Modifier, FormatModifier(m_modifier));
}

void Selvane::AddRule() const {
  MacroEngine.AddKeywordAttribute(Attribute_Rule, KeywordOfPickRule(m_pickRule));
}

void Selvane::RecordUndoAlter() const { RecordWithoutAttributes(Command_UndoAlter); }

void Selvane::RecordUndoBlank() const { RecordWithoutAttributes(Command_UndoBlank); }

void Selvane::RecordPickGeometry() const { RecordWithoutAttributes(Command_PickGeometry); }

void Selvane::RecordView(StandardView view) const {
  const HostLock lock;
  RecordWithoutAttributes(Command_ViewXY + static_cast<std::int32_t>(view));
  if (QelUtilMacroIsRecordingActive()) {
    MacroEngine.FlushDeferredCommands();
    HOST_CHECK(QelUtilMacroRecordRawCommand("$!VIEW FITSURFACES\n"));
  }
  RedrawIfRecording();
}

void Selvane::RecordAlterElement() const {
  const HostLock lock;
  if (!QelUtilMacroIsRecordingActive()) return;
  BeginCommand(Command_AlterElement);
  AddVariableAndModifier();
  AddZoneAndItem(m_pickedZone, Attribute_Element, m_pickedElement);
  MacroEngine.CommitCommand();
}

void Selvane::RecordBlankElement() const {
  const HostLock lock;
  if (!QelUtilMacroIsRecordingActive()) return;
  BeginCommand(Command_BlankElement);
  AddZoneAndItem(m_pickedZone, Attribute_Element, m_pickedElement);
  MacroEngine.CommitCommand();
}

void Selvane::RecordArea() const {
  const HostLock lock;
  if (!QelUtilMacroIsRecordingActive()) return;
  BeginCommand(m_isBlankMode ? Command_BlankArea : Command_AlterArea);
  if (!m_isBlankMode) AddVariableAndModifier();
  AddRule();
  MacroEngine.CommitCommand();
}

void Selvane::RecordSurface() const {
  const HostLock lock;
  if (!QelUtilMacroIsRecordingActive()) return;
  BeginCommand(m_isBlankMode ? Command_BlankSurface : Command_AlterSurface);
  if (!m_isBlankMode) AddVariableAndModifier();
  AddZoneAndItem(m_seed.zone, Attribute_SeedPoint, m_seed.node);
  AddRule();
  MacroEngine.CommitCommand();
}

void Selvane::RecordBlankingInclude(bool on) const {
  const HostLock lock;
  if (!QelUtilMacroIsRecordingActive()) return;
  // Without a closing brace: hosts read it so, and journals hold it so.
  if (on) {
    HOST_CHECK(QelUtilMacroRecordRawCommand("$!BLANKING VALUE{INCLUDE = YES"));
  } else {
    HOST_CHECK(QelUtilMacroRecordRawCommand("$!BLANKING VALUE{INCLUDE = NO"));
  }
}

}  // namespace qelvane::qelutiltools
