#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/Log.h"
#include "platform/UserNotificationCenter.h"
#include "platform/linux/dbus/Service.h"

namespace ovinta::platform::linuxos {

inline constexpr const char* kNotificationsName = "org.freedesktop.Notifications";
inline constexpr const char* kNotificationsPath = "/org/freedesktop/Notifications";

/// The capabilities that a notification service says it has.
using NotificationCapabilities = std::vector<std::string>;
inline constexpr const char* kGetCapabilities = "GetCapabilities";
/// The capability without which nothing can be clicked.
inline constexpr const char* kCanAct = "actions";

/// Shows notifications through the desktop's notification service, to which it listens while one is
/// being shown or may still be clicked. Main thread only.
class NotificationPresenter {
 public:
  struct Handlers {
    /// Told of the user info of a notification that the user has clicked.
    std::function<void(const Dictionary&)> onClick = {};
    /// Told when the last notification that could still be clicked is gone.
    std::function<void()> onAllClosed = {};
  };

  /// The application is the one that the notifications seem to come from. Handlers may not destroy
  /// the presenter.
  NotificationPresenter(std::shared_ptr<dbus::Bus> sessionBus, std::shared_ptr<Log> log,
                        std::string applicationID, Handlers handlers);
  NotificationPresenter(const NotificationPresenter&) = delete;
  NotificationPresenter& operator=(const NotificationPresenter&) = delete;

  /// Shows a notification, and tells `completion`, later and unless the presenter is destroyed,
  /// whether the service took it. A service that does not answer in time may have shown it and
  /// counts as having done so. The absence of a service is logged once.
  void show(const UserNotificationContent& content, std::function<void(bool)> completion);

  /// Whether a notification is there that may still be clicked.
  bool hasOpen() const { return !open_.empty(); }

 private:
  void listen();
  void restUnlessNeeded();
  void notify(const UserNotificationContent& content, const NotificationCapabilities& capabilities,
              const std::function<void(bool)>& completion);
  bool accepted(const dbus::Reply& reply);
  void close(std::uint32_t number);

  const std::shared_ptr<dbus::Bus> bus_;
  const std::shared_ptr<Log> log_;
  const std::string applicationID_;
  const Handlers handlers_;
  /// The user info of each notification that is shown, by the number that the service gave it.
  std::map<std::uint32_t, Dictionary> open_;
  std::size_t underWay_ = 0;
  /// Whether it is known if the service is there; until then what is to be done waits.
  bool isPresenceKnown_ = false;
  std::vector<std::function<void()>> waiting_;
  bool hasLoggedFailure_ = false;
  dbus::Service service_;
  /// The service as the signals about what is shown come from it; null while none are needed.
  std::unique_ptr<dbus::Service> listener_;
};

}  // namespace ovinta::platform::linuxos
