#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Date.h"
#include "platform/URLSession.h"
#include "platform/portable/delivery/ServiceRules.h"

namespace ovinta::platform::portable {

/// How a request ended: what a `URLSession::Completion` receives.
struct Ending {
  std::optional<std::string> data = {};
  std::optional<HTTPResponse> response = {};
  std::optional<TransportError> error = {};
};

/// What comes of an ending.
struct Judgement {
  enum class Verdict {
    /// The service has answered, whatever it says.
    answered,
    /// The request may be sent again, and had better be.
    tryAgain,
    /// It failed for good.
    failed
  };
  Verdict verdict = Verdict::failed;
  /// Whether the service itself asks to be left alone for a while, and how long at least.
  bool isPutOff = false;
  std::optional<TimeInterval> retryAfter = {};
};

/// Judges the ending of a request with those traits. `now` is the time of day, for a date that the
/// service names.
Judgement judge(const RequestTraits& traits, const Ending& ending, Date now);

/// The span that a `Retry-After` stands for, a number of seconds or a date; an hour at most. Absent
/// when it is neither.
std::optional<TimeInterval> readRetryAfter(std::string_view text, Date now);

}  // namespace ovinta::platform::portable
