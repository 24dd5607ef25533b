#pragma once

#include <string>
#include <string_view>

#include "platform/Value.h"
#include "sandbox/domain/Refusal.h"

namespace ovinta::sandbox {

/// The record under "data" of a JSON text.
Outcome dataOf(std::string_view text);

/// The JSON text {key: value}.
std::string enveloped(std::string key, platform::Value value);

}  // namespace ovinta::sandbox
