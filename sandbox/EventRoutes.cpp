#include "sandbox/Orders.h"
#include "sandbox/Routes.h"

namespace ovinta::sandbox {

Answer createEvent(const Call& call) {
  return answerFor(call.service.state.act([&](World& world, platform::Date now) {
    return addEvent(world, call.token, call.data, now);
  }));
}

}  // namespace ovinta::sandbox
