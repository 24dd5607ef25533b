#include "sandbox/Routes.h"

#include <array>
#include <utility>

#include "platform/JSON.h"
#include "sandbox/Envelope.h"
#include "sandbox/Validation.h"

namespace ovinta::sandbox {
namespace {

constexpr auto kRoutes = std::to_array<Route>({
    {"GET", "/m/v1/app", Access::app, Body::none, showAppInfo},
    {"POST", "/m/v1/customer", Access::app, Body::data, createCustomer},
    {"GET", "/m/v1/customer", Access::customer, Body::none, showCustomer},
    {"PATCH", "/m/v1/customer", Access::customer, Body::data, updateCustomer},
    {"PATCH", "/m/v1/customer/sign_up", Access::customer, Body::data, signUp},
    {"POST", "/m/v1/customer/sign_in", Access::app, Body::data, signIn},
    // Behind a base URL that ends with a slash, these paths begin with two.
    {"POST", "/{1,2}m/v1/customer/password", Access::app, Body::data, requestPasswordReset},
    {"PATCH", "/{1,2}m/v1/customer/password", Access::app, Body::data, setNewPassword},
    {"GET", "/m/v1/sites", Access::app, Body::none, listSites},
    {"GET", "/m/v1/orders", Access::customer, Body::none, listOrders},
    {"POST", "/m/v1/orders", Access::customer, Body::data, createOrder},
    {"GET", "/m/v1/orders/([^/]+)/edit", Access::app, Body::none, showOrder},
    {"PUT", "/m/v1/orders/([^/]+)", Access::customer, Body::data, claimOrder},
    {"POST", "/m/v1/events", Access::customer, Body::data, createEvent},
    {"GET", "/sandbox/?", Access::everyone, Body::none, showConsole},
    {"GET", "/sandbox/orders", Access::everyone, Body::none, listAllOrders},
    {"POST", "/sandbox/orders", Access::everyone, Body::data, offerOrder},
    {"POST", "/sandbox/orders/(\\d+)/([^/]+)", Access::everyone, Body::none, moveOrder},
    {"GET", "/sandbox/pushes/(.+)", Access::everyone, Body::none, listenForPushes},
    {"GET", "/sandbox/customers", Access::everyone, Body::none, listCustomers},
    {"GET", "/sandbox/requests", Access::everyone, Body::none, listRequests},
    {"DELETE", "/sandbox/requests", Access::everyone, Body::none, clearRequests},
    {"GET", "/sandbox/snapshot", Access::everyone, Body::none, showSnapshot},
    {"PUT", "/sandbox/snapshot", Access::everyone, Body::data, restoreSnapshot},
    {"POST", "/sandbox/reset", Access::everyone, Body::none, resetAll},
    {"PUT", "/sandbox/minimum-app-version/([^/]+)", Access::everyone, Body::none, demandAppVersion},
    {"DELETE", "/sandbox/minimum-app-version", Access::everyone, Body::none, admitAllAppVersions},
    {"GET", "/sandbox/faults", Access::everyone, Body::none, listFaults},
    {"DELETE", "/sandbox/faults", Access::everyone, Body::none, clearFaults},
    {"PUT", "/sandbox/faults/([A-Z]+)(/.+)", Access::everyone, Body::data, setFault},
    {"DELETE", "/sandbox/faults/([A-Z]+)(/.+)", Access::everyone, Body::none, clearFault},
});

int statusOf(Refusal::Kind kind) {
  switch (kind) {
    case Refusal::Kind::invalid:
      return 422;
    case Refusal::Kind::unauthorized:
      return 401;
    case Refusal::Kind::unknown:
      return 404;
    case Refusal::Kind::gone:
      return 410;
    case Refusal::Kind::impossible:
      return 409;
  }
  return 500;
}

}  // namespace

std::span<const Route> routes() { return kRoutes; }

bool isTesters(std::string_view path) {
  return path == "/sandbox" || path.starts_with("/sandbox/");
}

Answer objectAnswer(const platform::Dictionary& object) {
  return {.body = platform::writeJSON(object)};
}

Answer dataAnswer(platform::Value value) { return {.body = enveloped("data", std::move(value))}; }

Answer answerFor(Outcome outcome) {
  if (const auto* refusal = std::get_if<Refusal>(&outcome)) return answerFor(*refusal);
  return dataAnswer(std::get<platform::Dictionary>(std::move(outcome)));
}

Answer answerFor(const Refusal& refusal) {
  Answer answer{.status = statusOf(refusal.kind)};
  if (!refusal.errors.empty()) answer.body = enveloped("errors", refusal.errors);
  return answer;
}

Answer errorAnswer(int status, std::string_view field, std::string_view complaint) {
  return {.status = status, .body = enveloped("errors", invalid(field, complaint).errors)};
}

Answer tooManyWait() {
  return errorAnswer(503, "requests", "that wait are too many, streams of pushes included");
}

}  // namespace ovinta::sandbox
