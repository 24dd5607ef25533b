#include "sandbox/Routes.h"

namespace ovinta::sandbox {

Answer listOrders(const Call& call) { return dataAnswer(call.service.state.orders(call.token)); }

Answer createOrder(const Call& call) {
  return answerFor(call.service.state.createOrder(call.token, call.data));
}

Answer updateOrder(const Call& call) {
  return answerFor(call.service.state.updateOrder(call.token, call.parameters[0], call.data));
}

}  // namespace ovinta::sandbox
