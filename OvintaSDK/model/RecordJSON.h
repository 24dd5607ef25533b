#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "../../platform/CodingError.h"
#include "../../platform/Export.h"
#include "OvintaSDK/location/Beacon.h"
#include "OvintaSDK/location/BeaconRegion.h"
#include "OvintaSDK/model/ClaimOrderInfo.h"
#include "OvintaSDK/model/CreateOrderInfo.h"
#include "OvintaSDK/model/Customer.h"
#include "OvintaSDK/model/CustomerConsent.h"
#include "OvintaSDK/model/LoginInfo.h"
#include "OvintaSDK/model/OrderEvent.h"
#include "OvintaSDK/model/OrderResponse.h"
#include "OvintaSDK/model/RequestPasswordReset.h"
#include "OvintaSDK/model/SetNewPassword.h"
#include "OvintaSDK/model/SignUpInfo.h"
#include "OvintaSDK/model/Site.h"
#include "OvintaSDK/model/UpdateOrderInfo.h"

namespace ovinta {

/// A list of record types, known when compiling. A new one goes to the end of its list:
/// applications that were built with an earlier header tell records by their places.
template <class... Records>
struct RecordList {
  /// Whether the record is in the list.
  template <class Record>
  static constexpr bool kHas = (std::is_same_v<Record, Records> || ...);

  /// The record's place in the list, counted from 0.
  template <class Record>
  static constexpr std::size_t positionOf() {
    std::size_t position = 0;
    (void)((std::is_same_v<Record, Records> || (++position, false)) || ...);
    return position;
  }
};

/// What can be read from a JSON text.
using ReadableRecords =
    RecordList<Order, OrderResponse, OrdersResponse, Site, Geofence, Customer, CustomerInfo,
               CustomerConsent, SignUpInfo, LoginInfo, RequestPasswordReset, SetNewPassword,
               CreateOrderInfo, ClaimOrderInfo, UpdateOrderInfo, BeaconRegion, BeaconIdentifiers>;

/// What can be written as a JSON text.
using WritableRecords =
    RecordList<Order, OrderEvent, Site, Geofence, CustomerInfo, CustomerConsent, SignUpInfo,
               LoginInfo, RequestPasswordReset, SetNewPassword, CreateOrderInfo, ClaimOrderInfo,
               UpdateOrderInfo, Beacon, BeaconRegion, BeaconIdentifiers>;

/// What a record is handed out as: itself, or the pointer by which the library knows it.
template <class Record>
struct RecordHandle {
  /// What `readRecord` gives.
  using Type = Record;
};
template <>
struct RecordHandle<Order> {
  using Type = OrderPtr;
};
template <>
struct RecordHandle<Site> {
  using Type = SitePtr;
};
template <>
struct RecordHandle<Customer> {
  using Type = CustomerPtr;
};

/// What stands behind `readRecord` and `writeRecord`, which are to be called in its place: here the
/// record is told by its place in its list, unchecked. May be used from any thread.
struct RecordJSON {
  /// Reads a record into `handle`, a `std::optional` of the record's handle; absent on success.
  OVINTA_EXPORT static std::optional<platform::CodingError> read(std::size_t position,
                                                                 std::string_view text,
                                                                 void* handle);
  /// Writes the record, which is of the type that `position` tells.
  OVINTA_EXPORT static platform::Coded<std::string> write(std::size_t position, const void* record);
};

/// The record that the JSON text holds, in the form in which it travels between library and
/// service: `readRecord<Site>(text)`. Unknown keys are ignored. The error tells what is missing or
/// wrong, and where. May be called from any thread; nothing is thrown.
template <class Record>
requires ReadableRecords::kHas<Record> platform::Coded<typename RecordHandle<Record>::Type>
readRecord(std::string_view text) {
  std::optional<typename RecordHandle<Record>::Type> handle;
  auto error = RecordJSON::read(ReadableRecords::positionOf<Record>(), text, &handle);
  if (error) return *std::move(error);
  return *std::move(handle);
}

/// The JSON text of the record, in the same form. The error tells of what JSON cannot hold: a text
/// that is not UTF-8, a number that is not finite, a state that is none of its cases. May be called
/// from any thread; nothing is thrown.
template <class Record>
requires WritableRecords::kHas<Record> platform::Coded<std::string> writeRecord(
    const Record& record) {
  return RecordJSON::write(WritableRecords::positionOf<Record>(), std::addressof(record));
}

/// The text that `writeRecord` gives; absent in place of an error. May be called from any thread.
template <class Record>
requires WritableRecords::kHas<Record> std::optional<std::string> jsonText(const Record& record) {
  auto text = writeRecord(record);
  return text ? std::optional(*std::move(text)) : std::nullopt;
}

}  // namespace ovinta
