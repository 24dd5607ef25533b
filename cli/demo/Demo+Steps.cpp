#include <array>
#include <chrono>
#include <cstdint>
#include <random>

#include "OvintaSDK/core/Guarded.h"
#include "cli/client/StoredOrders.h"
#include "cli/demo/Demo.h"
#include "cli/demo/DemoOrder.h"
#include "platform/Services.h"

namespace ovinta::cli {
namespace {

using namespace std::chrono_literals;

/// The raw bytes of a made-up device token that follows from the seed.
std::array<std::uint8_t, 32> seededToken(std::uint64_t seed) {
  std::mt19937_64 generator(seed);
  std::array<std::uint8_t, 32> token{};
  for (std::uint8_t& byte : token) byte = static_cast<std::uint8_t>(generator());
  return token;
}

}  // namespace

const CustomerInfo& demoCustomer() {
  static const CustomerInfo kCustomer{.name = "Alex Example",
                                      .carType = "Hatchback",
                                      .carColor = "Green",
                                      .licensePlate = "DEMO 1"};
  return kCustomer;
}

const std::vector<Demo::Step>& Demo::steps() {
  static const std::vector<Step> kSteps{
      {"Start the service", &Demo::startService},
      {"Configure the SDK", &Demo::configure},
      {"Create the customer", &Demo::createCustomer},
      {"Create the order", &Demo::createOrder},
      {"Fetch the orders", &Demo::fetchOrders},
      {"Set out: en route", &Demo::setOut},
      {"Come near: nearby", &Demo::comeNear},
      {"Reach the site: arrived", &Demo::arrive},
      {"Stand in the bay: waiting", &Demo::wait},
      {"The merchant makes the order ready, by push", &Demo::makeReady},
      {"Take the order: completed", &Demo::complete},
      {"Tracking stops", &Demo::stopTracking},
      {"Rate the order", &Demo::rate},
      {"Fetch the orders again", &Demo::fetchAgain},
      {"Read the order store", &Demo::readStore},
  };
  return kSteps;
}

Demo::Failure Demo::startService() {
  if (!options_.service.baseURL) {
    sandbox_ = std::make_unique<sandbox::Sandbox>(
        sandbox::Options{.seed = options_.trip.seed, .now = [this] { return device_->now(); }});
    if (auto error = sandbox_->start()) return error;
  }
  const std::string baseURL =
      options_.service.baseURL.value_or(sandbox_ ? sandbox_->baseURL() : "");
  UserDefaultsKey::apiBase.set(baseURL);
  merchant_ = std::make_unique<Merchant>(baseURL);
  return std::nullopt;
}

Demo::Failure Demo::configure() {
  Ovinta::configure({{"token", options_.service.token}});
  if (Ovinta::sdkVersion().empty()) return "the library has no version";
  device_->askPermission();
  const auto& services = *platform::services().location;
  if (!comesTrue([&] { return platform::isAuthorized(services.authorizationStatus()); })) {
    return "the location permission was not given";
  }
  return std::nullopt;
}

Demo::Failure Demo::createCustomer() {
  return awaitOrder([](const OrderCallback& callback) {
    Ovinta::customer().create(
        demoCustomer(), CustomerConsent{.termsOfService = true, .ageVerification = true},
        [callback](const auto& /*customer*/, const ErrorPtr& error) { callback(nullptr, error); });
  });
}

Demo::Failure Demo::createOrder() {
  const platform::Date ready = device_->now() + 15min;
  auto failure = awaitOrder([&](const OrderCallback& callback) {
    Ovinta::orders().create(kSite, "demo-1001", demoCustomer(), PickupWindow(ready, ready + 30min),
                            callback);
  });
  pass(1s);
  if (!failure && !comesTrue([this] {
        return exchanges_.succeeded("POST", OrderEventType::permissionUpdate) > 0;
      })) {
    return "the location permission was not reported";
  }
  return failure;
}

Demo::Failure Demo::fetchOrders() {
  Ovinta::updateAPNPushToken(seededToken(options_.trip.seed));
  const auto mainQueue = platform::services().mainQueue;
  if (auto failure = merchant_->listen(*Ovinta::pushToken(), [mainQueue](const auto& payload) {
        mainQueue->async([payload] { Ovinta::handleRemoteNotification(payload); });
      })) {
    return failure;
  }
  if (auto failure = awaitFetch()) return failure;
  pass(1s);
  if (!comesTrue([this] { return exchanges_.succeeded("PUT") > 0; })) {
    return "the order did not get the push token";
  }
  const ObservedLocation& location = device_->location().observed();
  if (!comesTrue([&] { return location.isUpdating; })) return "tracking did not start";
  return std::nullopt;
}

Demo::Failure Demo::reportCustomerState(CustomerState state) {
  auto failure = awaitOrder(
      [&](const OrderCallback& callback) { Ovinta::orders().event(*order_, state, callback); });
  if (!failure && order_->customerState() != state) return "the local order did not change";
  return failure;
}

Demo::Failure Demo::setOut() {
  device_->startTrip();
  pass(5s);
  return reportCustomerState(CustomerState::enRoute);
}

Demo::Failure Demo::comeNear() {
  if (auto failure = driveUntil(kNearby)) return failure;
  return reportCustomerState(CustomerState::nearby);
}

Demo::Failure Demo::arrive() {
  if (auto failure = driveUntil(kArrived)) return failure;
  if (!comesTrue(
          [this] { return exchanges_.succeeded("POST", OrderEventType::locationUpdate) > 0; })) {
    return "no location was sent on the way";
  }
  return reportCustomerState(CustomerState::arrived);
}

Demo::Failure Demo::wait() {
  pass(30s);
  return reportCustomerState(CustomerState::waiting);
}

Demo::Failure Demo::makeReady() {
  if (auto failure = merchant_->moveOrder(order_->id, "ready")) return failure;
  if (!comesTrue([this] { return order_->state() == OrderState::ready; })) {
    return "the push did not come";
  }
  pass(20s);
  return std::nullopt;
}

Demo::Failure Demo::complete() {
  if (auto failure = reportCustomerState(CustomerState::completed)) return failure;
  if (!Ovinta::orders().open().value_or(OrderList{}).empty()) return "the order is still open";
  return std::nullopt;
}

Demo::Failure Demo::stopTracking() {
  const ObservedLocation& location = device_->location().observed();
  if (!comesTrue([&] { return !location.isUpdating; })) return "positions are still asked for";
  if (!comesTrue([&] { return location.rangedRegions.empty(); })) return "beacons are still ranged";
  return std::nullopt;
}

Demo::Failure Demo::rate() {
  auto failure = awaitOrder([&](const OrderCallback& callback) {
    Ovinta::orders().rateOrder(order_->id, 5, "Quick and friendly", callback);
  });
  if (!failure && order_->customerRating() != "5") return "the local order has no rating";
  return failure;
}

Demo::Failure Demo::fetchAgain() {
  if (auto failure = awaitFetch()) return failure;
  const auto closed = Ovinta::orders().closed().value_or(OrderList{});
  if (closed.size() != 1) return "the order is not among the closed ones";
  if (closed.front()->customerRating() != "5") return "the service does not know the rating";
  return std::nullopt;
}

Demo::Failure Demo::readStore() {
  Failure failure;
  // The library may write the store after the callback of the fetch.
  comesTrue([&] { return !(failure = compareStore()); });
  return failure;
}

Demo::Failure Demo::compareStore() const {
  const auto orders = readStoredOrders();
  if (!orders) return orders.error();
  const bool isKept = orders->size() == 1 && orders->front().id() == order_->id &&
                      orders->front().partnerIdentifier() == order_->partnerIdentifier &&
                      orders->front().siteId() == order_->siteID &&
                      orders->front().state() == rawValue(OrderState::ready) &&
                      orders->front().customerState() == rawValue(CustomerState::completed);
  if (!isKept) return "the store does not hold the order as it was fetched";
  return std::nullopt;
}

}  // namespace ovinta::cli
