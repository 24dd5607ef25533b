#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Value.h"
#include "sandbox/FaultKind.h"

namespace ovinta::sandbox {

struct Route;

/// A fault that strikes a request.
struct Fault {
  const FaultKind* kind;
  platform::Dictionary settings;
};

/// Which endpoints misbehave, how, and how often yet. May be used from any thread.
class Faults {
 public:
  /// Has the endpoint misbehave in place of what it did before. `record` must be free of
  /// `faultErrors` and is listed as it is.
  void set(const Route& endpoint, platform::Dictionary record);

  void clear();
  void clear(const Route& endpoint);

  /// The records of the faults in force, in the order of the routes, each with the count that is
  /// left.
  platform::List list() const;

  /// The fault for one request to the endpoint, which counts as one.
  std::optional<Fault> take(const Route& endpoint);

 private:
  mutable std::mutex mutex_;
  std::map<const Route*, platform::Dictionary> records_;
};

/// The complaints about a fault's record by field name, empty when it is sound: "fault" must name a
/// kind, "count" is optional, and nothing else is allowed but the settings of the kind.
platform::Dictionary faultErrors(const platform::Dictionary& record);

}  // namespace ovinta::sandbox
