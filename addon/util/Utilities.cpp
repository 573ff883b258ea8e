#include "Utilities.h"

#include "HostCheck.h"
#include "HostLock.h"
#include "HostOwned.h"

#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"

#include <algorithm>
#include <cmath>

namespace qelvane::qelutiltools {

namespace {

constexpr char kGeneralError[] = "An error occured in the Marquell add-on. Please try again.";

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
    if (name == zname) return zone;
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
