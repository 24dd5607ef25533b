#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "../../platform/PersistentContainer.h"
#include "OvintaSDK/model/Order.h"

namespace ovinta {

/// The summary of an order that the order store keeps, an object of the entity "Order". States are
/// kept as raw values (see `rawValue`). One thread at a time.
class OVINTA_EXPORT CoreOrder : public platform::ManagedObject {
 public:
  /// A request for all stored summaries, unsorted.
  static platform::FetchRequest fetchRequest();

  /// Puts the summary of `order` into the context; saving is left to the caller.
  static std::shared_ptr<CoreOrder> insert(const Order& order,
                                           platform::ManagedObjectContext& context);

  /// An empty summary, an object of the entity. It is also put into the context, if there is one;
  /// saving is left to the caller.
  static std::shared_ptr<CoreOrder> withEntity(const platform::EntityDescription& entity,
                                               platform::ManagedObjectContext* context);

  /// An empty summary, which no context holds.
  CoreOrder();
  /// A summary read back from the store.
  explicit CoreOrder(const platform::ManagedObject& object);

  /// `Order::id`; 0 where nothing was set, as the other numbers. Each setter changes this object
  /// only.
  std::int64_t id() const;
  void setId(std::int64_t id);
  /// `Order::partnerIdentifier`; to set an absent one removes it.
  std::optional<std::string> partnerIdentifier() const;
  void setPartnerIdentifier(const std::optional<std::string>& identifier);
  /// `Order::siteID`.
  std::int64_t siteId() const;
  void setSiteId(std::int64_t siteId);
  /// The raw value of an `OrderState`.
  std::int64_t state() const;
  void setState(std::int64_t state);
  /// The raw value of a `CustomerState`.
  std::int64_t customerState() const;
  void setCustomerState(std::int64_t customerState);
};

}  // namespace ovinta
