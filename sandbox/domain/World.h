#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Value.h"
#include "sandbox/domain/SeededGenerator.h"
#include "sandbox/domain/Sites.h"

namespace ovinta::sandbox {

/// An index of records by a text.
template <class Place>
using Index = std::map<std::string, Place, std::less<>>;

/// The text under a key that the record is known to have.
inline const std::string& textOf(const platform::Dictionary& record, std::string_view key) {
  return *platform::find<std::string>(record, key);
}

/// All that the service knows; a plain value. Customers and orders are kept in the form that
/// snapshots have: with the password and the reset token, with the owner and the device, and
/// without what an order tells of its site.
struct World {
  SeededGenerator generator;
  Sites sites = {};
  /// The customers in the order in which they were created.
  std::vector<platform::Dictionary> customers = {};
  std::map<std::int64_t, platform::Dictionary> orders = {};
  /// What has become of orders and was not told yet: the name of the event and its content, with
  /// "order_id", "time", "by" whom, and both states after it.
  std::vector<platform::Dictionary> news = {};

  // The indexes by which records are found, kept true by the rules of accounts and of orders.

  Index<std::size_t> customersByToken = {};
  Index<std::size_t> customersByResetToken = {};
  /// The place of each customer, by the e-mail address in lower case.
  Index<std::size_t> customersByAddress = {};
  Index<std::int64_t> ordersByCode = {};
};

}  // namespace ovinta::sandbox
