// Names that hold what terminals obey.
#include "ProgramRun.h"

namespace clitest {

namespace {

using ControlsInMessages = ProgramTest;

TEST_F(ControlsInMessages, OfTwoBytesAreNotHandedOn) {
  EXPECT_EQ(Run({"info",
                 "a\xc2\x9b"
                 "31m\xc2\x80\xc2\x9f.vtu"})
                .err,
            "marquell: a?31m??.vtu: No such file or directory\n");
}

TEST_F(ControlsInMessages, AreToldFromLetters) {
  const std::string letters = "\xc2\xa0 \xc3\x80 \xc3\x9f \xe2\x82\xac \xc4\x80.vtu";
  EXPECT_EQ(Run({"info", letters}).err, "marquell: " + letters + ": No such file or directory\n");
}

}  // namespace

}  // namespace clitest
