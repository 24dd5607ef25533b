#include <algorithm>
#include <string>

#include "platform/linux/diagnosis/Checks.h"
#include "platform/linux/notifications/AgentRegistry.h"
#include "platform/linux/notifications/NotificationPresenter.h"

namespace ovinta::platform::linuxos {
namespace {

Finding absent(const std::string& detail) {
  return {.condition = Condition::missing,
          .detail = detail,
          .advice = "Start a desktop, or a notification service such as dunst."};
}

/// The finding made of what the service tells of itself: name, vendor, version.
Finding findingOf(const dbus::Variant& information) {
  const auto text = [&](std::size_t place) {
    return dbus::read<std::string>(information, place).value_or("");
  };
  const std::string by = text(1).empty() ? "" : " by " + text(1);
  return {.condition = Condition::good, .version = text(2), .detail = text(0) + by};
}

void askCapabilities(Check& check, dbus::Service& service, Finding finding) {
  service.call(kNotificationsPath, kNotificationsName, kGetCapabilities, {},
               [&check, finding = std::move(finding)](const dbus::Reply& reply) mutable {
                 const auto capabilities = dbus::read<NotificationCapabilities>(reply.values, 0)
                                               .value_or(NotificationCapabilities());
                 const bool isClickable = std::ranges::any_of(
                     capabilities, [](const auto& one) { return one == kCanAct; });
                 if (!isClickable) {
                   finding.condition = Condition::limited;
                   finding.detail += ", which tells of no clicks";
                   finding.advice = "Use a notification service with actions for clicks to count.";
                 }
                 check.end(finding);
               });
}

}  // namespace

void checkNotifications(const Surroundings& around, Check& check) {
  check.seekService(
      around.sessionBus, kNotificationsName, absent("nobody shows them"),
      [&check](dbus::Service& service) {
        service.call(kNotificationsPath, kNotificationsName, "GetServerInformation", {},
                     [&check, &service](const dbus::Reply& reply) {
                       if (reply.failure) {
                         return check.end(absent("the service fails: " + reply.failure->message));
                       }
                       askCapabilities(check, service, findingOf(reply.values));
                     });
      });
}

void checkNotifyAgent(const Surroundings& around, Check& check) {
  if (!around.usesNotifyAgent) return check.end();
  check.seekService(
      around.sessionBus, kAgentBusName,
      {.condition = Condition::limited,
       .detail = "not installed: notifications fire only while the app runs",
       .advice = "Install ovinta-notify-agent where the session bus looks for services."},
      [&check](dbus::Service&) {
        check.end({.condition = Condition::good, .detail = "can be started"});
      });
}

}  // namespace ovinta::platform::linuxos
