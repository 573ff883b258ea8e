#include "guicb.h"

#include "Controls.h"
#include "EntryPoint.h"

#include "qelvane/QelGUI.h"
#include "qelvane/QelUtil.h"

namespace qelvane::qelutiltools {

namespace {

constexpr LgIndex_t kDialogWidth = 5929;
constexpr LgIndex_t kDialogHeight = 2925;

void DialogInit() {}

void DialogClose() {
  EntryPoint(nullptr, [] { QelGUIDialogDrop(Controls.dialog); });
}

void DialogHelp() {
  EntryPoint(nullptr, [] { QelUtilHelp("selvane.html", FALSE, 0); });
}

}  // namespace

void BuildDialog(LgIndex_t parent) {
  if (Controls.dialog != kNoDialog) return;
  Controls.dialog = QelGUIDialogCreateModeless(parent, kDialogWidth, kDialogHeight, "Marquell",
                                               DialogInit, DialogClose, DialogHelp);
}

}  // namespace qelvane::qelutiltools
