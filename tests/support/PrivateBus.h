#pragma once

#include <optional>
#include <string>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::test {

/// A D-Bus daemon that nobody else knows. It starts no service by itself, and ends with this object
/// or, whatever happens, with this process.
class PrivateBus {
 public:
  PrivateBus();

  const std::string& address() const { return address_; }

  /// Ends the daemon; the address leads nowhere from then on.
  void stop() { daemon_.reset(); }
  /// Starts it again at the same address.
  void start();

 private:
  const TemporaryDirectory directory_;
  const std::string address_ = "unix:path=" + (directory_.path() / "bus").string();
  std::optional<ChildProcess> daemon_;
};

}  // namespace ovinta::test
