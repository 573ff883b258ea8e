/// One style setting, named by its path.
#ifndef QELVANE_TOOLBOX_STYLEVALUE_H
#define QELVANE_TOOLBOX_STYLEVALUE_H

#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"
#include "qelvane/toolbox/ArgList.h"
#include "qelvane/toolbox/Set.h"

#include <array>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace qelvane::toolbox {

/// Holds the path of a style setting, up to seven names such as FIELDMAP, SHADE, SHOW, and applies
/// values to it. A field-map style is addressed by a set of field maps (OBJECTSET).
class StyleValue {
 public:
  static constexpr std::size_t kMaxNames = 7;

  StyleValue() = default;
  // A list of names is no style value by itself. NOLINTNEXTLINE(google-explicit-constructor)
  explicit StyleValue(std::initializer_list<const char*> names) {
    initMacroIDsfromStyleValueNames(std::vector<std::string>(names.begin(), names.end()));
  }

  /// Checks the names and keeps them as the parameters P1 to P7.
  ///
  /// names    1 to 7 non-empty keywords, outermost first
  /// returns  false, and holds no path, when their number is wrong or one is empty
  bool initMacroIDsfromStyleValueNames(std::vector<std::string> names) {
    m_names.clear();
    if (names.empty() || names.size() > kMaxNames) return false;
    for (const std::string& name : names) {
      if (name.empty()) return false;
    }
    m_names = std::move(names);
    return true;
  }

  /// Field maps that the setting is for; null (the start value) when it is not a field-map style.
  /// The set must outlive the use of every argument list that is set up from here.
  void setObjectSet(const QelSet* fieldMaps) { m_objectSet = fieldMaps; }

  /// Clears the list and fills it with the path: P1 to P7, OFFSET1 and OFFSET2 where not 0, and
  /// OBJECTSET where there is one. The value is the caller's to append.
  ///
  /// returns  false when there is no path or the host refuses an argument
  bool setupSetValueArgList(ArgList& args, LgIndex_t offset1 = 0, LgIndex_t offset2 = 0) const {
    static constexpr std::array<const char*, kMaxNames> kParameters = {SV_P1, SV_P2, SV_P3, SV_P4,
                                                                       SV_P5, SV_P6, SV_P7};
    if (m_names.empty()) return false;
    args.clear();
    bool ok = true;
    for (std::size_t i = 0; i < m_names.size(); ++i) {
      ok = ok && args.appendString(kParameters[i], m_names[i]);
    }
    if (offset1 != 0) ok = ok && args.appendInt(SV_OFFSET1, offset1);
    if (offset2 != 0) ok = ok && args.appendInt(SV_OFFSET2, offset2);
    if (m_objectSet != nullptr) ok = ok && args.appendSet(SV_OBJECTSET, m_objectSet);
    return ok;
  }

  /// Applies a value, given both as IVALUE and as DVALUE.
  ///
  /// returns  the host's answer; SetValueResult_SyntaxError when the arguments cannot be set up
  QelSetValueResult_e set(ArbParam_t value, LgIndex_t offset1 = 0, LgIndex_t offset2 = 0) const {
    ArgList args;
    if (!setupSetValueArgList(args, offset1, offset2)) return SetValueResult_SyntaxError;
    if (!args.appendArbParam(SV_IVALUE, value)) return SetValueResult_SyntaxError;
    if (!args.appendDouble(SV_DVALUE, static_cast<double>(value)))
      return SetValueResult_SyntaxError;
    return QelUtilStyleSetLowLevelX(args.getRef());
  }

  const std::vector<std::string>& names() const { return m_names; }

 private:
  std::vector<std::string> m_names;
  const QelSet* m_objectSet = nullptr;
};

}  // namespace qelvane::toolbox

#endif
