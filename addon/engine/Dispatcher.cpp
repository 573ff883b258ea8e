#include "Dispatcher.h"

#include "GeometryChoice.h"
#include "HostLock.h"
#include "NumberAttributes.h"
#include "PickKeywords.h"
#include "Selvane.h"

#include "qelvane/QelUtil.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <string>
#include <vector>

namespace qelvane::qelutiltools {

namespace {

/// What a command's attributes say, gathered and checked before anything is changed.
struct CommandInput {
  std::int32_t zone = 0;
  std::int32_t item = 0;  ///< the element or the seed point
  std::optional<PickRule> rule;
  std::optional<std::string> variable;
  std::optional<std::string> modifier;
};

// Reading attributes ---------------------------------------------------------------------------

bool ReadZone(const MacroValue& value, CommandInput& input) {
  return MacroEngine.GetInt(value, input.zone);
}

bool ReadItem(const MacroValue& value, CommandInput& input) {
  return MacroEngine.GetInt(value, input.item);
}

bool ReadRule(const MacroValue& value, CommandInput& input) {
  const std::int32_t rule = PickRuleOfKeyword(value.Keyword);
  if (value.Type != MacroValue::kKeyword || rule == kNoKeywordEntry) return false;
  input.rule = static_cast<PickRule>(rule);
  return true;
}

bool ReadVariable(const MacroValue& value, CommandInput& input) {
  std::string name;
  if (!MacroEngine.GetString(value, name) || QelUtilVarGetNumByName(name.c_str()) < 1) return false;
  input.variable = name;
  return true;
}

bool ReadModifier(const MacroValue& value, CommandInput& input) {
  std::string text;
  if (!MacroEngine.GetString(value, text) || !ParseModifierText(text)) return false;
  input.modifier = text;
  return true;
}

// Carrying out ---------------------------------------------------------------------------------

/// Choices that the command does not give stay as the session holds them.
void TakeChoices(Selvane& engine, const CommandInput& input) {
  engine.EnterAlterMode();
  if (input.rule) engine.SetPickRule(*input.rule);
  if (input.variable) engine.SetAlterVariableByName(*input.variable);
  if (input.modifier) engine.ParseModifier(*input.modifier);
}

bool UndoAlter(Selvane& engine, const MacroCommand&, const CommandInput&) {
  return engine.UndoLastAlter(true);
}

bool AlterElement(Selvane& engine, const MacroCommand&, const CommandInput& input) {
  TakeChoices(engine, input);
  return engine.PickElement(input.zone, input.item);
}

bool AlterArea(Selvane& engine, const MacroCommand&, const CommandInput& input) {
  TakeChoices(engine, input);
  return engine.ApplyAreaFromMacro();
}

template <bool (CPolyBoundary::*Define)(const MacroCommand&), PickKind kind>
bool PickShape(Selvane& engine, const MacroCommand& command, const CommandInput&) {
  return (engine.PolyBoundary().*Define)(command) && engine.SetPickKind(kind, true);
}

template <StandardView view>
bool ShowView(Selvane& engine, const MacroCommand&, const CommandInput&) {
  engine.SetView(view);
  return true;
}

bool ArmGeometry(Selvane&, const MacroCommand&, const CommandInput&) {
  SetGeometryArmed(true);
  return true;
}

bool Refuse(Selvane&, const MacroCommand& command, const CommandInput&) {
  MacroEngine.SetError("The %s command is not supported by this version of Marquell.",
                       MacroEngine.CommandName(command.Command).c_str());
  return false;
}

bool CheckAndRefuseCube(Selvane& engine, const MacroCommand& command, const CommandInput& input) {
  double anchor[3];
  double size[3];
  double rotation[3];
  constexpr bool kRequired = true;
  return ReadNumberAttributes(command, {{Attribute_AnchorX, &anchor[0]},
                                        {Attribute_AnchorY, &anchor[1]},
                                        {Attribute_AnchorZ, &anchor[2]},
                                        {Attribute_SizeX, &size[0]},
                                        {Attribute_SizeY, &size[1]},
                                        {Attribute_SizeZ, &size[2]},
                                        {Attribute_RotateX, &rotation[0], !kRequired, 0.0},
                                        {Attribute_RotateY, &rotation[1], !kRequired, 0.0},
                                        {Attribute_RotateZ, &rotation[2], !kRequired, 0.0}}) &&
         Refuse(engine, command, input);
}

bool CheckAndRefuseSphere(Selvane& engine, const MacroCommand& command, const CommandInput& input) {
  double centre[3];
  double radius = 0.0;
  constexpr bool kRequired = true;
  return ReadNumberAttributes(command, {{Attribute_AnchorX, &centre[0]},
                                        {Attribute_AnchorY, &centre[1], !kRequired},
                                        {Attribute_AnchorZ, &centre[2], !kRequired},
                                        {Attribute_Radius, &radius},
                                        {Attribute_SizeX, &radius}}) &&
         Refuse(engine, command, input);
}

// The command set ------------------------------------------------------------------------------

struct AttributeRow {
  std::int32_t attribute;
  bool (*read)(const MacroValue& value, CommandInput& input);
  const char* badText;  ///< null: what the reader reported stands
};

struct CommandRow {
  std::int32_t command;
  bool (*execute)(Selvane& engine, const MacroCommand& command, const CommandInput& input);
  const char* failureText = nullptr;     ///< used when the operation reports nothing itself
  const char* unexpectedText = nullptr;  ///< null: attributes are not read here
  const char* missingText = nullptr;     ///< null: zone and item need not be given
  std::vector<AttributeRow> attributes = {};
};

const std::vector<CommandRow>& CommandTable() {
  static const std::vector<CommandRow> table = {
      {Command_UndoAlter, UndoAlter, "Macro failed to perform Undo"},
      {Command_UndoBlank, Refuse},
      {Command_PickRectangle, PickShape<&CPolyBoundary::PickRectangle, PickKind::Rectangle>},
      {Command_PickCircle, PickShape<&CPolyBoundary::PickCircle, PickKind::Circle>},
      {Command_PickPolygon, PickShape<&CPolyBoundary::PickPolygon, PickKind::Polygon>},
      {Command_PickCube, CheckAndRefuseCube},
      {Command_PickSphere, CheckAndRefuseSphere},
      {Command_AlterElement,
       AlterElement,
       "Error during execution of ALTERELEMENT operation",
       "Unexpected parameter in ALTERELEMENT command",
       "Missing zone or element number in ALTERELEMENT command",
       {{Attribute_Rule, ReadRule, "Bad value for RULE in ALTERELEMENT command"},
        {Attribute_Variable, ReadVariable, "Bad value for VARIABLE in ALTERELEMENT command"},
        {Attribute_Modifier, ReadModifier, "Bad data for MODIFIER in ALTERELEMENT command"},
        {Attribute_Zone, ReadZone, "Bad data for ZONE in ALTERELEMENT command"},
        {Attribute_Element, ReadItem, "Bad data for ELEMENT in ALTERELEMENT command"}}},
      {Command_BlankElement,
       Refuse,
       "Error during execution of BLANKELEMENT operation",
       "Unexpected parameter in BLANKELEMENT command",
       "Missing zone or element number in BLANKELEMENT command",
       {{Attribute_Rule, ReadRule, "Bad value for RULE in BLANKELEMENT command"},
        {Attribute_Zone, ReadZone, "Bad data for ZONE in BLANKELEMENT command"},
        {Attribute_Element, ReadItem, "Bad data for ELEMENT in BLANKELEMENT command"}}},
      {Command_AlterSurface,
       Refuse,
       "Macro failed to apply selvane for surface",
       "Unexpected parameter in the ALTERSURFACE command",
       nullptr,
       {{Attribute_Zone, ReadZone, "Bad data for ZONE in ALTERSURFACE command"},
        {Attribute_SeedPoint, ReadItem, "Bad data for ELEMENT in ALTERELEMENT command"},
        {Attribute_Modifier, ReadModifier, "Bad equation for MODIFIER in ALTERSURFACE command"},
        {Attribute_Variable, ReadVariable,
         "Bad/unrecognized name for VARIABLE in ALTERSURFACE command"},
        {Attribute_Rule, ReadRule, "Illegal value for pick RULE in ALTERSURFACE command"}}},
      {Command_BlankSurface,
       Refuse,
       "Macro failed to apply pick blanking",
       "Unexpected parameter in the BLANKAREA command",
       nullptr,
       {{Attribute_Zone, ReadZone, "Bad data for ZONE in ALTERSURFACE command"},
        {Attribute_SeedPoint, ReadItem, "Bad data for ELEMENT in ALTERELEMENT command"},
        {Attribute_Rule, ReadRule, nullptr}}},
      {Command_AlterArea,
       AlterArea,
       "Macro failed to apply selvane",
       "Unexpected parameter in the ALTERAREA command",
       nullptr,
       {{Attribute_Variable, ReadVariable, "Bad value for VARIABLE in ALTERAREA command"},
        {Attribute_Modifier, ReadModifier, nullptr},
        {Attribute_Rule, ReadRule, "Illegal value for pick RULE parameter"}}},
      {Command_BlankArea,
       Refuse,
       "Macro failed to apply pick blanking",
       "Unexpected parameter in the BLANKAREA command",
       nullptr,
       {{Attribute_Rule, ReadRule, nullptr}}},
      {Command_ViewXY, ShowView<StandardView::XY>},
      {Command_ViewXZ, ShowView<StandardView::XZ>},
      {Command_ViewYZ, ShowView<StandardView::YZ>},
      {Command_View3D, ShowView<StandardView::ThreeD>},
      {Command_PickGeometry, ArmGeometry},
  };
  return table;
}

// Dispatching ----------------------------------------------------------------------------------

void ReportIfGiven(const char* text) {
  if (text != nullptr) MacroEngine.SetError("%s", text);
}

bool ReadAttribute(const CommandRow& row, const MacroAttribute& attribute, CommandInput& input) {
  for (const AttributeRow& known : row.attributes) {
    if (known.attribute != attribute.Attribute) continue;
    if (known.read(attribute.Value, input)) return true;
    ReportIfGiven(known.badText);
    return false;
  }
  ReportIfGiven(row.unexpectedText);
  return false;
}

bool ReadAttributes(const CommandRow& row, const MacroCommand& command, CommandInput& input) {
  if (row.unexpectedText == nullptr) return true;
  for (const MacroAttribute& attribute : command.Attributes) {
    if (!ReadAttribute(row, attribute, input)) return false;
  }
  if (row.missingText != nullptr && (input.zone == 0 || input.item == 0)) {
    ReportIfGiven(row.missingText);
    return false;
  }
  return true;
}

bool Run(const CommandRow& row, Selvane& engine, const MacroCommand& command) {
  CommandInput input;
  if (!ReadAttributes(row, command, input)) return false;
  if (row.execute(engine, command, input)) return true;
  if (MacroEngine.GlobalError().empty()) ReportIfGiven(row.failureText);
  return false;
}

}  // namespace

bool DispatchMacroCommand(Selvane& engine, const MacroCommand& command) {
  const HostLock lock;
  MacroEngine.SetError("%s", "");
  const std::vector<CommandRow>& table = CommandTable();
  const auto row = std::find_if(
      table.begin(), table.end(),
      [&command](const CommandRow& candidate) { return candidate.command == command.Command; });
  if (row == table.end()) return true;
  try {
    return Run(*row, engine, command);
  } catch (const std::exception& e) {
    MacroEngine.SetError("%s", e.what());
    return false;
  }
}

}  // namespace qelvane::qelutiltools
