#pragma once

#include <string_view>

namespace ovinta::cli {

/// The GPX text of the drive that is compiled in.
std::string_view builtInTrip();

}  // namespace ovinta::cli
