#pragma once

#include <httplib.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "sandbox/http/Answer.h"

namespace ovinta::sandbox {

/// The longest body, in bytes, that is taken with a request for that path.
std::size_t longestBody(std::string_view path);

/// The request's body, empty when it has none; or the answer to one that is longer than `limit`
/// once it is unpacked, that cannot be read, or that is in parts.
platform::Expected<std::string, Answer> receiveBody(const httplib::Request& request,
                                                    const httplib::ContentReader& read,
                                                    std::size_t limit);

}  // namespace ovinta::sandbox
