#include "sandbox/domain/Accounts.h"
#include "sandbox/domain/Snapshot.h"
#include "sandbox/routes/Routes.h"

namespace ovinta::sandbox {

Answer listCustomers(const Call& call) {
  return dataAnswer(call.service.state.act(
      [](const World& world, platform::Date) { return inspectedCustomers(world); }));
}

Answer listRequests(const Call& call) { return dataAnswer(call.service.requests.list()); }

Answer clearRequests(const Call& call) {
  call.service.requests.clear();
  return dataAnswer(platform::Dictionary{});
}

Answer showSnapshot(const Call& call) {
  return dataAnswer(
      call.service.state.act([](const World& world, platform::Date) { return snapshotOf(world); }));
}

Answer restoreSnapshot(const Call& call) {
  const auto refused = call.service.state.restore(call.data);
  if (refused) return answerFor(*refused);
  // The pushes that wait, and the answers that are kept, tell of orders that the snapshot may not
  // hold.
  call.service.pushes.clear();
  call.service.answers.clear();
  return showSnapshot(call);
}

Answer resetAll(const Call& call) {
  call.service.reset();
  return dataAnswer(platform::Dictionary{});
}

Answer demandAppVersion(const Call& call) {
  if (!isVersion(call.parameters[0])) {
    return answerFor(invalid("version", "must be numbers joined by dots"));
  }
  call.service.setMinimumAppVersion(call.parameters[0]);
  return dataAnswer(platform::Dictionary{{"minimum_app_version", call.parameters[0]}});
}

Answer admitAllAppVersions(const Call& call) {
  call.service.setMinimumAppVersion({});
  return dataAnswer(platform::Dictionary{});
}

}  // namespace ovinta::sandbox
