#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OvintaSDK/location/Beacon.h"
#include "OvintaSDK/model/CustomerState.h"
#include "OvintaSDK/model/LocationAuthStatus.h"
#include "OvintaSDK/model/OrderState.h"
#include "platform/Export.h"
#include "platform/Location.h"

namespace ovinta {

/// The kinds of order events.
struct OrderEventType {
  static constexpr std::string_view locationUpdate = "location_update";
  static constexpr std::string_view stateChange = "state_change";
  static constexpr std::string_view permissionUpdate = "permission_update";
  static constexpr std::string_view customerRating = "customer_rating";
};

/// One report from the customer's device to the service about an order. Absent fields are not sent.
/// The makers may be called from any thread.
struct OVINTA_EXPORT OrderEvent {
  std::int64_t orderID = 0;
  std::string eventType;
  /// Degrees.
  std::optional<double> longitude = {};
  std::optional<double> latitude = {};
  /// Metres; negative when the position is not valid.
  std::optional<double> accuracy = {};
  /// Metres per second; negative when unknown.
  std::optional<double> speed = {};
  std::optional<std::vector<Beacon>> beacons = {};
  std::optional<std::int64_t> etaSeconds = {};
  std::optional<CustomerState> customerState = {};
  std::optional<OrderState> state = {};
  std::optional<LocationAuthStatus> locationAuthStatus = {};
  std::optional<std::int64_t> customerRating = {};
  std::optional<std::string> customerComments = {};

  /// Where the customer is. An estimate is cut to whole seconds; one that no 64-bit integer can
  /// hold counts as absent.
  static OrderEvent locationUpdate(std::int64_t orderID, const platform::Location& location,
                                   std::optional<std::vector<Beacon>> beacons,
                                   std::optional<double> etaSeconds);
  /// A step of the customer's journey. The estimate as above.
  static OrderEvent customerStateChange(std::int64_t orderID, CustomerState customerState,
                                        std::optional<double> etaSeconds);
  static OrderEvent stateChange(std::int64_t orderID, OrderState state);
  static OrderEvent permissionUpdate(std::int64_t orderID, LocationAuthStatus locationAuthStatus);
  static OrderEvent rating(std::int64_t orderID, std::int64_t customerRating,
                           std::optional<std::string> customerComments);

  friend bool operator==(const OrderEvent&, const OrderEvent&) = default;
};

}  // namespace ovinta
