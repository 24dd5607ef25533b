#include "OvintaSDK/model/CoreOrder.h"

namespace ovinta {
namespace {

constexpr const char* kEntityName = "Order";

std::int64_t integer(const platform::ManagedObject& object, std::string_view attribute) {
  const platform::AttributeValue value = object.value(attribute);
  const auto* number = std::get_if<std::int64_t>(&value);
  return number ? *number : 0;
}

}  // namespace

platform::FetchRequest CoreOrder::fetchRequest() { return {.entityName = kEntityName}; }

CoreOrder::CoreOrder() : ManagedObject(kEntityName) {}

CoreOrder::CoreOrder(const platform::ManagedObject& object) : ManagedObject(object) {}

std::shared_ptr<CoreOrder> CoreOrder::insert(const Order& order,
                                             platform::ManagedObjectContext& context) {
  auto summary = std::make_shared<CoreOrder>();
  context.insert(summary);
  summary->setValue("id", order.id);
  if (order.partnerIdentifier) summary->setValue("partnerIdentifier", *order.partnerIdentifier);
  summary->setValue("siteId", order.siteID);
  summary->setValue("state", rawValue(order.state()));
  summary->setValue("customerState", rawValue(order.customerState()));
  return summary;
}

std::int64_t CoreOrder::id() const { return integer(*this, "id"); }

std::optional<std::string> CoreOrder::partnerIdentifier() const {
  const platform::AttributeValue identifier = value("partnerIdentifier");
  const auto* text = std::get_if<std::string>(&identifier);
  return text ? std::optional(*text) : std::nullopt;
}

std::int64_t CoreOrder::siteId() const { return integer(*this, "siteId"); }

std::int64_t CoreOrder::state() const { return integer(*this, "state"); }

std::int64_t CoreOrder::customerState() const { return integer(*this, "customerState"); }

}  // namespace ovinta
