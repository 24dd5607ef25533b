#include "cli/client/Table.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "cli/client/HumanText.h"

namespace ovinta::cli {
namespace {

using platform::Dictionary;
using platform::Value;

constexpr std::size_t kGap = 2;

const Value* fieldAt(const Value& row, std::string_view path) {
  const std::size_t point = path.find('.');
  const auto* fields = row.as<Dictionary>();
  const auto found = fields ? fields->find(path.substr(0, point)) : Dictionary::const_iterator();
  if (!fields || found == fields->end()) return nullptr;
  return point == std::string_view::npos ? &found->second
                                         : fieldAt(found->second, path.substr(point + 1));
}

std::string cellText(const Value& row, const Column& column) {
  const Value* field = fieldAt(row, column.path);
  if (!field || field->as<std::nullptr_t>()) return "-";
  return scalarText(*field) + (column.unit.empty() ? "" : " " + column.unit);
}

/// The width of a text in columns of a terminal.
std::size_t width(std::string_view text) {
  std::size_t columns = 0;
  while (!text.empty()) {
    const Glyph glyph = firstGlyph(text);
    columns += glyph.columns;
    text.remove_prefix(glyph.bytes);
  }
  return columns;
}

using Cells = std::vector<std::string>;

std::string join(const Cells& cells, const std::vector<std::size_t>& widths) {
  std::string text;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    text += cells[i];
    if (i + 1 < cells.size()) text.append(widths[i] + kGap - width(cells[i]), ' ');
  }
  return text;
}

}  // namespace

std::vector<std::string> tableLines(const std::vector<Column>& columns,
                                    const platform::List& rows) {
  if (rows.empty()) return {"(none)"};
  std::vector<Cells> table(rows.size() + 1);
  std::vector<std::size_t> widths;
  for (const Column& column : columns) {
    table.front().push_back(column.heading);
    for (std::size_t i = 0; i < rows.size(); ++i) {
      table[i + 1].push_back(cellText(rows[i], column));
    }
    std::size_t widest = 0;
    for (const Cells& cells : table) widest = std::max(widest, width(cells.back()));
    widths.push_back(widest);
  }
  std::vector<std::string> lines;
  lines.reserve(table.size());
  for (const Cells& cells : table) lines.push_back(join(cells, widths));
  return lines;
}

std::string tableText(const std::vector<Column>& columns, const platform::List& rows) {
  std::string text;
  for (const std::string& line : tableLines(columns, rows)) text += line + "\n";
  return text;
}

}  // namespace ovinta::cli
