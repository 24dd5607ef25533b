// What outlives the process: how it is kept, and how what an earlier process has left is taken
// over.
#include <algorithm>
#include <utility>

#include "platform/portable/delivery/DeliveringURLSession.h"

namespace ovinta::platform::portable {
namespace {

/// How often an outbox is tried again that fails: a try may take a while.
constexpr std::chrono::minutes kOutboxInterval{1};

constexpr const char* kNotLoaded = "What was kept before cannot be read";

}  // namespace

void DeliveringURLSession::restore() {
  Effects effects;
  {
    const std::lock_guard lock(mutex_);
    // What an outbox holds that cannot be read just now has other numbers.
    nextNumber_ = std::max<std::int64_t>(1, clock_->now().time_since_epoch().count());
    nextOutboxTry_ = parts_.uptime();
    loadOutbox(effects);
    persist(effects);
  }
  perform(effects);
}

/// Takes over what an earlier process has left, unless that is done, or was tried a short while
/// ago.
void DeliveringURLSession::loadOutbox(Effects& effects) {
  const auto now = parts_.uptime();
  if (isLoaded_ || now < nextOutboxTry_) return;
  if (auto entries = parts_.outbox->load()) {
    takeOver(*std::move(entries), effects);
  } else {
    isOutboxStale_ = true;
    nextOutboxTry_ = now + kOutboxInterval;
  }
}

/// Has what an earlier process has left wait. It is older than all that this one has made.
void DeliveringURLSession::takeOver(std::vector<OutboxEntry> entries, Effects& effects) {
  isLoaded_ = true;
  const auto now = parts_.uptime();
  const Date today = clock_->now();
  // What this process has made meanwhile is in no outbox yet, and stands behind.
  const DeliveryLines::Items own = lines_.all();
  for (const auto& item : own) lines_.remove(*item);
  DeliveryLines::Items items;
  for (OutboxEntry& entry : entries) {
    numbersInOutbox_.insert(entry.number);
    nextNumber_ = std::max(nextNumber_, entry.number + 1);
    auto item = std::make_shared<DeliveryItem>();
    item->traits = traitsOf(entry.request);
    item->since = now - std::max(TimeInterval(0), today - entry.made);
    item->isLate = true;
    item->entry = std::move(entry);
    if (!item->traits.event) {
      effects.forget(item->entry.number);
      continue;
    }
    ++account_.made;
    ++account_.waiting;
    lines_.add(item);
    items.push_back(std::move(item));
  }
  for (const auto& item : own) {
    item->entry.number = nextNumber_++;
    lines_.add(item);
  }
  for (const auto& item : items) {
    if (const auto reason = reasonNotToWait(*item, now)) giveUp(item, *reason, effects);
  }
  for (const auto& item : lines_.heads()) supersede(*item, effects);
  if (account_.waiting > 0) {
    beginOutage(effects);
    gate_.hope(now, parts_.random());
    schedule(effects);
  } else if (!items.empty()) {
    effects.lines.push_back("Delivery at the start: " + summary(account_));
  }
}

bool DeliveringURLSession::isKept(const DeliveryItem& item) const {
  return item.traits.event && !item.isDiscarded;
}

/// Makes the changes of a step in the outbox, and with them those that earlier steps could not
/// make.
void DeliveringURLSession::persist(Effects& effects) {
  Outbox::Changes& changes = effects.changes;
  if (changes.removed.empty() && changes.added.empty() && !changes.leavesNoTrace) return;
  const auto now = parts_.uptime();
  const bool isTooSoon = isOutboxStale_ && now < nextOutboxTry_ && !changes.leavesNoTrace;
  if (isTooSoon && account_.storageFailure) return;
  account_.storageFailure = kNotLoaded;
  if (isLoaded_ && !isOutboxStale_) account_.storageFailure = parts_.outbox->write(changes);
  // What has failed may have cost what was kept before.
  if (isLoaded_ && account_.storageFailure) rewriteOutbox(effects);
  isOutboxStale_ = account_.storageFailure.has_value();
  if (isOutboxStale_) {
    if (isLoaded_) nextOutboxTry_ = now + kOutboxInterval;
    if (std::exchange(hasToldOfStorage_, true)) return;
    effects.lines.push_back("Order events that wait are kept in memory only: " +
                            *account_.storageFailure);
    return;
  }
  for (const auto number : changes.removed) numbersInOutbox_.erase(number);
  for (const auto& entry : changes.added) numbersInOutbox_.insert(entry.number);
}

/// Has the outbox hold all that waits, and nothing else.
void DeliveringURLSession::rewriteOutbox(Effects& effects) {
  Outbox::Changes& changes = effects.changes;
  changes.added.clear();
  changes.removed.assign(numbersInOutbox_.begin(), numbersInOutbox_.end());
  for (const auto& item : lines_.all()) {
    if (isKept(*item)) changes.added.push_back(keptForm(item->entry));
  }
  account_.storageFailure = parts_.outbox->write(changes);
}

}  // namespace ovinta::platform::portable
