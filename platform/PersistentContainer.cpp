#include "platform/PersistentContainer.h"

#include <algorithm>
#include <utility>

#include "platform/JSON.h"

namespace ovinta::platform {
namespace {

std::optional<AttributeDescription> parseAttribute(const Value& value) {
  const auto* fields = value.as<Dictionary>();
  if (!fields) return std::nullopt;
  const auto* name = find<std::string>(*fields, "name");
  const auto* type = find<std::string>(*fields, "type");
  const auto* optional = find<bool>(*fields, "optional");
  if (!name || name->empty() || !type || !optional) return std::nullopt;
  if (*type == "integer64") return AttributeDescription{*name, AttributeType::integer64, *optional};
  if (*type == "string") return AttributeDescription{*name, AttributeType::string, *optional};
  return std::nullopt;
}

std::optional<EntityDescription> parseEntity(const Value& value) {
  const auto* fields = value.as<Dictionary>();
  if (!fields) return std::nullopt;
  const auto* name = find<std::string>(*fields, "name");
  const auto* attributes = find<List>(*fields, "attributes");
  if (!name || name->empty() || !attributes || attributes->empty()) return std::nullopt;
  EntityDescription entity{*name, {}};
  for (const auto& element : *attributes) {
    auto attribute = parseAttribute(element);
    if (!attribute) return std::nullopt;
    entity.attributes.push_back(*std::move(attribute));
  }
  return entity;
}

/// Where the name stands; the number of names when it is not among them.
std::size_t placeIn(const std::vector<std::string>& names, std::string_view name) {
  return static_cast<std::size_t>(std::ranges::find(names, name) - names.begin());
}

}  // namespace

std::optional<ManagedObjectModel> ManagedObjectModel::parse(std::string_view compiled) {
  const auto root = parseJSON(compiled);
  const auto* fields = root ? root->as<Dictionary>() : nullptr;
  const auto* entities = fields ? find<List>(*fields, "entities") : nullptr;
  if (!entities) return std::nullopt;
  ManagedObjectModel model;
  for (const auto& element : *entities) {
    auto entity = parseEntity(element);
    if (!entity || model.entity(entity->name)) return std::nullopt;
    model.entities.push_back(*std::move(entity));
  }
  return model;
}

const EntityDescription* ManagedObjectModel::entity(std::string_view name) const {
  const auto found = std::ranges::find(entities, name, &EntityDescription::name);
  return found == entities.end() ? nullptr : &*found;
}

ManagedObject::ManagedObject(std::string entityName, AttributeNames names)
    : entityName_(std::move(entityName)), names_(std::move(names)) {
  static const auto& none = *new AttributeNames(std::make_shared<const std::vector<std::string>>());
  if (!names_) names_ = none;
  values_.resize(names_->size());
}

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
