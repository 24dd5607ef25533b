#pragma once

#include <httplib.h>

#include <cstddef>
#include <string>
#include <variant>

#include "sandbox/Answer.h"

namespace ovinta::sandbox {

/// The request's body, empty when it has none; or the answer to one that is longer than `limit`,
/// not whole, or in parts. It is read to its end either way: no answer reaches a client that still
/// sends.
std::variant<std::string, Answer> receiveBody(const httplib::Request& request,
                                              const httplib::ContentReader& read,
                                              std::size_t limit);

/// The longest body that is read at all.
constexpr std::size_t kLongestBody = std::size_t{256} << 20;

}  // namespace ovinta::sandbox
