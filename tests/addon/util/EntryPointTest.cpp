#include "EntryPoint.h"

#include "CallLogTest.h"
#include "HostCheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>

namespace qelvane::qelutiltools {
namespace {

using callloghost::Host;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kGeneralError[] =
    "Locked ErrMsg An error occured in the Marquell add-on. Please try again.";

class EntryPointTest : public CallLogTest {};

TEST_F(EntryPointTest, RunsItsBodyWithTheLockHeld) {
  int depth = 0;
  EXPECT_TRUE(EntryPoint(nullptr, [&] { depth = Host().lockDepth; }));
  EXPECT_EQ(depth, 1);
  EXPECT_THAT(Host().log, IsEmpty());
}

TEST_F(EntryPointTest, ShowsTheTextGivenInPlaceOfTheErrorsOwn) {
  EXPECT_FALSE(EntryPoint("Try again.", [] { throw std::runtime_error("secret"); }));
  EXPECT_THAT(Host().log, ElementsAre("Locked ErrMsg Try again."));
}

TEST_F(EntryPointTest, ShowsTheGeneralTextWithoutOne) {
  EXPECT_FALSE(EntryPoint(nullptr, [] { throw std::bad_alloc(); }));
  EXPECT_THAT(Host().log, ElementsAre(kGeneralError));
}

TEST_F(EntryPointTest, ShowsNothingInBatchMode) {
  Host().isBatch = true;
  EXPECT_FALSE(EntryPoint(nullptr, [] { throw std::runtime_error("secret"); }));
  EXPECT_THAT(Host().log, IsEmpty());
}

TEST_F(EntryPointTest, LetsNoForeignExceptionOutEither) {
  EXPECT_FALSE(EntryPoint(nullptr, [] { throw 7; }));
  EXPECT_THAT(Host().log, ElementsAre(kGeneralError));
}

TEST_F(EntryPointTest, ContainTakesNoLockForItsBody) {
  int depth = -1;
  EXPECT_TRUE(Contain(nullptr, [&] { depth = Host().lockDepth; }));
  EXPECT_EQ(depth, 0);
  EXPECT_FALSE(Contain(nullptr, [] { throw std::runtime_error("secret"); }));
  EXPECT_THAT(Host().log, ElementsAre(kGeneralError));
}

TEST(HostCheck, MakesTheCallOnceAndPassesOnWhatItYields) {
  int calls = 0;
  const char* text = nullptr;
  EXPECT_NO_THROW(HOST_CHECK(++calls > 0));
  EXPECT_EQ(calls, 1);
  EXPECT_NO_THROW(HOST_CHECK(text = "text"));
  EXPECT_STREQ(text, "text");
}

TEST(HostCheck, QuotesTheCallTheFileAndTheLine) {
  const int line = __LINE__ + 2;
  try {
    HOST_CHECK(std::string("a").empty());
    FAIL() << "no error";
  } catch (const std::runtime_error& error) {
    EXPECT_EQ(error.what(), "Assert failed: std::string(\"a\").empty() (EntryPointTest " +
                                std::to_string(line) + ")");
  }
}

struct FileRow {
  const char* rule;
  const char* file;
  const char* named;
};

class AssertFile : public ::testing::TestWithParam<FileRow> {};

TEST_P(AssertFile, IsNamedByItsBaseName) {
  try {
    ThrowAssertFailed("Call()", GetParam().file, 42);
  } catch (const std::runtime_error& error) {
    EXPECT_EQ(error.what(), std::string("Assert failed: Call() (") + GetParam().named + " 42)");
  }
}

INSTANTIATE_TEST_SUITE_P(Rules, AssertFile,
                         ::testing::Values(FileRow{"WithPath", "/a/b.c/Selvane.cpp", "Selvane"},
                                           FileRow{"Bare", "main.cpp", "main"},
                                           FileRow{"Relative", "../x/macro.cpp", "macro"}),
                         [](const auto& row) { return std::string(row.param.rule); });

}  // namespace
}  // namespace qelvane::qelutiltools
