#include "Table.h"

#include <algorithm>

namespace marquell::cli {

namespace {

/// Characters of UTF-8 text, which is what takes room on a terminal.
std::size_t WidthOf(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

}  // namespace

std::string TableText(const std::vector<Column>& columns,
                      const std::vector<std::vector<std::string>>& rows) {
  std::vector<std::string> lines(rows.size() + 1);
  for (std::size_t column = 0; column < columns.size(); ++column) {
    std::size_t width = 0;
    for (const auto& row : rows) width = std::max(width, WidthOf(row[column]));
    if (width == 0) continue;
    width = std::max(width, WidthOf(columns[column].title));
    for (std::size_t line = 0; line < lines.size(); ++line) {
      const std::string cell = line == 0 ? columns[column].title : rows[line - 1][column];
      const std::string padding(width - WidthOf(cell), ' ');
      lines[line] += "  " + (columns[column].isNumber ? padding + cell : cell + padding);
    }
  }
  std::string text;
  for (const std::string& line : lines) {
    text += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
  }
  return text;
}

}  // namespace marquell::cli
