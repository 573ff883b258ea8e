#include "Styles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace qelhost {
namespace {

constexpr LgIndex_t kVariableCount = 4;

struct Row {
  const char* rule;
  StyleAddress address;
  double value;
  QelSetValueResult_e result;
};

StyleAddress Constraint(const char* name, LgIndex_t number) {
  return {{"BLANKING", "VALUE", "CONSTRAINT", name}, number, {}};
}

StyleAddress MapOfZone1(std::vector<std::string> path) {
  path.insert(path.begin(), "FIELDMAP");
  return {path, 0, {1}};
}

class StylePath : public ::testing::TestWithParam<Row> {};

TEST_P(StylePath, FollowsRule) {
  Styles styles;
  const auto [rule, address, value, result] = GetParam();
  EXPECT_EQ(SetStyle(styles, address, IntegerOf(value), value, kVariableCount), result);
  if (result != SetValueResult_Ok) return;
  ArbParam_t integer = -1;
  double real = -1;
  EXPECT_EQ(GetStyle(styles, address, &integer, &real), SetValueResult_Ok);
  EXPECT_EQ(real, value);
  EXPECT_EQ(integer, static_cast<ArbParam_t>(value));
  EXPECT_EQ(SetStyle(styles, address, IntegerOf(value), value, kVariableCount),
            SetValueResult_Duplicate);
}

INSTANTIATE_TEST_SUITE_P(
    Accepted, StylePath,
    ::testing::Values(
        Row{"EntireCell", {{"BLANKING", "VALUE", "BLANKENTIRECELL"}, 0, {}}, 1, SetValueResult_Ok},
        Row{"CellMode", {{"BLANKING", "VALUE", "VALUEBLANKCELLMODE"}, 0, {}}, 2, SetValueResult_Ok},
        Row{"ConstraintOn", Constraint("INCLUDE", 1), 1, SetValueResult_Ok},
        Row{"VariableA", Constraint("VARA", 8), 4, SetValueResult_Ok},
        Row{"VariableB", Constraint("VARB", 1), 2, SetValueResult_Ok},
        Row{"Relation", Constraint("RELOP", 1), 5, SetValueResult_Ok},
        Row{"SecondOperand", Constraint("CONSTRAINTOP2MODE", 1), 1, SetValueResult_Ok},
        Row{"CutOff", Constraint("VALUECUTOFF", 1), -0.5, SetValueResult_Ok},
        Row{"Shade", MapOfZone1({"SHADE", "SHOW"}), 0, SetValueResult_Ok},
        Row{"Surfaces", MapOfZone1({"SURFACES", "SURFACESTOPLOT"}), 3, SetValueResult_Ok},
        Row{"UseBlanking", MapOfZone1({"EFFECTS", "USEVALUEBLANKING"}), 0, SetValueResult_Ok},
        Row{"Slices", MapOfZone1({"VOLUMEMODE", "VOLUMEOBJECTSTOPLOT", "SHOWSLICES"}), 1,
            SetValueResult_Ok},
        Row{"Isosurfaces", MapOfZone1({"VOLUMEMODE", "VOLUMEOBJECTSTOPLOT", "SHOWISOSURFACES"}), 1,
            SetValueResult_Ok},
        Row{"Streamtraces", MapOfZone1({"VOLUMEMODE", "VOLUMEOBJECTSTOPLOT", "SHOWSTREAMTRACES"}),
            1, SetValueResult_Ok}),
    [](const auto& row) { return std::string(row.param.rule); });

INSTANTIATE_TEST_SUITE_P(
    Refused, StylePath,
    ::testing::Values(
        Row{"NoPath", {{}, 0, {}}, 1, SetValueResult_SyntaxError},
        Row{"HalfAPath", {{"BLANKING", "VALUE"}, 0, {}}, 1, SetValueResult_SyntaxError},
        Row{"UnknownRoot", {{"GLOBALCONTOUR", "VAR"}, 0, {}}, 1, SetValueResult_SyntaxError},
        Row{"PastTheEnd",
            {{"BLANKING", "VALUE", "BLANKENTIRECELL", "MORE"}, 0, {}},
            1,
            SetValueResult_SyntaxError},
        Row{"UnknownConstraintSetting", Constraint("COLOR", 1), 1, SetValueResult_SyntaxError},
        Row{"UnknownMapSetting", MapOfZone1({"MESH", "SHOW"}), 1, SetValueResult_SyntaxError},
        Row{"LowerCase", {{"blanking", "value", "include"}, 0, {}}, 0, SetValueResult_SyntaxError},
        Row{"NoConstraintNumber", Constraint("VARA", 0), 1, SetValueResult_ValueError},
        Row{"ConstraintPastTheLast", Constraint("VARA", 9), 1, SetValueResult_ValueError},
        Row{"NegativeConstraint", Constraint("VARA", -1), 1, SetValueResult_ValueError},
        Row{"NoVariable", Constraint("VARA", 1), 0, SetValueResult_ValueError},
        Row{"VariablePastTheLast", Constraint("VARB", 1), 5, SetValueResult_ValueError},
        Row{"RelationPastTheLast", Constraint("RELOP", 1), 6, SetValueResult_ValueError},
        Row{"HugeNumber", Constraint("RELOP", 1), 1e300, SetValueResult_ValueError},
        Row{"OperandPastTheLast", Constraint("CONSTRAINTOP2MODE", 1), 2, SetValueResult_ValueError},
        Row{"CellModePastTheLast",
            {{"BLANKING", "VALUE", "VALUEBLANKCELLMODE"}, 0, {}},
            3,
            SetValueResult_ValueError},
        Row{"NoMaps", {{"FIELDMAP", "SHADE", "SHOW"}, 0, {}}, 1, SetValueResult_ValueError}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST(Styles, BlankingIsOffUntilItIsSwitchedOn) {
  Styles styles;
  const StyleAddress address{{"BLANKING", "VALUE", "INCLUDE"}, 0, {}};
  EXPECT_FALSE(styles.blanking.include);
  EXPECT_EQ(SetStyle(styles, address, 0, 0, kVariableCount), SetValueResult_Duplicate);
  EXPECT_EQ(SetStyle(styles, address, 1, 1, kVariableCount), SetValueResult_Ok);
  EXPECT_TRUE(styles.blanking.include);
  ArbParam_t integer = -1;
  EXPECT_EQ(GetStyle(styles, address, &integer, nullptr), SetValueResult_Ok);
  EXPECT_EQ(integer, 1);
}

TEST(Styles, RememberWhoSetAConstraintLast) {
  Styles styles;
  const StyleAddress address = Constraint("RELOP", 3);
  EXPECT_EQ(SetStyle(styles, address, 4, 4, kVariableCount, StyleSetter::AddOn), SetValueResult_Ok);
  EXPECT_TRUE(styles.blanking.constraints[2].isAddOns);
  EXPECT_FALSE(styles.blanking.constraints[1].isAddOns);
  EXPECT_EQ(SetStyle(styles, address, 5, 5, kVariableCount), SetValueResult_Ok);
  EXPECT_FALSE(styles.blanking.constraints[2].isAddOns);
}

TEST(Styles, SetEveryMapOfTheSetAndNoOther) {
  Styles styles;
  const StyleAddress address{{"FIELDMAP", "SURFACES", "SURFACESTOPLOT"}, 0, {1, 3}};
  EXPECT_EQ(SetStyle(styles, address, 2, 2, 0), SetValueResult_Ok);
  EXPECT_EQ(styles.MapOf(1).surfacesToPlot, 2);
  EXPECT_EQ(styles.MapOf(2).surfacesToPlot, 0);
  EXPECT_EQ(styles.MapOf(3).surfacesToPlot, 2);
}

TEST(Styles, RenumberTheMapsBehindADeletedZone) {
  Styles styles;
  for (const LgIndex_t zone : {1, 2, 3, 4}) styles.MapOf(zone).surfacesToPlot = zone;
  styles.DropZones({3, 1});
  EXPECT_EQ(styles.MapOf(1).surfacesToPlot, 2);
  EXPECT_EQ(styles.MapOf(2).surfacesToPlot, 4);
  EXPECT_EQ(styles.MapOf(3).surfacesToPlot, 0);
}

TEST(Styles, KnowTheLayersByTheirKeywords) {
  Layer layer = Layer::Edge;
  EXPECT_TRUE(LayerOfKeyword("SHOWVECTOR", layer));
  EXPECT_EQ(layer, Layer::Vector);
  EXPECT_FALSE(LayerOfKeyword("SHOWSHINE", layer));
  EXPECT_FALSE(LayerOfKeyword("", layer));
}

TEST(IntegerOf, HoldsWhatNoIntegerHolds) {
  EXPECT_EQ(IntegerOf(-2.75), -2);
  EXPECT_EQ(IntegerOf(std::nan("")), 0);
  EXPECT_GT(IntegerOf(1e300), 1000000000);
  EXPECT_LT(IntegerOf(-1e300), -1000000000);
}

}  // namespace
}  // namespace qelhost
