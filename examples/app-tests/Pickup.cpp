#include "Pickup.h"

#include <utility>

using namespace ovinta;

namespace {

constexpr std::int64_t kSite = 42;
constexpr double kReminderMetres = 5000;

}  // namespace

Pickup::Pickup() {
  Ovinta::configure({{"token", "the token of the app"}});
  const auto observe = [this](platform::NotificationName name, std::string banner) {
    observers_.push_back(platform::services().notificationCenter->addObserver(
        name, [this, banner = std::move(banner)](const auto&) { banner_ = banner; }));
  };
  observe(SDKNotification::ordersUpdated, "");
  observe(SDKNotification::locationNotAuthorized, "Allow location, so that the shop sees you come");
  if (Ovinta::customer().current()) refresh();
}

void Pickup::order(const std::string& number, const std::string& customerName) {
  Ovinta::orders().create(
      kSite, number, {.name = customerName}, std::nullopt,
      [this](const OrderPtr& order, const ErrorPtr& error) { order ? refresh() : show(error); });
}

void Pickup::refresh() {
  Ovinta::orders().fetch([this](const auto&, const ErrorPtr& error) { show(error); });
}

void Pickup::arrived(std::int64_t order) {
  Ovinta::orders().event(order, CustomerState::arrived,
                         [this](const auto&, const ErrorPtr& error) { show(error); });
}

void Pickup::remindNear(double latitude, double longitude) {
  Ovinta::notify().createForSitesInRegion(
      {.center = {latitude, longitude}, .radius = kReminderMetres, .identifier = ""},
      {.title = "Nearly there", .content = "Order now, and it is ready when you arrive"},
      [this](const auto&, const ErrorPtr& error) { show(error); });
}

void Pickup::pushed(const std::string& payload) {
  const auto value = platform::parseJSON(payload);
  if (const auto* userInfo = value ? value->as<platform::Dictionary>() : nullptr) {
    Ovinta::handleRemoteNotification(*userInfo);
  }
}

std::vector<std::string> Pickup::lines() const {
  std::vector<std::string> lines;
  for (const OrderPtr& order : Ovinta::orders().all().value_or(OrderList{})) {
    lines.push_back(std::to_string(order->id) + ": " +
                    (order->state() == OrderState::ready ? "ready" : "in the making") + ", " +
                    std::string(description(order->customerState())));
  }
  return lines;
}

void Pickup::show(const ErrorPtr& error) { banner_ = error ? error->localizedDescription() : ""; }
