// Aligned columns of text.
#pragma once

#include <string>
#include <vector>

namespace marquell::cli {

struct Column {
  const char* title = "";
  bool isNumber = false;  ///< numbers end at one edge, texts begin at one
};

/// Lines of cells under their titles, indented. A column without any text is left out.
std::string TableText(const std::vector<Column>& columns,
                      const std::vector<std::vector<std::string>>& rows);

}  // namespace marquell::cli
