#include "sandbox/routes/Routes.h"

namespace ovinta::sandbox {
namespace {

constexpr int kAccepted = 202;

}  // namespace

Answer createCustomer(const Call& call) {
  return answerFor(call.service.state.act(
      [&](World& world, platform::Date) { return createCustomer(world, call.data); }));
}

Answer showCustomer(const Call& call) {
  return answerForCustomer(call, [&](const World& world, platform::Date) {
    return dataAnswer(shownCustomer(*findCustomer(world, call.token)));
  });
}

Answer updateCustomer(const Call& call) {
  return answerForCustomer(call, [&](World& world, platform::Date) {
    return answerFor(updateCustomer(world, call.token, call.data));
  });
}

Answer signUp(const Call& call) {
  return answerForCustomer(call, [&](World& world, platform::Date) {
    return answerFor(signUp(world, call.token, call.data));
  });
}

Answer signIn(const Call& call) {
  return answerFor(call.service.state.act(
      [&](World& world, platform::Date) { return signIn(world, call.data); }));
}

Answer requestPasswordReset(const Call& call) {
  Answer answer = answerFor(call.service.state.act(
      [&](World& world, platform::Date) { return requestPasswordReset(world, call.data); }));
  if (answer.status == 200) answer.status = kAccepted;
  return answer;
}

Answer setNewPassword(const Call& call) {
  return answerFor(call.service.state.act(
      [&](World& world, platform::Date) { return setNewPassword(world, call.data); }));
}

}  // namespace ovinta::sandbox
