#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "OvintaSDK/OvintaSDK.h"
#include "cli/demo/DemoDevice.h"
#include "cli/demo/Merchant.h"
#include "cli/device/ExchangeLog.h"
#include "cli/device/NotificationLines.h"
#include "cli/device/Timeline.h"
#include "replay/TemporaryDirectory.h"
#include "sandbox/Sandbox.h"

namespace ovinta::cli {

/// One customer's order, from the account to the rating, through the library: a device that drives
/// to the site, real HTTP, a real store. Used on one thread, which plays the main one.
class Demo {
 public:
  /// The trip must hold at least one point. `interruption` must outlive the object. Throws
  /// `std::runtime_error` where the device cannot be had.
  Demo(DemoOptions options, platform::simulation::Trip trip, Interruption& interruption);
  ~Demo();
  Demo(const Demo&) = delete;
  Demo& operator=(const Demo&) = delete;

  /// Goes through all steps; true when each of them saw what it expects. Prints the timeline and,
  /// in the end, the summary.
  bool run();

 private:
  /// Why a step failed; absent for success.
  using Failure = std::optional<std::string>;

  struct Step {
    const char* title;
    Failure (Demo::*run)();
  };
  static const std::vector<Step>& steps();

  Failure startService();
  Failure configure();
  Failure createCustomer();
  Failure createOrder();
  Failure fetchOrders();
  Failure setOut();
  Failure comeNear();
  Failure arrive();
  Failure wait();
  Failure makeReady();
  Failure complete();
  Failure stopTracking();
  Failure rate();
  Failure fetchAgain();
  Failure readStore();
  Failure compareStore() const;

  void observeLocationSettings();
  /// Takes down a request that was answered.
  void note(const Exchange& exchange);
  /// Lets time of the trip pass, at the pace asked for.
  void pass(std::chrono::seconds interval);
  void updateSituation();
  std::optional<double> distance() const;
  Failure driveUntil(double metres);
  Failure reportCustomerState(CustomerState state);
  /// Whether the condition holds, or does within `kPatience`.
  bool comesTrue(const std::function<bool()>& condition);
  /// Runs an operation that answers with an order; keeps the order.
  Failure awaitOrder(const std::function<void(OrderCallback)>& start);
  Failure awaitFetch();
  void summarize(bool succeeded);

  /// Where settings and order store are kept.
  replay::TemporaryDirectory directory_;
  const DemoOptions options_;
  Interruption& interruption_;
  Timeline timeline_;
  ExchangeLog exchanges_;
  const std::unique_ptr<DemoDevice> device_;
  NotificationLines notificationLines_;
  std::unique_ptr<sandbox::Sandbox> sandbox_;
  std::unique_ptr<Merchant> merchant_;
  OrderPtr order_;
  /// The accuracy that was last shown.
  std::string accuracy_;
};

}  // namespace ovinta::cli
