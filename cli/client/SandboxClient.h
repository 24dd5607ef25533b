#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Value.h"

namespace httplib {
class Client;
}

namespace ovinta::cli {

/// The side of a sandbox that merchants and testers use. For one thread, save `stop`.
class SandboxClient {
 public:
  /// Receives the name of an event and its data.
  using Event = std::function<void(std::string_view name, const platform::Dictionary& data)>;

  /// `baseURL` is the one that the SDK uses; `token` the app's, which a sandbox asks for that is
  /// open to others; `patience` how long it may keep its merchant waiting. Throws
  /// `std::runtime_error` for an address that no sandbox has.
  explicit SandboxClient(std::string baseURL, std::string token = {},
                         std::chrono::seconds patience = std::chrono::seconds(10));
  ~SandboxClient();
  SandboxClient(const SandboxClient&) = delete;
  SandboxClient& operator=(const SandboxClient&) = delete;

  /// Sends a request below "/sandbox/", with a record as body where one is given, and answers what
  /// comes under "data". Throws `std::runtime_error`, which says what went wrong.
  platform::Value ask(const std::string& method, const std::string& path,
                      const std::optional<platform::Value>& record = {});

  /// Hands on the events of a stream below "/sandbox/" until it is stopped. `onOpen` is called when
  /// the sandbox listens. Throws as `ask` does where it never does, and where the stream ends.
  void follow(const std::string& path, const std::function<void()>& onOpen, const Event& onEvent);

  /// Ends `follow`; may be called from any thread, and before it begins.
  void stop();

 private:
  std::unique_ptr<httplib::Client> client_;
  std::atomic<bool> isStopped_ = false;
};

}  // namespace ovinta::cli
