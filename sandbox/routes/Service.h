#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Date.h"
#include "sandbox/domain/Feed.h"
#include "sandbox/domain/Journal.h"
#include "sandbox/domain/PushMailbox.h"
#include "sandbox/domain/SandboxClock.h"
#include "sandbox/domain/SandboxState.h"
#include "sandbox/domain/WireForms.h"
#include "sandbox/faults/Faults.h"
#include "sandbox/http/WaitingPlaces.h"
#include "sandbox/routes/RequestLog.h"

namespace ovinta::sandbox {

/// The service behind the routes. May be used from any thread.
class Service {
 public:
  /// `onFault` is told of each fault that is set, as by `Faults`.
  Service(std::uint64_t seed, std::function<platform::Date()> now, std::function<void()> onFault);

  /// Tells what happens here: "request" with its summary, "order" with {"order", "event"}, "push"
  /// with its record, "faults" when those in force have changed, and "reload".
  Feed feed;
  SandboxClock clock;
  SandboxState state;
  PushMailbox pushes;
  RequestLog requests;
  Faults faults;
  WaitingPlaces waiting;
  /// What has become of orders, as `World::news` tells it.
  Journal orderEvents{5000};
  /// The pushes that were sent: "time", "push_token", "payload" and the number of "listeners".
  Journal sentPushes;

  /// Sends a push.
  platform::Dictionary push(const std::string& pushToken, const platform::Dictionary& payload,
                            platform::Date now);

  /// Apps older than this version are told to upgrade; an empty text admits all.
  void setMinimumAppVersion(std::string version) {
    const std::lock_guard lock(mutex_);
    minimumAppVersion_ = std::move(version);
  }

  /// From now on `reset` leads to what holds at present.
  void keepAsStart() {
    state.keepAsStart();
    keepMinimumAppVersion();
  }

  /// Brings back the start and the time beneath, and forgets faults, pushes, requests that came and
  /// what has become of orders.
  void reset();

  /// Puts what the snapshot holds in place of all that is known, and forgets pushes and what has
  /// become of orders: of some it may not know. Answers why not, having changed nothing, when it is
  /// not valid.
  [[nodiscard]] std::optional<Refusal> restore(const platform::Dictionary& snapshot);
  /// The same, and from now on `reset` leads to it.
  [[nodiscard]] std::optional<Refusal> seed(const platform::Dictionary& snapshot);

  bool admitsAppVersion(std::string_view version) const {
    const std::lock_guard lock(mutex_);
    return !isOlderVersion(version, minimumAppVersion_);
  }

 private:
  void keepMinimumAppVersion() {
    const std::lock_guard lock(mutex_);
    startMinimumAppVersion_ = minimumAppVersion_;
  }

  void forgetHistory();

  mutable std::mutex mutex_;
  std::string minimumAppVersion_;
  std::string startMinimumAppVersion_;
};

}  // namespace ovinta::sandbox
