#include <charconv>
#include <cstdint>

#include "platform/JSON.h"
#include "sandbox/console/ConsolePage.h"
#include "sandbox/domain/Accounts.h"
#include "sandbox/domain/Orders.h"
#include "sandbox/domain/WireForms.h"
#include "sandbox/routes/Routes.h"

namespace ovinta::sandbox {
namespace {

/// The number that the digits stand for; one that no order has when they are too many.
std::int64_t orderID(const std::string& digits) {
  std::int64_t id = -1;
  std::from_chars(digits.data(), digits.data() + digits.size(), id);
  return id;
}

/// What a push notification about the order carries: its identifier and states and, when it has
/// one, the arrival estimate; texts only.
platform::Dictionary pushPayload(const platform::Dictionary& order) {
  platform::Dictionary payload = {
      {"order_id", std::to_string(*platform::find<std::int64_t>(order, "id"))},
      {"order_state", order.find("state")->second},
      {"customer_state", order.find("customer_state")->second}};
  if (const auto* eta = platform::find<std::string>(order, "eta_at")) {
    payload.emplace("eta_at", pushDateText(*eta));
  }
  return payload;
}

void push(const platform::Dictionary& order, Service& service) {
  const auto* pushToken = platform::find<std::string>(order, "push_token");
  if (!pushToken || pushToken->empty()) return;
  service.pushes.send(*pushToken, platform::writeJSON(pushPayload(order)));
}

}  // namespace

Answer showConsole(const Call& call) {
  ConsoleView view = call.service.state.act([](const World& world, platform::Date) {
    return ConsoleView{.orders = allOrders(world),
                       .customers = inspectedCustomers(world),
                       .requests = {},
                       .sites = allSites(world.sites)};
  });
  view.requests = call.service.requests.list();
  return {.contentType = "text/html; charset=utf-8", .body = consolePage(view)};
}

Answer listAllOrders(const Call& call) {
  return dataAnswer(
      call.service.state.act([](World& world, platform::Date) { return allOrders(world); }));
}

Answer offerOrder(const Call& call) {
  return answerFor(call.service.state.act(
      [&](World& world, platform::Date now) { return offerOrder(world, call.data, now); }));
}

Answer moveOrder(const Call& call) {
  Outcome outcome = call.service.state.act([&](World& world, platform::Date now) {
    Outcome result = moveOrder(world, orderID(call.parameters[0]), call.parameters[1], now);
    // Sent within the action, so that pushes come in the order of the moves.
    if (result) push(*result, call.service);
    return result;
  });
  return answerFor(std::move(outcome));
}

Answer listenForPushes(const Call& call) {
  auto place = call.service.waiting.take();
  if (!place) return tooManyWait();
  return {.contentType = "text/event-stream",
          .headers = {{"Cache-Control", "no-store"}},
          .pushes = call.service.pushes.listen(call.parameters[0]),
          .place = std::move(place)};
}

}  // namespace ovinta::sandbox
