#include "CallLogHost.h"

#include "qelvane/QelUtil.h"

#include <cstdio>
#include <cstring>
#include <utility>

struct QelSet {
  std::vector<SetIndex_t> members;
};

struct QelArgList {
  std::vector<std::string> entries;
  ArbParam_t* integer = nullptr;  ///< where a reader wants its value
  double* number = nullptr;
};

namespace callloghost {

CallLogHost& Host() {
  static CallLogHost host;
  return host;
}

void ResetHost() { Host() = CallLogHost(); }

namespace {

/// Logs the call; false when it is the one to refuse.
bool Log(const std::string& call) {
  Host().log.push_back(call);
  if (call != Host().refused) return true;
  return --Host().passesBeforeRefusal >= 0;
}

std::string TextOf(const QelSet* set) {
  std::string text;
  for (const SetIndex_t member : set->members) text += " " + std::to_string(member);
  return "{" + text + " }";
}

std::string TextOf(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", number);
  return text;
}

bool Append(QelArgList* list, const char* name, const std::string& value) {
  list->entries.push_back(std::string(name) + "=" + value);
  return Log("Append " + list->entries.back());
}

std::string TextOf(const QelArgList* list) {
  std::string text;
  for (const std::string& entry : list->entries) text += " " + entry;
  return text;
}

}  // namespace
}  // namespace callloghost

using callloghost::Host;
using callloghost::Log;

void QelUtilLockStart(QelAddOn*) { ++Host().lockDepth; }
void QelUtilLockFinish(QelAddOn*) { --Host().lockDepth; }

bool QelUtilMacroIsBatchModeActive(void) { return Host().isBatch; }
bool QelUtilMacroIsRecordingActive(void) { return Host().isRecording; }
bool QelUtilMacroRecordAddOnCommand(const char*, const char* command) { return Log(command); }
bool QelUtilMacroExecuteCommand(const char* command) {
  return Log(std::string("Execute ") + command);
}

void QelUtilDialogErrMsg(const char* message) {
  Log((Host().lockDepth > 0 ? "Locked ErrMsg " : "ErrMsg ") + std::string(message));
}

bool QelUtilRedraw(bool doFullDrawing) {
  return Log((Host().lockDepth > 0 ? "Locked Redraw " : "Redraw ") + std::to_string(doFullDrawing));
}

bool QelUtilThreeDViewGetViewerAngle(double* psi, double* alpha, double* theta) {
  *psi = Host().psi;
  *alpha = Host().alpha;
  *theta = Host().theta;
  return true;
}

bool QelUtilViewRotate3D(QelRotateAxis_e axis, double degrees, double x, double y, double z,
                         QelRotateOrigin_e origin) {
  const bool isAboutOrigin =
      x == 0.0 && y == 0.0 && z == 0.0 && origin == RotateOriginLocation_DefinedOrigin;
  const char* const name = axis == RotateAxis_Psi     ? "psi"
                           : axis == RotateAxis_Alpha ? "alpha"
                                                      : "theta";
  return Log(std::string("Rotate ") + name + " " + callloghost::TextOf(degrees) +
             (isAboutOrigin ? "" : " elsewhere"));
}

void QelUtilStringDealloc(char** s) {
  if (*s == nullptr) return;
  delete[] * s;
  *s = nullptr;
  --Host().openStrings;
}

bool QelUtilDataSetIsAvailable(void) { return Host().hasDataSet; }

bool QelUtilDataSetGetInfo(char** title, LgIndex_t* numZones, LgIndex_t* numVars) {
  if (title != nullptr || numVars != nullptr || !Log("DataSetGetInfo")) return false;
  *numZones = static_cast<LgIndex_t>(Host().zoneNames.size());
  return true;
}

bool QelUtilZoneGetName(LgIndex_t zone, char** name) {
  if (!Log("ZoneGetName " + std::to_string(zone))) return false;
  const std::string& text = Host().zoneNames.at(static_cast<std::size_t>(zone) - 1);
  *name = new char[text.size() + 1];
  std::strcpy(*name, text.c_str());
  ++Host().openStrings;
  return true;
}

QelSet* QelUtilSetAlloc(bool) {
  if (!Log("SetAlloc " + std::to_string(Host().openSets + 1))) return nullptr;
  ++Host().openSets;
  return new QelSet;
}

void QelUtilSetDealloc(QelSet** set) {
  if (*set == nullptr) return;
  delete std::exchange(*set, nullptr);
  --Host().openSets;
}

bool QelUtilSetAddMember(QelSet* set, SetIndex_t member, bool) {
  set->members.push_back(member);
  return Log("SetAddMember " + std::to_string(member));
}

QelArgList* QelUtilArgListAlloc(void) {
  if (!Log("ArgListAlloc")) return nullptr;
  ++Host().openLists;
  return new QelArgList;
}

void QelUtilArgListDealloc(QelArgList** list) {
  if (*list == nullptr) return;
  delete std::exchange(*list, nullptr);
  --Host().openLists;
}

bool QelUtilArgListAppendInt(QelArgList* list, const char* name, LgIndex_t value) {
  return callloghost::Append(list, name, std::to_string(value));
}

bool QelUtilArgListAppendSet(QelArgList* list, const char* name, const QelSet* set) {
  return callloghost::Append(list, name, callloghost::TextOf(set));
}

void QelUtilStateChangedX(QelArgList* args) { Log("StateChangedX" + callloghost::TextOf(args)); }

void QelUtilArgListClear(QelArgList* list) {
  *list = QelArgList();
  Log("ArgListClear");
}

bool QelUtilArgListAppendString(QelArgList* list, const char* name, const char* value) {
  return callloghost::Append(list, name, value);
}

bool QelUtilArgListAppendArbParam(QelArgList* list, const char* name, ArbParam_t value) {
  return callloghost::Append(list, name, std::to_string(value));
}

bool QelUtilArgListAppendDouble(QelArgList* list, const char* name, double value) {
  return callloghost::Append(list, name, callloghost::TextOf(value));
}

bool QelUtilArgListAppendArbParamPtr(QelArgList* list, const char* name, ArbParam_t* value) {
  list->integer = value;
  return callloghost::Append(list, name, "&");
}

bool QelUtilArgListAppendDoublePtr(QelArgList* list, const char* name, double* value) {
  list->number = value;
  return callloghost::Append(list, name, "&");
}

QelSetValueResult_e QelUtilStyleSetLowLevelX(QelArgList* args) {
  Log("StyleSet" + callloghost::TextOf(args));
  std::vector<QelSetValueResult_e>& answers = Host().styleAnswers;
  if (answers.empty()) return SetValueResult_Ok;
  const QelSetValueResult_e answer = answers.front();
  answers.erase(answers.begin());
  return answer;
}

QelSetValueResult_e QelUtilStyleGetLowLevelX(QelArgList* args) {
  const std::string path = callloghost::TextOf(args);
  Log((Host().lockDepth > 0 ? "Locked StyleGet" : "StyleGet") + path);
  const auto style = Host().styles.find(path.substr(1));
  if (style == Host().styles.end()) return SetValueResult_SyntaxError;
  if (args->integer != nullptr) *args->integer = static_cast<ArbParam_t>(style->second);
  if (args->number != nullptr) *args->number = style->second;
  return SetValueResult_Ok;
}
