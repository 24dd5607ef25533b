#include "platform/portable/delivery/Judgement.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>

namespace ovinta::platform::portable {
namespace {

using namespace std::chrono_literals;

/// The statuses by which a service, or what stands before it, asks to come again later. Whether the
/// request was carried out they leave open.
constexpr std::array kPuttingOff{429, 502, 503, 504};

constexpr TimeInterval kLongestRetryAfter = 1h;

constexpr std::array<std::string_view, 12> kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

std::optional<int> number(std::string_view text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool isWhole = error == std::errc() && end == text.data() + text.size() && value >= 0;
  return isWhole ? std::optional(value) : std::nullopt;
}

/// Reads "Sun, 06 Nov 1994 08:49:37 GMT".
std::optional<Date> httpDate(std::string_view text) {
  if (text.size() != 29 || !text.ends_with(" GMT")) return std::nullopt;
  const auto day = number(text.substr(5, 2));
  const auto month = std::ranges::find(kMonths, text.substr(8, 3));
  const auto year = number(text.substr(12, 4));
  const auto hour = number(text.substr(17, 2));
  const auto minute = number(text.substr(20, 2));
  const auto second = number(text.substr(23, 2));
  if (!day || month == kMonths.end() || !year || !hour || !minute || !second) return std::nullopt;
  const auto date = std::chrono::year(*year) / static_cast<int>(month - kMonths.begin() + 1) / *day;
  if (!date.ok()) return std::nullopt;
  return Date(std::chrono::sys_days(date)) + std::chrono::hours(*hour) +
         std::chrono::minutes(*minute) + std::chrono::seconds(*second);
}

}  // namespace

std::optional<TimeInterval> readRetryAfter(std::string_view text, Date now) {
  const bool isDigits =
      !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
  if (isDigits) {
    const auto seconds = number(text);  // One that does not fit is long.
    return seconds ? std::min<TimeInterval>(std::chrono::seconds(*seconds), kLongestRetryAfter)
                   : kLongestRetryAfter;
  }
  const auto date = httpDate(text);
  if (!date) return std::nullopt;
  return std::clamp<TimeInterval>(*date - now, 0s, kLongestRetryAfter);
}

Judgement judge(const RequestTraits& traits, const Ending& ending, Date now) {
  using Verdict = Judgement::Verdict;
  if (ending.error || !ending.response) {
    const auto failure = ending.error ? ending.error->failure : TransportFailure::unknown;
    const bool mayTry = failure == TransportFailure::notSent ||
                        (failure == TransportFailure::answerLost && traits.isRepeatable);
    return {.verdict = mayTry ? Verdict::tryAgain : Verdict::failed};
  }
  const bool isPutOff =
      std::ranges::find(kPuttingOff, ending.response->statusCode) != kPuttingOff.end();
  if (!isPutOff || !traits.isRepeatable) {
    return {.verdict = Verdict::answered, .isPutOff = isPutOff};
  }
  const auto field = ending.response->header("Retry-After");
  return {.verdict = Verdict::tryAgain,
          .isPutOff = true,
          .retryAfter = field ? readRetryAfter(*field, now) : std::nullopt};
}

}  // namespace ovinta::platform::portable
