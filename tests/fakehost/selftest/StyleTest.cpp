#include "SelfTest.h"

#include <limits>

namespace {

using fakehost::MakeLattice;
using fakehost::ZoneLayer;
using qelvane::toolbox::ArgList;
using qelvane::toolbox::Set;
using qelvane::toolbox::StyleValue;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Style : public fakehost::SelfTest {
 protected:
  Style() {
    host.AddFrame(PlotType_Cartesian3D);
    for (int zone = 0; zone < 3; ++zone) host.AddZone(MakeLattice(ZoneType_FEBrick, 1, 1, 1));
  }

  std::vector<bool> Active() {
    return {host.ZoneAt(1)->isActive, host.ZoneAt(2)->isActive, host.ZoneAt(3)->isActive};
  }
  static QelSetValueResult_e SetActive(std::initializer_list<SetIndex_t> zones, QelAssignOp_e op) {
    const Set set = SetOf(zones);
    return QelUtilZoneSetActive(set.getRef(), op);
  }
  static QelSetValueResult_e SetMap(std::initializer_list<const char*> path, ArbParam_t value,
                                    std::initializer_list<SetIndex_t> maps) {
    const Set set = SetOf(maps);
    StyleValue style(path);
    style.setObjectSet(set.getRef());
    return style.set(value);
  }
  static QelSetValueResult_e SetCutoff(double value, LgIndex_t constraint) {
    ArgList args;
    StyleValue({SV_BLANKING, SV_VALUE, SV_CONSTRAINT, SV_VALUECUTOFF})
        .setupSetValueArgList(args, constraint);
    QelUtilArgListAppendDouble(args.getRef(), SV_DVALUE, value);
    return QelUtilStyleSetLowLevelX(args.getRef());
  }
};

TEST_F(Style, AddsToTakesFromAndReplacesTheActiveZones) {
  EXPECT_EQ(SetActive({1, 3}, AssignOp_MinusEquals), SetValueResult_Ok);
  EXPECT_THAT(Active(), ElementsAre(false, true, false));
  EXPECT_EQ(SetActive({3}, AssignOp_PlusEquals), SetValueResult_Ok);
  EXPECT_THAT(Active(), ElementsAre(false, true, true));
  EXPECT_EQ(SetActive({3}, AssignOp_PlusEquals), SetValueResult_Duplicate);
  EXPECT_EQ(SetActive({1}, AssignOp_Equals), SetValueResult_Ok);
  EXPECT_THAT(Active(), ElementsAre(true, false, false));
  EXPECT_EQ(SetActive({2, 4}, AssignOp_Equals), SetValueResult_ValueError);
  EXPECT_EQ(SetActive({2}, static_cast<QelAssignOp_e>(3)), SetValueResult_ValueError);
  EXPECT_THAT(Active(), ElementsAre(true, false, false));
  EXPECT_THAT(Notices(), ElementsAre(StateChange_Style, StateChange_Style, StateChange_Style));
}

struct LayerRow {
  ZoneLayer layer;
  QelSetValueResult_e (*set)(const char*, const QelSet*, double, ArbParam_t);
  const char* name;
};

class EveryLayer : public Style, public ::testing::WithParamInterface<LayerRow> {};

TEST_P(EveryLayer, KeepsWhatAZoneWasGiven) {
  const LayerRow& row = GetParam();
  const Set zone = SetOf({2});
  fakehost::LayerStyle& style = host.ZoneAt(2)->fieldMap.Layer(row.layer);
  const bool wasShown = style.isShown;
  EXPECT_EQ(row.set(SV_SHOW, zone.getRef(), 0.0, wasShown ? 0 : 1), SetValueResult_Ok);
  EXPECT_EQ(row.set(SV_COLOR, zone.getRef(), 0.0, ColorIndex_Orange), SetValueResult_Ok);
  EXPECT_EQ(row.set(SV_LINETHICKNESS, zone.getRef(), 0.4, 0), SetValueResult_Ok);
  EXPECT_NE(style.isShown, wasShown);
  EXPECT_EQ(style.color, ColorIndex_Orange);
  EXPECT_EQ(style.lineThickness, 0.4);
  EXPECT_EQ(row.set(SV_COLOR, zone.getRef(), 0.0, 9), SetValueResult_ValueError);
  EXPECT_EQ(row.set(SV_LINETHICKNESS, zone.getRef(), -1.0, 0), SetValueResult_ValueError);
  EXPECT_EQ(row.set("PATTERN", zone.getRef(), 0.0, 0), SetValueResult_SyntaxError);
  EXPECT_EQ(row.set(nullptr, zone.getRef(), 0.0, 0), SetValueResult_SyntaxError);
  const Set unknown = SetOf({2, 4});
  EXPECT_EQ(row.set(SV_COLOR, unknown.getRef(), 0.0, 1), SetValueResult_ValueError);
  EXPECT_EQ(row.set(SV_COLOR, zone.getRef(), 0.0, ColorIndex_Orange), SetValueResult_Duplicate);
  EXPECT_EQ(host.styleCalls.front().setting, std::string(row.name) + " SHOW");
  EXPECT_THAT(host.styleCalls.front().objects, ElementsAre(2));
  EXPECT_EQ(host.ZoneAt(1)->fieldMap.Layer(row.layer).color, ColorIndex_Black);
}

INSTANTIATE_TEST_SUITE_P(
    Layers, EveryLayer,
    ::testing::Values(LayerRow{ZoneLayer::Edge, QelUtilZoneSetEdgeLayer, "EDGELAYER"},
                      LayerRow{ZoneLayer::Mesh, QelUtilZoneSetMesh, "MESH"},
                      LayerRow{ZoneLayer::Shade, QelUtilZoneSetShade, "SHADE"},
                      LayerRow{ZoneLayer::Scatter, QelUtilZoneSetScatter, "SCATTER"},
                      LayerRow{ZoneLayer::Contour, QelUtilZoneSetContour, "CONTOUR"},
                      LayerRow{ZoneLayer::Vector, QelUtilZoneSetVector, "VECTOR"}));

TEST_F(Style, KeepsEverySettingOfAFieldMap) {
  fakehost::FieldMap& map = host.ZoneAt(QelUtilZoneGetFieldMap(2))->fieldMap;
  EXPECT_EQ(SetMap({SV_FIELDMAP, SV_SHADE, SV_SHOW}, 1, {2}), SetValueResult_Ok);
  EXPECT_TRUE(map.Layer(ZoneLayer::Shade).isShown);
  EXPECT_THAT(host.notices.back().styleParams, ElementsAre("FIELDMAP", "SHADE", "SHOW"));
  EXPECT_EQ(SetMap({SV_FIELDMAP, SV_SURFACES, SV_SURFACESTOPLOT}, 0, {2}), SetValueResult_Ok);
  EXPECT_EQ(map.surfacesToPlot, 0);
  EXPECT_EQ(SetMap({SV_FIELDMAP, SV_EFFECTS, SV_USEVALUEBLANKING}, 0, {2}), SetValueResult_Ok);
  EXPECT_FALSE(map.usesValueBlanking);
  for (const char* object : {SV_SHOWSLICES, SV_SHOWISOSURFACES, SV_SHOWSTREAMTRACES}) {
    EXPECT_EQ(SetMap({SV_FIELDMAP, SV_VOLUMEMODE, SV_VOLUMEOBJECTSTOPLOT, object}, 0, {2}),
              SetValueResult_Ok);
  }
  EXPECT_FALSE(map.showsSlices || map.showsIsosurfaces || map.showsStreamtraces);
  EXPECT_TRUE(host.ZoneAt(1)->fieldMap.usesValueBlanking);
}

TEST_F(Style, RefusesWrongPathsAndObjects) {
  EXPECT_EQ(SetMap({SV_FIELDMAP, SV_SHADE}, 1, {2}), SetValueResult_SyntaxError);
  EXPECT_EQ(SetMap({SV_FIELDMAP, SV_SHADE, SV_SHOW, SV_SHOW}, 1, {2}), SetValueResult_SyntaxError);
  EXPECT_EQ(SetMap({SV_SHADE, SV_SHOW}, 1, {2}), SetValueResult_SyntaxError);
  EXPECT_EQ(SetMap({SV_BLANKING, SV_VALUE}, 1, {}), SetValueResult_SyntaxError);
  EXPECT_EQ(SetMap({SV_FIELDMAP, SV_SHADE, SV_SHOW}, 1, {4}), SetValueResult_ValueError);
  EXPECT_EQ(SetMap({SV_FIELDMAP, SV_SHADE, SV_SHOW}, 1, {}), SetValueResult_ValueError);
  EXPECT_THAT(host.notices, IsEmpty());
  EXPECT_EQ(host.styleCalls.size(), 6U);
}

struct ConstraintRow {
  const char* name;
  ArbParam_t value;
  ArbParam_t wrong;
};

TEST_F(Style, KeepsAWholeConstraint) {
  const ConstraintRow rows[] = {{SV_VARA, 3, 4},
                                {SV_VARB, 2, 0},
                                {SV_RELOP, BlankRelOp_EqualTo, 6},
                                {SV_CONSTRAINTOP2MODE, ConstraintOp2Mode_UseConstant, 2}};
  for (const ConstraintRow& row : rows) {
    const StyleValue style({SV_BLANKING, SV_VALUE, SV_CONSTRAINT, row.name});
    EXPECT_EQ(style.set(row.value, 8), SetValueResult_Ok) << row.name;
    EXPECT_EQ(style.set(row.value, 8), SetValueResult_Duplicate) << row.name;
    EXPECT_EQ(style.set(row.wrong, 8), SetValueResult_ValueError) << row.name;
    EXPECT_EQ(style.set(row.value, 9), SetValueResult_ValueError) << row.name;
    EXPECT_EQ(style.set(row.value), SetValueResult_ValueError) << row.name;
    ArgList args;
    style.setupSetValueArgList(args, 8);
    ArbParam_t value = -1;
    QelUtilArgListAppendArbParamPtr(args.getRef(), SV_IVALUE, &value);
    EXPECT_EQ(QelUtilStyleGetLowLevelX(args.getRef()), SetValueResult_Ok);
    EXPECT_EQ(value, row.value) << row.name;
  }
  EXPECT_EQ(StyleValue({SV_BLANKING, SV_VALUE, SV_CONSTRAINT, SV_INCLUDE}).set(1, 8),
            SetValueResult_Ok);
  EXPECT_EQ(SetCutoff(1.5, 8), SetValueResult_Ok);
  const fakehost::Constraint& kept = host.ActiveFrame().blanking.constraints[8];
  EXPECT_TRUE(kept.include);
  EXPECT_EQ(kept.varA, 3);
  EXPECT_EQ(kept.varB, 2);
  EXPECT_EQ(kept.cutoff, 1.5);
  EXPECT_EQ(host.ActiveFrame().blanking.constraints.count(9), 0U);
}

TEST_F(Style, SwitchesValueBlankingWithItsNotice) {
  EXPECT_EQ(StyleValue({SV_BLANKING, SV_VALUE, SV_INCLUDE}).set(1), SetValueResult_Ok);
  EXPECT_TRUE(QelUtilBlankingIsActive());
  EXPECT_THAT(host.notices.back().styleParams, ElementsAre("BLANKING", "VALUE", "INCLUDE"));
  EXPECT_EQ(StyleValue({SV_BLANKING, SV_VALUE, SV_INCLUDE}).set(1), SetValueResult_Duplicate);
  EXPECT_EQ(host.notices.size(), 1U);
  EXPECT_EQ(StyleValue({SV_BLANKING, SV_VALUE, SV_BLANKENTIRECELL}).set(1), SetValueResult_Ok);
  EXPECT_EQ(StyleValue({SV_BLANKING, SV_VALUE, SV_VALUEBLANKCELLMODE}).set(2), SetValueResult_Ok);
  EXPECT_EQ(StyleValue({SV_BLANKING, SV_VALUE, SV_VALUEBLANKCELLMODE}).set(3),
            SetValueResult_ValueError);
  EXPECT_TRUE(host.ActiveFrame().blanking.blankEntireCell);
  EXPECT_EQ(host.ActiveFrame().blanking.cellMode, BlankCellMode_PrimaryValue);
}

TEST_F(Style, WantsTheValueInItsOwnKind) {
  ArgList args;
  StyleValue({SV_BLANKING, SV_VALUE, SV_INCLUDE}).setupSetValueArgList(args);
  EXPECT_EQ(QelUtilStyleSetLowLevelX(args.getRef()), SetValueResult_ValueError);
  QelUtilArgListAppendDouble(args.getRef(), SV_IVALUE, 1.0);
  EXPECT_EQ(QelUtilStyleSetLowLevelX(args.getRef()), SetValueResult_ValueError);
  EXPECT_FALSE(QelUtilBlankingIsActive());
}

TEST_F(Style, CanBeMadeToFail) {
  host.FailCall("QelUtilStyleSetLowLevelX", 1);
  EXPECT_EQ(SetCutoff(1.5, 8), SetValueResult_ValueError);
  EXPECT_THAT(host.styleCalls, IsEmpty());
}

TEST_F(Style, KnowsTheSixLayersOfThePlot) {
  EXPECT_TRUE(QelUtilFieldLayerSetIsActive(SV_SHOWEDGE, TRUE));
  EXPECT_TRUE(QelUtilFieldLayerIsActive(SV_SHOWEDGE));
  EXPECT_FALSE(QelUtilFieldLayerSetIsActive("SHOWFOG", TRUE));
}

}  // namespace
