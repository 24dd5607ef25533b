#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "OvintaSDK/model/Order.h"
#include "platform/PersistentContainer.h"

namespace ovinta {

/// The summary of an order that the order store keeps, an object of the entity "Order". States are
/// kept as raw values. One thread at a time.
class CoreOrder : public platform::ManagedObject {
 public:
  /// A request for all stored summaries, unsorted.
  static platform::FetchRequest fetchRequest();

  /// Puts the summary of `order` into the context; saving is left to the caller.
  static std::shared_ptr<CoreOrder> insert(const Order& order,
                                           platform::ManagedObjectContext& context);

  CoreOrder();
  /// A summary read back from the store.
  explicit CoreOrder(const platform::ManagedObject& object);

  std::int64_t id() const;
  std::optional<std::string> partnerIdentifier() const;
  std::int64_t siteId() const;
  std::int64_t state() const;
  std::int64_t customerState() const;
};

}  // namespace ovinta
