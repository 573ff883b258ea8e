#pragma once

#include "FakeHostTest.h"

#include "qelvane/Keywords.h"
#include "qelvane/toolbox/ArgList.h"
#include "qelvane/toolbox/Set.h"
#include "qelvane/toolbox/StyleValue.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace fakehost {

/// A host that is asked under its own lock.
class SelfTest : public FakeHostTest {
 protected:
  SelfTest() { QelUtilLockOn(); }
  void TearDown() override {
    QelUtilLockOff();
    FakeHostTest::TearDown();
  }

  static qelvane::toolbox::Set SetOf(std::initializer_list<SetIndex_t> members) {
    qelvane::toolbox::Set set;
    for (const SetIndex_t member : members) QelUtilSetAddMember(set.getRef(), member, FALSE);
    return set;
  }

  /// Deletes zones as an add-on does.
  static bool Delete(std::initializer_list<SetIndex_t> zones) {
    const qelvane::toolbox::Set set = SetOf(zones);
    return QelUtilDataSetDeleteZone(set.getRef());
  }

  /// The codes of the notices since the last question.
  std::vector<QelStateChange_t> Notices() {
    std::vector<QelStateChange_t> codes;
    for (const StateChangeNotice& notice : host.notices) codes.push_back(notice.change);
    host.notices.clear();
    return codes;
  }
};

}  // namespace fakehost
