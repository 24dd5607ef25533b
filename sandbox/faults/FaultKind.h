#pragma once

#include <span>
#include <string>
#include <string_view>

#include "platform/Value.h"
#include "sandbox/domain/Validation.h"
#include "sandbox/http/Answer.h"

namespace ovinta::sandbox {

/// One way in which an endpoint can misbehave.
struct FaultKind {
  /// When a fault sets in: before the endpoint does its work, in its place, or after it.
  enum class Moment { before, instead, after };

  /// Where a redirecting fault can send its client.
  struct Place {
    /// Path and query of the request.
    std::string target;
    /// The service as the request names it; may be empty.
    std::string host;
    int port;
  };

  std::string_view name;
  Moment moment;
  std::span<const FieldRule> settings = {};
  /// Spoils the answer: the endpoint's own where the moment is `after`, else an empty one. Null
  /// where the moment is `before`.
  void (*spoil)(const platform::Dictionary& settings, const Place& place, Answer& answer) = nullptr;
  /// Whether the request holds a thread while it, or its client, waits.
  bool waits = false;
};

/// All kinds of faults.
std::span<const FaultKind> faultKinds();

}  // namespace ovinta::sandbox
