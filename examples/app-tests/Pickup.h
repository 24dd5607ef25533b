#pragma once

#include <OvintaSDK/OvintaSDK.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// A small app whose customers order at a shop and drive over. What a screen would show is text
/// here. It is destroyed after the last answer that it waits for.
class Pickup {
 public:
  /// Starts the library, and takes up the orders of a customer who is signed in.
  Pickup();

  /// Orders at site 42 under the shop's own number.
  void order(const std::string& number, const std::string& customerName);
  /// Asks for the orders again, as when the customer pulls the list down.
  void refresh();
  /// Tells the shop that the customer stands at the curb.
  void arrived(std::int64_t order);
  /// Shows a reminder near the shops around a place.
  void remindNear(double latitude, double longitude);
  /// Takes the JSON text of a push.
  void pushed(const std::string& payload);

  /// One line for each order, e.g. "7: ready, En Route".
  std::vector<std::string> lines() const;
  /// What stands above the list, e.g. that there is no connection; empty for nothing.
  const std::string& banner() const { return banner_; }

 private:
  void show(const ovinta::ErrorPtr& error);

  std::string banner_;
  std::vector<std::unique_ptr<ovinta::platform::NotificationObserver>> observers_;
};
