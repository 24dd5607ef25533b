#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Services.h"
#include "platform/linux/notifications/AgentContact.h"
#include "platform/linux/notifications/NotificationTrigger.h"

namespace ovinta::platform::linuxos {

/// Keeps requests across restarts and shows them through the desktop's notification service when
/// the device crosses the border of their region. A request that is added while the device is
/// inside fires at the next entry, and so does one whose first known position lies inside. Without
/// a notification service a request stays pending until the next crossing. Destroyed on the main
/// thread.
class StoredUserNotificationCenter : public UserNotificationCenter {
 public:
  struct Options {
    std::string applicationID;
    /// The file that keeps the requests; without one they stay in memory.
    std::optional<std::filesystem::path> file = {};
    /// Where the application registers for the agent; absent where no agent can reach it.
    std::optional<AgentRegistry> agents = {};
    /// Whether the agent is to fire the requests while the application does not run.
    bool usesAgent = true;
    /// The source from which the agent is to have the position.
    PositionSource positionSource = PositionSource::automatic;
    /// Called on the main queue with the user info of each notification that the user clicks.
    std::function<void(const Dictionary&)> onClicked = {};
  };

  /// The centre uses main queue, operation queues, notification centre, location, geodesy and log
  /// of the services.
  StoredUserNotificationCenter(const Services& services, std::shared_ptr<dbus::Bus> sessionBus,
                               Options options);

  void getPendingNotificationRequests(
      std::function<void(std::vector<UserNotificationRequest>)> completion) override;
  void removePendingNotificationRequests(std::vector<std::string> identifiers) override;
  void add(UserNotificationRequest request,
           std::function<void(std::optional<UserNotificationError>)> completion) override;

 private:
  std::optional<RegisteredApplication> registration() const;
  /// Whether an earlier run of the application has registered for the agent that it does not use.
  bool isRegisteredInVain() const;
  void review();

  const Options options_;
  const std::shared_ptr<Log> log_;
  const std::shared_ptr<NotificationStoreQueue> store_;
  std::shared_ptr<NotificationTrigger> trigger_;
  std::unique_ptr<NotificationObserver> activation_;
};

}  // namespace ovinta::platform::linuxos
