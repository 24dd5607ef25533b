#pragma once

#include "OvintaSDK/model/OrderEvent.h"
#include "OvintaSDK/model/wire/BeaconWire.h"

namespace ovinta::wire {

template <>
struct WireTable<OrderEvent> {
  static constexpr auto kFields =
      table(field("order_id", &OrderEvent::orderID), field("event_type", &OrderEvent::eventType),
            field("longitude", &OrderEvent::longitude), field("latitude", &OrderEvent::latitude),
            field("accuracy", &OrderEvent::accuracy), field("speed", &OrderEvent::speed),
            field("beacons", &OrderEvent::beacons), field("eta_seconds", &OrderEvent::etaSeconds),
            field("customer_state", &OrderEvent::customerState), field("state", &OrderEvent::state),
            field("location_permission", &OrderEvent::locationAuthStatus),
            field("customer_rating_value", &OrderEvent::customerRating),
            field("customer_rating_comments", &OrderEvent::customerComments));
};

}  // namespace ovinta::wire
