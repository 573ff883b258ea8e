#pragma once

#include "DialogTest.h"
#include "HostLock.h"
#include "SessionRegistry.h"

#include <string>
#include <vector>

namespace fakehost {

/// The open dialog and a host whose state changes.
class TrackingTest : public DialogTest {
 protected:
  /// A notice of what the add-on itself has done.
  void NotifyOwn(QelStateChange_t change, const std::vector<std::string>& styleParams = {}) {
    const qelvane::qelutiltools::HostLock lock;
    host.Notify({change, {}, {}, styleParams});
  }
  void DropDialog() {
    host.Deliver(StateChange_DropDialogs);
    ASSERT_FALSE(host.IsDialogUp());
  }
  static qelvane::qelutiltools::Selvane* Found() {
    const qelvane::qelutiltools::HostLock lock;
    return qelvane::qelutiltools::SessionRegistry::Instance().Find();
  }
  /// A variable more, of which nobody is told.
  void AddSilently(const std::string& name) {
    host.AddVariable(name, ValueLocation_Nodal, StoredType::Double,
                     [](LgIndex_t, LgIndex_t) { return 0.0; });
  }
  void RemoveLastVariableSilently() {
    DataSet& data = *host.ActiveData();
    data.varNames.pop_back();
    for (Zone& zone : data.zones) zone.vars.pop_back();
  }
  std::vector<std::string> Items() const { return host.At(Ids().variableMenu).items; }
};

}  // namespace fakehost
