#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Outbox.h"
#include "platform/SettingsStore.h"
#include "platform/URLSession.h"

// All that delivery knows of the service, of the requests that the library makes of it, and of the
// settings that the library keeps.
namespace ovinta::platform::portable {

/// The field that names an effect, so that the service has it once, however often it is asked.
inline constexpr std::string_view kKeyField = "Idempotency-Key";

/// The setting whose text is the token of the customer who is signed in.
inline constexpr std::string_view kCustomerTokenSetting = "Customer Token";

/// What an order event says of itself.
struct EventFacts {
  std::int64_t orderID = 0;
  std::string eventType;
  /// Whether a newer one of the same order makes it worthless while it waits.
  bool isPosition = false;
};

/// What a request is to delivery.
struct RequestTraits {
  /// Present for an order event.
  std::optional<EventFacts> event = {};
  /// Whether it may be sent again when nobody knows if the service has done what it asks for.
  bool isRepeatable = false;
};

RequestTraits traitsOf(const URLRequest& request);

/// What tells the customer whose token that is from others: a few bits of it, mixed. 0 for none.
std::uint32_t customerMark(std::optional<std::string_view> token);
/// That of the customer who sends the request.
std::uint32_t customerMark(const URLRequest& request);

/// The application's token that the request shows; absent where it has none.
std::optional<std::string> appTokenOf(const URLRequest& request);

/// Whether `withTokens` would have all that the request lacks.
bool hasTokens(const URLRequest& request, const std::optional<std::string>& customerToken,
               const std::optional<std::string>& appToken);

/// The request with the fields empty that carry tokens.
URLRequest withoutTokens(URLRequest request);

/// The entry as it may be kept.
OutboxEntry keptForm(OutboxEntry entry);

/// The request with those fields filled in that are empty; absent when a token is missing.
std::optional<URLRequest> withTokens(URLRequest request,
                                     const std::optional<std::string>& customerToken,
                                     const std::optional<std::string>& appToken);

/// Whether the change is to the token of the customer who is signed in.
bool changesCustomer(const SettingsStore::Changes& changes);

}  // namespace ovinta::platform::portable
