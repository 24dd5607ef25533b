#include "platform/Delivery.h"

namespace ovinta::platform {

std::string summary(const DeliveryAccount& account) {
  std::string text =
      "made " + std::to_string(account.made) + " = delivered " + std::to_string(account.delivered) +
      " + waiting " + std::to_string(account.waiting) + " + superseded " +
      std::to_string(account.superseded) + " + dropped " + std::to_string(account.droppedInAll());
  std::string reasons;
  for (std::size_t i = 0; i < account.dropped.size(); ++i) {
    if (account.dropped.at(i) == 0) continue;
    reasons += reasons.empty() ? " (" : ", ";
    reasons.append(kDropReasonNames.at(i)).append(" " + std::to_string(account.dropped.at(i)));
  }
  return reasons.empty() ? text : text + reasons + ")";
}

}  // namespace ovinta::platform
