#pragma once

#include <optional>
#include <string>

#include "platform/URLSession.h"

namespace ovinta::platform::linuxos {

/// Whether the text is meant as a complete http or https URL.
bool isWebURL(const std::string& text);

/// The request that follows an answer with that status and (absolute) target; absent when the
/// answer itself is to be handed out. Only targets of the same scheme, host and port are followed:
/// the request's own headers, which may hold secrets, go along.
std::optional<URLRequest> redirected(const URLRequest& request, int statusCode,
                                     const std::string& target);

}  // namespace ovinta::platform::linuxos
