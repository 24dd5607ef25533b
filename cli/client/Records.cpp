#include "cli/client/Records.h"

#include "platform/JSON.h"

namespace ovinta::cli {
namespace {

using platform::Dictionary;
using platform::List;
using platform::Value;

/// By way of the record's own wire form, so that its keys are listed once.
template <class Record>
Value fromWire(const Record& record) {
  const auto text = jsonText(record);
  return text ? platform::parseJSON(*text).value_or(Value()) : Value();
}

template <class Pointers>
Value listOf(const Pointers& records) {
  List list;
  for (const auto& record : records) list.push_back(valueOf(*record));
  return list;
}

void addText(Dictionary& fields, const char* name, const std::optional<std::string>& text) {
  if (text) fields.emplace(name, *text);
}

}  // namespace

Value valueOf(const Order& order) { return fromWire(order); }

Value valueOf(const Site& site) { return fromWire(site); }

Value valueOf(const OrderList& orders) { return listOf(orders); }

Value valueOf(const SiteList& sites) { return listOf(sites); }

Value valueOf(const Customer& customer) {
  Dictionary fields{{"name", customer.info.name}, {"registered", customer.registered()}};
  addText(fields, "email", customer.emailAddress);
  addText(fields, "car_type", customer.info.carType);
  addText(fields, "car_color", customer.info.carColor);
  addText(fields, "license_plate", customer.info.licensePlate);
  addText(fields, "phone", customer.info.phone);
  return fields;
}

}  // namespace ovinta::cli
