#pragma once

#include <string>

namespace ovinta {

/// The number in its shortest form that reads back to the same value, with at least one digit after
/// the point; with an exponent when it is below 1e-4 or at least 2^53 in magnitude.
std::string numberText(double number);

}  // namespace ovinta
