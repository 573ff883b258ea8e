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
  std::optional<std::int32_t> zone;
  std::optional<std::int32_t> item;  ///< the element or the seed point
  std::optional<PickRule> rule;
  std::optional<LgIndex_t> variable;
  std::optional<std::string> modifier;
};

// Reading attributes ---------------------------------------------------------------------------

bool ReadInteger(const MacroValue& value, std::optional<std::int32_t>& target) {
  std::int32_t number = 0;
  if (!MacroEngine.GetInt(value, number)) return false;
  target = number;
  return true;
}

bool ReadZone(const MacroValue& value, CommandInput& input) {
  return ReadInteger(value, input.zone);
}

bool ReadItem(const MacroValue& value, CommandInput& input) {
  return ReadInteger(value, input.item);
}

bool ReadRule(const MacroValue& value, CommandInput& input) {
  const std::int32_t rule = PickRuleOfKeyword(value.Keyword);
  if (value.Type != MacroValue::kKeyword || rule == kNoKeywordEntry) return false;
  input.rule = static_cast<PickRule>(rule);
  return true;
}

bool ReadVariable(const MacroValue& value, CommandInput& input) {
  std::string name;
  if (!MacroEngine.GetString(value, name)) return false;
  const LgIndex_t variable = QelUtilVarGetNumByName(name.c_str());
  if (variable < 1) return false;
  input.variable = variable;
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
  if (input.rule) engine.SetPickRule(*input.rule);
  if (input.variable) engine.SetAlterVariable(*input.variable);
  if (input.modifier) engine.ParseModifier(*input.modifier);
}

// What a command changes: the alter variable, or the blanking variable.

bool EnterAlter(Selvane& engine) {
  engine.EnterAlterMode();
  return true;
}

bool EnterBlank(Selvane& engine) {
  if (engine.EnterBlankMode()) return true;
  MacroEngine.SetError("Unable to initialize this data set for pick blanking.");
  return false;
}

// Where it does.

bool PickElement(Selvane& engine, const CommandInput& input) {
  return engine.PickElement(*input.zone, *input.item);
}

bool PickArea(Selvane& engine, const CommandInput&) { return engine.ApplyAreaFromMacro(); }

bool PickSurface(Selvane& engine, const CommandInput& input) {
  if (input.zone) engine.SetSeedZone(*input.zone);
  if (input.item) engine.SetSeedElement(*input.item);
  return engine.ApplySurfaceFromMacro();
}

template <bool (*enterMode)(Selvane&), bool (*pick)(Selvane&, const CommandInput&)>
bool Pick(Selvane& engine, const MacroCommand&, const CommandInput& input) {
  TakeChoices(engine, input);
  return enterMode(engine) && pick(engine, input);
}

bool UndoAlter(Selvane& engine, const MacroCommand&, const CommandInput&) {
  return engine.UndoLastAlter(true);
}

bool UndoBlank(Selvane& engine, const MacroCommand&, const CommandInput&) {
  engine.ResetPickBlanks();
  return true;
}

/// Takes the shape and picks with it. A recorded undo follows the line of the boundary that it
/// undoes in, so a line that says once more what is in force leaves the undo there. In a 2D plot no
/// zone can show a box or a sphere, and the command succeeds all the same.
template <class Boundary>
bool PickWith(Selvane& engine, const MacroCommand& command, PickKind kind, Boundary& boundary,
              bool (Boundary::*define)(const MacroCommand&)) {
  const auto shapeBefore = boundary.Definition();
  if (!(boundary.*define)(command)) return false;
  const bool isRepeated = engine.Kind() == kind && boundary.Definition() == shapeBefore;
  if (isRepeated) {
    engine.RenewPickKind();
  } else {
    engine.SetPickKind(kind, true);
  }
  return true;
}

template <bool (CPolyBoundary::*define)(const MacroCommand&), PickKind kind>
bool PickShape(Selvane& engine, const MacroCommand& command, const CommandInput&) {
  return PickWith(engine, command, kind, engine.PolyBoundary(), define);
}

bool PickCube(Selvane& engine, const MacroCommand& command, const CommandInput&) {
  return PickWith(engine, command, PickKind::Cube, engine.Cube(), &CClippingCube::SetFromMacro);
}

bool PickSphere(Selvane& engine, const MacroCommand& command, const CommandInput&) {
  return PickWith(engine, command, PickKind::Sphere, engine.Sphere(),
                  &CClippingSphere::SetFromMacro);
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
      {Command_UndoBlank, UndoBlank},
      {Command_PickRectangle, PickShape<&CPolyBoundary::PickRectangle, PickKind::Rectangle>},
      {Command_PickCircle, PickShape<&CPolyBoundary::PickCircle, PickKind::Circle>},
      {Command_PickPolygon, PickShape<&CPolyBoundary::PickPolygon, PickKind::Polygon>},
      {Command_PickCube, PickCube},
      {Command_PickSphere, PickSphere},
      {Command_AlterElement,
       Pick<EnterAlter, PickElement>,
       "Error during execution of ALTERELEMENT operation",
       "Unexpected parameter in ALTERELEMENT command",
       "Missing zone or element number in ALTERELEMENT command",
       {{Attribute_Rule, ReadRule, "Bad value for RULE in ALTERELEMENT command"},
        {Attribute_Variable, ReadVariable, "Bad value for VARIABLE in ALTERELEMENT command"},
        {Attribute_Modifier, ReadModifier, "Bad data for MODIFIER in ALTERELEMENT command"},
        {Attribute_Zone, ReadZone, "Bad data for ZONE in ALTERELEMENT command"},
        {Attribute_Element, ReadItem, "Bad data for ELEMENT in ALTERELEMENT command"}}},
      {Command_BlankElement,
       Pick<EnterBlank, PickElement>,
       "Error during execution of BLANKELEMENT operation",
       "Unexpected parameter in BLANKELEMENT command",
       "Missing zone or element number in BLANKELEMENT command",
       {{Attribute_Rule, ReadRule, "Bad value for RULE in BLANKELEMENT command"},
        {Attribute_Zone, ReadZone, "Bad data for ZONE in BLANKELEMENT command"},
        {Attribute_Element, ReadItem, "Bad data for ELEMENT in BLANKELEMENT command"}}},
      {Command_AlterSurface,
       Pick<EnterAlter, PickSurface>,
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
       Pick<EnterBlank, PickSurface>,
       "Macro failed to apply pick blanking",
       "Unexpected parameter in the BLANKAREA command",
       nullptr,
       {{Attribute_Zone, ReadZone, "Bad data for ZONE in ALTERSURFACE command"},
        {Attribute_SeedPoint, ReadItem, "Bad data for ELEMENT in ALTERELEMENT command"},
        {Attribute_Rule, ReadRule, nullptr}}},
      {Command_AlterArea,
       Pick<EnterAlter, PickArea>,
       "Macro failed to apply selvane",
       "Unexpected parameter in the ALTERAREA command",
       nullptr,
       {{Attribute_Variable, ReadVariable, "Bad value for VARIABLE in ALTERAREA command"},
        {Attribute_Modifier, ReadModifier, nullptr},
        {Attribute_Rule, ReadRule, "Illegal value for pick RULE parameter"}}},
      {Command_BlankArea,
       Pick<EnterBlank, PickArea>,
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
  const bool isLocated = input.zone.value_or(0) != 0 && input.item.value_or(0) != 0;
  if (row.missingText != nullptr && !isLocated) {
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
