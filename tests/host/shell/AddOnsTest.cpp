#include "AddOns.h"
#include "Host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace qelhost {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace fs = std::filesystem;

/// The error's text, or "" when the library was loaded.
std::string ErrorOf(const std::string& file) {
  try {
    LoadAddOnLibrary(file);
  } catch (const AddOnError& e) {
    return e.what();
  }
  return {};
}

auto TimesRegistered(const std::string& name) {
  const auto& all = Host::Instance().addOns.All();
  return std::count_if(all.begin(), all.end(),
                       [&name](const QelAddOn& addOn) { return addOn.name == name; });
}

TEST(LoadingAnAddOn, CallsItsEntryPointOnceHoweverOftenItIsLoaded) {
  LoadAddOnLibrary(TEST_ADDON);
  LoadAddOnLibrary(TEST_ADDON);
  EXPECT_EQ(TimesRegistered("Loaded"), 1);
  EXPECT_FALSE(Host::Instance().lock.IsOn());
}

TEST(LoadingAnAddOn, FindsARelativeNameInTheWorkingFolder) {
  const fs::path before = fs::current_path();
  fs::current_path(fs::path(TEST_ADDON).parent_path());
  EXPECT_EQ(ErrorOf(fs::path(TEST_ADDON).filename().string()), "");
  fs::current_path(before);
}

TEST(LoadingAnAddOn, SaysThatTheFileIsMissing) {
  EXPECT_EQ(ErrorOf("/nowhere/some.so"), "/nowhere/some.so: there is no such add-on");
}

TEST(LoadingAnAddOn, SaysThatALibraryIsNoAddOn) {
  EXPECT_EQ(ErrorOf(TEST_NO_ADDON),
            std::string(TEST_NO_ADDON) + ": is not an add-on (it has no InitQelAddOn113)");
}

TEST(LoadingAnAddOn, SaysWhyTheLoaderRefusesAFile) {
  const std::string file = ::testing::TempDir() + "host_shell_text.so";
  std::ofstream(file) << "this is text";
  const std::string error = ErrorOf(file);
  EXPECT_THAT(error, StartsWith(file + ": cannot be loaded: "));
  EXPECT_THAT(error, HasSubstr("host_shell_text.so"));
  fs::remove(file);
}

TEST(FindingAddOns, TakesFilesAndFoldersOfThePathInOrder) {
  const fs::path folder = fs::path(::testing::TempDir()) / "host_shell_addons";
  fs::create_directories(folder);
  for (const char* const name : {"b.so", "a.so", "libc.so", "notes.txt"}) {
    std::ofstream(folder / name) << "";
  }
  ASSERT_EQ(setenv("MARQUELL_ADDON_PATH", ("/x/y.so::" + folder.string()).c_str(), 1), 0);
  EXPECT_THAT(AddOnFilesToLoad(),
              ElementsAre("/x/y.so", (folder / "a.so").string(), (folder / "b.so").string()));
  unsetenv("MARQUELL_ADDON_PATH");
  fs::remove_all(folder);
}

bool Succeed(const char*, char**) { return true; }

TEST(Registry, KnowsItsOwnHandlesOnly) {
  AddOnRegistry registry;
  const QelAddOn foreign{"Foreign", "", ""};
  QelAddOn* const first = registry.Register("First", "V1", "Me");
  for (int i = 0; i < 100; ++i) registry.Register("Other " + std::to_string(i), "", "");
  EXPECT_TRUE(registry.IsHandle(first));
  EXPECT_EQ(first->author, "Me");
  EXPECT_FALSE(registry.IsHandle(&foreign));
  EXPECT_FALSE(registry.IsHandle(nullptr));
  EXPECT_EQ(registry.Register("", "V1", "Me"), nullptr);
}

TEST(Registry, RoutesCommandsByExactName) {
  AddOnRegistry registry;
  EXPECT_TRUE(registry.SetMacroCallback("Name", Succeed));
  EXPECT_FALSE(registry.SetMacroCallback("Null", nullptr));
  EXPECT_FALSE(registry.SetMacroCallback("", Succeed));
  EXPECT_EQ(registry.MacroCallbackOf("Name"), &Succeed);
  EXPECT_EQ(registry.MacroCallbackOf("name"), nullptr);
  EXPECT_EQ(registry.MacroCallbackOf("Null"), nullptr);
  EXPECT_EQ(registry.CommandCheckOf("Name"), nullptr);
}

}  // namespace
}  // namespace qelhost
