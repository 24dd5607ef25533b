#pragma once

#include "platform/Date.h"
#include "platform/Value.h"

namespace ovinta::sandbox {

/// The complaints about an event's content by field name, empty when it is sound.
platform::Dictionary eventErrors(const platform::Dictionary& event);

/// The complaints about a sound event that would move the order's or its customer's state on once
/// that is final; empty when there are none.
platform::Dictionary reopenings(const platform::Dictionary& event,
                                const platform::Dictionary& order);

/// What a sound event says of its order and of the customer's device: the fields that its type
/// knows.
platform::Dictionary eventContent(const platform::Dictionary& event);

/// Applies a sound event to the order that it reports on: states, arrival estimate and rating move
/// into `order`; position, permission and beacons into `device`, what is last known of the
/// customer's device.
void applyEvent(const platform::Dictionary& event, platform::Date now, platform::Dictionary& order,
                platform::Dictionary& device);

}  // namespace ovinta::sandbox
