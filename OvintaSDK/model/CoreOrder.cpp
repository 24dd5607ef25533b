#include "OvintaSDK/model/CoreOrder.h"

#include <vector>

namespace ovinta {
namespace {

constexpr const char* kEntityName = "Order";

/// The attributes in the order of the model. Never destroyed, since a process may exit while a
/// thread makes summaries.
const platform::AttributeNames& summaryAttributes() {
  static const auto& names =
      *new platform::AttributeNames(std::make_shared<const std::vector<std::string>>(
          std::vector<std::string>{"id", "partnerIdentifier", "siteId", "state", "customerState"}));
  return names;
}

std::int64_t integer(const platform::ManagedObject& object, std::string_view attribute) {
  const auto* number = std::get_if<std::int64_t>(&object.value(attribute));
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
  // The places are those of the attributes' names.
  summary->setValueAt(0, order.id);
  if (order.partnerIdentifier) summary->setValueAt(1, *order.partnerIdentifier);
  summary->setValueAt(2, order.siteID);
  summary->setValueAt(3, std::int64_t{rawValue(order.state())});
  summary->setValueAt(4, std::int64_t{rawValue(order.customerState())});
  return summary;
}

std::shared_ptr<CoreOrder> CoreOrder::withEntity(const platform::EntityDescription& entity,
                                                 platform::ManagedObjectContext* context) {
  auto summary = std::make_shared<CoreOrder>(platform::ManagedObject(entity.name));
  if (context) context->insert(summary);
  return summary;
}

std::int64_t CoreOrder::id() const { return integer(*this, "id"); }

void CoreOrder::setId(std::int64_t id) { setValue("id", id); }

std::optional<std::string> CoreOrder::partnerIdentifier() const {
  const auto* text = std::get_if<std::string>(&value("partnerIdentifier"));
  return text ? std::optional(*text) : std::nullopt;
}

void CoreOrder::setPartnerIdentifier(const std::optional<std::string>& identifier) {
  setValue("partnerIdentifier",
           identifier ? platform::AttributeValue(*identifier) : platform::AttributeValue());
}

std::int64_t CoreOrder::siteId() const { return integer(*this, "siteId"); }

void CoreOrder::setSiteId(std::int64_t siteId) { setValue("siteId", siteId); }

std::int64_t CoreOrder::state() const { return integer(*this, "state"); }

void CoreOrder::setState(std::int64_t state) { setValue("state", state); }

std::int64_t CoreOrder::customerState() const { return integer(*this, "customerState"); }

void CoreOrder::setCustomerState(std::int64_t customerState) {
  setValue("customerState", customerState);
}

}  // namespace ovinta
