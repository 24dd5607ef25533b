#include "sandbox/Routes.h"

namespace ovinta::sandbox {

Answer createCustomer(const Call& call) {
  return answerFor(call.service.state.createCustomer(call.data));
}

Answer showCustomer(const Call& call) {
  return dataAnswer(*call.service.state.customer(call.token));
}

}  // namespace ovinta::sandbox
