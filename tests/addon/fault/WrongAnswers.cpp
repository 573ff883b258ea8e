// The functions of the interface that may be made to give a wrong answer: the linker sends the
// add-on's calls here, and those to __real_... on to the fake host.
#include "WrongAnswers.h"

#include "FakeHost.h"

#include "qelvane/Extensions.h"
#include "qelvane/QelGUI.h"
#include "qelvane/QelUtil.h"

#include <cstring>
#include <iterator>
#include <limits>

namespace fault {

namespace {

constexpr int kTruth = -1;

struct Plan {
  std::string function;
  int wrongAnswer = kTruth;
  int countdown = 0;
};
Plan plan;

/// The number of the wrong answer that this call gets; most get the truth.
int AnswerOf(const char* function) {
  if (plan.countdown < 1 || plan.function != function || --plan.countdown > 0) return kTruth;
  fakehost::Host().NoteFault();
  return plan.wrongAnswer;
}

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinite = std::numeric_limits<double>::infinity();

enum class Wrong { Minus1, Least, OneMore, OneLess, Most };

/// What an answer may be replaced with and cannot be right. A zone more than there is cannot be
/// had, but one less is believed; and nobody goes through two billion faces.
constexpr Wrong kCounts[] = {Wrong::Minus1, Wrong::Least, Wrong::OneMore};
constexpr Wrong kSizes[] = {Wrong::Minus1, Wrong::Least, Wrong::OneLess};
constexpr Wrong kIndexes[] = {Wrong::Minus1, Wrong::Least, Wrong::OneMore, Wrong::Most};

template <class T>
T Replaced(Wrong how, T truth) {
  switch (how) {
    case Wrong::Minus1:
      return static_cast<T>(-1);
    case Wrong::Least:
      return static_cast<T>(std::numeric_limits<LgIndex_t>::min());
    case Wrong::OneMore:
      return static_cast<T>(truth + 1);
    case Wrong::OneLess:
      return static_cast<T>(truth - 1);
    default:
      return static_cast<T>(std::numeric_limits<LgIndex_t>::max());
  }
}

template <class T, std::size_t kCount>
T Wrongly(const Wrong (&kinds)[kCount], int how, T truth) {
  return how < 0 ? truth : Replaced(kinds[how], truth);
}

constexpr int kWrongNumbers = 3;
constexpr double kNumbers[] = {kNoNumber, -kInfinite, -1.0};
double Wrongly(const double (&kinds)[kWrongNumbers], int how, double truth) {
  return how < 0 ? truth : kinds[how];
}

/// No text, an empty one, one that a format would choke on.
constexpr int kWrongTexts = 3;
void MakeWrong(int how, char** text) {
  if (how < 0 || text == nullptr) return;
  QelUtilStringDealloc(text);
  if (how == 0) return;
  const std::string wrong = how == 1 ? "" : std::string(4000, 'x') + "%s%n\"";
  *text = QelUtilStringAlloc(static_cast<LgIndex_t>(wrong.size()), "wrong");
  std::strcpy(*text, wrong.c_str());
}

}  // namespace

void LieOnCall(const std::string& function, int wrongAnswer, int nth) {
  plan = {function, wrongAnswer, function.empty() ? 0 : nth};
}

}  // namespace fault

using fault::AnswerOf;

// Numbers and texts ------------------------------------------------------------------------------

#define LYING(result, name, params, args, kinds)                 \
  extern "C" result __real_##name params;                        \
  extern "C" result __wrap_##name params;                        \
  extern "C" result __wrap_##name params {                       \
    const result truth = __real_##name args;                     \
    return fault::Wrongly(fault::kinds, AnswerOf(#name), truth); \
  }

// result, name, parameters, arguments, what the answer may be replaced with
#define LYING_FUNCTIONS(X)                                                                         \
  X(QelZoneType_e, QelUtilZoneGetType, (LgIndex_t zone), (zone), kCounts)                          \
  X(LgIndex_t, QelUtilDataSetGetNumZones, (), (), kCounts)                                         \
  X(LgIndex_t, QelUtilDataSetGetNumVars, (), (), kCounts)                                          \
  X(LgIndex_t, QelUtilFrameGetCount, (), (), kCounts)                                              \
  X(LgIndex_t, QelUtilDataNodeToElemMapGetNumElems, (const QelNodeToElemMap* map, LgIndex_t node), \
    (map, node), kCounts)                                                                          \
  X(LgIndex_t, QelUtilDataElemGetNumFaces, (const QelElemToFaceMap* map, LgIndex_t element),       \
    (map, element), kCounts)                                                                       \
  X(LgIndex_t, QelUtilDataFaceMapGetNFaceNodes, (const QelFaceMap* map, LgIndex_t face),           \
    (map, face), kCounts)                                                                          \
  X(LgIndex_t, QelUtilDataFaceNbrGetNumNByRef,                                                     \
    (const QelFaceNeighbors* map, LgIndex_t element, LgIndex_t face), (map, element, face),        \
    kCounts)                                                                                       \
  X(LgIndex_t, QelUtilDataValueGetCountByRef, (const QelFieldData* ref), (ref), kSizes)            \
  X(LgIndex_t, QelUtilDataValueGetShareCount, (LgIndex_t zone, LgIndex_t var), (zone, var),        \
    kCounts)                                                                                       \
  X(QelValueLocation_e, QelUtilDataValueGetLocation, (LgIndex_t zone, LgIndex_t var), (zone, var), \
    kCounts)                                                                                       \
  X(LgIndex_t, QelUtilGeomPolyGetPointCount, (QelGeomID_t geom), (geom), kCounts)                  \
  X(QelGeomType_e, QelUtilGeomGetType, (QelGeomID_t geom), (geom), kCounts)                        \
  X(LgIndex_t, QelUtilPickListGetCount, (), (), kCounts)                                           \
  X(QelMouseMode_e, QelUtilMouseGetCurrentMode, (), (), kCounts)                                   \
  X(QelPlotType_e, QelUtilFrameGetPlotType, (), (), kCounts)                                       \
  X(LgIndex_t, QelGUIOptionMenuGetItemCount, (LgIndex_t menu), (menu), kCounts)                    \
  X(LgIndex_t, QelGUIRadioBoxGetToggle, (LgIndex_t box), (box), kCounts)                           \
  X(LgIndex_t, QelUtilVarGetNumByName, (const char* text), (text), kIndexes)                       \
  X(LgIndex_t, QelUtilVarGetNumByAssignment, (char axis), (axis), kIndexes)                        \
  X(LgIndex_t, QelUtilZoneGetFieldMap, (LgIndex_t zone), (zone), kIndexes)                         \
  X(LgIndex_t, QelUtilProbeFieldGetZone, (), (), kIndexes)                                         \
  X(LgIndex_t, QelUtilProbeFieldGetCell, (), (), kIndexes)                                         \
  X(LgIndex_t, QelUtilProbeGetPointIndex, (), (), kIndexes)                                        \
  X(LgIndex_t, QelUtilDataNodeGetByRef,                                                            \
    (const QelNodeMap* map, LgIndex_t element, LgIndex_t corner), (map, element, corner),          \
    kIndexes)                                                                                      \
  X(LgIndex_t, QelUtilDataNodeToElemMapGetElem,                                                    \
    (const QelNodeToElemMap* map, LgIndex_t node, LgIndex_t n), (map, node, n), kIndexes)          \
  X(LgIndex_t, QelUtilDataElemGetFace,                                                             \
    (const QelElemToFaceMap* map, LgIndex_t element, LgIndex_t n), (map, element, n), kIndexes)    \
  X(LgIndex_t, QelUtilDataFaceMapGetFaceNode,                                                      \
    (const QelFaceMap* map, LgIndex_t face, LgIndex_t n), (map, face, n), kIndexes)                \
  X(QelUniqueID_t, QelUtilFrameGetUniqueID, (), (), kIndexes)                                      \
  X(QelUniqueID_t, QelUtilDataSetGetUniqueID, (), (), kIndexes)                                    \
  X(QelGeomID_t, QelUtilGeomGetBase, (), (), kIndexes)                                             \
  X(QelGeomID_t, QelUtilPickListGetGeom, (LgIndex_t item), (item), kIndexes)                       \
  X(double, QelUtilGeomCircleGetRadius, (QelGeomID_t geom), (geom), kNumbers)                      \
  X(double, QelUtilSolutionTimeGetCurrent, (), (), kNumbers)                                       \
  X(double, QelUtilConvertXPosition, (QelCoordSys_e from, QelCoordSys_e to, double x),             \
    (from, to, x), kNumbers)                                                                       \
  X(double, QelUtilConvertXDimension, (QelCoordSys_e from, QelCoordSys_e to, double x),            \
    (from, to, x), kNumbers)

LYING_FUNCTIONS(LYING)

#define LYING_TEXT(name, params, args, text) \
  extern "C" bool __real_##name params;      \
  extern "C" bool __wrap_##name params;      \
  extern "C" bool __wrap_##name params {     \
    const bool isDone = __real_##name args;  \
    const int how = AnswerOf(#name);         \
    if (isDone) fault::MakeWrong(how, text); \
    return isDone;                           \
  }

// name, parameters, arguments, the text among them
#define LYING_TEXTS(X)                                                     \
  X(QelUtilZoneGetName, (LgIndex_t zone, char** name), (zone, name), name) \
  X(QelUtilVarGetName, (LgIndex_t var, char** name), (var, name), name)    \
  X(QelUtilLockGetCurrentOwnerName, (char** name), (name), name)           \
  X(QelUtilStateChangeGetStyleParam, (LgIndex_t n, char** param), (n, param), param)

LYING_TEXTS(LYING_TEXT)

// What has several answers -----------------------------------------------------------------------

#define WRAPPED(result, name, ...)              \
  extern "C" result __real_##name(__VA_ARGS__); \
  extern "C" result __wrap_##name(__VA_ARGS__); \
  extern "C" result __wrap_##name(__VA_ARGS__)

namespace {

/// Which of the three is wrong, and how.
constexpr fault::Wrong kWrongDim[] = {fault::Wrong::Minus1, fault::Wrong::Least,
                                      fault::Wrong::OneMore, fault::Wrong::OneLess};
constexpr int kWrongDims = 3 * static_cast<int>(std::size(kWrongDim));
void MakeWrongDim(int how, LgIndex_t* i, LgIndex_t* j, LgIndex_t* k) {
  if (how < 0) return;
  LgIndex_t* const dims[] = {i, j, k};
  LgIndex_t* const dim = dims[how % 3];
  if (dim != nullptr) *dim = fault::Wrongly(kWrongDim, how / 3, *dim);
}

constexpr int kWrongInfos = 2 * 3;

constexpr int kWrongRanges = 3;
void MakeWrongRange(int how, double* min, double* max) {
  if (how == 0) *min = *max = fault::kNoNumber;
  if (how == 1) *min = -fault::kInfinite;
  if (how == 2) *min = *max + 10.0;
}

}  // namespace

WRAPPED(void, QelUtilZoneGetIJK, LgIndex_t zone, LgIndex_t* i, LgIndex_t* j, LgIndex_t* k) {
  __real_QelUtilZoneGetIJK(zone, i, j, k);
  MakeWrongDim(AnswerOf("QelUtilZoneGetIJK"), i, j, k);
}

WRAPPED(bool, QelUtilDataSetGetInfo, char** title, LgIndex_t* numZones, LgIndex_t* numVars) {
  const bool isDone = __real_QelUtilDataSetGetInfo(title, numZones, numVars);
  const int how = AnswerOf("QelUtilDataSetGetInfo");
  LgIndex_t* const number = how % 2 == 0 ? numZones : numVars;
  if (how >= 0 && number != nullptr) *number = fault::Wrongly(fault::kCounts, how / 2, *number);
  return isDone;
}

WRAPPED(bool, QelUtilZoneGetRelevant, double time, bool ignoreStrandID, QelSet** zones) {
  const bool isDone = __real_QelUtilZoneGetRelevant(time, ignoreStrandID, zones);
  const int how = AnswerOf("QelUtilZoneGetRelevant");
  if (how == 0) QelUtilSetDealloc(zones);
  if (how == 1) QelUtilSetAddMember(*zones, 99, FALSE);
  return isDone;
}

WRAPPED(bool, QelUtilViewGet, QelView** view) {
  const bool isDone = __real_QelUtilViewGet(view);
  if (AnswerOf("QelUtilViewGet") == 0) QelUtilViewDealloc(view);
  return isDone;
}

WRAPPED(void, QelUtilVarGetMinMax, LgIndex_t var, double* min, double* max) {
  __real_QelUtilVarGetMinMax(var, min, max);
  MakeWrongRange(AnswerOf("QelUtilVarGetMinMax"), min, max);
}

WRAPPED(bool, QelUtilViewGetMagnification, double* magnification) {
  const bool isDone = __real_QelUtilViewGetMagnification(magnification);
  *magnification =
      fault::Wrongly(fault::kNumbers, AnswerOf("QelUtilViewGetMagnification"), *magnification);
  return isDone;
}

WRAPPED(bool, QelUtilThreeDViewGetViewerAngle, double* psi, double* alpha, double* theta) {
  const bool isDone = __real_QelUtilThreeDViewGetViewerAngle(psi, alpha, theta);
  *psi = fault::Wrongly(fault::kNumbers, AnswerOf("QelUtilThreeDViewGetViewerAngle"), *psi);
  return isDone;
}

WRAPPED(void, QelUtilConvert3DPositionToGrid, double x, double y, double z, double* gx, double* gy,
        double* gz) {
  __real_QelUtilConvert3DPositionToGrid(x, y, z, gx, gy, gz);
  *gx = fault::Wrongly(fault::kNumbers, AnswerOf("QelUtilConvert3DPositionToGrid"), *gx);
}

WRAPPED(void, QelUtilGeomGetAnchorPos, QelGeomID_t geom, double* x, double* y, double* z) {
  __real_QelUtilGeomGetAnchorPos(geom, x, y, z);
  *x = fault::Wrongly(fault::kNumbers, AnswerOf("QelUtilGeomGetAnchorPos"), *x);
}

WRAPPED(bool, QelGUITextFieldGetDouble, LgIndex_t field, double* value) {
  const bool isDone = __real_QelGUITextFieldGetDouble(field, value);
  const int how = AnswerOf("QelGUITextFieldGetDouble");
  if (isDone) *value = fault::Wrongly(fault::kNumbers, how, *value);
  return isDone;
}

// What is shown where it lies --------------------------------------------------------------------

namespace {

const QelBulkAccess_s* soundBulk = nullptr;

constexpr int kWrongSpans = 5;
bool FieldSpan(const QelFieldData* ref, QelFieldSpan_s* span) {
  const bool isShown = soundBulk->fieldSpan(ref, span);
  const int how = AnswerOf("fieldSpan");
  if (how == 0) span->first = nullptr;
  if (how == 1) span->type = FieldDataType_Invalid;
  if (how == 2) span->type = static_cast<QelFieldDataType_e>(99);
  if (how == 3) span->count -= 1;
  if (how == 4) span->count = -1;
  return isShown || how >= 0;
}

constexpr int kWrongNodes = 6;
bool NodeMapSpan(const QelNodeMap* map, QelNodeSpan_s* span) {
  const bool isShown = soundBulk->nodeMapSpan(map, span);
  const int how = AnswerOf("nodeMapSpan");
  if (how == 0) span->first = nullptr;
  if (how == 1) span->indexWidth = 3;
  if (how == 2) span->indexBase = 1000;
  if (how == 3) span->nodesPerElement -= 1;
  if (how == 4) span->nodesPerElement = -1;
  if (how == 5) span->count -= 1;
  return isShown;
}

bool Projection(double m[16]) {
  const bool isShown = soundBulk->projection(m);
  m[0] = fault::Wrongly(fault::kNumbers, AnswerOf("projection"), m[0]);
  return isShown;
}

constexpr int kWrongBits = 3;
bool WronglyShown(int how, bool isShown, const std::uint64_t** bits, std::int64_t* count) {
  if (how == 0) *bits = nullptr;
  if (how == 1) *count -= 1;
  if (how == 2) *count = -1;
  return isShown;
}
bool BlankedCells(LgIndex_t zone, const std::uint64_t** bits, std::int64_t* count) {
  const bool isShown = soundBulk->blankedCells(zone, bits, count);
  return WronglyShown(AnswerOf("blankedCells"), isShown, bits, count);
}
bool BlankedNodes(LgIndex_t zone, const std::uint64_t** bits, std::int64_t* count) {
  const bool isShown = soundBulk->blankedNodes(zone, bits, count);
  return WronglyShown(AnswerOf("blankedNodes"), isShown, bits, count);
}

const QelBulkAccess_s kBulk = {FieldSpan, NodeMapSpan, Projection, BlankedCells, BlankedNodes};

}  // namespace

WRAPPED(const void*, QelUtilExtensionGet, const char* id) {
  const void* const sound = __real_QelUtilExtensionGet(id);
  if (sound == nullptr || std::strcmp(id, QEL_EXTENSION_BULK_ACCESS) != 0) return sound;
  soundBulk = static_cast<const QelBulkAccess_s*>(sound);
  return &kBulk;
}

std::vector<fault::Liar> fault::Liars() {
#define ROW(result, name, params, args, kinds) {#name, static_cast<int>(std::size(kinds))},
#define TEXT_ROW(name, params, args, text) {#name, kWrongTexts},
  std::vector<Liar> liars = {LYING_FUNCTIONS(ROW) LYING_TEXTS(TEXT_ROW)};
  const std::vector<Liar> others = {{"QelUtilZoneGetIJK", kWrongDims},
                                    {"QelUtilDataSetGetInfo", kWrongInfos},
                                    {"QelUtilZoneGetRelevant", 2},
                                    {"QelUtilViewGet", 1},
                                    {"QelUtilVarGetMinMax", kWrongRanges},
                                    {"QelUtilViewGetMagnification", kWrongNumbers},
                                    {"QelUtilThreeDViewGetViewerAngle", kWrongNumbers},
                                    {"QelUtilConvert3DPositionToGrid", kWrongNumbers},
                                    {"QelUtilGeomGetAnchorPos", kWrongNumbers},
                                    {"QelGUITextFieldGetDouble", 2},
                                    {"fieldSpan", kWrongSpans},
                                    {"nodeMapSpan", kWrongNodes},
                                    {"projection", kWrongNumbers},
                                    {"blankedCells", kWrongBits},
                                    {"blankedNodes", kWrongBits}};
  liars.insert(liars.end(), others.begin(), others.end());
  return liars;
}
