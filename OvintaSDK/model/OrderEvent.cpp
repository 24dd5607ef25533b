#include "OvintaSDK/model/OrderEvent.h"

#include "OvintaSDK/model/LocationUpdateEvent.h"

namespace ovinta {

OrderEvent locationUpdateEvent(std::int64_t orderID, const platform::Location& location,
                               std::optional<std::vector<Beacon>> beacons, EtaSeconds etaSeconds) {
  return OrderEvent(OrderEvent::Fields{.orderID = orderID,
                                       .eventType = std::string(OrderEventType::locationUpdate),
                                       .longitude = location.coordinate.longitude,
                                       .latitude = location.coordinate.latitude,
                                       .accuracy = location.horizontalAccuracy,
                                       .speed = location.speed,
                                       .beacons = std::move(beacons),
                                       .etaSeconds = etaSeconds.whole()});
}

OrderEvent OrderEvent::customerStateChange(std::int64_t orderID, CustomerState customerState,
                                           EtaSeconds etaSeconds) {
  return OrderEvent(Fields{.orderID = orderID,
                           .eventType = std::string(OrderEventType::stateChange),
                           .etaSeconds = etaSeconds.whole(),
                           .customerState = customerState});
}

OrderEvent OrderEvent::stateChange(std::int64_t orderID, OrderState state) {
  return OrderEvent(Fields{
      .orderID = orderID, .eventType = std::string(OrderEventType::stateChange), .state = state});
}

OrderEvent OrderEvent::permissionUpdate(std::int64_t orderID,
                                        LocationAuthStatus locationAuthStatus) {
  return OrderEvent(Fields{.orderID = orderID,
                           .eventType = std::string(OrderEventType::permissionUpdate),
                           .locationAuthStatus = locationAuthStatus});
}

OrderEvent OrderEvent::rating(std::int64_t orderID, std::int64_t customerRating,
                              std::optional<std::string> customerComments) {
  return OrderEvent(Fields{.orderID = orderID,
                           .eventType = std::string(OrderEventType::customerRating),
                           .customerRating = customerRating,
                           .customerComments = std::move(customerComments)});
}

}  // namespace ovinta
