#include "OvintaSDK/model/OrderEvent.h"

namespace ovinta {
namespace {

OrderEvent makeEvent(std::int64_t orderID, std::string_view eventType) {
  OrderEvent event;
  event.orderID = orderID;
  event.eventType = eventType;
  return event;
}

std::optional<std::int64_t> wholeSeconds(std::optional<double> seconds) {
  constexpr double kLimit = 9223372036854775808.0;  // 2^63, the first double out of range
  if (!seconds || !(*seconds >= -kLimit && *seconds < kLimit)) return std::nullopt;
  return static_cast<std::int64_t>(*seconds);
}

}  // namespace

OrderEvent OrderEvent::locationUpdate(std::int64_t orderID, const platform::Location& location,
                                      std::optional<std::vector<Beacon>> beacons,
                                      std::optional<double> etaSeconds) {
  OrderEvent event = makeEvent(orderID, OrderEventType::locationUpdate);
  event.longitude = location.coordinate.longitude;
  event.latitude = location.coordinate.latitude;
  event.accuracy = location.horizontalAccuracy;
  event.speed = location.speed;
  event.beacons = std::move(beacons);
  event.etaSeconds = wholeSeconds(etaSeconds);
  return event;
}

OrderEvent OrderEvent::customerStateChange(std::int64_t orderID, CustomerState customerState,
                                           std::optional<double> etaSeconds) {
  OrderEvent event = makeEvent(orderID, OrderEventType::stateChange);
  event.customerState = customerState;
  event.etaSeconds = wholeSeconds(etaSeconds);
  return event;
}

OrderEvent OrderEvent::stateChange(std::int64_t orderID, OrderState state) {
  OrderEvent event = makeEvent(orderID, OrderEventType::stateChange);
  event.state = state;
  return event;
}

OrderEvent OrderEvent::permissionUpdate(std::int64_t orderID,
                                        LocationAuthStatus locationAuthStatus) {
  OrderEvent event = makeEvent(orderID, OrderEventType::permissionUpdate);
  event.locationAuthStatus = locationAuthStatus;
  return event;
}

OrderEvent OrderEvent::rating(std::int64_t orderID, std::int64_t customerRating,
                              std::optional<std::string> customerComments) {
  OrderEvent event = makeEvent(orderID, OrderEventType::customerRating);
  event.customerRating = customerRating;
  event.customerComments = std::move(customerComments);
  return event;
}

}  // namespace ovinta
