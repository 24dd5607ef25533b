#include "Pickup.h"

#include <chrono>
#include <utility>

using namespace ovinta;

Pickup::Pickup(const std::string& baseURL, std::function<void()> end) : end_(std::move(end)) {
  platform::install(platform::linuxos::makeServices({.applicationID = "org.example.event-loops"}));
  Ovinta::configure({{"token", "the token of your app"}});
  UserDefaultsKey::apiBase.set(baseURL);
  positions_ = platform::services().notificationCenter->addObserver(
      SDKNotification::locationUpdate, [this](const auto&) { arrive("position"); });
  platform::services().mainQueue->asyncAfter(std::chrono::milliseconds(100),
                                             [this] { arrive("timer"); });
  platform::linuxos::requestLocationAuthorization();
  createOrder();
}

void Pickup::createOrder() {
  Ovinta::orders().create(42, "order-1", {.name = "Alex"}, std::nullopt,
                          [this](const OrderPtr& order, const ErrorPtr& error) {
                            if (!order) fail(error->errorDescription());
                            Ovinta::orders().fetch();
                            // Answers come on the network's thread.
                            platform::services().mainQueue->async([this] { arrive("answer"); });
                          });
}

void Pickup::arrive(const std::string& what) {
  if (!arrived_.insert(what).second) return;
  const bool isMain = std::this_thread::get_id() == mainThread_;
  std::cout << what << ": on " << (isMain ? "the main thread" : "another thread") << std::endl;
  if (arrived_.size() == 3) end_();
}
