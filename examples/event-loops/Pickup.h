#pragma once

#include <OvintaSDK/OvintaSDK.h>
#include <platform/linux/Linux.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>
#include <set>
#include <string>
#include <thread>

/// Ends the program with a reason.
[[noreturn]] inline void fail(std::string_view reason) {
  std::cerr << reason << std::endl;
  std::_Exit(1);
}

/// What a call about the main thread gives; where it was refused the program says why and ends.
template <class T>
T valueOf(const ovinta::platform::Expected<T, ovinta::platform::linuxos::MainThreadError>& result) {
  if (!result) fail(message(result.error()));
  return *result;
}

/// What each of the programs does with the library: it creates an order, follows the position to
/// its site, and prints what arrives and whether that is on the main thread.
class Pickup {
 public:
  /// For the main thread. `baseURL` is that of a service, e.g. of `ovinta sandbox`. `end` is called
  /// when a timer, an answer and a position have arrived.
  Pickup(const std::string& baseURL, std::function<void()> end);

 private:
  void createOrder();
  void arrive(const std::string& what);

  const std::thread::id mainThread_ = std::this_thread::get_id();
  const std::function<void()> end_;
  std::set<std::string> arrived_;
  std::unique_ptr<ovinta::platform::NotificationObserver> positions_;
};
