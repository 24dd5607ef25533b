#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "../../platform/Export.h"
#include "../../platform/Location.h"
#include "OvintaSDK/core/Guarded.h"
#include "OvintaSDK/model/OrderDetails.h"
#include "OvintaSDK/model/OrderProgress.h"

namespace ovinta {

namespace wire {
struct ReadOrder;
}

/// One pickup order as the service sent it. The orders manager changes the same object in place
/// when an event or a push moves the order on. May be used from any thread: each field is safe by
/// itself, nothing is promised across fields. What the fields hold stands in `OrderDetails` and
/// `OrderProgress`.
class OVINTA_EXPORT Order : public OrderDetails {
 public:
  /// Orders come from the service; this one is for an application's own tests. The orders manager
  /// does not know it.
  Order(OrderDetails details, OrderProgress progress)
      : OrderDetails(std::move(details)), progress_(std::move(progress)) {}

  /// The changing fields, each a copy; what they hold stands in `OrderProgress`.
  OrderState state() const { return progress_.get(&OrderProgress::state); }
  CustomerState customerState() const { return progress_.get(&OrderProgress::customerState); }
  std::optional<std::string> pickupType() const {
    return progress_.get(&OrderProgress::pickupType);
  }
  std::optional<platform::Date> etaAt() const { return progress_.get(&OrderProgress::etaAt); }
  std::optional<platform::Date> completedAt() const {
    return progress_.get(&OrderProgress::completedAt);
  }
  std::optional<platform::Date> createdAt() const {
    return progress_.get(&OrderProgress::createdAt);
  }
  std::optional<platform::Date> updatedAt() const {
    return progress_.get(&OrderProgress::updatedAt);
  }
  std::optional<std::string> customerRating() const {
    return progress_.get(&OrderProgress::customerRating);
  }
  std::optional<std::string> customerComment() const {
    return progress_.get(&OrderProgress::customerComment);
  }
  std::optional<std::string> pushToken() const { return progress_.get(&OrderProgress::pushToken); }

  /// Each setter only stores the value: nothing is sent, nothing is written to the order store, no
  /// notification is posted and `OrdersManager::open` stays as it is.
  void setState(OrderState state);
  void setCustomerState(CustomerState state);
  void setPickupType(std::optional<std::string> type) {
    progress_.set(&OrderProgress::pickupType, std::move(type));
  }
  void setEtaAt(std::optional<platform::Date> date) { progress_.set(&OrderProgress::etaAt, date); }
  void setCompletedAt(std::optional<platform::Date> date) {
    progress_.set(&OrderProgress::completedAt, date);
  }
  void setCreatedAt(std::optional<platform::Date> date) {
    progress_.set(&OrderProgress::createdAt, date);
  }
  void setUpdatedAt(std::optional<platform::Date> date) {
    progress_.set(&OrderProgress::updatedAt, date);
  }
  void setCustomerRating(std::optional<std::string> rating) {
    progress_.set(&OrderProgress::customerRating, std::move(rating));
  }
  void setCustomerComment(std::optional<std::string> comment) {
    progress_.set(&OrderProgress::customerComment, std::move(comment));
  }
  void setPushToken(std::optional<std::string> token) {
    progress_.set(&OrderProgress::pushToken, std::move(token));
  }

  /// A copy of all changing fields, taken at one moment.
  OrderProgress progress() const { return progress_.get(); }

  /// Whether both the store and the customer still have to act: the state is created, ready or
  /// delayed, and the customer has not completed the journey.
  bool isOpen() const;

  /// Where the site is; absent when a coordinate is, or is not a decimal number. The range of the
  /// numbers is not checked.
  std::optional<platform::Location> siteLocation() const;

  /// The distance to `siteLocation()` in metres, along the WGS84 geodesic; absent when that is,
  /// not a number when a latitude is out of range.
  std::optional<double> siteDistance(const platform::Location& from) const;

 private:
  friend struct wire::ReadOrder;

  /// Each of `details` makes one member of the details, in the order of the members, and in its
  /// place, since constant members can only be copied.
  template <class... Details>
  explicit Order(OrderProgress progress, const Details&... details)
      : OrderDetails{details()...}, progress_(std::move(progress)) {}

  Guarded<OrderProgress> progress_;
};

/// How orders are handed out: everybody holds the same object, which changes for all.
using OrderPtr = std::shared_ptr<Order>;
/// Several orders; those of the library hold no null.
using OrderList = std::vector<OrderPtr>;

}  // namespace ovinta
