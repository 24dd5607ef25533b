#include "platform/portable/delivery/ServiceRules.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/JSONText.h"

namespace ovinta::platform::portable {
namespace {

constexpr std::array<std::string_view, 3> kRepeatableMethods{"GET", "HEAD", "PUT"};

constexpr std::string_view kEventMethod = "POST";
constexpr std::string_view kEventPath = "/m/v1/events";
constexpr std::string_view kEventData = "data";
constexpr std::string_view kEventOrder = "order_id";
constexpr std::string_view kEventType = "event_type";
constexpr std::string_view kPosition = "location_update";

/// The field that shows the customer's token, and what stands there around it.
constexpr std::string_view kCustomerField = "Authorization";
constexpr std::string_view kBeforeToken = "Token token=\"";
constexpr std::string_view kAfterToken = "\"";

constexpr std::string_view kAppField = "App-Token";

std::string_view pathOf(const URL& url) {
  const std::string_view text = url.text;
  return text.substr(0, text.find_first_of("?#"));
}

std::optional<EventFacts> eventOf(const URLRequest& request) {
  if (request.method != kEventMethod || !pathOf(request.url).ends_with(kEventPath)) return {};
  const auto body = request.body ? parseJSON(*request.body) : std::nullopt;
  const auto* whole = body ? body->as<Dictionary>() : nullptr;
  const auto* data = whole ? find<Dictionary>(*whole, kEventData) : nullptr;
  const auto* orderID = data ? find<std::int64_t>(*data, kEventOrder) : nullptr;
  const auto* type = data ? find<std::string>(*data, kEventType) : nullptr;
  if (!orderID || !type) return {};
  return EventFacts{*orderID, *type, *type == kPosition};
}

const HeaderField* fieldOf(const URLRequest& request, std::string_view name) {
  const auto found = std::ranges::find(request.headers, name, &HeaderField::name);
  return found == request.headers.end() ? nullptr : &*found;
}

}  // namespace

RequestTraits traitsOf(const URLRequest& request) {
  RequestTraits traits;
  traits.event = eventOf(request);
  traits.isRepeatable = traits.event || std::ranges::find(kRepeatableMethods, request.method) !=
                                            kRepeatableMethods.end();
  return traits;
}

std::uint32_t customerMark(std::optional<std::string_view> token) {
  if (!token) return 0;
  std::uint32_t mark = 2'166'136'261U;
  for (const char character : *token) {
    mark = (mark ^ static_cast<unsigned char>(character)) * 16'777'619U;
  }
  return std::max(mark, 1U);
}

std::uint32_t customerMark(const URLRequest& request) {
  const auto* field = fieldOf(request, kCustomerField);
  if (!field) return 0;
  std::string_view text = field->value;
  if (!text.starts_with(kBeforeToken) || !text.ends_with(kAfterToken)) return 0;
  text.remove_prefix(kBeforeToken.size());
  text = text.substr(0, text.size() - std::min(text.size(), kAfterToken.size()));
  return customerMark(std::optional(text));
}

std::optional<std::string> appTokenOf(const URLRequest& request) {
  const auto* field = fieldOf(request, kAppField);
  return field && !field->value.empty() ? std::optional(field->value) : std::nullopt;
}

bool hasTokens(const URLRequest& request, const std::optional<std::string>& customerToken,
               const std::optional<std::string>& appToken) {
  const auto isThere = [&](std::string_view name, const std::optional<std::string>& token) {
    const auto* field = fieldOf(request, name);
    return !field || !field->value.empty() || token;
  };
  return isThere(kCustomerField, customerToken) && isThere(kAppField, appToken);
}

URLRequest withoutTokens(URLRequest request) {
  for (auto& field : request.headers) {
    if (field.name == kCustomerField || field.name == kAppField) field.value.clear();
  }
  return request;
}

OutboxEntry keptForm(OutboxEntry entry) {
  entry.request = withoutTokens(std::move(entry.request));
  return entry;
}

std::optional<URLRequest> withTokens(URLRequest request,
                                     const std::optional<std::string>& customerToken,
                                     const std::optional<std::string>& appToken) {
  if (!hasTokens(request, customerToken, appToken)) return std::nullopt;
  for (auto& [name, value] : request.headers) {
    if (!value.empty() || (name != kCustomerField && name != kAppField)) continue;
    const auto& token = name == kAppField ? appToken : customerToken;
    if (name == kAppField) {
      value = *token;
    } else {
      value.append(kBeforeToken).append(*token).append(kAfterToken);
    }
  }
  return request;
}

bool changesCustomer(const SettingsStore::Changes& changes) {
  return changes.contains(kCustomerTokenSetting);
}

}  // namespace ovinta::platform::portable
