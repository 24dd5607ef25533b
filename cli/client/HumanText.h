#pragma once

#include <string>
#include <string_view>

#include "platform/Value.h"

namespace ovinta::cli {

/// The value as lines of text: an entry per line, lists as paragraphs, what is inside indented.
std::string humanText(const platform::Value& value);

/// The text with its control characters, which could move the cursor or worse, escaped as in
/// "\x1b"; line feeds stay when `keepsLines`.
std::string visibleText(std::string_view text, bool keepsLines = false);

/// A text in visible characters, anything else as JSON.
std::string scalarText(const platform::Value& value);

}  // namespace ovinta::cli
