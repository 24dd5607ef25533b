#include "sandbox/domain/Orders.h"
#include "sandbox/routes/Routes.h"

namespace ovinta::sandbox {

Answer createEvent(const Call& call) {
  return answerForCustomer(call, [&](World& world, platform::Date now) {
    return answerFor(addEvent(world, call.token, call.data, now));
  });
}

}  // namespace ovinta::sandbox
