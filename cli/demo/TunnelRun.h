#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OvintaSDK/OvintaSDK.h"
#include "cli/demo/DemoOptions.h"
#include "cli/device/TripDevice.h"
#include "platform/simulation/trip/TripPlayer.h"
#include "replay/TemporaryDirectory.h"
#include "sandbox/Sandbox.h"

namespace ovinta::cli {

/// One customer's trip on a simulated device: tells the service of each step, whether or not it can
/// be reached, and notes what it learns of them. The library runs once in a process, and so does
/// this.
class TunnelRun {
 public:
  /// The trip must hold at least one point. `isDelivered`: whether what could not be sent is
  /// delivered later.
  TunnelRun(const DemoOptions& options, platform::simulation::Trip trip, bool isDelivered);
  ~TunnelRun();
  TunnelRun(const TunnelRun&) = delete;
  TunnelRun& operator=(const TunnelRun&) = delete;

  /// Makes the trip. The result has under "steps" each {"step", "made", "learned"}, with times of
  /// day, the last only where the service has learned of it; under "positions" how many of them it
  /// has learned; under "repetitions" how many requests it knew by their keys to be done; and,
  /// where there is delivery, under "account" its line and under "isBalanced" whether it adds up.
  /// Throws `std::runtime_error` where the trip does not lead to the site or the service fails.
  platform::Dictionary run();

 private:
  /// An event of which the service has learned, and when.
  struct Learned {
    Exchange exchange;
    platform::Date date;
  };
  /// A step of the customer; its event has this type and content.
  struct Step {
    std::string_view type;
    std::string content;
    platform::Date made;
  };

  void startService();
  void placeOrder();
  /// Has the service take one request, and lose its answer, as soon as the network is there again.
  void loseAnAnswer();
  void report(CustomerState state);
  void rate();
  void pass(std::chrono::seconds interval);
  void driveUntil(double metres);
  /// Waits for the answer to what `start` asks.
  void await(const std::function<void(OrderCallback)>& start);
  /// What the service says of its requests: how many were "positions" and "repetitions".
  platform::Dictionary counts() const;
  platform::Dictionary result() const;

  const replay::TemporaryDirectory directory_;
  std::string token_;
  mutable std::mutex mutex_;
  std::vector<Learned> learned_;
  /// What the device sends goes through it.
  std::shared_ptr<ObservedURLSession> session_;
  std::unique_ptr<TripDevice> device_;
  std::unique_ptr<platform::simulation::TripPlayer> player_;
  std::unique_ptr<sandbox::Sandbox> sandbox_;
  OrderPtr order_;
  std::vector<Step> steps_;
};

}  // namespace ovinta::cli
