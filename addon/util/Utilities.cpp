#include "Utilities.h"

#include "HostCheck.h"
#include "HostLock.h"
#include "HostOwned.h"

#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace qelvane::qelutiltools {

namespace {

constexpr char kGeneralError[] = "An error occured in the Marquell add-on. Please try again.";

/// Reads and writes settings of value blanking, one after the other, with one argument list.
class BlankingSettings {
 public:
  BlankingSettings() {
    QelArgList* argList = nullptr;
    HOST_CHECK(argList = QelUtilArgListAlloc());
    m_argList.reset(argList);
  }

  /// The setting that is meant until the next call: of value blanking as a whole, or of one of its
  /// constraints.
  void Choose(const char* keyword) {
    BeginPath();
    AppendKeyword("SV_P3", keyword);
  }
  void Choose(const char* keyword, LgIndex_t constraintNum) {
    QelArgList* const argList = m_argList.get();
    QelUtilArgListClear(argList);
    HOST_CHECK(QelUtilArgListAppendInt(argList, SV_OFFSET1, constraintNum));
    AppendBlankingValue();
    HOST_CHECK(QelUtilArgListAppendString(argList, SV_P3, SV_CONSTRAINT));
    AppendKeyword("SV_P4", keyword);
  }

  /// name: what the value is called in the text of an internal error.
  QelSetValueResult_e Set(ArbParam_t value, const char* name) {
    const bool isAppended = QelUtilArgListAppendArbParam(m_argList.get(), SV_IVALUE, value);
    Check(
        isAppended,
        std::string("QelUtilArgListAppendArbParam(argList, SV_IVALUE, (ArbParam_t) ") + name + ")");
    return QelUtilStyleSetLowLevelX(m_argList.get());
  }
  QelSetValueResult_e Set(double valCutoff) {
    QelArgList* const argList = m_argList.get();
    HOST_CHECK(QelUtilArgListAppendDouble(argList, SV_DVALUE, valCutoff));
    return QelUtilStyleSetLowLevelX(argList);
  }

  ArbParam_t GetInteger() {
    QelArgList* const argList = m_argList.get();
    ArbParam_t value = 0;
    HOST_CHECK(QelUtilArgListAppendArbParamPtr(argList, SV_IVALUE, &value));
    QelUtilStyleGetLowLevelX(argList);
    return value;
  }
  double GetDouble() {
    QelArgList* const argList = m_argList.get();
    double value = 0.0;
    HOST_CHECK(QelUtilArgListAppendDoublePtr(argList, SV_DVALUE, &value));
    QelUtilStyleGetLowLevelX(argList);
    return value;
  }

 private:
  static void Check(bool isDone, const std::string& call) {
    if (!isDone) ThrowAssertFailed(call.c_str(), __FILE__, __LINE__);
  }
  void BeginPath() {
    QelUtilArgListClear(m_argList.get());
    AppendBlankingValue();
  }
  void AppendBlankingValue() {
    QelArgList* const argList = m_argList.get();
    HOST_CHECK(QelUtilArgListAppendString(argList, SV_P1, SV_BLANKING));
    HOST_CHECK(QelUtilArgListAppendString(argList, SV_P2, SV_VALUE));
  }
  /// A keyword's constant is called SV_ and its own text.
  void AppendKeyword(const char* parameter, const char* keyword) {
    const char* const name = parameter + std::strlen("SV_");
    Check(
        QelUtilArgListAppendString(m_argList.get(), name, keyword),
        std::string("QelUtilArgListAppendString(argList, ") + parameter + ", SV_" + keyword + ")");
  }

  HostArgList m_argList;
};

}  // namespace

void ShowAddOnError(const std::exception& error, const char* message) {
  // The text is for a debugger: it names calls and lines, which mean nothing to the user.
  static_cast<void>(error.what());
  const HostLock lock;
  if (QelUtilMacroIsBatchModeActive()) return;
  QelUtilDialogErrMsg(message == nullptr ? kGeneralError : message);
}

void RotateViewTo(double psiDeg, double alphaDeg, double thetaDeg, bool fit) {
  constexpr double kDegreesPerRadian = 57.29577951308232;
  const HostLock lock;
  double psi = 0.0;
  double alpha = 0.0;
  double theta = 0.0;
  QelUtilThreeDViewGetViewerAngle(&psi, &alpha, &theta);
  const double dPsi = std::fmod(psiDeg - psi * kDegreesPerRadian, 360.0);
  const double dAlpha = std::fmod(alphaDeg - alpha * kDegreesPerRadian, 360.0);
  const double dTheta = std::fmod(thetaDeg - theta * kDegreesPerRadian, 360.0);
  HOST_CHECK(QelUtilViewRotate3D(RotateAxis_Psi, dPsi, 0.0, 0.0, 0.0, RotateOriginLocation_DefinedOrigin));
  HOST_CHECK(QelUtilViewRotate3D(RotateAxis_Alpha, dAlpha, 0.0, 0.0, 0.0, RotateOriginLocation_DefinedOrigin));
  HOST_CHECK(QelUtilViewRotate3D(RotateAxis_Theta, dTheta, 0.0, 0.0, 0.0, RotateOriginLocation_DefinedOrigin));
  if (fit) HOST_CHECK(QelUtilMacroExecuteCommand("$!VIEW FITSURFACES"));
}

LgIndex_t FindZoneByName(const std::string& name) {
  if (!QelUtilDataSetIsAvailable()) return 0;
  LgIndex_t nZones = 0;
  HOST_CHECK(QelUtilDataSetGetInfo(NULL, &nZones, NULL));
  for (LgIndex_t zone = 1; zone <= nZones; ++zone) {
    char* zname = nullptr;
    HOST_CHECK(QelUtilZoneGetName(zone, &zname));
    const HostString owned(zname);
    if (zname != nullptr && name == zname) return zone;
  }
  return 0;
}

void NotifyVarsAltered(LgIndex_t zoneNum, LgIndex_t varNum) {
  QelSet* zoneSet = nullptr;
  HOST_CHECK(zoneSet = QelUtilSetAlloc(FALSE));
  const HostSet ownedZones(zoneSet);
  QelSet* varSet = nullptr;
  HOST_CHECK(varSet = QelUtilSetAlloc(FALSE));
  const HostSet ownedVars(varSet);
  HOST_CHECK(QelUtilSetAddMember(zoneSet, static_cast<SetIndex_t>(zoneNum), FALSE));
  HOST_CHECK(QelUtilSetAddMember(varSet, static_cast<SetIndex_t>( varNum), FALSE));
  SendVarsAlteredStateChange(zoneSet, varSet);
}

void SendVarsAlteredStateChange(const QelSet* zoneSet, const QelSet* varSet) {
  QelArgList* argList = nullptr;
  HOST_CHECK(argList = QelUtilArgListAlloc());
  const HostArgList owned(argList);
  HOST_CHECK(QelUtilArgListAppendInt(argList, SV_STATECHANGE, StateChange_VarsAltered));
  HOST_CHECK(QelUtilArgListAppendSet(argList, SV_ZONELIST, zoneSet));
  HOST_CHECK(QelUtilArgListAppendSet(argList, SV_VARLIST, varSet));
  QelUtilStateChangedX(argList);
}

QelSetValueResult_e SetValueBlankingInclude(bool include) {
  BlankingSettings settings;
  settings.Choose(SV_INCLUDE);
  return settings.Set(include, "include");
}

bool GetValueBlankingInclude() {
  const HostLock lock;
  BlankingSettings settings;
  settings.Choose(SV_INCLUDE);
  return settings.GetInteger() != 0;
}

QelSetValueResult_e SetValueBlankingCellMode(bool wholeCell, int mode) {
  BlankingSettings settings;
  settings.Choose(SV_BLANKENTIRECELL);
  settings.Set(wholeCell, "wholeCell");
  settings.Choose(SV_VALUEBLANKCELLMODE);
  return settings.Set(mode, "mode");
}

void GetValueBlankingCellSettings(bool& wholeCell, int& mode, bool& include) {
  BlankingSettings settings;
  settings.Choose(SV_BLANKENTIRECELL);
  wholeCell = settings.GetInteger() != 0;
  settings.Choose(SV_VALUEBLANKCELLMODE);
  mode = static_cast<int>(settings.GetInteger());
  settings.Choose(SV_INCLUDE);
  include = settings.GetInteger() != 0;
}

QelSetValueResult_e SetConstraintInclude(LgIndex_t constraintNum, bool include) {
  BlankingSettings settings;
  settings.Choose(SV_INCLUDE, constraintNum);
  return settings.Set(include, "include");
}

QelSetValueResult_e SetValueBlankConstraint(LgIndex_t constraintNum, bool include, LgIndex_t varA,
                                            double valCutoff, int relativeOp, int mode) {
  BlankingSettings settings;
  settings.Choose(SV_INCLUDE, constraintNum);
  settings.Set(include, "include");
  settings.Choose(SV_VARA, constraintNum);
  settings.Set(varA, "varA");
  settings.Choose(SV_RELOP, constraintNum);
  settings.Set(relativeOp, "relativeOp");
  settings.Choose(SV_CONSTRAINTOP2MODE, constraintNum);
  settings.Set(mode, "mode");
  settings.Choose(SV_VALUECUTOFF, constraintNum);
  return settings.Set(valCutoff);
}

void GetValueBlankConstraint(LgIndex_t constraintNum, bool& include, LgIndex_t& varA,
                             LgIndex_t& varB, int& relativeOp, int& mode, double& valCutoff) {
  BlankingSettings settings;
  settings.Choose(SV_INCLUDE, constraintNum);
  include = settings.GetInteger() != 0;
  settings.Choose(SV_VARA, constraintNum);
  varA = static_cast<LgIndex_t>(settings.GetInteger());
  settings.Choose(SV_VARB, constraintNum);
  varB = static_cast<LgIndex_t>(settings.GetInteger());
  settings.Choose(SV_RELOP, constraintNum);
  relativeOp = static_cast<int>(settings.GetInteger());
  settings.Choose(SV_CONSTRAINTOP2MODE, constraintNum);
  mode = static_cast<int>(settings.GetInteger());
  settings.Choose(SV_VALUECUTOFF, constraintNum);
  valCutoff = settings.GetDouble();
}

void RedrawIfRecording() {
  const HostLock lock;
  if (QelUtilMacroIsRecordingActive()) HOST_CHECK(QelUtilRedraw(TRUE));
}

void RemoveBlanks(std::string& text) {
  text.erase(std::remove(text.begin(), text.end(), ' '), text.end());
}

void SplitString(const std::string& text, std::vector<std::string>& parts,
                 const std::string& delimiters) {
  parts.clear();
  std::size_t first = text.find_first_not_of(delimiters);
  while (first != std::string::npos) {
    const std::size_t end = text.find_first_of(delimiters, first);
    parts.push_back(text.substr(first, end - first));
    first = text.find_first_not_of(delimiters, end);
  }
}

}  // namespace qelvane::qelutiltools
