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

}  // namespace ovinta::platform
