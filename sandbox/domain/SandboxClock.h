#pragma once

#include <functional>
#include <mutex>
#include <string_view>
#include <utility>

#include "platform/Date.h"
#include "platform/Value.h"
#include "sandbox/domain/Refusal.h"

namespace ovinta::sandbox {

/// The time that the service goes by: that of the clock beneath it, moved by as much as testers
/// want. May be used from any thread.
class SandboxClock {
 public:
  /// `beneath` is called from the threads that call the other functions, never under a lock.
  explicit SandboxClock(std::function<platform::Date()> beneath) : beneath_(std::move(beneath)) {}

  platform::Date now() const;

  /// What the clock shows, as testers get to see it: "now", and "ahead_seconds", by how much it
  /// differs from the clock beneath it.
  platform::Dictionary shown() const;

  // Each answers what is shown afterwards, or why nothing has changed. A time is of the years 1970
  // to 9899: what the service reckons from it can still be written.

  /// Has the clock show the time under "now" and go on from it.
  Outcome set(const platform::Dictionary& record);

  /// Moves the clock on by the number under "seconds", 0 or more.
  Outcome advance(const platform::Dictionary& record);

  /// The time of the clock beneath holds again.
  void reset();

 private:
  Outcome moveTo(platform::Date time, platform::Date beneath, std::string_view field);

  const std::function<platform::Date()> beneath_;
  mutable std::mutex mutex_;
  platform::TimeInterval ahead_{0};
};

}  // namespace ovinta::sandbox
