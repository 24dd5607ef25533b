#include <string>

#include "cli/demo/Demo.h"
#include "cli/device/StoredOrders.h"

namespace ovinta::cli {
namespace {

platform::Dictionary dictionary(const StoredOrder& order) {
  return {{"id", order.id},
          {"partnerIdentifier", order.partnerIdentifier},
          {"siteId", order.siteId},
          {"state", order.state},
          {"customerState", order.customerState}};
}

/// The state kept as a raw value, in the service's word.
template <class State>
std::string wireString(std::int64_t rawValue) {
  const auto state = stateFromRawValue<State>(rawValue);
  return state ? std::string(stateRow(*state).wireString) : std::to_string(rawValue);
}

std::string line(const StoredOrder& order) {
  return "  order " + std::to_string(order.id) + " (" + order.partnerIdentifier + ") at site " +
         std::to_string(order.siteId) + ", " + wireString<OrderState>(order.state) + ", customer " +
         wireString<CustomerState>(order.customerState) + "\n";
}

}  // namespace

void Demo::summarize(bool succeeded) {
  std::string text = "Requests\n";
  platform::Dictionary requests;
  for (const auto& [kind, count] : exchanges_.counts()) {
    text += "  " + std::to_string(count) + " x " + kind + "\n";
    requests.emplace(kind, count);
  }
  const auto sent = exchanges_.succeeded("POST", OrderEventType::locationUpdate);
  const auto changes = device_->location().observed().distanceFilterChanges;
  text += "Location updates sent: " + std::to_string(sent) + "\n";
  text += "Distance filter changes: " + std::to_string(changes) + "\n";

  text += "Orders in the store\n";
  platform::List orders;
  const auto stored = readStoredOrders(orderStoreFile());
  if (const auto* rows = std::get_if<std::vector<StoredOrder>>(&stored)) {
    for (const StoredOrder& order : *rows) {
      text += line(order);
      orders.emplace_back(dictionary(order));
    }
  } else {
    text += "  " + std::get<std::string>(stored) + "\n";
  }
  text += succeeded ? "Every expected step was seen.\n" : "The demonstration failed.\n";
  timeline_.summarize(text, {{"requests", requests},
                             {"locationUpdates", sent},
                             {"distanceFilterChanges", changes},
                             {"orders", orders},
                             {"succeeded", succeeded}});
}

}  // namespace ovinta::cli
