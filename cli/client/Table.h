#pragma once

#include <string>
#include <vector>

#include "platform/Value.h"

namespace ovinta::cli {

/// A column of a table: its heading, the key of the field that it shows, keys inside joined with a
/// point, and the unit of its numbers.
struct Column {
  std::string heading;
  std::string path;
  std::string unit = {};
};

/// The rows, dictionaries all, as aligned columns: the line of the headings first, then a line for
/// each row; "(none)" alone for no rows.
std::vector<std::string> tableLines(const std::vector<Column>& columns, const platform::List& rows);

/// The lines of `tableLines` as one text.
std::string tableText(const std::vector<Column>& columns, const platform::List& rows);

}  // namespace ovinta::cli
