#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/Date.h"
#include "platform/Value.h"

namespace ovinta::cli {

/// The value as lines of text: an entry per line, lists as paragraphs, what is inside indented.
std::string humanText(const platform::Value& value);

/// The text with its control characters, which could move the cursor or worse, escaped as in
/// "\x1b"; line feeds stay when `keepsLines`.
std::string visibleText(std::string_view text, bool keepsLines = false);

/// The bytes of the text's first character, and the columns that it takes on a terminal.
struct Glyph {
  std::size_t bytes = 0;
  std::size_t columns = 0;
};
/// `text` must not be empty. A byte that is not UTF-8 is a character of one column.
Glyph firstGlyph(std::string_view text);

/// The date in universal time, by a format of `strftime`.
std::string utcText(platform::Date date, const char* format);

/// A text in visible characters, anything else as JSON.
std::string scalarText(const platform::Value& value);

}  // namespace ovinta::cli
