#pragma once

#include "OvintaSDK/model/OrderEvent.h"
#include "OvintaSDK/model/wire/BeaconWire.h"

namespace ovinta::wire {

/// An event is written, never read.
template <>
struct WireTable<OrderEvent> {
 private:
  using Fields = OrderEvent::Fields;

 public:
  static constexpr auto kFields =
      flat(&OrderEvent::fields_,
           table(field("order_id", &Fields::orderID), field("event_type", &Fields::eventType),
                 field("longitude", &Fields::longitude), field("latitude", &Fields::latitude),
                 field("accuracy", &Fields::accuracy), field("speed", &Fields::speed),
                 field("beacons", &Fields::beacons), field("eta_seconds", &Fields::etaSeconds),
                 field("customer_state", &Fields::customerState), field("state", &Fields::state),
                 field("location_permission", &Fields::locationAuthStatus),
                 field("customer_rating_value", &Fields::customerRating),
                 field("customer_rating_comments", &Fields::customerComments)));
};

}  // namespace ovinta::wire
