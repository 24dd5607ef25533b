#pragma once

#include <cstdint>
#include <string>

#include "platform/URLSession.h"

namespace ovinta::platform::test {

/// An event as the library sends it; the sequence tells it from others.
inline URLRequest eventRequest(std::int64_t orderID, const std::string& type, std::int64_t sequence,
                               const std::string& token = "alice",
                               const std::string& service = "https://service.test") {
  return {.url = {service + "/m/v1/events"},
          .method = "POST",
          .headers = {{"Authorization", "Token token=\"" + token + "\""}, {"App-Token", "app"}},
          .body = R"({"data":{"order_id":)" + std::to_string(orderID) + R"(,"event_type":")" +
                  type + R"(","eta_seconds":)" + std::to_string(sequence) + "}}"};
}

}  // namespace ovinta::platform::test
