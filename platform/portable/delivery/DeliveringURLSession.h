#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/Clock.h"
#include "platform/Delivery.h"
#include "platform/Log.h"
#include "platform/MainQueue.h"
#include "platform/SettingsStore.h"
#include "platform/URLSession.h"
#include "platform/portable/Portable.h"
#include "platform/portable/delivery/DeliveryLines.h"
#include "platform/portable/delivery/RetryGate.h"

namespace ovinta::platform::portable {

/// Sends requests through another session, keeps those that could not be sent, and sends them
/// later. Keeps to the promises of a session, with the base's callback thread as its own; but a
/// request's completion may come much later, and when the process exits first it is not called.
/// Tries again on the main queue. No lock is held while anybody is called but the outbox and the
/// settings. May be used from any thread.
/// Made by `make` alone.
class DeliveringURLSession final : public URLSession,
                                   public Delivery,
                                   public std::enable_shared_from_this<DeliveringURLSession> {
 public:
  /// Uses the session, the settings, the clock, the log and the main queue of the services.
  DeliveringURLSession(const Services& services, const DeliveryOptions& options,
                       const DeliveryParts& parts);

  /// Such a session. The last reference may go inside one of the base's completions, where nobody
  /// may destroy the base: both are then destroyed on the main queue.
  static std::shared_ptr<DeliveringURLSession> make(const Services& services,
                                                    const DeliveryOptions& options,
                                                    const DeliveryParts& parts);

  /// Takes over what an earlier process has left. To be called once, before anything else.
  void restore();

  void startDataTask(URLRequest request, Completion completion) override;

  DeliveryAccount account() const override;

  /// Gives up the events of customers who are not signed in any more. To be called after each
  /// change of the token in the settings.
  void customerChanged();

 private:
  /// What comes of a step: changes of the outbox, which are made before the lock is released, and
  /// then the rest, in this order.
  struct Effects {
    struct Start {
      DeliveryItemPtr item;
      URLRequest request;
    };
    struct Report {
      std::vector<Completion> completions;
      Ending ending;
    };
    /// What the delegate is told: a message with the account, or else of an event that was late.
    struct Told {
      void tell(DeliveryDelegate& delegate) const;

      void (DeliveryDelegate::*message)(const DeliveryAccount&) = nullptr;
      DeliveryAccount account = {};
      LateDelivery late = {};
    };
    /// Has the outbox not hold the entry after the step.
    void forget(std::int64_t number);

    Outbox::Changes changes;
    std::vector<std::string> lines;
    std::vector<Report> reports;
    std::vector<Start> starts;
    /// When to look again.
    std::optional<Uptime> wakeAt;
    TimeInterval wakeAfter{};
    bool startsMonitor = false;
  };

  /// What the delegate is still to be told, in the order in which it came about.
  struct Messages {
    void tell(DeliveryDelegate& delegate);

    std::mutex mutex;
    std::vector<Effects::Told> waiting;
  };

  void takeOver(std::vector<OutboxEntry> entries, Effects& effects);
  void tell(Effects::Told told);
  DeliveryItemPtr makeItem(URLRequest request, Completion completion);
  void accept(const DeliveryItemPtr& item, Effects& effects);
  void complete(const DeliveryItemPtr& item, Ending ending);
  std::vector<Completion> settle(const DeliveryItemPtr& item, const Ending& ending,
                                 Effects& effects);
  std::optional<DropReason> reasonNotToWait(const DeliveryItem& item, Uptime now) const;
  void hold(const DeliveryItemPtr& item, const Judgement& judgement, Effects& effects);
  void beginOutage(Effects& effects);
  void endOutage(Effects& effects);
  void supersede(const DeliveryItem& item, Effects& effects);
  void drop(const DeliveryItemPtr& item, DropReason reason, Effects& effects);
  void giveUp(const DeliveryItemPtr& item, DropReason reason, Effects& effects);
  void pump(Effects& effects);
  void expire(Effects& effects);
  bool tryHeads(Effects& effects);
  void start(const DeliveryItemPtr& item, URLRequest request, bool isRetry, Effects& effects);
  void schedule(Effects& effects);
  void persist(Effects& effects);
  void perform(Effects& effects);
  void wake(Uptime at);
  void networkChanged(bool isAvailable);
  std::optional<std::string> customerToken() const;
  bool isGone(const DeliveryItem& item) const;
  bool isKept(const DeliveryItem& item) const;
  void replaceBy(const DeliveryItem& newer, Effects& effects);
  void loadOutbox(Effects& effects);
  void rewriteOutbox(Effects& effects);
  TimeInterval ageLimit(const DeliveryItem& item) const;

  const std::shared_ptr<URLSession> base_;
  const std::shared_ptr<SettingsStore> settings_;
  const std::shared_ptr<Clock> clock_;
  const std::shared_ptr<Log> log_;
  const std::shared_ptr<MainQueue> mainQueue_;
  const DeliveryOptions options_;
  const DeliveryParts parts_;

  mutable std::mutex mutex_;
  DeliveryLines lines_;
  RetryGate gate_;
  DeliveryAccount account_;
  std::int64_t nextNumber_ = 1;
  std::optional<std::string> appToken_;
  std::size_t retriesUnderWay_ = 0;
  /// When the earliest timer fires that was set and has not fired.
  std::optional<Uptime> wakeAt_;
  bool isOutage_ = false;
  bool isMonitoring_ = false;
  bool hasNetwork_ = true;
  /// Whether what an earlier process has left is known.
  bool isLoaded_ = false;
  /// The numbers of what the outbox may hold. While it cannot be written it lacks something of what
  /// waits, and has something that waits no more.
  std::set<std::int64_t> numbersInOutbox_;
  bool isOutboxStale_ = false;
  /// An outbox that fails is not tried before.
  Uptime nextOutboxTry_{};
  bool hasToldOfStorage_ = false;
  const std::shared_ptr<Messages> messages_ = std::make_shared<Messages>();
};

}  // namespace ovinta::platform::portable
