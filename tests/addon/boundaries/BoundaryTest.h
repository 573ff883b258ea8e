#pragma once

#include "FakeHostTest.h"

namespace fakehost {

/// A loaded add-on, so that its locks count; what else there is each test makes.
class BoundaryTest : public FakeHostTest {
 protected:
  BoundaryTest() { InitQelAddOn113(); }
};

}  // namespace fakehost
