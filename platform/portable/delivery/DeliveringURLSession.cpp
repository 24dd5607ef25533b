#include "platform/portable/delivery/DeliveringURLSession.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "platform/UUID.h"

namespace ovinta::platform::portable {
namespace {

using Verdict = Judgement::Verdict;

/// How many that have waited are sent at once when the service answers again.
constexpr std::size_t kMostRetriesAtOnce = 4;

/// How many wait at most for the answer to one position, as those whose positions it stands for.
constexpr std::size_t kMostCompletions = 100;

/// The method of requests of which the last one holds.
constexpr std::string_view kReplacingMethod = "PUT";

constexpr const char* kReplaced = "A newer position was sent.";
constexpr const char* kSignedOut = "The customer has signed out.";
constexpr const char* kTooLate = "The request has waited too long for the network.";
constexpr const char* kTooMany = "Too many events wait for the network.";

std::string makeKey(const std::function<std::uint64_t()>& random) {
  UUID key;
  for (std::size_t i = 0; i < key.bytes.size(); i += 8) {
    std::uint64_t bits = random();
    for (std::size_t j = 0; j < 8; ++j, bits >>= 8U) {
      key.bytes.at(i + j) = static_cast<std::uint8_t>(bits);
    }
  }
  // What RFC 4122 has a random identifier say of itself.
  key.bytes[6] = static_cast<std::uint8_t>((key.bytes[6] & 0x0FU) | 0x40U);
  key.bytes[8] = static_cast<std::uint8_t>((key.bytes[8] & 0x3FU) | 0x80U);
  return key.text();
}

void call(const std::vector<URLSession::Completion>& completions, Ending ending) {
  if (completions.empty()) return;
  for (std::size_t i = 0; i + 1 < completions.size(); ++i) {
    completions[i](ending.data, ending.response, ending.error);
  }
  completions.back()(std::move(ending.data), std::move(ending.response), std::move(ending.error));
}

/// Whether the thread is inside a completion of a base.
thread_local bool isCompleting = false;

class CompletionScope {
 public:
  CompletionScope() : before_(std::exchange(isCompleting, true)) {}
  ~CompletionScope() { isCompleting = before_; }
  CompletionScope(const CompletionScope&) = delete;
  CompletionScope& operator=(const CompletionScope&) = delete;

 private:
  const bool before_;
};

bool isSuccess(const Ending& ending) {
  return ending.response && ending.response->statusCode / 100 == 2;
}

}  // namespace

DeliveringURLSession::DeliveringURLSession(const Services& services, const DeliveryOptions& options,
                                           const DeliveryParts& parts)
    : base_(services.urlSession),
      settings_(services.settings),
      clock_(services.clock),
      log_(services.log),
      mainQueue_(services.mainQueue),
      options_(options),
      parts_(parts),
      appToken_(options_.appToken) {}

std::shared_ptr<DeliveringURLSession> DeliveringURLSession::make(const Services& services,
                                                                 const DeliveryOptions& options,
                                                                 const DeliveryParts& parts) {
  const auto destroy = [mainQueue = services.mainQueue](DeliveringURLSession* session) {
    std::shared_ptr<const DeliveringURLSession> last(session);
    if (isCompleting) mainQueue->async([last = std::move(last)] {});
  };
  return {new DeliveringURLSession(services, options, parts), destroy};
}

DeliveryAccount DeliveringURLSession::account() const {
  const std::lock_guard lock(mutex_);
  return account_;
}

void DeliveringURLSession::startDataTask(URLRequest request, Completion completion) {
  const auto item = makeItem(std::move(request), std::move(completion));
  Effects effects;
  {
    const std::lock_guard lock(mutex_);
    accept(item, effects);
    persist(effects);
  }
  perform(effects);
}

DeliveryItemPtr DeliveringURLSession::makeItem(URLRequest request, Completion completion) {
  auto item = std::make_shared<DeliveryItem>();
  item->traits = traitsOf(request);
  item->entry.customer = customerMark(request);
  item->entry.request = std::move(request);
  item->completions.push_back(std::move(completion));
  return item;
}

void DeliveringURLSession::accept(const DeliveryItemPtr& item, Effects& effects) {
  const auto now = parts_.uptime();
  loadOutbox(effects);
  item->since = now;
  item->entry.number = nextNumber_++;
  URLRequest& request = item->entry.request;
  const bool isNewToken = !appToken_ && (appToken_ = appTokenOf(request));
  lines_.add(item);
  const bool isAlone = lines_.isFirst(*item);
  if (item->traits.event) {
    ++account_.made;
    ++account_.waiting;
    item->entry.made = clock_->now();
    request.headers.push_back({std::string(kKeyField), makeKey(parts_.random)});
    supersede(*item, effects);
    if (lines_.eventCount() > options_.eventLimit) {
      item->last.error = TransportError{kTooMany};
      return giveUp(item, DropReason::tooMany, effects);
    }
    effects.changes.added.push_back(keptForm(item->entry));
  } else if (item->traits.isRepeatable) {
    replaceBy(*item, effects);
  }
  if (isAlone) {
    start(item, request, false, effects);
  } else {
    item->isLate = item->isLate || lines_.lineOf(*item).front()->isLate;
    if (item->isLate) gate_.takeOccasion(now);
  }
  if (isOutage_ || isNewToken) pump(effects);
}

/// Has those not be sent again that would undo what the newer request does.
void DeliveringURLSession::replaceBy(const DeliveryItem& newer, Effects& effects) {
  const URLRequest& request = newer.entry.request;
  if (request.method != kReplacingMethod) return;
  for (const auto& item : lines_.all()) {
    const URLRequest& other = item->entry.request;
    const bool isSame = other.method == request.method && other.url == request.url;
    if (item.get() == &newer || !isSame) continue;
    if (item->isUnderWay) {
      item->isReplaced = true;
    } else {
      giveUp(item, DropReason::failed, effects);
    }
  }
}

/// Begins a try. The request is that of the item, with its tokens.
void DeliveringURLSession::start(const DeliveryItemPtr& item, URLRequest request, bool isRetry,
                                 Effects& effects) {
  item->isUnderWay = true;
  item->isRetry = isRetry;
  if (isRetry) ++retriesUnderWay_;
  effects.starts.push_back({item, std::move(request)});
}

void DeliveringURLSession::complete(const DeliveryItemPtr& item, Ending ending) {
  Effects effects;
  std::vector<Completion> completions;
  Ending told;
  {
    const std::lock_guard lock(mutex_);
    item->isUnderWay = false;
    if (std::exchange(item->isRetry, false)) --retriesUnderWay_;
    const Judgement judgement = judge(item->traits, ending, clock_->now());
    if (judgement.verdict == Verdict::answered && !judgement.isPutOff) gate_.succeed();
    const auto reason = judgement.verdict == Verdict::tryAgain
                            ? reasonNotToWait(*item, parts_.uptime())
                            : std::nullopt;
    if (judgement.verdict == Verdict::tryAgain && !reason) {
      item->last = std::move(ending);
      hold(item, judgement, effects);
    } else {
      if (reason) drop(item, *reason, effects);
      completions = reason ? std::exchange(item->completions, {}) : settle(item, ending, effects);
      told = std::move(ending);
    }
    pump(effects);
    endOutage(effects);
    persist(effects);
  }
  perform(effects);
  call(completions, std::move(told));
}

/// Ends an item that has its answer, or has failed for good. Returns who waits for it.
std::vector<URLSession::Completion> DeliveringURLSession::settle(const DeliveryItemPtr& item,
                                                                 const Ending& ending,
                                                                 Effects& effects) {
  if (isSuccess(ending) && item->traits.event) {
    lines_.remove(*item);
    --account_.waiting;
    ++account_.delivered;
    effects.forget(item->entry.number);
    if (item->isLate) {
      tell({.late = {item->traits.event->orderID, item->traits.event->eventType,
                     parts_.uptime() - item->since}});
    }
  } else {
    drop(item, ending.error || !ending.response ? DropReason::failed : DropReason::refused,
         effects);
  }
  return std::exchange(item->completions, {});
}

/// Why the item cannot wait; absent when it can.
std::optional<DropReason> DeliveringURLSession::reasonNotToWait(const DeliveryItem& item,
                                                                Uptime now) const {
  if (item.isDiscarded || isGone(item)) return DropReason::signedOut;
  if (item.isReplaced) return DropReason::failed;
  if (now - item.since >= ageLimit(item)) return DropReason::tooOld;
  if (item.traits.event) return std::nullopt;
  const auto waits = [](const DeliveryItemPtr& other) {
    return !other->traits.event && !other->isUnderWay;
  };
  const auto waiting = std::ranges::count_if(lines_.all(), waits);
  return static_cast<std::size_t>(waiting) > options_.requestLimit
             ? std::optional(DropReason::tooMany)
             : std::nullopt;
}

void DeliveringURLSession::hold(const DeliveryItemPtr& item, const Judgement& judgement,
                                Effects& effects) {
  const auto now = parts_.uptime();
  item->isLate = true;
  item->isPutOff = judgement.isPutOff;
  for (const auto& each : lines_.lineOf(*item)) each->isLate = true;
  gate_.fail(now, parts_.random());
  const auto& error = item->last.error;
  const bool hasLeft = !error || error->failure != TransportFailure::notSent;
  if (hasLeft) ++item->failures;
  if (judgement.retryAfter) {
    item->notBefore = now + *judgement.retryAfter + jitter(parts_.random(), retryWindow(1));
  } else if (hasLeft) {
    item->notBefore = now + jitter(parts_.random(), retryWindow(item->failures));
  }
  supersede(*item, effects);
  beginOutage(effects);
}

void DeliveringURLSession::beginOutage(Effects& effects) {
  effects.startsMonitor = !std::exchange(isMonitoring_, true);
  if (std::exchange(isOutage_, true)) return;
  effects.lines.emplace_back("Delivery waits for the network");
  tell({&DeliveryDelegate::deliveryWaitsForNetwork, account_});
}

/// Ends the outage when nothing of it is left.
void DeliveringURLSession::endOutage(Effects& effects) {
  if (!isOutage_ || std::ranges::any_of(lines_.all(), &DeliveryItem::isLate)) return;
  isOutage_ = false;
  gate_.succeed();
  effects.lines.push_back("Delivery after an outage: " + summary(account_));
  tell({&DeliveryDelegate::deliveryResumed, account_});
}

/// Takes positions out of the item's line that are not worth sending any more.
void DeliveringURLSession::supersede(const DeliveryItem& item, Effects& effects) {
  const auto all = lines_.takeOutdated(item);
  if (all.empty()) return;
  for (const auto& outdated : all) {
    --account_.waiting;
    ++account_.superseded;
    effects.forget(outdated->entry.number);
  }
  for (const auto& each : lines_.lineOf(item)) {
    auto& waiting = each->completions;
    if (waiting.size() <= kMostCompletions) continue;
    const auto end = waiting.end() - static_cast<std::ptrdiff_t>(kMostCompletions);
    std::vector<Completion> first(std::move_iterator(waiting.begin()), std::move_iterator(end));
    effects.reports.push_back({std::move(first), {.error = TransportError{kReplaced}}});
    waiting.erase(waiting.begin(), end);
  }
}

/// Takes an item out that is not delivered.
void DeliveringURLSession::drop(const DeliveryItemPtr& item, DropReason reason, Effects& effects) {
  lines_.remove(*item);
  if (!item->traits.event) return;
  --account_.waiting;
  ++account_.dropped.at(static_cast<std::size_t>(reason));
  effects.forget(item->entry.number);
}

/// Drops an item outside of a completion of the base's, and has those told that wait for it.
void DeliveringURLSession::giveUp(const DeliveryItemPtr& item, DropReason reason,
                                  Effects& effects) {
  drop(item, reason, effects);
  if (reason == DropReason::signedOut) {
    item->last = {.error = TransportError{kSignedOut}};
  } else if (!item->last.error && !item->last.response) {
    item->last.error = TransportError{kTooLate};
  }
  effects.reports.push_back({std::exchange(item->completions, {}), std::move(item->last)});
}

void DeliveringURLSession::Messages::tell(DeliveryDelegate& delegate) {
  std::vector<Effects::Told> all;
  {
    const std::lock_guard lock(mutex);
    all.swap(waiting);
  }
  for (const auto& each : all) each.tell(delegate);
}

/// To be called under the lock, by which the messages keep their order.
void DeliveringURLSession::tell(Effects::Told told) {
  if (!options_.delegate) return;
  const std::lock_guard lock(messages_->mutex);
  messages_->waiting.push_back(std::move(told));
}

void DeliveringURLSession::Effects::Told::tell(DeliveryDelegate& delegate) const {
  if (message) return (delegate.*message)(account);
  delegate.deliverySentLate(late);
}

void DeliveringURLSession::Effects::forget(std::int64_t number) {
  const auto count = std::erase_if(
      changes.added, [number](const OutboxEntry& entry) { return entry.number == number; });
  if (count == 0) changes.removed.push_back(number);
}

void DeliveringURLSession::customerChanged() {
  Effects effects;
  {
    const std::lock_guard lock(mutex_);
    for (const auto& item : lines_.all()) {
      if (!isGone(*item)) continue;
      if (item->isUnderWay) {
        item->isDiscarded = true;
        if (item->traits.event) effects.forget(item->entry.number);
      } else {
        giveUp(item, DropReason::signedOut, effects);
      }
    }
    effects.changes.leavesNoTrace = true;
    pump(effects);
    endOutage(effects);
    persist(effects);
  }
  perform(effects);
}

/// Sends what may be sent, and sees to it that the rest is looked at in time.
void DeliveringURLSession::pump(Effects& effects) {
  expire(effects);
  while (tryHeads(effects)) {
  }
  schedule(effects);
}

void DeliveringURLSession::expire(Effects& effects) {
  if (!isOutage_) return;
  const auto now = parts_.uptime();
  for (const auto& item : lines_.all()) {
    if (item->isUnderWay || now - item->since < ageLimit(*item)) continue;
    giveUp(item, DropReason::tooOld, effects);
  }
}

/// Starts the heads of the lines whose time has come; true when one of them was given up instead,
/// so that another may have come to the head.
bool DeliveringURLSession::tryHeads(Effects& effects) {
  const auto now = parts_.uptime();
  if (!gate_.isOpen(now)) return false;
  const std::size_t limit = gate_.isDoubtful() ? 1 : kMostRetriesAtOnce;
  for (const auto& item : lines_.heads()) {
    if (retriesUnderWay_ >= limit) return false;
    if (item->notBefore > now) continue;
    if (isGone(*item)) {
      giveUp(item, DropReason::signedOut, effects);
      return true;
    }
    auto request = withTokens(item->entry.request, customerToken(), appToken_);
    if (request) start(item, *std::move(request), true, effects);
  }
  return false;
}

/// Sets a timer for the next try, or for the next item that is too old.
void DeliveringURLSession::schedule(Effects& effects) {
  if (!isOutage_) return;
  const auto now = parts_.uptime();
  const std::size_t limit = gate_.isDoubtful() ? 1 : kMostRetriesAtOnce;
  const auto token = customerToken();
  std::optional<Uptime> next;
  const auto consider = [&next](Uptime at) { next = std::min(next.value_or(at), at); };
  for (const auto& item : lines_.all()) {
    if (item->isUnderWay) continue;
    consider(item->since + ageLimit(*item));
    if (retriesUnderWay_ >= limit || !lines_.isFirst(*item)) continue;
    if (hasTokens(item->entry.request, token, appToken_)) {
      consider(std::max(gate_.next(), item->notBefore));
    }
  }
  if (!next || (wakeAt_ && *wakeAt_ <= *next)) return;
  wakeAt_ = effects.wakeAt = *next;
  effects.wakeAfter = *next - now;
}

void DeliveringURLSession::perform(Effects& effects) {
  for (const auto& line : effects.lines) log_->write(line);
  if (options_.delegate) {
    bool isAny = false;
    {
      const std::lock_guard lock(messages_->mutex);
      isAny = !messages_->waiting.empty();
    }
    const auto tell = [delegate = options_.delegate, messages = messages_] {
      messages->tell(*delegate);
    };
    if (isAny) mainQueue_->async(tell);
  }
  for (auto& report : effects.reports) {
    if (report.completions.empty()) continue;
    auto shared = std::make_shared<Effects::Report>(std::move(report));
    parts_.onCallbackThread([shared = std::move(shared)]() mutable {
      const CompletionScope scope;  // Until after those who wait are gone.
      const auto last = std::move(shared);
      call(last->completions, std::move(last->ending));
    });
  }
  const auto weak = weak_from_this();
  for (auto& begun : effects.starts) {
    base_->startDataTask(
        std::move(begun.request), [weak, item = begun.item](auto data, auto response, auto error) {
          const CompletionScope scope;  // Until after the reference is gone.
          const auto self = weak.lock();
          if (self) self->complete(item, {std::move(data), std::move(response), std::move(error)});
        });
  }
  if (effects.startsMonitor) {
    parts_.network->start([weak](bool isAvailable) {
      if (const auto self = weak.lock()) self->networkChanged(isAvailable);
    });
  }
  if (effects.wakeAt) {
    mainQueue_->asyncAfter(effects.wakeAfter, [weak, at = *effects.wakeAt] {
      if (const auto self = weak.lock()) self->wake(at);
    });
  }
}

void DeliveringURLSession::wake(Uptime at) {
  Effects effects;
  {
    const std::lock_guard lock(mutex_);
    if (wakeAt_ == at) wakeAt_ = std::nullopt;
    pump(effects);
    endOutage(effects);
    persist(effects);
  }
  perform(effects);
}

void DeliveringURLSession::networkChanged(bool isAvailable) {
  Effects effects;
  {
    const std::lock_guard lock(mutex_);
    const bool hadNetwork = std::exchange(hasNetwork_, isAvailable);
    if (!isAvailable || !isOutage_) return;
    if (hadNetwork) {
      gate_.takeOccasion(parts_.uptime());  // It may be another network.
    } else {
      for (const auto& item : lines_.all()) {
        if (!item->isPutOff) item->notBefore = {};
      }
      gate_.hope(parts_.uptime(), parts_.random());
    }
    pump(effects);
    persist(effects);
  }
  perform(effects);
}

std::optional<std::string> DeliveringURLSession::customerToken() const {
  return settings_->string(kCustomerTokenSetting);
}

/// Whether the customer who made the request is signed in no more; false for what no customer has
/// made, and as long as the settings cannot say.
bool DeliveringURLSession::isGone(const DeliveryItem& item) const {
  if (item.entry.customer == 0) return false;
  const auto token = customerToken();
  return customerMark(token) != item.entry.customer && (token || !settings_->failure());
}

TimeInterval DeliveringURLSession::ageLimit(const DeliveryItem& item) const {
  return item.traits.event ? options_.eventAgeLimit : options_.requestAgeLimit;
}

}  // namespace ovinta::platform::portable
