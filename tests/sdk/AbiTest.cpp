// What an add-on and a host that were compiled apart must agree on.
#include "qelvane/Extensions.h"
#include "qelvane/Keywords.h"
#include "qelvane/QelGUI.h"
#include "qelvane/QelUtil.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <type_traits>

namespace {

static_assert(sizeof(LgIndex_t) == 4 && std::is_signed_v<LgIndex_t>);
static_assert(sizeof(SetIndex_t) == 8 && std::is_signed_v<SetIndex_t>);
static_assert(sizeof(ArbParam_t) == sizeof(void*));
static_assert(sizeof(QelUniqueID_t) == 8 && sizeof(QelGeomID_t) == 8);
static_assert(sizeof(QelStateChange_t) == 4);
static_assert(sizeof(bool) == 1);

template <class... Enums>
constexpr bool kAll32Bits = ((sizeof(Enums) == 4 &&
                              std::is_same_v<std::underlying_type_t<Enums>, int32_t>)&&...);
static_assert(
    kAll32Bits<QelPlotType_e, QelZoneType_e, QelFieldDataType_e, QelValueLocation_e, QelMouseMode_e,
               QelMessageBox_e, QelGeomType_e, QelCoordSys_e, QelPickObject_e, QelRotateAxis_e,
               QelRotateOrigin_e, QelAssignOp_e, QelSetValueResult_e, QelBlankRelOp_e,
               QelConstraintOp2Mode_e, QelBlankCellMode_e, QelShape_e, QelColorIndex_e>);

static_assert(sizeof(QelFieldSpan_s) == 32 && offsetof(QelFieldSpan_s, stride) == 16);
static_assert(sizeof(QelNodeSpan_s) == 32 && offsetof(QelNodeSpan_s, count) == 24);
static_assert(sizeof(QelBulkAccess_s) == 5 * sizeof(void*));
static_assert(sizeof(QelParallel_s) == 2 * sizeof(void*));
static_assert(sizeof(QelProgress_s) == 2 * sizeof(void*));
static_assert(sizeof(QelPickQuery_s) == sizeof(void*));
static_assert(sizeof(QelHistory_s) == sizeof(void*));
static_assert(sizeof(QelShapeHandles_s) == 2 * sizeof(void*));
static_assert(sizeof(QelCommandCheck_s) == sizeof(void*));

struct Code {
  const char* name;
  int actual;
  int expected;
};

class FixedCode : public ::testing::TestWithParam<Code> {};

TEST_P(FixedCode, NeverChanges) { EXPECT_EQ(GetParam().actual, GetParam().expected); }

// The first, the last and every number that is not simply the next one of its enumeration.
INSTANTIATE_TEST_SUITE_P(
    Codes, FixedCode,
    ::testing::Values(
        Code{"Cartesian3D", PlotType_Cartesian3D, 1}, Code{"Cartesian2D", PlotType_Cartesian2D, 2},
        Code{"Sketch", PlotType_Sketch, 5}, Code{"Ordered", ZoneType_Ordered, 0},
        Code{"Brick", ZoneType_FEBrick, 4}, Code{"LineSeg", ZoneType_FELineSeg, 5},
        Code{"Polyhedron", ZoneType_FEPolyhedron, 7}, Code{"Byte", FieldDataType_Byte, 5},
        Code{"Int64", FieldDataType_Int64, 6}, Code{"CellCentered", ValueLocation_CellCentered, 0},
        Code{"Select", Mouse_Select, 1}, Code{"ButtonModeSelect", MouseButtonMode_Select, 1},
        Code{"Probe", Mouse_Probe, 5}, Code{"GeomPolyline", Mouse_GeomPolyline, 6},
        Code{"GeomRectangle", Mouse_GeomRectangle, 7}, Code{"GeomCircle", Mouse_GeomCircle, 9},
        Code{"YesNo", MessageBox_YesNo, 4}, Code{"LineSegs", GeomType_LineSegs, 0},
        Code{"Ellipse", GeomType_Ellipse, 4}, Code{"Paper", CoordSys_Paper, 3},
        Code{"PickGeom", PickObject_Geom, 4}, Code{"Theta", RotateAxis_Theta, 1},
        Code{"Alpha", RotateAxis_Alpha, 2}, Code{"PlusEquals", AssignOp_PlusEquals, 1},
        Code{"EqualTo", BlankRelOp_EqualTo, 4}, Code{"Constant", ConstraintOp2Mode_UseConstant, 1},
        Code{"PrimaryValue", BlankCellMode_PrimaryValue, 2}, Code{"Orange", ColorIndex_Orange, 8},
        Code{"NewLayout", StateChange_NewLayout, 9}, Code{"QuitHost", StateChange_QuitHost, 15},
        Code{"VarsDeleted", StateChange_VarsDeleted, 17},
        Code{"MouseModeUpdate", StateChange_MouseModeUpdate, 25},
        Code{"GeomCreated", StateChange_GeomCreated, 36},
        Code{"DropDialogs", StateChange_DropDialogs, 39},
        Code{"VarsReset", StateChange_VarsReset, 44},
        Code{"NewActiveFrame", StateChange_NewActiveFrame, 51},
        Code{"ModeV100", StateChangeMode_v100, 2},
        Code{"ChangeOnly", StateChangeCallbackAPI_ChangeOnly, 1}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(Keywords, AreTheirOwnText) {
  EXPECT_STREQ(SV_CALLBACKFUNCTION, "CALLBACKFUNCTION");
  EXPECT_STREQ(SV_P4, "P4");
  EXPECT_STREQ(SV_VOLUMEOBJECTSTOPLOT, "VOLUMEOBJECTSTOPLOT");
}

TEST(Extensions, TheirQuestionIsAWeakSymbolForAnAddOn) {
  // This program has no host, so the weak reference is null instead of a link error.
  const void* (*get)(const char*) = &QelUtilExtensionGet;
  EXPECT_EQ(get, nullptr);
}

}  // namespace
