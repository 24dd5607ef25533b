#include "sandbox/routes/Service.h"

#include "platform/JSON.h"
#include "sandbox/domain/Orders.h"

namespace ovinta::sandbox {

using platform::Dictionary;

Service::Service(std::uint64_t seed, std::function<platform::Date()> now,
                 std::function<void()> onFault)
    : clock(std::move(now)),
      state(
          seed, [this] { return clock.now(); },
          [this](const World& world, const Dictionary& news) {
            Dictionary event = news;
            event.insert_or_assign("id", orderEvents.add(news));
            if (!feed.isHeard()) return;
            const auto id = *platform::find<std::int64_t>(news, "order_id");
            feed.tell("order", {{"order", inspectedOrder(world, id)}, {"event", std::move(event)}});
          }),
      requests([this](const Dictionary& summary) { feed.tell("request", summary); }),
      faults(seed, std::move(onFault), [this] { feed.tell("faults"); }) {}

Dictionary Service::push(const std::string& pushToken, const Dictionary& payload,
                         platform::Date now) {
  const std::size_t listeners = pushes.send(pushToken, platform::writeJSON(payload));
  Dictionary record = {{"time", dateText(now)},
                       {"push_token", pushToken},
                       {"payload", payload},
                       {"listeners", listeners}};
  record.insert_or_assign("id", sentPushes.add(record));
  feed.tell("push", record);
  return record;
}

void Service::reset() {
  clock.reset();
  state.reset();
  forgetHistory();
  requests.clear();
  faults.clear();
  {
    const std::lock_guard lock(mutex_);
    minimumAppVersion_ = startMinimumAppVersion_;
  }
  feed.tell("reload");
}

std::optional<Refusal> Service::restore(const Dictionary& snapshot) {
  if (auto refused = state.restore(snapshot)) return refused;
  forgetHistory();
  feed.tell("reload");
  return std::nullopt;
}

void Service::forgetHistory() {
  pushes.clear();
  sentPushes.clear();
  orderEvents.clear();
}

}  // namespace ovinta::sandbox
