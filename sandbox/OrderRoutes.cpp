#include "sandbox/Orders.h"
#include "sandbox/Routes.h"

namespace ovinta::sandbox {

Answer listOrders(const Call& call) {
  return dataAnswer(call.service.state.act(
      [&](World& world, platform::Date) { return ordersOf(world, call.token); }));
}

Answer createOrder(const Call& call) {
  return answerFor(call.service.state.act([&](World& world, platform::Date now) {
    return createOrder(world, call.token, call.data, now);
  }));
}

Answer showOrder(const Call& call) {
  return answerFor(call.service.state.act(
      [&](World& world, platform::Date) { return findOrder(world, call.parameters[0]); }));
}

Answer claimOrder(const Call& call) {
  return answerFor(call.service.state.act([&](World& world, platform::Date now) {
    return claimOrder(world, call.token, call.parameters[0], call.data, now);
  }));
}

}  // namespace ovinta::sandbox
