#include <utility>

#include "platform/JSON.h"
#include "sandbox/domain/Orders.h"
#include "sandbox/domain/WireForms.h"
#include "sandbox/routes/Routes.h"

namespace ovinta::sandbox {
namespace {

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

void push(const platform::Dictionary& order, Service& service, platform::Date now) {
  const auto* pushToken = platform::find<std::string>(order, "push_token");
  if (!pushToken || pushToken->empty()) return;
  service.push(*pushToken, pushPayload(order), now);
}

/// Changes an order by `change(World&, platform::Date now)`, and tells its device.
template <class Change>
Answer changeOrder(const Call& call, Change change) {
  Outcome outcome = call.service.state.act([&](World& world, platform::Date now) {
    Outcome result = change(world, now);
    // Sent within the action, so that pushes come in the order of the changes.
    if (result) push(*result, call.service, now);
    return result;
  });
  return answerFor(std::move(outcome));
}

/// What is sent is kept, and any number of bytes would be more than a device takes.
constexpr std::size_t kLongestPayload = 64 * 1024;

Complaint checkPayload(const platform::Value& value) {
  if (!value.as<platform::Dictionary>()) return "must be a record";
  return platform::writeJSON(value).size() <= kLongestPayload
             ? std::nullopt
             : Complaint("must not be longer than 65536 bytes");
}

constexpr std::array<FieldRule, 2> kPushRules = {
    {{"push_token", checkFilledText, true}, {"payload", checkPayload, true}}};

}  // namespace

Answer listAllOrders(const Call& call) {
  return dataAnswer(
      call.service.state.act([](World& world, platform::Date) { return allOrders(world); }));
}

Answer listOrderEvents(const Call& call) {
  const std::int64_t id = recordID(call.parameters[0]);
  const bool isKnown = call.service.state.act(
      [&](const World& world, platform::Date) { return world.orders.contains(id); });
  if (!isKnown) return answerFor(unknownOrder());
  platform::List events = call.service.orderEvents.list();
  std::erase_if(events, [&](const platform::Value& event) {
    return event.as<platform::Dictionary>()->find("order_id")->second != platform::Value(id);
  });
  return dataAnswer(std::move(events));
}

Answer offerOrder(const Call& call) {
  return answerFor(call.service.state.act(
      [&](World& world, platform::Date now) { return offerOrder(world, call.data, now); }));
}

Answer moveOrder(const Call& call) {
  return changeOrder(call, [&](World& world, platform::Date now) {
    return moveOrder(world, recordID(call.parameters[0]), call.parameters[1], now);
  });
}

Answer estimateArrival(const Call& call) {
  return changeOrder(call, [&](World& world, platform::Date now) {
    return estimateArrival(world, recordID(call.parameters[0]), call.data, now);
  });
}

Answer listenForPushes(const Call& call) {
  auto place = call.service.waiting.take();
  if (!place) return tooManyWait();
  return streamAnswer(call.service.pushes.listen(call.parameters[0]), std::move(place));
}

Answer listPushes(const Call& call) { return dataAnswer(call.service.sentPushes.list()); }

Answer sendPush(const Call& call) {
  if (const auto refused = invalid(fieldErrors(call.data, kPushRules))) return answerFor(*refused);
  Service& service = call.service;
  return dataAnswer(service.push(*platform::find<std::string>(call.data, "push_token"),
                                 *platform::find<platform::Dictionary>(call.data, "payload"),
                                 service.state.now()));
}

}  // namespace ovinta::sandbox
