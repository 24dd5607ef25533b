#include "sandbox/routes/Service.h"

#include "platform/JSON.h"
#include "sandbox/domain/Orders.h"

namespace ovinta::sandbox {

using platform::Dictionary;

namespace {

constexpr std::size_t kMostPushes = 1000;

}  // namespace

Service::Service(std::uint64_t seed, std::function<platform::Date()> now,
                 std::function<void()> onFault)
    : clock(std::move(now)),
      state(
          seed, [this] { return clock.now(); },
          [this](const World& world, const Dictionary& news) {
            Dictionary event = orderEvents.add(news);
            if (!feed.isHeard()) return;
            const auto id = *platform::find<std::int64_t>(event, "order_id");
            feed.tell("order", {{"order", inspectedOrder(world, id)}, {"event", std::move(event)}});
          }),
      requests([this](const Dictionary& summary) { feed.tell("request", summary); }),
      faults(seed, std::move(onFault), [this] { feed.tell("faults"); }),
      sentPushes(kMostPushes, [this](const Dictionary& push) { feed.tell("push", push); }) {}

Dictionary Service::push(const std::string& pushToken, const Dictionary& payload,
                         platform::Date now) {
  const std::size_t listeners = pushes.send(pushToken, platform::writeJSON(payload));
  return sentPushes.add({{"time", dateText(now)},
                         {"push_token", pushToken},
                         {"payload", payload},
                         {"listeners", listeners}});
}

void Service::reset() {
  clock.reset();
  state.reset([this] { forgetHistory(); });
  requests.clear();
  faults.clear();
  {
    const std::lock_guard lock(mutex_);
    minimumAppVersion_ = startMinimumAppVersion_;
  }
  feed.tell("reload");
}

std::optional<Refusal> Service::restore(const Dictionary& snapshot) {
  return state.restore(snapshot, [this] {
    forgetHistory();
    feed.tell("reload");
  });
}

std::optional<Refusal> Service::seed(const Dictionary& snapshot) {
  return state.seed(snapshot, [this] {
    keepMinimumAppVersion();
    forgetHistory();
    feed.tell("reload");
  });
}

void Service::forgetHistory() {
  pushes.clear();
  sentPushes.clear();
  orderEvents.clear();
}

}  // namespace ovinta::sandbox
