#include <string>
#include <utility>

#include "cli/client/Records.h"
#include "cli/demo/Demo.h"

namespace ovinta::cli {

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
  platform::Value orders = platform::List();
  if (const auto stored = readStoredOrders()) {
    Result result = resultOf(*stored);
    text += result.text;
    orders = std::move(result.value);
  } else {
    text += stored.error() + "\n";
  }
  text += succeeded ? "Every expected step was seen.\n" : "The demonstration failed.\n";
  timeline_.summarize(text, {{"requests", requests},
                             {"locationUpdates", sent},
                             {"distanceFilterChanges", changes},
                             {"orders", orders},
                             {"succeeded", succeeded}});
}

}  // namespace ovinta::cli
