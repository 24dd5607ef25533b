#include "cli/device/ExchangeLog.h"

#include <algorithm>

namespace ovinta::cli {
namespace {

/// The path with a redemption code replaced by a word for it.
std::string endpointOf(const std::string& path) {
  constexpr std::string_view kOrder = "m/v1/orders/";
  return path.starts_with(kOrder) ? std::string(kOrder) + "<code>" : path;
}

}  // namespace

std::string describe(const Exchange& exchange) {
  std::string text = exchange.method + " " + exchange.path;
  if (!exchange.eventType.empty()) text += " " + exchange.eventType;
  if (!exchange.content.empty()) text += " (" + exchange.content + ")";
  return text + " -> " +
         (exchange.failure.empty() ? std::to_string(exchange.status) : exchange.failure);
}

void ExchangeLog::add(Exchange exchange) {
  const std::lock_guard lock(mutex_);
  exchanges_.push_back(std::move(exchange));
}

std::size_t ExchangeLog::succeeded(std::string_view method, std::string_view eventType,
                                   std::string_view content) const {
  const auto matches = [](std::string_view wanted, const std::string& text) {
    return wanted.empty() || wanted == text;
  };
  const std::lock_guard lock(mutex_);
  return static_cast<std::size_t>(std::ranges::count_if(exchanges_, [&](const Exchange& exchange) {
    return exchange.status == 200 && exchange.method == method &&
           matches(eventType, exchange.eventType) && matches(content, exchange.content);
  }));
}

std::size_t ExchangeLog::failed() const {
  const std::lock_guard lock(mutex_);
  return static_cast<std::size_t>(std::ranges::count_if(
      exchanges_, [](const Exchange& exchange) { return exchange.status / 100 != 2; }));
}

std::map<std::string, std::int64_t> ExchangeLog::counts() const {
  const std::lock_guard lock(mutex_);
  std::map<std::string, std::int64_t> counts;
  for (const Exchange& exchange : exchanges_) {
    std::string kind = exchange.method + " " + endpointOf(exchange.path);
    if (!exchange.eventType.empty()) kind += " " + exchange.eventType;
    ++counts[kind];
  }
  return counts;
}

std::optional<Exchange> ExchangeLog::last() const {
  const std::lock_guard lock(mutex_);
  return exchanges_.empty() ? std::nullopt : std::optional(exchanges_.back());
}

}  // namespace ovinta::cli
