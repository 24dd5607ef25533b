#include "sandbox/domain/PushPayload.h"

#include <cstdint>
#include <string>

#include "sandbox/domain/WireForms.h"

namespace ovinta::sandbox {

platform::Dictionary pushPayload(const platform::Dictionary& order) {
  platform::Dictionary payload = {
      {"order_id", std::to_string(*platform::find<std::int64_t>(order, "id"))},
      {"order_state", order.find("state")->second},
      {"customer_state", order.find("customer_state")->second}};
  if (const auto* eta = platform::find<std::string>(order, "eta_at")) {
    payload.emplace("eta_at", pushDateText(*eta));
  }
  return payload;
}

}  // namespace ovinta::sandbox
