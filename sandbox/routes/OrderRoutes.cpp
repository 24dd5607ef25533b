#include "sandbox/domain/Orders.h"
#include "sandbox/routes/Routes.h"

namespace ovinta::sandbox {

Answer listOrders(const Call& call) {
  return answerForCustomer(call, [&](const World& world, platform::Date) {
    return dataAnswer(ordersOf(world, call.token));
  });
}

Answer createOrder(const Call& call) {
  return answerForCustomer(call, [&](World& world, platform::Date now) {
    return answerFor(createOrder(world, call.token, call.data, now));
  });
}

Answer showOrder(const Call& call) {
  return answerFor(call.service.state.act(
      [&](World& world, platform::Date) { return findOrder(world, call.parameters[0]); }));
}

Answer claimOrder(const Call& call) {
  return answerForCustomer(call, [&](World& world, platform::Date now) {
    return answerFor(claimOrder(world, call.token, call.parameters[0], call.data, now));
  });
}

Answer createEvent(const Call& call) {
  return answerForCustomer(call, [&](World& world, platform::Date now) {
    return answerFor(addEvent(world, call.token, call.data, now));
  });
}

}  // namespace ovinta::sandbox
