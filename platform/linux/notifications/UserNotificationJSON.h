#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/UserNotificationCenter.h"

namespace ovinta::platform::linuxos {

/// A JSON text from which `parseJSON` makes an equal value. Throws `CodingError` for what JSON
/// cannot hold, such as text that is not UTF-8.
std::string typedJSON(const Value& value);

/// The requests as a JSON text. Throws as `typedJSON` does.
std::string notificationRequestsText(const std::vector<UserNotificationRequest>& requests);

/// The requests in a text of `notificationRequestsText`, without those that are not whole.
std::vector<UserNotificationRequest> notificationRequests(std::string_view text);

}  // namespace ovinta::platform::linuxos
