#include "CMacroEngine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <vector>

namespace qelvane::qelutiltools {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

MacroCommand Parsed(const std::string& line) {
  CMacroEngine engine;
  MacroCommand command;
  EXPECT_TRUE(engine.ParseCommand(line, command)) << line << ": " << engine.GlobalError();
  EXPECT_EQ(engine.GlobalError(), "");
  return command;
}

MacroValue ValueIn(const std::string& line) {
  const MacroCommand command = Parsed(line);
  return command.Attributes.size() == 1 ? command.Attributes[0].Value
                                        : MacroValue{-1, {}, 0, false, 0};
}

struct VocabularyRow {
  std::int32_t id;
  const char* keyword;
};

class CommandWord : public ::testing::TestWithParam<VocabularyRow> {};

TEST_P(CommandWord, ParsesToItsIdInAnyCaseAndBack) {
  const auto [id, keyword] = GetParam();
  std::string lower = keyword;
  for (char& c : lower) c = static_cast<char>(std::tolower(c));
  EXPECT_EQ(Parsed(keyword).Command, id);
  EXPECT_EQ(Parsed(lower).Command, id);
  EXPECT_EQ(CMacroEngine().CommandName(id), keyword);
}

INSTANTIATE_TEST_SUITE_P(
    All, CommandWord,
    ::testing::Values(VocabularyRow{0, "UNDOALTER"}, VocabularyRow{1, "UNDOBLANK"},
                      VocabularyRow{2, "PICKRECTANGLE"}, VocabularyRow{3, "PICKCIRCLE"},
                      VocabularyRow{4, "PICKPOLYGON"}, VocabularyRow{5, "PICKCUBE"},
                      VocabularyRow{6, "PICKSPHERE"}, VocabularyRow{7, "ALTERELEMENT"},
                      VocabularyRow{8, "BLANKELEMENT"}, VocabularyRow{9, "ALTERSURFACE"},
                      VocabularyRow{10, "BLANKSURFACE"}, VocabularyRow{11, "ALTERAREA"},
                      VocabularyRow{12, "BLANKAREA"}, VocabularyRow{13, "VIEWXY"},
                      VocabularyRow{14, "VIEWXZ"}, VocabularyRow{15, "VIEWYZ"},
                      VocabularyRow{16, "VIEW3D"}, VocabularyRow{17, "PICKGEOMETRY"}),
    [](const auto& row) { return std::string(row.param.keyword); });

class AttributeWord : public ::testing::TestWithParam<VocabularyRow> {};

TEST_P(AttributeWord, ParsesToItsIdInAnyCaseAndBack) {
  const auto [id, keyword] = GetParam();
  const MacroCommand command = Parsed(std::string("AlterArea ") + keyword + "=1");
  ASSERT_EQ(command.Attributes.size(), 1u);
  EXPECT_EQ(command.Attributes[0].Attribute, id);
  EXPECT_EQ(CMacroEngine().AttributeName(id), keyword);
}

INSTANTIATE_TEST_SUITE_P(
    All, AttributeWord,
    ::testing::Values(
        VocabularyRow{0, "MODE"}, VocabularyRow{1, "RULE"}, VocabularyRow{2, "VARIABLE"},
        VocabularyRow{3, "MODIFIER"}, VocabularyRow{4, "ZONE"}, VocabularyRow{5, "SEEDPOINT"},
        VocabularyRow{6, "ELEMENT"}, VocabularyRow{7, "ANCHORX"}, VocabularyRow{8, "ANCHORY"},
        VocabularyRow{9, "ANCHORZ"}, VocabularyRow{10, "SIZEX"}, VocabularyRow{11, "SIZEY"},
        VocabularyRow{12, "SIZEZ"}, VocabularyRow{13, "ROTATEX"}, VocabularyRow{14, "ROTATEY"},
        VocabularyRow{15, "ROTATEZ"}, VocabularyRow{16, "RADIUS"}, VocabularyRow{17, "CORNERS"}),
    [](const auto& row) { return std::string(row.param.keyword); });

class ValueWord : public ::testing::TestWithParam<VocabularyRow> {};

TEST_P(ValueWord, ParsesToItsIdOrBoolean) {
  const auto [id, keyword] = GetParam();
  const MacroValue value = ValueIn(std::string("ALTERAREA MODE=") + keyword);
  if (id <= Keyword_No) {
    EXPECT_EQ(value.Type, MacroValue::kBoolean);
    EXPECT_EQ(value.Boolean, id % 2 == 1);
  } else {
    EXPECT_EQ(value.Type, MacroValue::kKeyword);
    EXPECT_EQ(value.Keyword, id);
  }
  EXPECT_EQ(CMacroEngine().KeywordName(id), keyword);
}

INSTANTIATE_TEST_SUITE_P(
    All, ValueWord,
    ::testing::Values(VocabularyRow{1, "T"}, VocabularyRow{2, "F"}, VocabularyRow{3, "TRUE"},
                      VocabularyRow{4, "FALSE"}, VocabularyRow{5, "YES"}, VocabularyRow{6, "NO"},
                      VocabularyRow{7, "BLANK"}, VocabularyRow{8, "ALTER"}, VocabularyRow{9, "OFF"},
                      VocabularyRow{10, "ELEMENT"}, VocabularyRow{11, "RECTANGLE"},
                      VocabularyRow{12, "CIRCLE"}, VocabularyRow{13, "POLYGON"},
                      VocabularyRow{14, "CUBE"}, VocabularyRow{15, "SPHERE"},
                      VocabularyRow{16, "ALLINSIDE"}, VocabularyRow{17, "ANYINSIDE"},
                      VocabularyRow{18, "ALLOUTSIDE"}, VocabularyRow{19, "ANYOUTSIDE"}),
    [](const auto& row) { return std::string(row.param.keyword); });

TEST(Vocabulary, AnUnknownIdHasNoName) {
  const CMacroEngine engine;
  EXPECT_EQ(engine.CommandName(18), "");
  EXPECT_EQ(engine.AttributeName(-1), "");
  EXPECT_EQ(engine.KeywordName(0), "");
  EXPECT_EQ(engine.KeywordName(Keyword_EndOfList), "");
}

struct EmptyRow {
  const char* rule;
  const char* line;
};

class LineWithoutCommand : public ::testing::TestWithParam<EmptyRow> {};

TEST_P(LineWithoutCommand, SucceedsAndLeavesTheCommandUnset) {
  const MacroCommand command = Parsed(GetParam().line);
  EXPECT_EQ(command.Command, -1);
  EXPECT_THAT(command.Attributes, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Rules, LineWithoutCommand,
                         ::testing::Values(EmptyRow{"Empty", ""}, EmptyRow{"Blanks", "   "},
                                           EmptyRow{"BlanksAndTabs", " \t \t"},
                                           EmptyRow{"OpenQuote", "\"UNDOALTER"},
                                           EmptyRow{"OpenQuoteBeforeText", "\"X ZONE=3"}),
                         [](const auto& row) { return std::string(row.param.rule); });

TEST(ParseCommand, KeepsTheCommandOfTheCallerOnAnEmptyLine) {
  CMacroEngine engine;
  MacroCommand command;
  command.Command = Command_ViewXZ;
  EXPECT_TRUE(engine.ParseCommand("", command));
  EXPECT_EQ(command.Command, Command_ViewXZ);
}

struct NumberRow {
  const char* rule;
  const char* text;
  double number;
};

class NumberValue : public ::testing::TestWithParam<NumberRow> {};

TEST_P(NumberValue, ReadsLikeAtof) {
  const MacroValue value = ValueIn(std::string("ALTERELEMENT ZONE=") + GetParam().text);
  EXPECT_EQ(value.Type, MacroValue::kNumber);
  EXPECT_EQ(value.Number, GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, NumberValue,
    ::testing::Values(NumberRow{"Whole", "3", 3.0}, NumberRow{"Negative", "-4.5", -4.5},
                      NumberRow{"Plus", "+2", 2.0}, NumberRow{"StartsWithPoint", ".5", 0.5},
                      NumberRow{"Exponent", "1e3", 1000.0}, NumberRow{"JunkIsIgnored", "3abc", 3.0},
                      NumberRow{"NoNumberIsZero", "-", 0.0}, NumberRow{"SignIsZero", "?", 0.0},
                      NumberRow{"BlanksBefore", " \t7", 7.0}, NumberRow{"EndsAtTab", "8\t", 8.0}),
    [](const auto& row) { return std::string(row.param.rule); });

struct StringsRow {
  const char* rule;
  const char* text;
  std::vector<std::string> strings;
};

class StringValue : public ::testing::TestWithParam<StringsRow> {};

TEST_P(StringValue, ReadsEveryNonEmptyString) {
  const MacroValue value = ValueIn(std::string("PICKPOLYGON CORNERS=") + GetParam().text);
  EXPECT_EQ(value.Type, MacroValue::kStrings);
  EXPECT_EQ(value.Strings, GetParam().strings);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, StringValue,
    ::testing::Values(StringsRow{"One", R"("x")", {"x"}},
                      StringsRow{"KeepsCase", R"("aB")", {"aB"}},
                      StringsRow{"Several", R"("a","b","c")", {"a", "b", "c"}},
                      StringsRow{"BlanksAroundComma", "\"a\" \t, \t\"b\"", {"a", "b"}},
                      StringsRow{"EmptyPairAloneIsAnEmptyList", R"("")", {}},
                      StringsRow{"EmptyPairsAddNothing", R"("","a","")", {"a"}},
                      StringsRow{"AnyCharacterInside", R"("a = b, c")", {"a = b, c"}},
                      StringsRow{"BlankAfterEquals", R"(  "x")", {"x"}}),
    [](const auto& row) { return std::string(row.param.rule); });

struct FailureRow {
  const char* rule;
  const char* line;
  const char* message;
  std::size_t attributesBefore;
};

class BadLine : public ::testing::TestWithParam<FailureRow> {};

TEST_P(BadLine, FailsWithItsWholeMessageAndKeepsWhatWasReadBefore) {
  CMacroEngine engine;
  MacroCommand command;
  EXPECT_FALSE(engine.ParseCommand(GetParam().line, command));
  EXPECT_EQ(engine.GlobalError(), GetParam().message);
  EXPECT_EQ(command.Attributes.size(), GetParam().attributesBefore);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, BadLine,
    ::testing::Values(
        FailureRow{"UnknownCommand", "X=1", "Invalid macro command string", 0},
        FailureRow{"CommandStartsWithEquals", "=1", "Invalid macro command string", 0},
        FailureRow{"QuotedCommandKeepsItsCase", "\"undoalter\"", "Invalid macro command string", 0},
        FailureRow{"UnknownAttribute", "ALTERELEMENT FOO=1", "Invalid macro attribute string", 0},
        FailureRow{"StrayEquals", "ALTERELEMENT ZONE=3=4", "Invalid macro attribute string", 1},
        FailureRow{"LineBreakAfterCommand", "UNDOALTER\n", "Invalid macro attribute string", 0},
        FailureRow{"NoEquals", "ALTERELEMENT ZONE 3",
                   "Expected '=' after macro attribute string \"ZONE\"", 0},
        FailureRow{"NoEqualsAtEnd", "ALTERELEMENT zone",
                   "Expected '=' after macro attribute string \"ZONE\"", 0},
        FailureRow{"UnknownKeywordNamesTheAttribute", "ALTERELEMENT RULE=SIDEWAYS",
                   "Invalid keyword found after \"RULE\"", 0},
        FailureRow{"Parenthesis", "ALTERELEMENT ZONE=(3)", "Invalid keyword found after \"ZONE\"",
                   0},
        FailureRow{"NoStringAfterComma", "ALTERELEMENT VARIABLE=\"X\",Y",
                   "Expected a string after comma", 0},
        FailureRow{"CommaAtEnd", "ALTERELEMENT VARIABLE=\"X\",", "Expected a string after comma",
                   0},
        FailureRow{"OpenString", "ALTERELEMENT VARIABLE=\"X", "Missing trailing double quote", 0},
        FailureRow{"OpenSecondString", "ALTERELEMENT VARIABLE=\"X\",\"Y",
                   "Missing trailing double quote", 0},
        FailureRow{"NoNumber", "ALTERELEMENT ZONE=", "Expected number after '='", 0},
        FailureRow{"BlanksForNumber", "ALTERELEMENT ZONE= \t", "Expected number after '='", 0},
        FailureRow{"LineBreakForNumber", "ALTERELEMENT ZONE=\n", "Expected number after '='", 0},
        FailureRow{"EqualsForNumber", "ALTERELEMENT ZONE==3", "Expected number after '='", 0},
        FailureRow{"SecondAttribute", "ALTERELEMENT ZONE=3 BAR=1", "Invalid macro attribute string",
                   1}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST(ParseCommand, ReadsAttributesInOrderAndKeepsRepeatedOnes) {
  const MacroCommand command = Parsed("alterelement zone = 1 element=2\tZONE=3 variable=\"p\"");
  EXPECT_EQ(command.Command, Command_AlterElement);
  std::vector<std::int32_t> ids;
  for (const MacroAttribute& attribute : command.Attributes) ids.push_back(attribute.Attribute);
  EXPECT_THAT(ids,
              ElementsAre(Attribute_Zone, Attribute_Element, Attribute_Zone, Attribute_Variable));
  EXPECT_EQ(command.Attributes[2].Value.Number, 3.0);
  EXPECT_THAT(command.Attributes[3].Value.Strings, ElementsAre("p"));
}

TEST(ParseCommand, KeepsTheCaseOfQuotedTextAlone) {
  const MacroCommand command = Parsed("pickrectangle corners=\"a\",\"b\"");
  EXPECT_EQ(command.Command, Command_PickRectangle);
  ASSERT_EQ(command.Attributes.size(), 1u);
  EXPECT_THAT(command.Attributes[0].Value.Strings, ElementsAre("a", "b"));
}

TEST(ParseCommand, NeedsNoBlankBehindAClosingQuote) {
  const MacroCommand command = Parsed("\"ALTERELEMENT\"\"VARIABLE\"=\"x\"ZONE=3");
  EXPECT_EQ(command.Command, Command_AlterElement);
  ASSERT_EQ(command.Attributes.size(), 2u);
  EXPECT_EQ(command.Attributes[1].Value.Number, 3.0);
}

TEST(ParseCommand, EndsWithSuccessAtAnAttributeWithAnOpenQuote) {
  const MacroCommand command = Parsed("ALTERELEMENT ZONE=3 \"ELEMENT=4");
  EXPECT_EQ(command.Attributes.size(), 1u);
}

TEST(ParseCommand, AppendsToWhatTheCommandHolds) {
  CMacroEngine engine;
  MacroCommand command;
  EXPECT_TRUE(engine.ParseCommand("ALTERELEMENT ZONE=3", command));
  EXPECT_TRUE(engine.ParseCommand("ALTERELEMENT ELEMENT=4", command));
  EXPECT_EQ(command.Attributes.size(), 2u);
}

TEST(ParseCommand, KeepsAnOldErrorTextOnSuccess) {
  CMacroEngine engine;
  MacroCommand command;
  engine.SetError("old");
  EXPECT_TRUE(engine.ParseCommand("UNDOALTER", command));
  EXPECT_EQ(engine.GlobalError(), "old");
}

TEST(ParseCommand, ReadsLinesAndTokensOfAnyLength) {
  const std::string name(100000, 'x');
  std::string line = "PICKPOLYGON VARIABLE=\"" + name + "\" CORNERS=\"0, 0\"";
  for (int i = 1; i < 20000; ++i) line += ",\"" + std::to_string(i) + ", 0\"";
  const MacroCommand command = Parsed(line);
  ASSERT_EQ(command.Attributes.size(), 2u);
  EXPECT_THAT(command.Attributes[0].Value.Strings, ElementsAre(name));
  EXPECT_EQ(command.Attributes[1].Value.Strings.size(), 20000u);
  EXPECT_EQ(command.Attributes[1].Value.Strings.back(), "19999, 0");
}

TEST(ParseCommand, RefusesALongUnknownWordWithoutHarm) {
  CMacroEngine engine;
  MacroCommand command;
  EXPECT_FALSE(engine.ParseCommand(std::string(1000000, 'A'), command));
  EXPECT_EQ(engine.GlobalError(), "Invalid macro command string");
}

}  // namespace
}  // namespace qelvane::qelutiltools
