#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "cli/client/SandboxClient.h"
#include "cli/device/PushListener.h"

namespace ovinta::cli {

/// The merchant's side of a sandbox, and the way its pushes come to this device.
class Merchant {
 public:
  /// `baseURL` is the one that the SDK uses. Throws as `SandboxClient` does.
  explicit Merchant(const std::string& baseURL) : client_(baseURL), listener_(baseURL) {}

  /// As `PushListener::listen`.
  [[nodiscard]] std::optional<std::string> listen(const std::string& pushToken,
                                                  PushListener::Push push) {
    return listener_.listen(pushToken, std::move(push));
  }

  /// Moves an order to a state, e.g. "ready"; the text says why that failed.
  [[nodiscard]] std::optional<std::string> moveOrder(std::int64_t orderID,
                                                     const std::string& state);

 private:
  SandboxClient client_;
  PushListener listener_;
};

}  // namespace ovinta::cli
