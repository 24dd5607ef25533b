#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "platform/Outbox.h"
#include "platform/URLSession.h"
#include "platform/portable/delivery/Judgement.h"
#include "platform/portable/delivery/RetryGate.h"
#include "platform/portable/delivery/ServiceRules.h"

namespace ovinta::platform::portable {

/// A request that is under way or waits.
struct DeliveryItem {
  /// What is kept of it; its request is the one to send, and of one that an earlier process has
  /// left lacks the tokens.
  OutboxEntry entry;
  RequestTraits traits;
  /// Those that wait for the answer, of positions that it stands for too.
  std::vector<URLSession::Completion> completions;
  /// When it was made; before the process began for one of an earlier process.
  Uptime since{};
  /// No try before that.
  Uptime notBefore{};
  /// How often it has left the device in vain.
  int failures = 0;
  bool isUnderWay = false;
  /// Whether the present try is one that the gate has let through.
  bool isRetry = false;
  /// Whether an outage has kept it up.
  bool isLate = false;
  /// Whether the service itself asks to wait until `notBefore`.
  bool isPutOff = false;
  /// Whether its customer is gone while it is under way.
  bool isDiscarded = false;
  /// Whether a newer request to the same place makes it wrong to send it once more.
  bool isReplaced = false;
  /// How the last try ended.
  Ending last{};

  /// Takes over what is to be heeded in place of one that is not sent: by taking its place, a newer
  /// one gets no earlier try.
  void standInFor(const DeliveryItem& other);
};
using DeliveryItemPtr = std::shared_ptr<DeliveryItem>;

/// The requests under way or waiting, in lines: the events of one order stand in one, each other
/// request alone. Knows order, and nothing of time.
class DeliveryLines {
 public:
  using Items = std::vector<DeliveryItemPtr>;

  /// Puts an item, whose number is the highest so far, at the end of its line.
  void add(const DeliveryItemPtr& item);
  void remove(const DeliveryItem& item);

  /// Whether nothing stands before the item in its line.
  bool isFirst(const DeliveryItem& item) const;
  /// The first item of each line, unless it is under way, in the order of the numbers.
  Items heads() const;
  /// The items of the line that the item stands in.
  Items lineOf(const DeliveryItem& item) const;
  /// All items in the order of their numbers.
  Items all() const;

  /// Takes the positions of the item's line out that are not under way and have a newer one, which
  /// gets their completions.
  Items takeOutdated(const DeliveryItem& item);

  std::size_t eventCount() const { return items_.size() - otherCount_; }
  std::size_t otherCount() const { return otherCount_; }

 private:
  using Line = std::map<std::int64_t, DeliveryItemPtr>;

  Line items_;
  std::map<std::int64_t, Line> orders_;
  std::size_t otherCount_ = 0;
};

}  // namespace ovinta::platform::portable
