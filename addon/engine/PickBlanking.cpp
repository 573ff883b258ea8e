#include "HostCheck.h"
#include "HostLock.h"
#include "HostOwned.h"
#include "Selvane.h"
#include "Utilities.h"

#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

/// A macro because its name is part of the text of internal errors.
#define BLANKVAR "PICK_BLANK"

namespace qelvane::qelutiltools {

namespace {

/// The constraint that hides picked cells; the user's own settings of it are overwritten.
constexpr LgIndex_t kBlankConstraint = 8;
constexpr double kBlankedValue = 1.0;

void AnnounceVariable(LgIndex_t varNum) {
  QelSet* varList = nullptr;
  HOST_CHECK(varList = QelUtilSetAlloc(FALSE));
  const HostSet owned(varList);
  HOST_CHECK(QelUtilSetAddMember(varList, static_cast<SetIndex_t>(varNum) , FALSE));
  QelUtilStateChanged(StateChange_VarsAdded, reinterpret_cast<ArbParam_t>(varList));
}

/// Adds the variable, a byte a cell in every zone, with values only where they are asked for.
/// False when the host refuses it.
bool AddBlankVariable(LgIndex_t numZones) {
  const auto zoneCount = static_cast<std::size_t>(numZones);
  std::vector<QelFieldDataType_e> types(zoneCount, FieldDataType_Byte);
  std::vector<QelValueLocation_e> locations(zoneCount, ValueLocation_CellCentered);
  QelFieldDataType_e* const typeList = types.data();
  QelValueLocation_e* const locList = locations.data();

  QelArgList* argList = nullptr;
  HOST_CHECK(argList = QelUtilArgListAlloc());
  const HostArgList owned(argList);
  HOST_CHECK(QelUtilArgListAppendString (argList, SV_NAME, BLANKVAR));
  HOST_CHECK(QelUtilArgListAppendArray (argList, SV_VARDATATYPE, static_cast<void *>(typeList) ));
  HOST_CHECK(QelUtilArgListAppendArray (argList, SV_VALUELOCATION, static_cast<void *>(locList) ));
  HOST_CHECK(QelUtilArgListAppendInt (argList, SV_DEFERVARCREATION, static_cast<LgIndex_t>(TRUE) ));
  return QelUtilDataSetAddVarX(argList);
}

/// The number of the blanking variable, which is added when the data set has none; 0 when it cannot
/// be. One that came with the data is used whatever its type and location.
LgIndex_t MakeBlankVariable() {
  const HostLock lock;
  const LgIndex_t existing = QelUtilVarGetNumByName(BLANKVAR);
  if (existing > 0) return existing;
  LgIndex_t numZones = 0;
  LgIndex_t numVars = 0;
  if (!QelUtilDataSetGetInfo(NULL, &numZones, &numVars) || numZones < 1) return 0;
  if (!AddBlankVariable(numZones)) return 0;
  const LgIndex_t varNum = numVars + 1;
  AnnounceVariable(varNum);
  return varNum;
}

struct FreeMemory {
  void operator()(void* memory) const { std::free(memory); }
};

/// Sets every value to 0 in one go, in whatever type they are stored: none is wider than 8 bytes
/// and 0 is all bits 0 in each. Fresh zeroed memory costs the machine next to nothing; of billions
/// of values there would not be enough, so these are set some at a time.
void SetAllToZeroAtOnce(QelFieldData* field) {
  constexpr std::size_t kWidestValue = 8;
  constexpr std::int64_t kMostAtOnce = std::int64_t{1} << 24;
  const std::int64_t count = QelUtilDataValueGetCountByRef(field);
  if (count < 1) return;
  const std::unique_ptr<void, FreeMemory> zeros(
      std::calloc(static_cast<std::size_t>(std::min(count, kMostAtOnce)), kWidestValue));
  if (zeros == nullptr) throw std::bad_alloc();
  for (std::int64_t done = 0; done < count; done += kMostAtOnce) {
    QelUtilDataValueArraySetByRef(field, static_cast<LgIndex_t>(done + 1),
                                  static_cast<LgIndex_t>(std::min(count - done, kMostAtOnce)),
                                  zeros.get());
  }
}

}  // namespace

bool Selvane::EnterBlankMode() {
  const HostLock lock;
  DiscardUndo();
  const LgIndex_t blankVar = MakeBlankVariable();
  if (blankVar <= 0) return false;
  m_isBlankMode = true;
  m_blankVar = blankVar;
  SetValueBlankConstraint(kBlankConstraint, true, blankVar, kBlankedValue, BlankRelOp_EqualTo,
                          ConstraintOp2Mode_UseConstant);
  SetValueBlankingCellMode(true, BlankCellMode_PrimaryValue);
  return true;
}

void Selvane::ResetPickBlanks() {
  const HostLock lock;
  const LgIndex_t blankVar = QelUtilVarGetNumByName(BLANKVAR);
  if (blankVar < 1) return;
  const std::vector<LgIndex_t> zones = ZonesToChange();
  UnshareTargets(zones);
  const HostServices services = AskHostServices();
  for (const LgIndex_t zone : zones) ResetZone(zone, blankVar, services);
}

/// What is set to 0 is the target of the current mode, what is reported is the blanking variable:
/// in alter mode these differ, and journals rely on both.
void Selvane::ResetZone(LgIndex_t zone, LgIndex_t blankVar, const HostServices& services) {
  const std::optional<FieldWriter> writer = OpenForWriting(zone, OnNoReference::Refuse);
  if (!writer) return;
  SetAllToZeroAtOnce(writer->field);
  NotifyVarsAltered(zone, blankVar);
  ProgressReport(services).Changed(*writer, QelUtilDataValueGetCountByRef(writer->field));
}

}  // namespace qelvane::qelutiltools
