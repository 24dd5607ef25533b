#include "platform/linux/notifications/NotifyAgent.h"

#include <algorithm>
#include <utility>

namespace ovinta::platform::linux {

NotifyAgent::NotifyAgent(const Services& services, std::shared_ptr<dbus::Bus> sessionBus,
                         AgentRegistry registry, std::function<void()> onEnd)
    : services_(services),
      bus_(std::move(sessionBus)),
      registry_(std::move(registry)),
      onEnd_(std::move(onEnd)),
      daemon_(bus_) {
  daemon_.onLost([this] { end(); });
  daemon_.onNameChanged(std::string(kAgentBusName) + ".", [this] { review(); });
  takeName();
}

void NotifyAgent::takeName() {
  state_ = State::working;
  daemon_.requestName(kAgentBusName, BusDaemon::IfTaken::giveUp, [this](bool isOurs) {
    if (!isOurs) return end();
    review();
  });
}

void NotifyAgent::review() {
  for (auto& [name, client] : clients_) client.isReviewed = false;
  daemon_.listNames([this](const std::set<std::string>& names) { look(names); });
}

void NotifyAgent::look(const std::set<std::string>& names) {
  if (names.empty()) return end();
  for (const auto& application : registry_.applications()) {
    const std::string name = application.busName();
    auto found = clients_.find(name);
    if (found == clients_.end()) found = clients_.emplace(name, makeClient(application)).first;
    found->second.trigger->setFollowing(!names.contains(name));
  }
  for (auto& [name, client] : clients_) client.trigger->review();
  leaveWhenIdle();
}

NotifyAgent::Client NotifyAgent::makeClient(const RegisteredApplication& application) {
  Client client;
  client.store = std::make_shared<NotificationStoreQueue>(*services_.operationQueues,
                                                          application.store, services_.log);
  NotificationTrigger::Handlers handlers;
  handlers.onClick = [this, store = client.store,
                      id = application.applicationID](const Dictionary& userInfo) {
    store->enqueue([this, userInfo, id, queue = services_.mainQueue](NotificationStore& kept) {
      kept.addClick(userInfo);
      queue->async([this, id] { activate(id); });
    });
  };
  handlers.onReviewed = [this, name = application.busName()] { noteReviewed(name); };
  client.trigger = std::make_shared<NotificationTrigger>(services_, bus_, application.applicationID,
                                                         client.store, std::move(handlers));
  return client;
}

void NotifyAgent::activate(const std::string& applicationID) {
  if (!g_dbus_is_name(applicationID.c_str())) return;
  std::string path = "/" + applicationID;
  std::ranges::replace(path, '.', '/');
  std::ranges::replace(path, '-', '_');
  // Without such an application the click waits for it.
  bus_->call({.service = applicationID,
              .object = std::move(path),
              .interface = "org.freedesktop.Application",
              .method = "Activate",
              .arguments = dbus::arguments(dbus::Properties())},
             [](const dbus::Reply&) {});
}

void NotifyAgent::noteReviewed(const std::string& busName) {
  clients_.at(busName).isReviewed = true;
  leaveWhenIdle();
}

void NotifyAgent::leaveWhenIdle() {
  bool isIdle = true;
  for (const auto& [name, client] : clients_) {
    if (!client.isReviewed) return;
    isIdle = isIdle && !client.trigger->isArmed() && !client.trigger->isShowing();
  }
  if (state_ == State::lastLook) return isIdle ? end() : takeName();
  if (state_ == State::leaving || !isIdle) return;
  state_ = State::leaving;
  daemon_.releaseName(kAgentBusName, [this] {
    state_ = State::lastLook;
    review();
  });
}

void NotifyAgent::end() {
  if (const auto onEnd = std::exchange(onEnd_, nullptr)) onEnd();
}

}  // namespace ovinta::platform::linux
