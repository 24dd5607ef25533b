#pragma once

#include <sys/types.h>

#include <string>

#include "tests/support/TemporaryDirectory.h"

namespace ovinta::test {

/// A D-Bus daemon that nobody else knows. It starts no service by itself, and ends with this object
/// or, whatever happens, with this process.
class PrivateBus {
 public:
  PrivateBus();
  ~PrivateBus();
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  const std::string& address() const { return address_; }

  /// Ends the daemon; the address leads nowhere from then on.
  void stop();
  /// Starts it again at the same address.
  void start();

 private:
  const TemporaryDirectory directory_;
  std::string address_;
  pid_t process_ = 0;
};

}  // namespace ovinta::test
