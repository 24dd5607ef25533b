#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "replay/ChildProcess.h"
#include "replay/TemporaryDirectory.h"

namespace ovinta::replay {

/// A D-Bus daemon that nobody else knows. It starts only the services that `addService` gave it,
/// and ends with this object or, whatever happens, with the thread that started it. For one thread.
class PrivateBus {
 public:
  /// Returns when the daemon listens. Throws `std::runtime_error` when it does not start.
  PrivateBus();

  /// The bus's address, as D-Bus writes it.
  const std::string& address() const { return address_; }

  /// Has the daemon start a service on demand, as the D-Bus activation file says.
  void addService(const std::filesystem::path& activationFile);

  /// Ends the daemon; the address leads nowhere from then on.
  void stop() { daemon_.reset(); }
  /// Starts it again at the same address.
  void start();

 private:
  const TemporaryDirectory directory_;
  const std::string address_ = "unix:path=" + (directory_.path() / "bus").string();
  std::optional<ChildProcess> daemon_;
};

}  // namespace ovinta::replay
