#include "sandbox/domain/Accounts.h"
#include "sandbox/domain/Snapshot.h"
#include "sandbox/routes/Routes.h"

namespace ovinta::sandbox {

Answer listCustomers(const Call& call) {
  return dataAnswer(call.service.state.act(
      [](const World& world, platform::Date) { return inspectedCustomers(world); }));
}

Answer listAllSites(const Call& call) {
  return dataAnswer(call.service.state.act(
      [](const World& world, platform::Date) { return allSites(world.sites); }));
}

Answer watchAll(const Call& call) {
  auto place = call.service.waiting.take();
  if (!place) return tooManyWait();
  return streamAnswer(call.service.feed.listen(), std::move(place));
}

Answer listRequests(const Call& call) {
  const RequestLog& requests = call.service.requests;
  return dataAnswer(call.query.contains("summary") ? requests.summaries() : requests.list());
}

Answer showRequest(const Call& call) {
  auto request = call.service.requests.find(recordID(call.parameters[0]));
  if (!request) return answerFor(refusal(Refusal::Kind::unknown, "id", "Id is of no request"));
  return dataAnswer(*std::move(request));
}

Answer clearRequests(const Call& call) {
  call.service.requests.clear();
  call.service.feed.tell("requests");
  return dataAnswer(platform::Dictionary{});
}

Answer showSnapshot(const Call& call) {
  return dataAnswer(
      call.service.state.act([](const World& world, platform::Date) { return snapshotOf(world); }));
}

Answer restoreSnapshot(const Call& call) {
  const auto refused = call.service.restore(call.data);
  return refused ? answerFor(*refused) : showSnapshot(call);
}

Answer seedAll(const Call& call) {
  const auto refused = call.service.seed(call.data);
  return refused ? answerFor(*refused) : showSnapshot(call);
}

Answer keepAsStart(const Call& call) {
  call.service.keepAsStart();
  return dataAnswer(platform::Dictionary{});
}

Answer showClock(const Call& call) { return dataAnswer(call.service.clock.shown()); }

Answer setClock(const Call& call) { return answerFor(call.service.clock.set(call.data)); }

Answer advanceClock(const Call& call) { return answerFor(call.service.clock.advance(call.data)); }

Answer resetClock(const Call& call) {
  call.service.clock.reset();
  return showClock(call);
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
