#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "platform/URLSession.h"
#include "platform/linux/http/CurlHandles.h"

namespace ovinta::platform::linuxos {

/// Whether method and header fields keep to the characters that HTTP gives them, so that none can
/// end its line and smuggle in another.
bool isSendable(const URLRequest& request);

/// The list for CURLOPT_HTTPHEADER: what the cache policy and the body demand, then exactly the
/// request's fields. What libcurl would add by itself is switched off.
CurlList headerList(const URLRequest& request);

/// The body to send; absent for none. Methods that are about sending send an empty one at least,
/// since servers refuse them without a length.
std::optional<std::string_view> bodyToSend(const URLRequest& request);

/// Takes one line of an answer's head, its end included, as the next field, or as the continuation
/// of the last one. Lines without a field name are left out.
void addHeaderLine(std::vector<HeaderField>& headers, std::string_view line);

}  // namespace ovinta::platform::linuxos
