// What a host that checks journals asks the add-on about lines, without data.
#include "CMacroEngine.h"
#include "FakeHostTest.h"

#include "qelvane/Extensions.h"

#include <string>

namespace {

using fakehost::FakeHostTest;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

QelCommandCheck_pf offeredCheck = nullptr;
std::string offeredBy;

void Offer(const char* addOnName, QelCommandCheck_pf check) {
  offeredBy = addOnName;
  offeredCheck = check;
}
const QelCommandCheck_s kService = {Offer};

class CommandCheck : public FakeHostTest {
 protected:
  void SetUp() override {
    host.extensions[QEL_EXTENSION_COMMAND_CHECK] = &kService;
    offeredCheck = nullptr;
    InitQelAddOn113();
    ASSERT_NE(offeredCheck, nullptr);
    Begin();
  }

  void Begin() { EXPECT_TRUE(offeredCheck(nullptr, nullptr)); }

  /// Whether the line is good; what is said of it is kept.
  bool IsGood(const char* line) {
    char* text = nullptr;
    const bool isGood = offeredCheck(line, &text);
    said = text == nullptr ? "" : text;
    if (text != nullptr) QelUtilStringDealloc(&text);
    return isGood;
  }

  std::string said;
};

TEST_F(CommandCheck, IsOfferedInTheAddOnsName) { EXPECT_EQ(offeredBy, "Marquell"); }

TEST_F(CommandCheck, TakesGoodLinesWithoutAWordAndWithoutData) {
  for (const char* line : {"PICKRECTANGLE ANCHORX=0 ANCHORY=0 SIZEX=1 SIZEY=1",
                           "ALTERAREA VARIABLE=\"p\" MODIFIER=\"+1\" RULE=ANYINSIDE", "UNDOALTER",
                           "BLANKAREA RULE=ALLINSIDE", "UNDOBLANK", ""}) {
    EXPECT_TRUE(IsGood(line)) << line;
    EXPECT_THAT(said, IsEmpty()) << line;
  }
  EXPECT_THAT(host.errorBoxes, IsEmpty());
}

TEST_F(CommandCheck, SaysWhatIsWrongWithALineAndKeepsTheLastError) {
  qelvane::qelutiltools::MacroEngine.SetError("kept");
  EXPECT_FALSE(IsGood("NONSENSE"));
  EXPECT_EQ(said, "Invalid macro command string");
  EXPECT_FALSE(IsGood("ALTERAREA RULE=NEVER"));
  EXPECT_EQ(said, "Invalid keyword found after \"RULE\"");
  EXPECT_EQ(qelvane::qelutiltools::MacroEngine.GlobalError(), "kept");
}

TEST_F(CommandCheck, WarnsOfBlanksUndoneAfterAnAlterationUntilTheNextJournal) {
  for (const char* alter : {"ALTERAREA", "ALTERELEMENT", "ALTERSURFACE"}) {
    EXPECT_TRUE(IsGood(alter));
    EXPECT_TRUE(IsGood("UNDOBLANK"));
    EXPECT_THAT(said, HasSubstr("UNDOBLANK after an ALTER command")) << alter;
  }
  Begin();
  EXPECT_TRUE(IsGood("UNDOBLANK"));
  EXPECT_THAT(said, IsEmpty());
  for (const char* blank : {"BLANKAREA", "BLANKELEMENT", "BLANKSURFACE"}) {
    EXPECT_TRUE(IsGood("ALTERAREA"));
    EXPECT_TRUE(IsGood(blank));
    EXPECT_TRUE(IsGood("UNDOBLANK"));
    EXPECT_THAT(said, IsEmpty()) << blank;
  }
}

TEST_F(CommandCheck, NeedsAPlaceForItsAnswerAndSurvivesAHostWithoutStrings) {
  EXPECT_FALSE(offeredCheck("UNDOALTER", nullptr));
  host.FailCall("QelUtilStringAlloc", 1);
  EXPECT_FALSE(IsGood("NONSENSE"));
  EXPECT_THAT(said, IsEmpty());
  IsGood("ALTERAREA");
  host.FailCall("QelUtilStringAlloc", 1);
  EXPECT_TRUE(IsGood("UNDOBLANK"));
  EXPECT_THAT(said, IsEmpty());
}

}  // namespace
