// An add-on that registers and does nothing else.
#include "qelvane/QelUtil.h"

extern "C" QEL_API void InitQelAddOn113();

void InitQelAddOn113() {
  QelUtilLockOn();
  QelUtilAddOnRegister(110, "Loaded", "V1", "Test");
  QelUtilLockOff();
}
