#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "platform/Value.h"

namespace httplib {
class Client;
}

namespace ovinta::cli {

/// The merchant's side of a sandbox, and the way its pushes come to this device.
class Merchant {
 public:
  using Push = std::function<void(const platform::Dictionary&)>;

  /// `baseURL` is the one that the SDK uses.
  explicit Merchant(std::string baseURL);
  /// Stops listening.
  ~Merchant();
  Merchant(const Merchant&) = delete;
  Merchant& operator=(const Merchant&) = delete;

  /// Has `push` called, on a thread of its own, with each payload sent to the push token from now
  /// on. Returns when the service listens; the text says why it does not.
  [[nodiscard]] std::optional<std::string> listen(const std::string& pushToken, Push push);

  /// Moves an order to a state, e.g. "ready"; the text says why that failed.
  [[nodiscard]] std::optional<std::string> moveOrder(std::int64_t orderID,
                                                     const std::string& state);

 private:
  std::string baseURL_;
  std::unique_ptr<httplib::Client> listener_;
  std::thread thread_;
};

}  // namespace ovinta::cli
