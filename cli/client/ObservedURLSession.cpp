#include "cli/client/ObservedURLSession.h"

#include <cstdint>
#include <optional>

#include "platform/JSON.h"

namespace ovinta::cli {
namespace {

using platform::Dictionary;

/// The event in a request's body, if it is one.
std::optional<Dictionary> eventIn(const platform::URLRequest& request) {
  if (!request.url.text.ends_with("/events") || !request.body) return std::nullopt;
  const auto body = platform::parseJSON(*request.body);
  const auto* record = body ? body->as<Dictionary>() : nullptr;
  const auto* event = record ? platform::find<Dictionary>(*record, "data") : nullptr;
  return event ? std::optional(*event) : std::nullopt;
}

std::string contentOf(const Dictionary& event) {
  for (const char* key : {"customer_state", "state", "location_permission"}) {
    if (const auto* text = platform::find<std::string>(event, key)) return *text;
  }
  if (const auto* rating = platform::find<std::int64_t>(event, "customer_rating_value")) {
    return std::to_string(*rating);
  }
  const auto* beacons = platform::find<platform::List>(event, "beacons");
  return beacons && !beacons->empty() ? std::to_string(beacons->size()) + " beacon(s)" : "";
}

std::string pathOf(const std::string& url) {
  const std::size_t start = url.find("m/v1/");
  return start == std::string::npos ? url : url.substr(start);
}

Exchange describe(const platform::URLRequest& request) {
  Exchange exchange;
  exchange.method = request.method;
  exchange.path = pathOf(request.url.text);
  if (const auto event = eventIn(request)) {
    if (const auto* type = platform::find<std::string>(*event, "event_type")) {
      exchange.eventType = *type;
    }
    exchange.content = contentOf(*event);
  }
  return exchange;
}

}  // namespace

void ObservedURLSession::startDataTask(platform::URLRequest request, Completion completion) {
  Exchange exchange = describe(request);
  inner_->startDataTask(std::move(request),
                        [observed = observed_, exchange = std::move(exchange),
                         completion = std::move(completion)](auto data, auto response, auto error) {
                          Exchange finished = exchange;
                          // A head that comes without its body is no answer.
                          if (error) {
                            finished.failure = error->localizedDescription;
                          } else if (response) {
                            finished.status = response->statusCode;
                          }
                          {
                            const std::lock_guard lock(observed->mutex);
                            if (observed->observer) observed->observer(finished);
                          }
                          completion(std::move(data), std::move(response), std::move(error));
                        });
}

void ObservedURLSession::disconnect() {
  const std::lock_guard lock(observed_->mutex);
  observed_->observer = nullptr;
}

}  // namespace ovinta::cli
