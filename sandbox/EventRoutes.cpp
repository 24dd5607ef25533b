#include "sandbox/Routes.h"

namespace ovinta::sandbox {

Answer createEvent(const Call& call) {
  return answerFor(call.service.state.addEvent(call.token, call.data));
}

}  // namespace ovinta::sandbox
