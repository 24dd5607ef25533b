#pragma once

#include <string>

#include "platform/Value.h"

namespace ovinta::cli {

/// The JSON object that the file holds, standard input for "-"; `what` it is, e.g. "payload".
/// Throws `std::runtime_error` for what is none.
platform::Dictionary readRecordFile(const std::string& file, const std::string& what);

}  // namespace ovinta::cli
