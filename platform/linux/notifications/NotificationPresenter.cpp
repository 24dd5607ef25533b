#include "platform/linux/notifications/NotificationPresenter.h"

#include <glib.h>

#include <algorithm>
#include <utility>

namespace ovinta::platform::linuxos {
namespace {

/// The capability of a service that reads the body as markup. Nearly all services do and can act,
/// so one too slow to say is taken to.
constexpr const char* kCanMarkUp = "body-markup";
constexpr const char* kDefaultAction = "default";
constexpr std::uint32_t kReplacesNone = 0;
constexpr std::int32_t kDefaultExpiry = -1;

std::string escapeMarkup(const std::string& text) {
  const std::unique_ptr<char, decltype(&g_free)> escaped(
      g_markup_escape_text(text.data(), static_cast<gssize>(text.size())), &g_free);
  return escaped.get();
}

dbus::Properties hintsFor(const UserNotificationContent& content,
                          const std::string& applicationID) {
  dbus::Properties hints{{"desktop-entry", dbus::write(applicationID)}};
  if (content.sound == NotificationSound::defaultSound) {
    hints.emplace("sound-name", dbus::write("message-new-instant"));
  } else {
    hints.emplace("suppress-sound", dbus::write(true));
  }
  return hints;
}

}  // namespace

NotificationPresenter::NotificationPresenter(std::shared_ptr<dbus::Bus> sessionBus,
                                             std::shared_ptr<Log> log, std::string applicationID,
                                             Handlers handlers)
    : bus_(std::move(sessionBus)),
      log_(std::move(log)),
      applicationID_(std::move(applicationID)),
      handlers_(std::move(handlers)),
      service_(bus_, kNotificationsName) {}

void NotificationPresenter::listen() {
  if (listener_) return;
  listener_ = std::make_unique<dbus::Service>(bus_, kNotificationsName);
  // The signals must come over the connection of the calls, because services tell the caller alone
  // of them.
  listener_->onSignal(kNotificationsPath, kNotificationsName, "ActionInvoked",
                      [this](const dbus::Signal& signal) {
                        const auto number = dbus::read<std::uint32_t>(signal.arguments, 0);
                        const auto clicked = open_.find(number.value_or(0));
                        if (clicked == open_.end()) return;
                        const auto action = dbus::read<std::string>(signal.arguments, 1);
                        if (!action || *action != kDefaultAction) return;
                        const Dictionary userInfo = clicked->second;
                        if (handlers_.onClick) handlers_.onClick(userInfo);
                        close(*number);
                      });
  listener_->onSignal(kNotificationsPath, kNotificationsName, "NotificationClosed",
                      [this](const dbus::Signal& signal) {
                        close(dbus::read<std::uint32_t>(signal.arguments, 0).value_or(0));
                      });
  listener_->onPresence(true, [this](bool isPresent) {
    isPresenceKnown_ = true;
    for (const auto& step : std::exchange(waiting_, {})) step();
    while (!isPresent && !open_.empty()) close(open_.begin()->first);
  });
}

void NotificationPresenter::close(std::uint32_t number) {
  if (open_.erase(number) == 0 || !open_.empty()) return;
  restUnlessNeeded();
  if (handlers_.onAllClosed) handlers_.onAllClosed();
}

void NotificationPresenter::restUnlessNeeded() {
  // Nothing is listened to without need, because the service tells everybody of everybody's
  // notifications.
  if (underWay_ > 0 || !open_.empty()) return;
  listener_ = nullptr;
  isPresenceKnown_ = false;
}

bool NotificationPresenter::accepted(const dbus::Reply& reply) {
  if (!reply.failure || reply.failure->name == dbus::kNoReply) return true;
  const std::string& failure = reply.failure->name;
  // That the notification service is absent is known from the bus, and not worth a line.
  if (failure == dbus::kServiceUnknown || failure == dbus::kDisconnected) return false;
  if (!std::exchange(hasLoggedFailure_, true)) {
    log_->write("Notifications cannot be shown: " + failure);
  }
  return false;
}

void NotificationPresenter::show(const UserNotificationContent& content,
                                 std::function<void(bool)> completion) {
  ++underWay_;
  listen();
  const auto end = [this, completion = std::move(completion)](bool isShown) {
    --underWay_;
    restUnlessNeeded();
    completion(isShown);
  };
  const auto ask = [this, content, end] {
    service_.call(kNotificationsPath, kNotificationsName, kGetCapabilities, {},
                  [this, content, end](const dbus::Reply& reply) {
                    if (!accepted(reply)) return end(false);
                    notify(content,
                           dbus::read<NotificationCapabilities>(reply.values, 0)
                               .value_or(NotificationCapabilities{kCanAct, kCanMarkUp}),
                           end);
                  });
  };
  if (isPresenceKnown_) return ask();
  waiting_.emplace_back(ask);
}

void NotificationPresenter::notify(const UserNotificationContent& content,
                                   const NotificationCapabilities& capabilities,
                                   const std::function<void(bool)>& completion) {
  const auto can = [&](const char* what) {
    return std::ranges::any_of(capabilities, [&](const std::string& one) { return one == what; });
  };
  // A service that cannot mark up shows the body as it stands.
  const std::string body = can(kCanMarkUp) ? escapeMarkup(content.body) : content.body;
  const auto actions =
      can(kCanAct) ? std::vector<std::string>{kDefaultAction, ""} : std::vector<std::string>();
  service_.call(kNotificationsPath, kNotificationsName, "Notify",
                dbus::arguments(applicationID_, kReplacesNone, "", content.title, body, actions,
                                hintsFor(content, applicationID_), kDefaultExpiry),
                [this, userInfo = content.userInfo, isClickable = !actions.empty(),
                 completion](const dbus::Reply& reply) {
                  const auto number = dbus::read<std::uint32_t>(reply.values, 0);
                  if (number && isClickable) open_.insert_or_assign(*number, userInfo);
                  completion(accepted(reply));
                });
}

}  // namespace ovinta::platform::linuxos
