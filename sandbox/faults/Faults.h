#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Date.h"
#include "platform/Value.h"
#include "sandbox/domain/SeededGenerator.h"
#include "sandbox/faults/FaultKind.h"
#include "sandbox/http/WakeSignal.h"

namespace ovinta::sandbox {

struct Route;

/// A fault as one request meets it.
struct Fault {
  const FaultKind* kind;
  platform::Dictionary settings;
  /// Raised when the endpoint is told to behave, or to misbehave otherwise.
  std::shared_ptr<const WakeSignal> end;
};

/// Which endpoints misbehave, how, when, and how often. May be used from any thread.
class Faults {
 public:
  /// `onSet` is called on the thread of each `set`, before that returns; `onChange` likewise of all
  /// that changes what is in force, or the count that is left, but for the passing of time. `now`
  /// is called on the threads that call the other functions. Chance follows from the seed.
  Faults(std::uint64_t seed, std::function<void()> onSet, std::function<void()> onChange,
         std::function<platform::Date()> now)
      : onSet_(std::move(onSet)),
        onChange_(std::move(onChange)),
        now_(std::move(now)),
        chance_(seed) {}

  /// Has the endpoint, or every one that has no fault of its own in force where it is null,
  /// misbehave in place of what it did before. `record` must be free of `faultErrors` and is listed
  /// as it is.
  void set(const Route* endpoint, platform::Dictionary record);

  /// Has all endpoints, or those that a fault was set for, behave again, and wakes the requests
  /// that a fault holds.
  void clear();
  void clear(const Route* endpoint);

  /// Whether any endpoint misbehaves, or will, or did until its time was over and was not asked
  /// since.
  bool areInForce() const;

  /// The records of the faults that are in force or to come, the one of all endpoints first, the
  /// others in the order of the routes, each with the count and the time that is left.
  platform::List list() const;

  /// The fault for one request to the endpoint, one for apps, which counts as one if it strikes.
  std::optional<Fault> take(const Route& endpoint);

 private:
  struct Entry {
    platform::Dictionary record;
    /// Long ago for a fault without times.
    platform::Date begin;
    /// From then on it strikes no request.
    platform::Date end;
    /// The requests that have come since it was set.
    std::int64_t requests = 0;
  };
  using Entries = std::map<const Route*, Entry>;

  /// Whether the fault strikes the request that has come last.
  bool strikes(const Entry& entry);
  /// Wakes the requests that a fault of the endpoint holds, which may outlast the fault's entry.
  void wake(const Route* endpoint);
  /// The time by the service's clock, which is not asked as long as no fault depends on it.
  platform::Date now() const;
  Fault strike(Entries::iterator entry);

  const std::function<void()> onSet_;
  const std::function<void()> onChange_;
  const std::function<platform::Date()> now_;
  mutable std::mutex mutex_;
  SeededGenerator chance_;
  /// Null stands for all endpoints.
  Entries entries_;
  std::map<const Route*, std::shared_ptr<WakeSignal>> ends_;
};

/// The complaints about a fault's record by field name, empty when it is sound: "fault" must name a
/// kind, the settings for how often and when are optional, and nothing else is allowed but those of
/// the kind.
platform::Dictionary faultErrors(const platform::Dictionary& record);

/// All that a fault's record can hold: the "kinds", each with its "settings", and those for how
/// "often", each with "name", "type" and whether it is "required".
platform::Dictionary faultCatalogue();

}  // namespace ovinta::sandbox
