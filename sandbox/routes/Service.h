#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Date.h"
#include "sandbox/domain/PushMailbox.h"
#include "sandbox/domain/SandboxState.h"
#include "sandbox/domain/WireForms.h"
#include "sandbox/faults/Faults.h"
#include "sandbox/http/WaitingPlaces.h"
#include "sandbox/routes/KeptAnswers.h"
#include "sandbox/routes/RequestLog.h"

namespace ovinta::sandbox {

/// The service behind the routes. May be used from any thread.
class Service {
 public:
  /// `onFault` is told of each fault that is set, as by `Faults`.
  Service(std::uint64_t seed, const std::function<platform::Date()>& now,
          std::function<void()> onFault)
      : state(seed, now), faults(std::move(onFault), now) {}

  SandboxState state;
  PushMailbox pushes;
  RequestLog requests;
  Faults faults;
  KeptAnswers answers;
  WaitingPlaces waiting;

  /// Apps older than this version are told to upgrade; an empty text admits all.
  void setMinimumAppVersion(std::string version) {
    const std::lock_guard lock(mutex_);
    minimumAppVersion_ = std::move(version);
  }

  /// From now on `reset` leads to what holds at present.
  void keepAsStart() {
    state.keepAsStart();
    const std::lock_guard lock(mutex_);
    startMinimumAppVersion_ = minimumAppVersion_;
  }

  /// Brings back the start, and forgets faults, pushes that wait, requests that came and the
  /// answers that are kept for their repetition.
  void reset() {
    state.reset();
    pushes.clear();
    requests.clear();
    faults.clear();
    answers.clear();
    const std::lock_guard lock(mutex_);
    minimumAppVersion_ = startMinimumAppVersion_;
  }

  bool admitsAppVersion(std::string_view version) const {
    const std::lock_guard lock(mutex_);
    return !isOlderVersion(version, minimumAppVersion_);
  }

 private:
  mutable std::mutex mutex_;
  std::string minimumAppVersion_;
  std::string startMinimumAppVersion_;
};

}  // namespace ovinta::sandbox
