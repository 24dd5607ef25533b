#include <algorithm>
#include <utility>

#include "platform/PersistentContainer.h"

namespace ovinta::platform {
namespace {

/// Where the name stands; the number of names when it is not among them.
std::size_t placeIn(const std::vector<std::string>& names, std::string_view name) {
  return static_cast<std::size_t>(std::ranges::find(names, name) - names.begin());
}

/// The names, or the list of none where there is no list.
AttributeNames listed(AttributeNames names) {
  // Never destroyed, since a process may exit while a thread makes objects.
  static const auto& none = *new AttributeNames(std::make_shared<const std::vector<std::string>>());
  if (!names) names = none;
  return names;
}

}  // namespace

ManagedObject::ManagedObject(std::string entityName, AttributeNames names)
    : entityName_(std::move(entityName)),
      names_(listed(std::move(names))),
      values_(names_->size()) {}

void ManagedObject::setValue(std::string_view attribute, AttributeValue value) {
  const std::size_t place = placeIn(*names_, attribute);
  if (place == values_.size()) {
    auto names = std::make_shared<std::vector<std::string>>(*names_);
    names->emplace_back(attribute);
    names_ = std::move(names);
    values_.emplace_back();
  }
  values_[place] = std::move(value);
}

const AttributeValue& ManagedObject::value(std::string_view attribute) const {
  static const auto& absent = *new AttributeValue;
  const std::size_t place = placeIn(*names_, attribute);
  return place == values_.size() ? absent : values_[place];
}

}  // namespace ovinta::platform
