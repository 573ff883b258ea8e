#include "MenuEntry.h"

#include "Controls.h"
#include "EntryPoint.h"
#include "HostLock.h"
#include "guicb.h"

#include "qelvane/QelGUI.h"
#include "qelvane/QelUtil.h"

namespace qelvane::qelutiltools {

namespace {

constexpr LgIndex_t kMainDialog = -1;

bool IsCartesianPlot() {
  const HostLock lock;
  const QelPlotType_e plotType = QelUtilFrameGetPlotType();
  return plotType == PlotType_Cartesian3D || plotType == PlotType_Cartesian2D;
}

}  // namespace

void MenuCallback() {
  EntryPoint(nullptr, [] {
    BuildDialog(kMainDialog);
    QelGUIDialogLaunch(Controls.dialog);
  });
}

void UpdateMenuSensitivity() {
  const HostLock lock;
  QelUtilMenuSetSensitivity(
      kMenuPath, kMenuLabel,
      QelUtilFrameGetCount() > 0 && QelUtilDataSetIsAvailable() && IsCartesianPlot());
}

}  // namespace qelvane::qelutiltools
