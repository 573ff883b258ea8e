#pragma once

#include "DialogTest.h"

#include <array>
#include <cstddef>

namespace fakehost {

/// The open dialog in a host in whose plot shapes can be dragged.
class HandlesTest : public DialogTest {
 protected:
  using IdOf = LgIndex_t qelvane::qelutiltools::ControlIds::*;
  using Numbers = std::array<double, 3>;
  static constexpr Numbers kNoTurn = {0.0, 0.0, 0.0};

  void SetUp() override {
    host.OfferAlso(Service::ShapeHandles);
    DialogTest::SetUp();
    host.isRecording = true;
  }

  void ShowBox() {
    ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
    ASSERT_TRUE(host.IsShapeShown());
    host.shapeCalls.clear();
    host.shapeCalls.push_back({true, Shape_Box, {}, {}, {}});
  }
  void ShowSphere() {
    ASSERT_TRUE(host.Switch(Ids().sphereTool, true));
    ASSERT_TRUE(host.IsShapeShown());
  }
  /// As the user does in the host, of the shape's zone, which is the last one.
  void DeleteShapesZone() {
    host.ActiveData()->zones.pop_back();
    host.Deliver(StateChange_ZonesDeleted);
  }
  /// The calls since the shape came to be shown.
  std::size_t NewCalls() const { return host.shapeCalls.size() - 1; }

  static Numbers Part(const std::array<double, 9>& all, std::size_t first) {
    return {all[first], all[first + 1], all[first + 2]};
  }
  void ExpectBoxIsWhatIsKnown() {
    const ShapeCall& call = host.shapeCalls.back();
    const auto numbers = Session().Cube().Definition();
    EXPECT_TRUE(call.isShow);
    EXPECT_EQ(call.kind, Shape_Box);
    EXPECT_EQ(call.anchor, Part(numbers, 0));
    EXPECT_EQ(call.size, Part(numbers, 3));
    EXPECT_EQ(call.rotationDeg, Part(numbers, 6));
  }
  std::vector<std::string> BoxTexts() const {
    std::vector<std::string> texts;
    for (const IdOf field : {&qelvane::qelutiltools::ControlIds::anchorXField,
                             &qelvane::qelutiltools::ControlIds::anchorYField,
                             &qelvane::qelutiltools::ControlIds::anchorZField,
                             &qelvane::qelutiltools::ControlIds::sizeXField,
                             &qelvane::qelutiltools::ControlIds::sizeYField,
                             &qelvane::qelutiltools::ControlIds::sizeZField,
                             &qelvane::qelutiltools::ControlIds::rotateXField,
                             &qelvane::qelutiltools::ControlIds::rotateYField,
                             &qelvane::qelutiltools::ControlIds::rotateZField}) {
      texts.push_back(TextOf(Ids().*field));
    }
    return texts;
  }
  std::vector<double> PointsOf(const char* zone) {
    std::vector<double> all;
    for (LgIndex_t var = 1; var <= 3; ++var) {
      for (const double value : host.ValuesOf(host.ZoneNamed(zone), var)) all.push_back(value);
    }
    return all;
  }
  bool DragBox() { return host.DragShape({0.1, 0.2, 0.3}, {1.0, 1.1, 1.2}, {5.0, 6.0, 7.0}); }
};

}  // namespace fakehost
