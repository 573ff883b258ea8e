#include "AddOnName.h"
#include "CMacroEngine.h"
#include "DialogState.h"
#include "Dispatcher.h"
#include "EntryPoint.h"
#include "HostCheck.h"
#include "HostLock.h"
#include "HostOffers.h"
#include "HostOwned.h"
#include "MenuEntry.h"
#include "PickKeywords.h"
#include "SessionRegistry.h"
#include "StateTracking.h"

#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <string>

namespace qelvane::qelutiltools {

namespace {

constexpr LgIndex_t kInterfaceVersion = 110;
constexpr char kVersion[] = "V" MARQUELL_VERSION "(" QelVersionId ") " __DATE__;
constexpr char kAuthor[] = "The Marquell project";

/// Reached while the library is loaded, so that it exists before the host calls anything.
[[maybe_unused]] SessionRegistry& registryAtLoad = SessionRegistry::Instance();

/// Marks the time in which a command from the host is parsed and carried out.
class PlaybackMark {
 public:
  PlaybackMark() { MacroEngine.PlayingBack = true; }
  ~PlaybackMark() { MacroEngine.PlayingBack = false; }
  PlaybackMark(const PlaybackMark&) = delete;
  PlaybackMark& operator=(const PlaybackMark&) = delete;
};

void SubscribeToStateChanges() {
  QelArgList* ArgList = nullptr;
  HOST_CHECK(ArgList = QelUtilArgListAlloc());
  const HostArgList owned(ArgList);
  HOST_CHECK(QelUtilArgListAppendFunction(ArgList, SV_CALLBACKFUNCTION, (const void *)qelvane::qelutiltools::StateChangeCallback));
  HOST_CHECK(QelUtilArgListAppendInt(ArgList, SV_STATECHANGEMODE, StateChangeMode_v100));
  HOST_CHECK(QelUtilArgListAppendInt(ArgList, SV_STATECHANGECALLBACKAPI, StateChangeCallbackAPI_ChangeOnly));
  HOST_CHECK(QelUtilStateChangeAddCallbackX(ArgList));
}

bool MacroCommandCallback(const char* command, char** ErrMsg);

void Register() {
  HOST_CHECK(AddOnID = QelUtilAddOnRegister(kInterfaceVersion, ADDON_NAME, kVersion, kAuthor));
  FillPickKeywordMaps();
  HOST_CHECK(QelUtilMacroAddCommandCallback(ADDON_NAME, MacroCommandCallback));
  QelUtilMenuAddSeparator(kMenuPath);
  QelUtilMenuAddOption(kMenuPath, kMenuLabel, 1, MenuCallback);
  SubscribeToStateChanges();
  UpdateMenuSensitivity();
  SessionRegistry::Instance();
  OfferToHost();
}

/// Parses and carries out one command on the session. On failure ErrMsg holds a copy of the reason.
bool Play(Selvane& session, const char* command, char** ErrMsg) {
  const PlaybackMark mark;
  MacroCommand parsed;
  if (MacroEngine.ParseCommand(command, parsed) && DispatchMacroCommand(session, parsed)) {
    return true;
  }
  HOST_CHECK(*ErrMsg = QelUtilStringAlloc(static_cast<int>(MacroEngine.GlobalError().size() + 1), "Macro Error."));
  std::strcpy(*ErrMsg, MacroEngine.GlobalError().c_str());
  return false;
}

/// Puts the reason, or the general text when there is none, into a fresh buffer. The one that Play
/// filled is replaced without being released: hosts expect exactly that.
void ReportFailure(char** ErrMsg) {
  constexpr std::size_t kUsualLength = 1000;
  const std::string& reason = MacroEngine.GlobalError();
  const std::string text = reason.empty() ? "Error processing macro command" : reason;
  *ErrMsg = QelUtilStringAlloc(static_cast<LgIndex_t>(std::max(kUsualLength, text.size())),
                               "String for Error Message");
  if (*ErrMsg != nullptr) std::strcpy(*ErrMsg, text.c_str());
}

bool MacroCommandCallback(const char* command, char** ErrMsg) {
  bool isDone = false;
  EntryPoint(nullptr, [&] {
    if (command == nullptr || ErrMsg == nullptr) return;
    DropDialog();
    Selvane* const session = SessionRegistry::Instance().GetOrCreate();
    if (session != nullptr) {
      isDone = Play(*session, command, ErrMsg);
    } else {
      MacroEngine.SetError("Frame does not contain data in Cartesian 2D or 3D view");
    }
    if (!isDone) ReportFailure(ErrMsg);
  });
  return isDone;
}

}  // namespace

}  // namespace qelvane::qelutiltools

extern "C" __attribute__((visibility("default"))) void InitQelAddOn113() {
  QelUtilLockOn();
  qelvane::qelutiltools::Contain("Marquell add-on failed to load.",
                                 qelvane::qelutiltools::Register);
  QelUtilLockOff();
}
