#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Date.h"
#include "platform/Value.h"

namespace ovinta::cli {

/// The value as lines of text: an entry per line, lists as paragraphs, what is inside indented.
std::string humanText(const platform::Value& value);

/// The text as people may get to see it: what could move the cursor, turn the direction of writing
/// or hide escaped, as in "\x1b" and "\u202e", and so are bytes that are not UTF-8; line feeds stay
/// when `keepsLines`. Everything that is written for people goes through this, once or more often.
std::string visibleText(std::string_view text, bool keepsLines = false);

/// The value as JSON in which such characters are escaped too: what reads it loses nothing.
std::string visibleJSON(const platform::Value& value);

/// The bytes of the text's first character, the columns that it takes on a terminal, and its code.
struct Glyph {
  std::size_t bytes = 0;
  std::size_t columns = 0;
  /// Absent for a byte that is not UTF-8.
  std::optional<char32_t> code = {};
};
/// `text` must not be empty. A byte that is not UTF-8 is a character of one column.
Glyph firstGlyph(std::string_view text);

/// The date in universal time, by a format of `strftime`.
std::string utcText(platform::Date date, const char* format);

/// A text in visible characters, anything else as JSON.
std::string scalarText(const platform::Value& value);

}  // namespace ovinta::cli
