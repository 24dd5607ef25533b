#include "platform/portable/delivery/DeliveryLines.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace ovinta::platform::portable {

void DeliveryItem::standInFor(const DeliveryItem& other) {
  notBefore = std::max(notBefore, other.notBefore);
  failures = std::max(failures, other.failures);
  isLate = isLate || other.isLate;
  isPutOff = isPutOff || other.isPutOff;
}

void DeliveryLines::add(const DeliveryItemPtr& item) {
  items_.emplace(item->entry.number, item);
  if (item->traits.event) {
    orders_[item->traits.event->orderID].emplace(item->entry.number, item);
  } else {
    ++otherCount_;
  }
}

void DeliveryLines::remove(const DeliveryItem& item) {
  const auto number = item.entry.number;
  const auto event = item.traits.event;
  if (items_.erase(number) == 0) return;
  if (!event) {
    --otherCount_;
    return;
  }
  const auto line = orders_.find(event->orderID);
  line->second.erase(number);
  if (line->second.empty()) orders_.erase(line);
}

bool DeliveryLines::isFirst(const DeliveryItem& item) const {
  if (!item.traits.event) return true;
  const auto line = orders_.find(item.traits.event->orderID);
  return line == orders_.end() || line->second.begin()->first == item.entry.number;
}

DeliveryLines::Items DeliveryLines::heads() const {
  Items heads;
  for (const auto& [number, item] : items_) {
    if (!item->isUnderWay && isFirst(*item)) heads.push_back(item);
  }
  return heads;
}

DeliveryLines::Items DeliveryLines::lineOf(const DeliveryItem& item) const {
  Items items;
  const auto line = item.traits.event ? orders_.find(item.traits.event->orderID) : orders_.end();
  if (line == orders_.end()) return items;
  for (const auto& [number, each] : line->second) items.push_back(each);
  return items;
}

DeliveryLines::Items DeliveryLines::all() const {
  Items items;
  for (const auto& [number, item] : items_) items.push_back(item);
  return items;
}

DeliveryLines::Items DeliveryLines::takeOutdated(const DeliveryItem& item) {
  Items outdated;
  DeliveryItemPtr newest;
  for (const auto& each : lineOf(item)) {
    if (!each->traits.event->isPosition || each->isUnderWay) continue;
    if (newest) outdated.push_back(newest);
    newest = each;
  }
  for (const auto& each : outdated) newest->standInFor(*each);
  std::vector<URLSession::Completion> completions;
  for (const auto& each : outdated) {
    std::ranges::move(std::exchange(each->completions, {}), std::back_inserter(completions));
    remove(*each);
  }
  if (newest && !completions.empty()) {
    std::ranges::move(newest->completions, std::back_inserter(completions));
    newest->completions = std::move(completions);
  }
  return outdated;
}

}  // namespace ovinta::platform::portable
