#include "ApiTesting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <sstream>
#include <vector>

namespace qelhost {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

/// What the command prints.
std::string OutputOf(const std::string& command) {
  std::string output;
  FILE* const pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return output;
  char buffer[4096];
  for (std::size_t n = 0; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) {
    output.append(buffer, n);
  }
  pclose(pipe);
  return output;
}

TEST(TheHostLibrary, DefinesEveryFunctionOfTheHeaders) {
  std::set<std::string> defined;
  std::istringstream lines(OutputOf("nm -D --defined-only '" HOST_LIBRARY "'"));
  for (std::string address, kind, name; lines >> address >> kind >> name;) {
    if (kind == "T" && name.rfind("Qel", 0) == 0) defined.insert(name);
  }
  const std::set<std::string> declared = DeclaredFunctions();
  ASSERT_THAT(declared, SizeIs(::testing::Gt(150U)));
  std::vector<std::string> missing;
  std::set_difference(declared.begin(), declared.end(), defined.begin(), defined.end(),
                      std::back_inserter(missing));
  EXPECT_THAT(missing, IsEmpty());
  EXPECT_EQ(defined.count("QelUtilExtensionGet"), 1U);
}

}  // namespace
}  // namespace qelhost
