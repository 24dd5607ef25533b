#include "tests/support/NotificationsDouble.h"

namespace ovinta::test {

using platform::linux::dbus::arguments;
using platform::linux::dbus::Properties;
using platform::linux::dbus::read;
using Texts = std::vector<Glib::ustring>;

namespace {

constexpr const char* kName = "org.freedesktop.Notifications";
constexpr const char* kPath = "/org/freedesktop/Notifications";
/// Not the same as its place: services do not begin with 1.
constexpr std::uint32_t kFirstNumber = 7;
constexpr std::uint32_t kDismissed = 2;

}  // namespace

NotificationsDouble::NotificationsDouble(const PrivateBus& bus)
    : service_(bus, kName, {{"GetCapabilities", ""}, {"Notify", "susssasa{sv}i"}},
               [this](const auto& call) { return answer(call); }) {
  service_.addObject(kPath, kName);
}

ServiceDouble::Answer NotificationsDouble::answer(const ServiceDouble::Call& call) {
  if (call.method == "GetCapabilities") return arguments(capabilities_);
  const auto text = [&](std::size_t place) {
    return read<Glib::ustring>(call.arguments, place).value().raw();
  };
  shown_.push_back({.number = kFirstNumber + static_cast<std::uint32_t>(shown_.size()),
                    .client = call.sender,
                    .application = text(0),
                    .title = text(3),
                    .body = text(4),
                    .actions = read<Texts>(call.arguments, 5).value(),
                    .hints = read<Properties>(call.arguments, 6).value()});
  return arguments(shown_.back().number);
}

void NotificationsDouble::setCapabilities(Texts capabilities) {
  service_.sync([&] { capabilities_ = std::move(capabilities); });
}

std::vector<NotificationsDouble::Shown> NotificationsDouble::shown() {
  return service_.sync([&] { return shown_; });
}

void NotificationsDouble::click(const Shown& notification) {
  service_.emit(kPath, kName, "ActionInvoked", arguments(notification.number, "default"),
                notification.client);
  close(notification);
}

void NotificationsDouble::close(const Shown& notification) {
  service_.emit(kPath, kName, "NotificationClosed", arguments(notification.number, kDismissed),
                notification.client);
}

}  // namespace ovinta::test
