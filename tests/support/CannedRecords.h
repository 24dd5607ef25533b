#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "OvintaSDK/model/Customer.h"
#include "OvintaSDK/model/Order.h"
#include "platform/Value.h"

namespace ovinta::test {

/// An order with every key, each with a value of its own, as the library writes it: number 7 at
/// site 42, open.
extern const std::string_view kFullOrderText;

/// The order of `kFullOrderText`.
platform::Dictionary fullOrder();

/// An order with the required keys alone, at site 42; open.
platform::Dictionary requiredOrder(std::int64_t id = 7);

/// The record with further or other fields.
platform::Dictionary with(platform::Dictionary record,
                          std::initializer_list<platform::Dictionary::value_type> fields);

/// The record without the field.
platform::Dictionary without(platform::Dictionary record, std::string_view key);

/// The JSON text {"data": record}.
std::string dataText(platform::Value record);

/// The JSON text of one page of sites.
std::string sitesText(platform::List records, int current, int count);

/// The order that the JSON text holds. Throws `platform::CodingError`.
OrderPtr decodeOrder(std::string_view text);
OrderPtr decodeOrder(const platform::Dictionary& record);

/// The token of `customer()`.
inline constexpr const char* kToken = "customer-token";

/// A signed-in customer, with e-mail address and all details.
Customer customer();

/// The same as the service sends it.
platform::Dictionary customerRecord();

}  // namespace ovinta::test
