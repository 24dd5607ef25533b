#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "../../platform/Export.h"
#include "OvintaSDK/location/Beacon.h"
#include "OvintaSDK/model/CustomerState.h"
#include "OvintaSDK/model/EtaSeconds.h"
#include "OvintaSDK/model/LocationAuthStatus.h"
#include "OvintaSDK/model/OrderState.h"

namespace ovinta {

namespace platform {
struct Location;
}
namespace wire {
template <class Record>
struct WireTable;
}

/// The kinds of order events, as the service names them: a position, a step of the customer or of
/// the order, a change of the location permission, a rating. Constants; may be used from any
/// thread.
struct OrderEventType {
  /// Each is the `OrderEvent::eventType` of its kind.
  static constexpr std::string_view locationUpdate = "location_update";
  static constexpr std::string_view stateChange = "state_change";
  static constexpr std::string_view permissionUpdate = "permission_update";
  static constexpr std::string_view customerRating = "customer_rating";
};

/// One report from the customer's device to the service about an order. Absent fields are not sent.
/// An event never changes, and any thread may make and read one; a variable that holds one may be
/// given another event as a whole. The library makes and sends them: see `OrdersManager::event` and
/// `rateOrder`.
class OVINTA_EXPORT OrderEvent {
 private:
  struct Fields {
    std::int64_t orderID = 0;
    std::string eventType;
    std::optional<double> longitude = {};
    std::optional<double> latitude = {};
    std::optional<double> accuracy = {};
    std::optional<double> speed = {};
    std::optional<std::vector<Beacon>> beacons = {};
    std::optional<std::int64_t> etaSeconds = {};
    std::optional<CustomerState> customerState = {};
    std::optional<OrderState> state = {};
    std::optional<LocationAuthStatus> locationAuthStatus = {};
    std::optional<std::int64_t> customerRating = {};
    std::optional<std::string> customerComments = {};

    friend bool operator==(const Fields&, const Fields&) = default;
  };
  Fields fields_;

 public:
  // Read-only views of the private fields: constant fields could only be copied, never moved.
  /// The `Order::id` that it is about, and what is reported, an `OrderEventType`.
  const std::int64_t& orderID = fields_.orderID;
  const std::string& eventType = fields_.eventType;
  /// Degrees; present in a position, as accuracy and speed.
  const std::optional<double>& longitude = fields_.longitude;
  const std::optional<double>& latitude = fields_.latitude;
  /// Metres; negative when the position is not valid.
  const std::optional<double>& accuracy = fields_.accuracy;
  /// Metres per second; negative when unknown.
  const std::optional<double>& speed = fields_.speed;
  /// The beacons heard of late, possibly none; present in a position.
  const std::optional<std::vector<Beacon>>& beacons = fields_.beacons;
  /// Seconds until the customer arrives.
  const std::optional<std::int64_t>& etaSeconds = fields_.etaSeconds;
  /// The new state of a step; one of the two is present.
  const std::optional<CustomerState>& customerState = fields_.customerState;
  const std::optional<OrderState>& state = fields_.state;
  /// The new permission.
  const std::optional<LocationAuthStatus>& locationAuthStatus = fields_.locationAuthStatus;
  /// The rating, whose scale the service knows, and what the customer says to it.
  const std::optional<std::int64_t>& customerRating = fields_.customerRating;
  const std::optional<std::string>& customerComments = fields_.customerComments;

  /// A step of the customer's journey, with an estimate of the arrival where there is one.
  static OrderEvent customerStateChange(std::int64_t orderID, CustomerState customerState,
                                        EtaSeconds etaSeconds);
  /// A step of the order.
  static OrderEvent stateChange(std::int64_t orderID, OrderState state);
  /// A change of the location permission.
  static OrderEvent permissionUpdate(std::int64_t orderID, LocationAuthStatus locationAuthStatus);
  /// The customer's rating of the order; an absent comment is not sent.
  static OrderEvent rating(std::int64_t orderID, std::int64_t customerRating,
                           std::optional<std::string> customerComments);

  /// A copy has views of its own fields; what was moved from may only be assigned to or destroyed.
  OrderEvent(const OrderEvent& other) : fields_(other.fields_) {}
  OrderEvent(OrderEvent&& other) noexcept : fields_(std::move(other.fields_)) {}
  OrderEvent& operator=(OrderEvent other) noexcept {
    fields_ = std::move(other.fields_);
    return *this;
  }
  ~OrderEvent() = default;

  friend bool operator==(const OrderEvent& one, const OrderEvent& other) {
    return one.fields_ == other.fields_;
  }

 private:
  friend struct wire::WireTable<OrderEvent>;
  friend OrderEvent locationUpdateEvent(std::int64_t orderID, const platform::Location& location,
                                        std::optional<std::vector<Beacon>> beacons,
                                        EtaSeconds etaSeconds);

  explicit OrderEvent(Fields fields) : fields_(std::move(fields)) {}
};

}  // namespace ovinta
