#include "CMacroEngine.h"
#include "RecorderHost.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <iterator>
#include <random>
#include <string>

namespace qelvane::qelutiltools {
namespace {

/// Commands of every shape that can be recorded: any strings without double quotes, numbers that
/// six digits hold, every keyword that is not a boolean's.
class CommandMaker {
 public:
  explicit CommandMaker(unsigned seed) : m_random(seed) {}

  MacroCommand Make() {
    MacroCommand command;
    command.Command = Below(18);
    for (int count = Below(6); count > 0; --count) {
      command.Attributes.push_back({Below(18), MakeValue()});
    }
    return command;
  }

 private:
  int Below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(m_random); }

  std::string MakeString() {
    std::string text;
    for (int length = 1 + Below(12); length > 0; --length) {
      const char c = static_cast<char>(' ' + Below(95));
      text += c == '"' ? '\'' : c;
    }
    return text;
  }

  MacroValue MakeValue() {
    MacroValue value;
    value.Type = Below(4);
    switch (value.Type) {
      case MacroValue::kStrings:
        for (int count = Below(4); count > 0; --count) value.Strings.push_back(MakeString());
        break;
      case MacroValue::kNumber:
        value.Number = Below(2) == 0 ? Below(2000000) - 1000000 : (Below(200000) - 100000) / 1024.0;
        // A fraction is recorded with six digits; the number that they spell is the one to keep.
        value.Number = std::stod(SixDigits(value.Number));
        break;
      case MacroValue::kBoolean:
        value.Boolean = Below(2) == 0;
        break;
      default:
        value.Keyword = Keyword_Blank + Below(Keyword_EndOfList - Keyword_Blank);
        break;
    }
    return value;
  }

  static std::string SixDigits(double number) {
    char text[64];
    std::snprintf(text, sizeof text, "%g", number);
    return text;
  }

  std::mt19937 m_random;
};

void ExpectSameValue(const MacroValue& read, const MacroValue& written) {
  ASSERT_EQ(read.Type, written.Type);
  EXPECT_EQ(read.Strings, written.Strings);
  EXPECT_EQ(read.Number, written.Number);
  EXPECT_EQ(read.Boolean, written.Boolean);
  EXPECT_EQ(read.Keyword, written.Keyword);
}

TEST(RoundTrip, ARecordedLineParsesToTheSameCommand) {
  CommandMaker maker(20240917);
  CMacroEngine engine;
  for (int round = 0; round < 5000; ++round) {
    recorderhost::ResetHost();
    const MacroCommand written = maker.Make();
    engine.RecordCommand(written);
    ASSERT_EQ(recorderhost::Host().lines.size(), 1u);
    const std::string& line = recorderhost::Host().lines[0];
    SCOPED_TRACE(line);

    MacroCommand read;
    ASSERT_TRUE(engine.ParseCommand(line, read)) << engine.GlobalError();
    EXPECT_EQ(read.Command, written.Command);
    ASSERT_EQ(read.Attributes.size(), written.Attributes.size());
    for (std::size_t i = 0; i < read.Attributes.size(); ++i) {
      EXPECT_EQ(read.Attributes[i].Attribute, written.Attributes[i].Attribute);
      ExpectSameValue(read.Attributes[i].Value, written.Attributes[i].Value);
    }
    if (::testing::Test::HasFailure()) return;
  }
}

/// Any bytes at all: the parser answers, with a reason when it refuses.
TEST(RoundTrip, NoLineHarmsTheParser) {
  std::mt19937 random(7);
  const std::string pieces[] = {"ALTERAREA", "ZONE", "=",  "\"", ",",    " ",  "\t",
                                "RULE",      "(",    "-1", "T",  "\xff", "\n", "PICKCUBE"};
  std::uniform_int_distribution<std::size_t> piece(0, std::size(pieces) - 1);
  for (int round = 0; round < 20000; ++round) {
    std::string line;
    for (std::size_t count = piece(random); count > 0; --count) line += pieces[piece(random)];
    CMacroEngine engine;
    MacroCommand command;
    const bool isGood = engine.ParseCommand(line, command);
    ASSERT_EQ(isGood, engine.GlobalError().empty()) << line;
  }
}

}  // namespace
}  // namespace qelvane::qelutiltools
