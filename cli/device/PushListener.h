#pragma once

#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "cli/client/SandboxClient.h"
#include "platform/Value.h"

namespace ovinta::cli {

/// The way in which the pushes of a sandbox come to this device.
class PushListener {
 public:
  using Push = std::function<void(const platform::Dictionary&)>;

  /// `baseURL` is the one that the SDK uses. Throws as `SandboxClient` does.
  explicit PushListener(const std::string& baseURL, const std::string& token = {})
      : client_(baseURL, token) {}
  /// Stops listening.
  ~PushListener();
  PushListener(const PushListener&) = delete;
  PushListener& operator=(const PushListener&) = delete;

  /// What else becomes of listening; each may be empty.
  struct Watcher {
    /// Called on the listener's thread with the reason when no more pushes come.
    std::function<void(const std::string& reason)> onEnd = {};
    /// Asked again and again whether to wait no longer for the service to listen.
    std::function<bool()> givesUp = {};
  };

  /// Has `push` called, on a thread of its own, with each payload sent to the push token from now
  /// on; call it once. Returns when the service listens; the text says why it does not.
  [[nodiscard]] std::optional<std::string> listen(const std::string& pushToken, Push push,
                                                  const Watcher& watcher);
  [[nodiscard]] std::optional<std::string> listen(const std::string& pushToken, Push push) {
    return listen(pushToken, std::move(push), {});
  }

 private:
  SandboxClient client_;
  std::thread thread_;
};

}  // namespace ovinta::cli
