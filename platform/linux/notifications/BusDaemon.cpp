#include "platform/linux/notifications/BusDaemon.h"

#include <cstdint>
#include <utility>

namespace ovinta::platform::linux {
namespace {

constexpr const char* kName = "org.freedesktop.DBus";
constexpr const char* kPath = "/org/freedesktop/DBus";

/// As the bus numbers them.
constexpr std::uint32_t kNoFlags = 0, kDoNotQueue = 4;
constexpr std::uint32_t kExists = 3;

}  // namespace

BusDaemon::BusDaemon(std::shared_ptr<dbus::Bus> bus) : service_(std::move(bus), kName) {}

template <class... Arguments>
void BusDaemon::call(const char* method, dbus::Service::Completion completion,
                     const Arguments&... values) {
  service_.call(kPath, kName, method, dbus::arguments(values...), std::move(completion));
}

void BusDaemon::reach(std::function<void(const std::optional<dbus::Failure>&)> completion) {
  call("GetId", [completion = std::move(completion)](const dbus::Reply& reply) {
    completion(reply.failure);
  });
}

void BusDaemon::requestName(const std::string& name, IfTaken ifTaken,
                            std::function<void(bool)> completion) {
  call(
      "RequestName",
      [completion = std::move(completion)](const dbus::Reply& reply) {
        const auto result = dbus::read<std::uint32_t>(reply.values, 0).value_or(kExists);
        completion(result != kExists);
      },
      name, ifTaken == IfTaken::wait ? kNoFlags : kDoNotQueue);
}

void BusDaemon::releaseName(const std::string& name) { call("ReleaseName", {}, name); }

void BusDaemon::start(const std::string& name) { call("StartServiceByName", {}, name, kNoFlags); }

void BusDaemon::listNames(std::function<void(const std::set<std::string>&)> completion) {
  call("ListNames", [completion = std::move(completion)](const dbus::Reply& reply) {
    const auto names = dbus::read<std::vector<Glib::ustring>>(reply.values, 0);
    std::set<std::string> found;
    for (const auto& name : names.value_or(std::vector<Glib::ustring>())) found.insert(name);
    completion(found);
  });
}

void BusDaemon::onNameChanged(std::string prefix, std::function<void()> handler) {
  service_.onSignal(
      kPath, kName, "NameOwnerChanged",
      [prefix = std::move(prefix), handler = std::move(handler)](const dbus::Signal& signal) {
        const auto name = dbus::read<Glib::ustring>(signal.arguments, 0);
        if (name && name->raw().starts_with(prefix)) handler();
      });
}

void BusDaemon::onLost(std::function<void()> handler) {
  service_.onPresence(false, [handler = std::move(handler)](bool isPresent) {
    if (!isPresent) handler();
  });
}

}  // namespace ovinta::platform::linux
