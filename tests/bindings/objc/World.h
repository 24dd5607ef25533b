#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "platform/simulation/RecordingLog.h"
#include "platform/simulation/Simulation.h"
#include "sandbox/Sandbox.h"

namespace ovinta::test {

/// What the twin's tests run in: the library on a simulated device, with real HTTP to a sandbox.
/// One for the whole process, as the library's own state is.
class World {
 public:
  static World& shared();

  std::string baseURL() const { return sandbox_.baseURL(); }
  platform::simulation::Simulation& device() { return simulation_; }
  platform::simulation::RecordingLog& log() { return *log_; }

  /// Stops the sandbox, whose threads must not meet the end of the process.
  void stop() { sandbox_.stop(); }

  /// Serves the main queue until the condition holds; false when that takes too long.
  bool waitUntil(const std::function<bool()>& condition);

  /// The redemption code of a new order that no customer has claimed.
  std::string offerOrder();
  /// The token that the message to that address holds.
  std::string resetToken(const std::string& email);
  /// A request of the merchant's or tester's side.
  void ask(const std::string& method, const std::string& path);

 private:
  explicit World(const std::filesystem::path& directory);

  sandbox::Sandbox sandbox_;
  std::shared_ptr<platform::simulation::RecordingLog> log_;
  platform::simulation::Simulation simulation_;
};

}  // namespace ovinta::test
