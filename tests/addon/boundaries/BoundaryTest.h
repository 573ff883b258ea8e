#pragma once

#include "CMacroEngine.h"
#include "ClippingCube.h"
#include "ClippingSphere.h"
#include "FakeHostTest.h"
#include "HostLock.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace fakehost {

/// A loaded add-on, so that its locks count; what else there is each test makes.
class BoundaryTest : public FakeHostTest {
 protected:
  BoundaryTest() { InitQelAddOn113(); }
};

/// A boundary with what it keeps to itself laid open.
template <class Boundary>
class Opened : public Boundary {
 public:
  using Boundary::Boundary;
  using Boundary::DefaultSize;
  using Boundary::m_anchor;
  using Boundary::m_boundingBox;
  using Boundary::m_extents;
  using Boundary::m_frameId;
  using Boundary::m_shape;
  using Boundary::m_step;
  using Boundary::OverlapsExtents;
  using Boundary::ReadExtents;
  using Boundary::StyleZone;
};
using Cube = Opened<qelvane::qelutiltools::CClippingCube>;
using Sphere = Opened<qelvane::qelutiltools::CClippingSphere>;

/// A 3D frame over bricks that fill 0 to 2 in x, 0 to 3 in y and 0 to 4 in z, so that the widened
/// extents are -0.2 to 2.2, -0.3 to 3.3 and -0.4 to 4.4; and boundaries that are in use.
class Boundary3dTest : public BoundaryTest {
 protected:
  Boundary3dTest() {
    host.AddFrame(PlotType_Cartesian3D);
    host.AddZone(MakeLattice(ZoneType_FEBrick, 2, 3, 4));
  }
  void TearDown() override {
    // What is left queued would count as pending in the next test.
    host.RunIdleQueue();
    FakeHostTest::TearDown();
  }

  /// Carries a command of the boundary out on it; locked, as a dispatcher is.
  template <class Boundary>
  bool Take(Boundary& boundary, const std::string& line) {
    using qelvane::qelutiltools::MacroEngine;
    const qelvane::qelutiltools::HostLock lock;
    qelvane::qelutiltools::MacroCommand command;
    MacroEngine.SetError("%s", "");
    EXPECT_TRUE(MacroEngine.ParseCommand(line, command)) << MacroEngine.GlobalError();
    return boundary.SetFromMacro(command);
  }

  /// The calls of these functions since then, with their arguments.
  std::vector<std::string> CallsOf(const std::vector<std::string>& functions) const {
    std::vector<std::string> found;
    for (std::size_t i = m_firstCall; i < host.calls.size(); ++i) {
      const CallRecord& call = host.calls[i];
      if (std::find(functions.begin(), functions.end(), call.function) == functions.end()) continue;
      found.push_back(call.function.substr(std::string("QelUtil").size()) + "(" + call.arguments +
                      ")");
    }
    return found;
  }
  void StartLog() { m_firstCall = host.calls.size(); }

  /// A zone's nodes as its variables have them.
  std::vector<Point> NodesOf(LgIndex_t zone) {
    const std::vector<double> xs = host.ValuesOf(zone, 1);
    const std::vector<double> ys = host.ValuesOf(zone, 2);
    const std::vector<double> zs = host.ValuesOf(zone, 3);
    std::vector<Point> nodes;
    for (std::size_t i = 0; i < xs.size(); ++i) nodes.push_back({xs[i], ys[i], zs[i]});
    return nodes;
  }

  bool isInUse = true;
  Cube cube{[this] { return isInUse; }};
  Sphere sphere{[this] { return isInUse; }};

 private:
  std::size_t m_firstCall = 0;
};

/// The text of a failed call as a pattern, with the place that follows it.
inline std::string AssertText(const std::string& call, const std::string& file) {
  std::string pattern = "Assert failed: ";
  for (const char letter : call) {
    if (std::string("()*+?.[]{}|^$\\").find(letter) != std::string::npos) pattern += '\\';
    pattern += letter;
  }
  return pattern + " \\(" + file + " [0-9]+\\)";
}

/// The text of the internal error that the operation ends with; empty when it ends without one.
inline std::string ErrorOf(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

}  // namespace fakehost
