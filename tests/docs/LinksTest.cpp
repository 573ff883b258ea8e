// Every link of a document that leads into the repository leads somewhere, and every picture is
// there.
#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

const fs::path kRoot = MARQUELL_ROOT;

std::string TextOf(const fs::path& file) {
  std::ifstream in(file);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<fs::path> Documents() {
  std::vector<fs::path> documents = {kRoot / "README.md", kRoot / "examples" / "README.md"};
  for (const auto& entry : fs::recursive_directory_iterator(kRoot / "docs")) {
    const std::string extension = entry.path().extension().string();
    if (extension == ".md" || extension == ".html") documents.push_back(entry.path());
  }
  return documents;
}

std::vector<std::string> LinksIn(const std::string& text) {
  static const std::regex link(R"re((?:href="|src="|\]\()([^")\s]+)["\)])re");
  std::vector<std::string> links;
  for (std::sregex_iterator found(text.begin(), text.end(), link), end; found != end; ++found) {
    links.push_back((*found)[1]);
  }
  return links;
}

/// A heading's anchor: lower case, blanks as dashes, without other signs.
std::string AnchorOf(const std::string& heading) {
  std::string anchor;
  for (const unsigned char c : heading) {
    if (std::isalnum(c) != 0 || c == '-' || c == '_') anchor += static_cast<char>(std::tolower(c));
    if (c == ' ') anchor += '-';
  }
  return anchor;
}

bool HasAnchor(const fs::path& file, const std::string& anchor) {
  const std::string text = TextOf(file);
  if (text.find("id=\"" + anchor + "\"") != std::string::npos) return true;
  static const std::regex heading(R"(#{1,6} +([^\n]+))");
  for (std::sregex_iterator found(text.begin(), text.end(), heading), end; found != end; ++found) {
    if (AnchorOf((*found)[1]) == anchor) return true;
  }
  return false;
}

TEST(Documents, LinkToWhatIsThere) {
  int linkCount = 0;
  for (const fs::path& document : Documents()) {
    for (const std::string& link : LinksIn(TextOf(document))) {
      ++linkCount;
      const std::size_t hash = link.find('#');
      const std::string file = link.substr(0, hash);
      const fs::path target = file.empty() ? document : document.parent_path() / file;
      EXPECT_TRUE(fs::exists(target)) << document << " links to " << link;
      if (hash == std::string::npos || !fs::exists(target)) continue;
      EXPECT_TRUE(HasAnchor(target, link.substr(hash + 1))) << document << " links to " << link;
    }
  }
  EXPECT_GT(linkCount, 30) << "hardly any link was found";
}

TEST(Help, HasASectionWithAPictureForEveryTool) {
  const std::string help = TextOf(kRoot / "docs" / "help" / "selvane.html");
  for (const std::string tool : {"element", "rectangle", "circle", "polygon", "cube", "sphere"}) {
    EXPECT_NE(help.find("<h2 id=\"" + tool + "\">"), std::string::npos) << tool;
    EXPECT_NE(help.find("src=\"pictures/" + tool + ".png\""), std::string::npos) << tool;
    EXPECT_NE(help.find("src=\"pictures/tools/" + tool + ".png\""), std::string::npos) << tool;
  }
}

}  // namespace
