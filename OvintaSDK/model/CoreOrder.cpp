#include "OvintaSDK/model/CoreOrder.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace ovinta {
namespace {

constexpr const char* kEntityName = "Order";

/// The attributes in the order of the model, by which they have their places in a new summary.
enum Attribute : std::size_t { kID, kPartnerIdentifier, kSiteID, kState, kCustomerState, kCount };

constexpr auto kNames = [] {
  std::array<std::string_view, kCount> names;
  names[kID] = "id";
  names[kPartnerIdentifier] = "partnerIdentifier";
  names[kSiteID] = "siteId";
  names[kState] = "state";
  names[kCustomerState] = "customerState";
  return names;
}();

/// Never destroyed, since a process may exit while a thread makes summaries.
const platform::AttributeNames& summaryAttributes() {
  static const auto& names = *new platform::AttributeNames(
      std::make_shared<const std::vector<std::string>>(kNames.begin(), kNames.end()));
  return names;
}

std::int64_t integer(const platform::ManagedObject& object, Attribute attribute) {
  const auto* number = std::get_if<std::int64_t>(&object.value(kNames[attribute]));
  return number ? *number : 0;
}

}  // namespace

platform::FetchRequest CoreOrder::fetchRequest() { return {.entityName = kEntityName}; }

CoreOrder::CoreOrder() : ManagedObject(kEntityName, summaryAttributes()) {}

CoreOrder::CoreOrder(const platform::ManagedObject& object) : ManagedObject(object) {}

std::shared_ptr<CoreOrder> CoreOrder::insert(const Order& order,
                                             platform::ManagedObjectContext& context) {
  auto summary = std::make_shared<CoreOrder>();
  context.insert(summary);
  summary->setValueAt(kID, order.id);
  if (order.partnerIdentifier) summary->setValueAt(kPartnerIdentifier, *order.partnerIdentifier);
  summary->setValueAt(kSiteID, order.siteID);
  summary->setValueAt(kState, std::int64_t{rawValue(order.state())});
  summary->setValueAt(kCustomerState, std::int64_t{rawValue(order.customerState())});
  return summary;
}

std::shared_ptr<CoreOrder> CoreOrder::withEntity(const platform::EntityDescription& entity,
                                                 platform::ManagedObjectContext* context) {
  auto summary =
      std::make_shared<CoreOrder>(platform::ManagedObject(entity.name, summaryAttributes()));
  if (context) context->insert(summary);
  return summary;
}

std::int64_t CoreOrder::id() const { return integer(*this, kID); }

void CoreOrder::setId(std::int64_t id) { setValue(kNames[kID], id); }

std::optional<std::string> CoreOrder::partnerIdentifier() const {
  const auto* text = std::get_if<std::string>(&value(kNames[kPartnerIdentifier]));
  return text ? std::optional(*text) : std::nullopt;
}

void CoreOrder::setPartnerIdentifier(const std::optional<std::string>& identifier) {
  setValue(kNames[kPartnerIdentifier],
           identifier ? platform::AttributeValue(*identifier) : platform::AttributeValue());
}

std::int64_t CoreOrder::siteId() const { return integer(*this, kSiteID); }

void CoreOrder::setSiteId(std::int64_t siteId) { setValue(kNames[kSiteID], siteId); }

std::int64_t CoreOrder::state() const { return integer(*this, kState); }

void CoreOrder::setState(std::int64_t state) { setValue(kNames[kState], state); }

std::int64_t CoreOrder::customerState() const { return integer(*this, kCustomerState); }

void CoreOrder::setCustomerState(std::int64_t customerState) {
  setValue(kNames[kCustomerState], customerState);
}

}  // namespace ovinta
