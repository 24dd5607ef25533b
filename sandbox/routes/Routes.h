#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Value.h"
#include "sandbox/domain/Accounts.h"
#include "sandbox/domain/Refusal.h"
#include "sandbox/http/Answer.h"
#include "sandbox/routes/Service.h"

namespace ovinta::sandbox {

/// A request that has passed the checks of its route.
struct Call {
  Service& service;
  /// The customer's token; empty where the route needs no customer.
  std::string token;
  /// What the groups of the route's pattern matched, percent-decoded.
  std::vector<std::string> parameters;
  /// The items of the query, decoded.
  std::multimap<std::string, std::string> query;
  /// The record under "data" of the body; empty where the route takes none.
  platform::Dictionary data;
};

/// Who may use a route.
enum class Access {
  /// Anyone on this machine: the merchant's and tester's side.
  everyone,
  /// Apps with the right app token and a version that is still served.
  app,
  /// Such apps on behalf of a customer.
  customer
};

enum class Body { none, data };

struct Route {
  std::string_view method;
  /// A regular expression that the whole decoded path must match.
  std::string_view pattern;
  Access access;
  Body body;
  Answer (*handle)(const Call& call);
};

/// An endpoint as it is named to clients: the route's path with "ANY" for what it leaves open.
std::string endpointPath(const Route& route);

/// The number that the digits stand for; one that no record has when they are too many.
std::int64_t recordID(const std::string& digits);

/// All routes of the service.
std::span<const Route> routes();

/// What `action(World&, platform::Date now)` answers for the call's customer; 401 when the token is
/// nobody's. Judged under the action's own lock, since a reset may come after the earlier check.
template <class Action>
Answer answerForCustomer(const Call& call, Action action) {
  return call.service.state.act([&](World& world, platform::Date now) {
    return findCustomer(world, call.token) ? action(world, now) : Answer{.status = 401};
  });
}

// Apps
Answer showAppInfo(const Call& call);

// Customers
Answer createCustomer(const Call& call);
Answer showCustomer(const Call& call);
Answer updateCustomer(const Call& call);
Answer signUp(const Call& call);
Answer signIn(const Call& call);
Answer requestPasswordReset(const Call& call);
Answer setNewPassword(const Call& call);

// Sites
Answer listSites(const Call& call);

// Orders
Answer listOrders(const Call& call);
Answer createOrder(const Call& call);
Answer showOrder(const Call& call);
Answer claimOrder(const Call& call);
Answer createEvent(const Call& call);

// The console
Answer leadToConsole(const Call& call);
Answer showConsole(const Call& call);
Answer showConsoleFile(const Call& call);

// Merchant's side
Answer listAllOrders(const Call& call);
Answer offerOrder(const Call& call);
Answer listOrderEvents(const Call& call);
Answer moveOrder(const Call& call);
Answer estimateArrival(const Call& call);
Answer listenForPushes(const Call& call);
Answer listPushes(const Call& call);
Answer sendPush(const Call& call);

// Tester's side
Answer watchAll(const Call& call);
Answer listCustomers(const Call& call);
Answer listAllSites(const Call& call);
Answer listRequests(const Call& call);
Answer showRequest(const Call& call);
Answer clearRequests(const Call& call);
Answer showSnapshot(const Call& call);
Answer restoreSnapshot(const Call& call);
Answer seedAll(const Call& call);
Answer keepAsStart(const Call& call);
Answer showClock(const Call& call);
Answer setClock(const Call& call);
Answer advanceClock(const Call& call);
Answer resetClock(const Call& call);
Answer resetAll(const Call& call);
Answer demandAppVersion(const Call& call);
Answer admitAllAppVersions(const Call& call);

// Faults
Answer listFaults(const Call& call);
Answer listFaultKinds(const Call& call);
Answer setFault(const Call& call);
Answer clearFault(const Call& call);
Answer clearFaults(const Call& call);

}  // namespace ovinta::sandbox
