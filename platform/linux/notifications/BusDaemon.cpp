#include "platform/linux/notifications/BusDaemon.h"

#include <cstdint>
#include <utility>

namespace ovinta::platform::linux {
namespace {

/// As the bus numbers them.
constexpr std::uint32_t kNoFlags = 0, kDoNotQueue = 4;
constexpr std::uint32_t kExists = 3;

}  // namespace

BusDaemon::BusDaemon(std::shared_ptr<dbus::Bus> bus) : service_(std::move(bus), dbus::kBusName) {}

void BusDaemon::call(const char* method, const Glib::VariantContainerBase& arguments,
                     dbus::Service::Completion completion) {
  service_.call(dbus::kBusPath, dbus::kBusName, method, arguments, std::move(completion));
}

void BusDaemon::ask(const char* method, const Glib::VariantContainerBase& arguments,
                    const dbus::Service::Completion& completion) {
  call(method, arguments, [this, method, arguments, completion](const dbus::Reply& reply) {
    const bool isLate = reply.failure && reply.failure->name == dbus::kNoReply;
    isLate ? ask(method, arguments, completion) : completion(reply);
  });
}

void BusDaemon::reach(std::function<void(const std::optional<dbus::Failure>&)> completion) {
  call("GetId", {}, [completion = std::move(completion)](const dbus::Reply& reply) {
    completion(reply.failure);
  });
}

void BusDaemon::requestName(const std::string& name, IfTaken ifTaken,
                            std::function<void(bool)> completion) {
  ask("RequestName", dbus::arguments(name, ifTaken == IfTaken::wait ? kNoFlags : kDoNotQueue),
      [completion = std::move(completion)](const dbus::Reply& reply) {
        const auto result = dbus::read<std::uint32_t>(reply.values, 0).value_or(kExists);
        completion(result != kExists);
      });
}

void BusDaemon::releaseName(const std::string& name) { call("ReleaseName", dbus::arguments(name)); }

void BusDaemon::start(const std::string& name) {
  call("StartServiceByName", dbus::arguments(name, kNoFlags));
}

void BusDaemon::listNames(std::function<void(const std::set<std::string>&)> completion) {
  ask("ListNames", {}, [completion = std::move(completion)](const dbus::Reply& reply) {
    const auto names = dbus::read<std::vector<Glib::ustring>>(reply.values, 0);
    std::set<std::string> found;
    for (const auto& name : names.value_or(std::vector<Glib::ustring>())) found.insert(name);
    completion(found);
  });
}

void BusDaemon::onNameChanged(std::string name, std::function<void()> handler) {
  service_.onSignal({.object = dbus::kBusPath,
                     .interface = dbus::kBusName,
                     .member = "NameOwnerChanged",
                     .argument = std::move(name),
                     .isNamespace = true},
                    [handler = std::move(handler)](const dbus::Signal&) { handler(); });
}

void BusDaemon::onLost(std::function<void()> handler) {
  service_.onPresence(false, [handler = std::move(handler)](bool isPresent) {
    if (!isPresent) handler();
  });
}

}  // namespace ovinta::platform::linux
