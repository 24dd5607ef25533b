#include "cli/client/Cards.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <string_view>

#include "cli/client/HumanText.h"

namespace ovinta::cli {
namespace {

using Text = std::optional<std::string>;

/// A line of a card; left out while its text is empty.
template <class Record>
struct Entry {
  std::string_view label;
  std::string (*text)(const Record& record);
};

std::string joined(std::initializer_list<Text> parts) {
  std::string text;
  for (const Text& part : parts) {
    if (part && !part->empty()) text += (text.empty() ? "" : ", ") + *part;
  }
  return text;
}

std::string timeText(const std::optional<platform::Date>& date) {
  return date ? utcText(*date, "%Y-%m-%d %H:%M UTC") : "";
}

std::string windowText(const std::optional<PickupWindow>& window) {
  return window ? timeText(window->start) + " to " + timeText(window->end) : "";
}

std::string siteText(const Order& order) {
  const std::string number = std::to_string(order.siteID);
  const std::string name = joined({order.siteName});
  return name.empty() ? number : name + " (" + number + ")";
}

std::string addressText(const Order& order) {
  const std::string whole = joined({order.siteFullAddress});
  return whole.empty() ? joined({order.siteStreetAddress, order.siteLocality, order.siteRegion,
                                 order.sitePostalCode, order.siteCountry})
                       : whole;
}

constexpr auto kOrder = std::to_array<Entry<Order>>({
    {"Order", [](const Order& order) { return std::to_string(order.id); }},
    {"Partner ID", [](const Order& order) { return joined({order.partnerIdentifier}); }},
    {"Display name", [](const Order& order) { return joined({order.displayName}); }},
    {"State", [](const Order& order) { return std::string(name(order.state())); }},
    {"Customer state",
     [](const Order& order) { return std::string(name(order.customerState())); }},
    {"Pickup type", [](const Order& order) { return joined({order.pickupType()}); }},
    {"Pickup window", [](const Order& order) { return windowText(order.pickupWindow); }},
    {"ETA", [](const Order& order) { return timeText(order.etaAt()); }},
    {"Site", siteText},
    {"Address", addressText},
    {"Phone", [](const Order& order) { return joined({order.sitePhone}); }},
    {"Where", [](const Order& order) { return joined({order.siteDescription}); }},
    {"Instructions", [](const Order& order) { return joined({order.siteInstructions}); }},
    {"Code", [](const Order& order) { return joined({order.redemptionCode}); }},
    {"Redeemed", [](const Order& order) { return timeText(order.redeemedAt); }},
    {"Customer", [](const Order& order) { return joined({order.customerName}); }},
    {"Car",
     [](const Order& order) {
       return joined({order.customerCarType, order.customerCarColor, order.customerLicensePlate});
     }},
    {"Rating",
     [](const Order& order) { return joined({order.customerRating(), order.customerComment()}); }},
    {"Created", [](const Order& order) { return timeText(order.createdAt()); }},
    {"Completed", [](const Order& order) { return timeText(order.completedAt()); }},
});

constexpr auto kCustomer = std::to_array<Entry<Customer>>({
    {"Name", [](const Customer& customer) { return customer.info.name; }},
    {"E-mail", [](const Customer& customer) { return joined({customer.emailAddress}); }},
    {"Registered",
     [](const Customer& customer) -> std::string { return customer.registered() ? "yes" : "no"; }},
    {"Phone", [](const Customer& customer) { return joined({customer.info.phone}); }},
    {"Car",
     [](const Customer& customer) {
       return joined({customer.info.carType, customer.info.carColor, customer.info.licensePlate});
     }},
});

template <class Entries, class Record>
std::string card(const Entries& entries, const Record& record) {
  std::size_t width = 0;
  for (const auto& entry : entries) width = std::max(width, entry.label.size() + 2);
  std::string lines;
  for (const auto& [label, textOf] : entries) {
    const std::string text = visibleText(textOf(record));
    if (text.empty()) continue;
    lines += std::string(label) + std::string(width - label.size(), ' ') + text + "\n";
  }
  return lines;
}

}  // namespace

std::string cardText(const Order& order) { return card(kOrder, order); }

std::string cardText(const Customer& customer) { return card(kCustomer, customer); }

}  // namespace ovinta::cli
