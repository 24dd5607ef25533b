#include "sandbox/routes/Routes.h"

#include <array>
#include <charconv>
#include <utility>

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
    {"GET", "/", Access::everyone, Body::none, leadToConsole},
    {"GET", "/sandbox/?", Access::everyone, Body::none, showConsole},
    {"GET", "/sandbox/console/([^/]+)", Access::everyone, Body::none, showConsoleFile},
    {"GET", "/sandbox/orders", Access::everyone, Body::none, listAllOrders},
    {"POST", "/sandbox/orders", Access::everyone, Body::data, offerOrder},
    {"GET", "/sandbox/orders/(\\d+)/events", Access::everyone, Body::none, listOrderEvents},
    {"POST", "/sandbox/orders/(\\d+)/eta", Access::everyone, Body::data, estimateArrival},
    {"POST", "/sandbox/orders/(\\d+)/([^/]+)", Access::everyone, Body::none, moveOrder},
    {"GET", "/sandbox/pushes", Access::everyone, Body::none, listPushes},
    {"POST", "/sandbox/pushes", Access::everyone, Body::data, sendPush},
    {"GET", "/sandbox/pushes/(.+)", Access::everyone, Body::none, listenForPushes},
    {"GET", "/sandbox/events", Access::everyone, Body::none, watchAll},
    {"GET", "/sandbox/sites", Access::everyone, Body::none, listAllSites},
    {"GET", "/sandbox/customers", Access::everyone, Body::none, listCustomers},
    {"GET", "/sandbox/requests", Access::everyone, Body::none, listRequests},
    {"GET", "/sandbox/requests/(\\d+)", Access::everyone, Body::none, showRequest},
    {"DELETE", "/sandbox/requests", Access::everyone, Body::none, clearRequests},
    {"GET", "/sandbox/snapshot", Access::everyone, Body::none, showSnapshot},
    {"PUT", "/sandbox/snapshot", Access::everyone, Body::data, restoreSnapshot},
    {"PUT", "/sandbox/seed", Access::everyone, Body::data, seedAll},
    {"POST", "/sandbox/seed", Access::everyone, Body::none, keepAsStart},
    {"GET", "/sandbox/clock", Access::everyone, Body::none, showClock},
    {"PUT", "/sandbox/clock", Access::everyone, Body::data, setClock},
    {"DELETE", "/sandbox/clock", Access::everyone, Body::none, resetClock},
    {"POST", "/sandbox/clock/advance", Access::everyone, Body::data, advanceClock},
    {"POST", "/sandbox/reset", Access::everyone, Body::none, resetAll},
    {"PUT", "/sandbox/minimum-app-version/([^/]+)", Access::everyone, Body::none, demandAppVersion},
    {"DELETE", "/sandbox/minimum-app-version", Access::everyone, Body::none, admitAllAppVersions},
    {"GET", "/sandbox/faults", Access::everyone, Body::none, listFaults},
    {"GET", "/sandbox/faults/kinds", Access::everyone, Body::none, listFaultKinds},
    {"DELETE", "/sandbox/faults", Access::everyone, Body::none, clearFaults},
    {"PUT", "/sandbox/faults/([A-Z]+)(/.+)", Access::everyone, Body::data, setFault},
    {"DELETE", "/sandbox/faults/([A-Z]+)(/.+)", Access::everyone, Body::none, clearFault},
});

}  // namespace

std::span<const Route> routes() { return kRoutes; }

std::string endpointPath(const Route& route) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 2> kPlain = {
      {{"/{1,2}", "/"}, {"([^/]+)", "ANY"}}};
  std::string path(route.pattern);
  for (const auto& [open, plain] : kPlain) {
    const auto at = path.find(open);
    if (at != std::string::npos) path.replace(at, open.size(), plain);
  }
  return path;
}

std::int64_t recordID(const std::string& digits) {
  std::int64_t id = -1;
  std::from_chars(digits.data(), digits.data() + digits.size(), id);
  return id;
}

}  // namespace ovinta::sandbox
