#include "cli/client/Records.h"

#include "cli/client/Cards.h"
#include "cli/client/Table.h"
#include "platform/JSON.h"

namespace ovinta::cli {
namespace {

using platform::Dictionary;
using platform::List;
using platform::Value;

/// The record as a dictionary, by way of its own wire form, so that its keys are listed once.
template <class Record>
Value fromWire(const Record& record) {
  const auto text = jsonText(record);
  return text ? platform::parseJSON(*text).value_or(Value()) : Value();
}

Result table(const std::vector<Column>& columns, List rows) {
  std::string text = tableText(columns, rows);
  return {std::move(rows), std::move(text)};
}

template <class Records, class Make>
List listOf(const Records& records, Make make) {
  List list;
  for (const auto& record : records) list.emplace_back(make(record));
  return list;
}

void addText(Dictionary& fields, const char* name, const std::optional<std::string>& text) {
  if (text && !text->empty()) fields.emplace(name, *text);
}

/// The state's word; its number where there is none.
template <class State>
Value word(std::int64_t rawState) {
  const auto state = stateFromRawValue<State>(rawState);
  return state ? Value(name(*state)) : Value(rawState);
}

}  // namespace

Result resultOf(const Order& order) { return {fromWire(order), cardText(order)}; }

Result resultOf(const OrderList& orders) {
  return table({{"ID", "id"},
                {"PARTNER ID", "partner_identifier"},
                {"SITE", "site_id"},
                {"SITE NAME", "site_name"},
                {"STATE", "state"},
                {"CUSTOMER", "customer_state"},
                {"CODE", "redemption_code"},
                {"RATING", "customer_rating_value_string"},
                {"ETA", "eta_at"}},
               listOf(orders, [](const OrderPtr& order) { return fromWire(*order); }));
}

Result resultOf(const std::vector<CoreOrder>& orders) {
  const auto fields = [](const CoreOrder& order) {
    return Dictionary{{"id", order.id()},
                      {"partner_identifier", order.partnerIdentifier().value_or("")},
                      {"site_id", order.siteId()},
                      {"state", word<OrderState>(order.state())},
                      {"customer_state", word<CustomerState>(order.customerState())}};
  };
  return table({{"ID", "id"},
                {"PARTNER ID", "partner_identifier"},
                {"SITE", "site_id"},
                {"STATE", "state"},
                {"CUSTOMER", "customer_state"}},
               listOf(orders, fields));
}

Result resultOf(const SiteList& sites) {
  return table({{"ID", "id"},
                {"NAME", "name"},
                {"ADDRESS", "street_address"},
                {"LOCALITY", "locality"},
                {"LATITUDE", "latitude"},
                {"LONGITUDE", "longitude"},
                {"GEOFENCE", "geofence.radius_meters", "m"}},
               listOf(sites, [](const SitePtr& site) { return fromWire(*site); }));
}

Result resultOf(const SiteList& sites, const Pagination& pagination) {
  Result result = resultOf(sites);
  result.value = Dictionary{{"page", pagination.currentPage},
                            {"pages", pagination.totalPages},
                            {"sites", std::move(result.value)}};
  result.text += "Page " + std::to_string(pagination.currentPage) + " of " +
                 std::to_string(pagination.totalPages) + "\n";
  return result;
}

Result resultOf(const Customer& customer) {
  Dictionary fields{{"name", customer.info.name}, {"registered", customer.registered()}};
  addText(fields, "email", customer.emailAddress);
  addText(fields, "car_type", customer.info.carType);
  addText(fields, "car_color", customer.info.carColor);
  addText(fields, "license_plate", customer.info.licensePlate);
  addText(fields, "phone", customer.info.phone);
  return {std::move(fields), cardText(customer)};
}

Result resultOf(const std::vector<platform::UserNotificationRequest>& requests) {
  const auto fields = [](const platform::UserNotificationRequest& request) {
    const platform::CircularRegion& region = request.trigger.region;
    return Dictionary{{"identifier", request.identifier},   {"title", request.content.title},
                      {"content", request.content.body},    {"data", request.content.userInfo},
                      {"latitude", region.center.latitude}, {"longitude", region.center.longitude},
                      {"radius_meters", region.radius}};
  };
  return table({{"IDENTIFIER", "identifier"},
                {"TITLE", "title"},
                {"CONTENT", "content"},
                {"LATITUDE", "latitude"},
                {"LONGITUDE", "longitude"},
                {"RADIUS", "radius_meters", "m"}},
               listOf(requests, fields));
}

}  // namespace ovinta::cli
