#include "sandbox/domain/Snapshot.h"

#include <algorithm>
#include <array>
#include <bit>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "sandbox/domain/Accounts.h"
#include "sandbox/domain/Orders.h"

namespace ovinta::sandbox {
namespace {

using platform::Dictionary;
using platform::List;

std::optional<Refusal> restoreSite(World& world, Dictionary site, platform::Date /*now*/) {
  const std::int64_t id = *platform::find<std::int64_t>(site, "id");
  const bool isNew = world.sites.emplace(id, std::move(site)).second;
  return isNew ? std::nullopt : std::optional(invalid("id", "is taken"));
}

std::optional<Refusal> restoreCustomerNow(World& world, Dictionary customer,
                                          platform::Date /*now*/) {
  return restoreCustomer(world, std::move(customer));
}

/// A list of records in a document.
struct Part {
  std::string_view key;
  std::span<const FieldRule> (*rules)();
  std::optional<Refusal> (*restore)(World& world, Dictionary record, platform::Date now);
};

/// The parts of a snapshot, in an order in which each refers to earlier ones only.
constexpr std::array<Part, 3> kParts = {{{"sites", siteRules, restoreSite},
                                         {"customers", customerRules, restoreCustomerNow},
                                         {"orders", orderRules, restoreOrder}}};

Dictionary recordErrors(const Part& part, const platform::Value& item, World& world,
                        platform::Date now) {
  const auto* record = item.as<Dictionary>();
  if (!record) return invalid("record", "must be an object").errors;
  if (Dictionary errors = fieldErrors(*record, part.rules()); !errors.empty()) return errors;
  Dictionary kept;
  copyFields(*record, part.rules(), kept);
  const auto refused = part.restore(world, std::move(kept), now);
  return refused ? refused->errors : Dictionary();
}

/// The most complaints that an answer lists: nobody reads more.
constexpr std::size_t kMostErrors = 100;

void restorePart(const Part& part, const List& items, World& world, platform::Date now,
                 Dictionary& errors) {
  for (std::size_t index = 0; index < items.size() && errors.size() < kMostErrors; ++index) {
    for (auto& [key, messages] : recordErrors(part, items[index], world, now)) {
      std::string path(part.key);
      path.append(".").append(std::to_string(index)).append(".").append(key);
      errors.emplace(std::move(path), messages);
    }
  }
}

}  // namespace

Dictionary snapshotOf(const World& world) {
  List orders;
  for (const auto& [id, order] : world.orders) orders.emplace_back(order);
  return {{"generator", std::bit_cast<std::int64_t>(world.generator.state())},
          {"sites", allSites(world.sites)},
          {"customers", List(world.customers.begin(), world.customers.end())},
          {"orders", std::move(orders)}};
}

platform::Expected<World, Refusal> readSnapshot(const Dictionary& document,
                                                SeededGenerator generator, platform::Date now) {
  World world{.generator = generator};
  Dictionary errors;
  if (document.contains("generator")) {
    const auto* state = platform::find<std::int64_t>(document, "generator");
    if (!state) return invalid("generator", "must be an integer");
    world.generator = SeededGenerator(std::bit_cast<std::uint64_t>(*state));
  }
  for (const auto& [key, value] : document) {
    const bool isPart = std::ranges::find(kParts, key, &Part::key) != kParts.end();
    if (!isPart && key != "generator") errors.emplace(key, List{key + " is no part of a snapshot"});
  }
  if (!document.contains("sites")) world.sites = builtInSites();
  for (const Part& part : kParts) {
    if (!document.contains(part.key)) continue;
    const auto* items = platform::find<List>(document, part.key);
    if (!items) return invalid(part.key, "must be a list");
    restorePart(part, *items, world, now, errors);
  }
  if (auto refused = invalid(std::move(errors))) return *std::move(refused);
  return world;
}

}  // namespace ovinta::sandbox
