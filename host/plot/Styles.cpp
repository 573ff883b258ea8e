#include "Styles.h"

#include "qelvane/Keywords.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace qelhost {

namespace {

/// What a path leads to: how to set it and how to read it back. Integers and reals meet as double,
/// which holds every integer of a style. Both functions are empty when the path is good and the
/// constraint that it is about does not exist.
struct Setting {
  std::function<bool(double)> set;  ///< false: a value that the setting cannot take
  std::function<double()> get;
  bool isReal = false;
};

Setting Flag(bool& flag) {
  return {[&flag](double value) {
            flag = value != 0.0;
            return true;
          },
          [&flag] { return flag ? 1.0 : 0.0; }};
}

template <class Number>
Setting Integer(Number& number, LgIndex_t min, LgIndex_t max) {
  return {[&number, min, max](double value) {
            if (value < min || value > max) return false;
            number = static_cast<Number>(static_cast<LgIndex_t>(value));
            return true;
          },
          [&number] { return static_cast<double>(number); }};
}

Setting Real(double& number) {
  return {[&number](double value) {
            number = value;
            return true;
          },
          [&number] { return number; }, true};
}

using Rest = std::vector<std::string>;

bool FindConstraintSetting(BlankConstraint& constraint, const std::string& name,
                           LgIndex_t variableCount, Setting& setting) {
  if (name == SV_INCLUDE) {
    setting = Flag(constraint.include);
  } else if (name == SV_VARA) {
    setting = Integer(constraint.varA, 1, variableCount);
  } else if (name == SV_VARB) {
    setting = Integer(constraint.varB, 1, variableCount);
  } else if (name == SV_RELOP) {
    setting = Integer(constraint.relOp, BlankRelOp_LessThanOrEqual, BlankRelOp_NotEqualTo);
  } else if (name == SV_CONSTRAINTOP2MODE) {
    setting = Integer(constraint.op2Mode, ConstraintOp2Mode_UseVar, ConstraintOp2Mode_UseConstant);
  } else if (name == SV_VALUECUTOFF) {
    setting = Real(constraint.cutoff);
  } else {
    return false;
  }
  return true;
}

bool FindBlankingSetting(ValueBlanking& blanking, const Rest& rest, const StyleAddress& address,
                         LgIndex_t variableCount, Setting& setting) {
  if (rest == Rest{SV_INCLUDE}) {
    setting = Flag(blanking.include);
    return true;
  }
  if (rest == Rest{SV_BLANKENTIRECELL}) {
    setting = Flag(blanking.blankEntireCell);
    return true;
  }
  if (rest == Rest{SV_VALUEBLANKCELLMODE}) {
    setting = Integer(blanking.cellMode, BlankCellMode_AllCorners, BlankCellMode_PrimaryValue);
    return true;
  }
  if (rest.size() != 2 || rest[0] != SV_CONSTRAINT) return false;
  const auto number = static_cast<std::size_t>(address.offset1);
  const bool isThere = address.offset1 >= 1 && number <= ValueBlanking::kConstraintCount;
  BlankConstraint nowhere;
  if (!FindConstraintSetting(isThere ? blanking.constraints[number - 1] : nowhere, rest[1],
                             variableCount, setting)) {
    return false;
  }
  if (!isThere) setting = {};
  return true;
}

bool FindFieldMapSetting(FieldMap& map, const Rest& rest, Setting& setting) {
  if (rest == Rest{SV_SHADE, SV_SHOW}) {
    setting = Flag(map.layers[static_cast<std::size_t>(Layer::Shade)].show);
  } else if (rest == Rest{SV_SURFACES, SV_SURFACESTOPLOT}) {
    setting = Integer(map.surfacesToPlot, 0, 8);
  } else if (rest == Rest{SV_EFFECTS, SV_USEVALUEBLANKING}) {
    setting = Flag(map.useValueBlanking);
  } else if (rest == Rest{SV_VOLUMEMODE, SV_VOLUMEOBJECTSTOPLOT, SV_SHOWSLICES}) {
    setting = Flag(map.showSlices);
  } else if (rest == Rest{SV_VOLUMEMODE, SV_VOLUMEOBJECTSTOPLOT, SV_SHOWISOSURFACES}) {
    setting = Flag(map.showIsosurfaces);
  } else if (rest == Rest{SV_VOLUMEMODE, SV_VOLUMEOBJECTSTOPLOT, SV_SHOWSTREAMTRACES}) {
    setting = Flag(map.showStreamtraces);
  } else {
    return false;
  }
  return true;
}

/// The settings that the address leads to: one, or one for each field map. SyntaxError for a path
/// that there is not, ValueError when it is about a constraint or field map that there is not.
QelSetValueResult_e FindSettings(Styles& styles, const StyleAddress& address,
                                 LgIndex_t variableCount, std::vector<Setting>& settings) {
  const Rest& path = address.path;
  if (path.size() > 2 && path[0] == SV_BLANKING && path[1] == SV_VALUE) {
    Setting setting;
    if (!FindBlankingSetting(styles.blanking, Rest(path.begin() + 2, path.end()), address,
                             variableCount, setting)) {
      return SetValueResult_SyntaxError;
    }
    if (setting.set != nullptr) settings.push_back(setting);
  } else if (path.size() > 1 && path[0] == SV_FIELDMAP) {
    const Rest rest(path.begin() + 1, path.end());
    FieldMap nowhere;
    Setting setting;
    if (!FindFieldMapSetting(nowhere, rest, setting)) return SetValueResult_SyntaxError;
    for (const LgIndex_t map : address.maps) {
      FindFieldMapSetting(styles.MapOf(map), rest, setting);
      settings.push_back(setting);
    }
  } else {
    return SetValueResult_SyntaxError;
  }
  return settings.empty() ? SetValueResult_ValueError : SetValueResult_Ok;
}

/// Notes who set a setting of value blanking last.
void NoteSetter(ValueBlanking& blanking, const StyleAddress& address, StyleSetter setter) {
  if (address.path.size() < 3 || address.path[0] != SV_BLANKING) return;
  const bool isAddOns = setter == StyleSetter::AddOn;
  if (address.path[2] == SV_CONSTRAINT) {
    blanking.constraints[static_cast<std::size_t>(address.offset1) - 1].isAddOns = isAddOns;
  } else if (address.path[2] != SV_INCLUDE) {
    blanking.isCellModeAddOns = isAddOns;
  }
}

}  // namespace

ArbParam_t IntegerOf(double value) {
  constexpr double kLargest = 1e15;
  if (std::isnan(value)) return 0;
  return static_cast<ArbParam_t>(std::clamp(value, -kLargest, kLargest));
}

bool LayerOfKeyword(const std::string& keyword, Layer& layer) {
  static const std::map<std::string, Layer> layers = {
      {SV_SHOWEDGE, Layer::Edge},       {SV_SHOWMESH, Layer::Mesh},
      {SV_SHOWSHADE, Layer::Shade},     {SV_SHOWCONTOUR, Layer::Contour},
      {SV_SHOWSCATTER, Layer::Scatter}, {SV_SHOWVECTOR, Layer::Vector}};
  const auto found = layers.find(keyword);
  if (found == layers.end()) return false;
  layer = found->second;
  return true;
}

void Styles::DropZones(const std::vector<LgIndex_t>& zones) {
  std::map<LgIndex_t, FieldMap> kept;
  for (const auto& [zone, map] : m_maps) {
    if (std::find(zones.begin(), zones.end(), zone) != zones.end()) continue;
    const auto before = std::count_if(zones.begin(), zones.end(),
                                      [zone = zone](LgIndex_t deleted) { return deleted < zone; });
    kept[zone - static_cast<LgIndex_t>(before)] = map;
  }
  m_maps = std::move(kept);
}

QelSetValueResult_e SetStyle(Styles& styles, const StyleAddress& address, ArbParam_t integer,
                             double value, LgIndex_t variableCount, StyleSetter setter) {
  std::vector<Setting> settings;
  const QelSetValueResult_e found = FindSettings(styles, address, variableCount, settings);
  if (found != SetValueResult_Ok) return found;
  bool isSame = true;
  for (const Setting& setting : settings) {
    const double wanted = setting.isReal ? value : static_cast<double>(integer);
    const double before = setting.get();
    if (!setting.set(wanted)) return SetValueResult_ValueError;
    isSame = isSame && setting.get() == before;
  }
  NoteSetter(styles.blanking, address, setter);
  return isSame ? SetValueResult_Duplicate : SetValueResult_Ok;
}

QelSetValueResult_e GetStyle(Styles& styles, const StyleAddress& address, ArbParam_t* integer,
                             double* value) {
  std::vector<Setting> settings;
  const QelSetValueResult_e found = FindSettings(styles, address, 0, settings);
  if (found != SetValueResult_Ok) return found;
  const double held = settings.front().get();
  if (integer != nullptr) *integer = IntegerOf(held);
  if (value != nullptr) *value = held;
  return SetValueResult_Ok;
}

}  // namespace qelhost
