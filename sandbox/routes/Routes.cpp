#include "sandbox/routes/Routes.h"

#include <array>

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
    {"PUT", "/sandbox/faults", Access::everyone, Body::data, setFaultForAll},
    {"DELETE", "/sandbox/faults", Access::everyone, Body::none, clearFaults},
    {"PUT", "/sandbox/faults/([A-Z]+)(/.+)", Access::everyone, Body::data, setFault},
    {"DELETE", "/sandbox/faults/([A-Z]+)(/.+)", Access::everyone, Body::none, clearFault},
});

}  // namespace

std::span<const Route> routes() { return kRoutes; }

}  // namespace ovinta::sandbox
