#include "platform/linux/notifications/StoredUserNotificationCenter.h"

#include <exception>
#include <system_error>
#include <utility>

namespace ovinta::platform::linuxos {
namespace {

using Requests = std::vector<UserNotificationRequest>;

/// Whether a store may hold something that another process has written. A file of which the system
/// does not tell counts as one, so that what it ails is logged when it is read.
bool hasFile(const std::optional<std::filesystem::path>& file) {
  std::error_code error;
  return file && (std::filesystem::exists(*file, error) || error);
}

/// Passes on what the user has clicked while the agent stood in for the application.
void takeClicks(NotificationStoreQueue& queue, const std::shared_ptr<MainQueue>& mainQueue,
                const std::function<void(const Dictionary&)>& onClicked) {
  queue.enqueue([mainQueue, onClicked](NotificationStore& store) {
    for (auto& userInfo : store.takeClicks()) {
      if (onClicked) mainQueue->async([onClicked, userInfo] { onClicked(userInfo); });
    }
  });
}

}  // namespace

StoredUserNotificationCenter::StoredUserNotificationCenter(const Services& services,
                                                           std::shared_ptr<dbus::Bus> sessionBus,
                                                           Options options)
    : options_(std::move(options)),
      log_(services.log),
      store_(std::make_shared<NotificationStoreQueue>(*services.operationQueues, options_.file,
                                                      services.log)) {
  std::shared_ptr<AgentContact> agent;
  if (const auto application = registration()) {
    agent = std::make_shared<AgentContact>(sessionBus, log_, *application, options_.usesAgent);
  }
  trigger_ = std::make_shared<NotificationTrigger>(
      services, std::move(sessionBus), options_.applicationID, store_,
      NotificationTrigger::Handlers{options_.onClicked, [agent = std::move(agent)](bool isArmed) {
                                      if (agent) agent->setArmed(isArmed);
                                    }});
  services.mainQueue->async([weak = std::weak_ptr(trigger_)] {
    if (const auto trigger = weak.lock()) trigger->setFollowing(true);
  });
  // A store takes a thread to look at, which an application without notifications never needs.
  if (hasFile(options_.file) || isRegisteredInVain()) review();
  const auto take = [store = store_, file = options_.file, queue = services.mainQueue,
                     onClicked = options_.onClicked] {
    if (hasFile(file)) takeClicks(*store, queue, onClicked);
  };
  take();
  activation_ = services.notificationCenter->addObserver(kApplicationDidBecomeActive,
                                                         [take](const Notification&) { take(); });
}

std::optional<RegisteredApplication> StoredUserNotificationCenter::registration() const {
  if (!options_.agents || !options_.file) return std::nullopt;
  return RegisteredApplication{options_.applicationID, *options_.file, options_.positionSource};
}

bool StoredUserNotificationCenter::isRegisteredInVain() const {
  const auto application = registration();
  return application && !options_.usesAgent && options_.agents->knows(*application);
}

void StoredUserNotificationCenter::review() {
  if (const auto application = registration()) {
    // The application registers before the agent, which the review may start or have look again,
    // looks for it.
    store_->enqueue([agents = *options_.agents, usesAgent = options_.usesAgent,
                     application = *application](NotificationStore& store) {
      if (!usesAgent) return agents.withdraw(application);
      if (!store.pending().empty()) agents.note(application);
    });
  }
  trigger_->review();
}

void StoredUserNotificationCenter::getPendingNotificationRequests(
    std::function<void(Requests)> completion) {
  store_->enqueue([log = log_, completion = std::move(completion)](NotificationStore& store) {
    Requests pending;
    try {
      pending = store.pending();
    } catch (const std::exception& failure) {
      log->write(std::string("Could not read the pending notifications: ") + failure.what());
    }
    completion(std::move(pending));
  });
}

void StoredUserNotificationCenter::removePendingNotificationRequests(
    std::vector<std::string> identifiers) {
  store_->enqueue([identifiers = std::move(identifiers)](NotificationStore& store) {
    store.remove(identifiers);
  });
  review();
}

void StoredUserNotificationCenter::add(
    UserNotificationRequest request,
    std::function<void(std::optional<UserNotificationError>)> completion) {
  store_->enqueue(
      [request = std::move(request), completion = std::move(completion)](NotificationStore& store) {
        std::optional<UserNotificationError> error;
        try {
          store.put(request);
        } catch (const std::exception& failure) {
          error = UserNotificationError{failure.what()};
        }
        if (completion) completion(std::move(error));
      });
  review();
}

}  // namespace ovinta::platform::linuxos
