#include "platform/linux/notifications/NotifyAgent.h"

#include <algorithm>
#include <utility>

namespace ovinta::platform::linuxos {

NotifyAgent::NotifyAgent(const Services& services, Location location,
                         std::shared_ptr<dbus::Bus> sessionBus, AgentRegistry registry,
                         std::function<void()> onEnd)
    : services_(services),
      location_(std::move(location)),
      bus_(std::move(sessionBus)),
      registry_(std::move(registry)),
      onEnd_(std::move(onEnd)),
      daemon_(bus_) {
  daemon_.onLost([this] { end(); });
  daemon_.onNameChanged(kAgentBusName, [this] { review(); });
  daemon_.requestName(kAgentBusName, dbus::BusDaemon::IfTaken::giveUp, [this](bool isOurs) {
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
  std::map<std::string, RegisteredApplication> registrations;
  for (auto& application : registry_.applications()) {
    registrations.emplace(application.busName(), std::move(application));
  }
  dismissAllBut(registrations);
  for (const auto& [name, application] : registrations) {
    if (!clients_.contains(name)) addClient(name, application);
    clients_.at(name).trigger->setFollowing(!names.contains(name));
  }
  for (auto& [name, client] : clients_) client.trigger->review();
  endWhenIdle();
}

void NotifyAgent::dismissAllBut(const std::map<std::string, RegisteredApplication>& registrations) {
  for (auto next = clients_.begin(); next != clients_.end();) {
    const auto entry = next++;
    const auto found = registrations.find(entry->first);
    if (found != registrations.end() && found->second == entry->second.registration) continue;
    entry->second.trigger->setFollowing(false);
    dismissed_.insert(clients_.extract(entry));
  }
  std::erase_if(dismissed_, [](const auto& entry) { return !entry.second.isBusy(); });
}

void NotifyAgent::addClient(const std::string& busName, const RegisteredApplication& application) {
  Client& client = clients_[busName];
  client.registration = application;
  client.application = std::make_shared<dbus::Service>(bus_, application.applicationID);
  client.store = std::make_shared<NotificationStoreQueue>(*services_.operationQueues,
                                                          application.store, services_.log);
  Services services = services_;
  services.location = location_(application);
  client.trigger = std::make_shared<NotificationTrigger>(
      services, bus_, application.applicationID, client.store,
      NotificationTrigger::Handlers{
          [this, &client](const Dictionary& userInfo) { passOn(userInfo, client); },
          [this, &client](bool /*isArmed*/) {
            client.isReviewed = true;
            endWhenIdle();
          }});
}

void NotifyAgent::passOn(const Dictionary& userInfo, Client& client) {
  ++client.clicks;
  client.store->enqueue([userInfo](NotificationStore& store) { store.addClick(userInfo); });
  client.store->enqueue([this, &client, weak = std::weak_ptr(client.application),
                         queue = services_.mainQueue](NotificationStore&) {
    queue->async([this, &client, weak] {
      if (!weak.expired()) activate(client);
    });
  });
}

void NotifyAgent::activate(Client& client) {
  const auto done = [this, &client](const dbus::Reply&) {
    --client.clicks;
    endWhenIdle();
  };
  // An application that the bus cannot start gets its click when somebody else starts it.
  const std::string& applicationID = client.registration.applicationID;
  if (!g_dbus_is_name(applicationID.c_str())) return done({});
  std::string path = "/" + applicationID;
  std::ranges::replace(path, '.', '/');
  std::ranges::replace(path, '-', '_');
  client.application->call(std::move(path), "org.freedesktop.Application", "Activate",
                           dbus::arguments(dbus::Properties()), done);
}

void NotifyAgent::endWhenIdle() {
  const auto isDone = [](const auto& entry) {
    const Client& client = entry.second;
    return client.isReviewed && !client.trigger->isArmed() && !client.isBusy();
  };
  const auto isBusy = [](const auto& entry) { return entry.second.isBusy(); };
  if (std::ranges::all_of(clients_, isDone) && std::ranges::none_of(dismissed_, isBusy)) end();
}

void NotifyAgent::end() {
  if (const auto onEnd = std::exchange(onEnd_, nullptr)) onEnd();
}

}  // namespace ovinta::platform::linuxos
