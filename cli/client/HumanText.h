#pragma once

#include <string>

#include "platform/Value.h"

namespace ovinta::cli {

/// The value as lines of text: an entry per line, lists as paragraphs, what is inside indented.
std::string humanText(const platform::Value& value);

/// A text as it is, anything else as JSON.
std::string scalarText(const platform::Value& value);

}  // namespace ovinta::cli
