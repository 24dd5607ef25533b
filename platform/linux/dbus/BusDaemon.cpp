#include "platform/linux/dbus/BusDaemon.h"

#include <cstdint>
#include <utility>

namespace ovinta::platform::linuxos::dbus {
namespace {

/// Flags and answers of the bus's RequestName, as D-Bus numbers them.
constexpr std::uint32_t kNoFlags = 0, kDoNotQueue = 4;
constexpr std::uint32_t kExists = 3;

}  // namespace

BusDaemon::BusDaemon(std::shared_ptr<Bus> bus, std::string name)
    : service_(std::move(bus), std::move(name)) {}

void BusDaemon::call(const char* method, const Variant& arguments, Service::Completion completion) {
  service_.call(kBusPath, kBusName, method, arguments, std::move(completion));
}

void BusDaemon::ask(const char* method, const Variant& arguments,
                    const Service::Completion& completion, int questions) {
  call(method, arguments, [this, method, arguments, completion, questions](const Reply& reply) {
    const bool isLate = reply.failure && reply.failure->name == kNoReply;
    if (!isLate || questions == 1) return completion(reply);
    ask(method, arguments, completion, questions - 1);
  });
}

void BusDaemon::reach(std::function<void(const std::optional<Failure>&)> completion) {
  call("GetId", {},
       [completion = std::move(completion)](const Reply& reply) { completion(reply.failure); });
}

void BusDaemon::requestName(const std::string& name, IfTaken ifTaken,
                            std::function<void(bool)> completion) {
  ask("RequestName", arguments(name, ifTaken == IfTaken::wait ? kNoFlags : kDoNotQueue),
      [completion = std::move(completion)](const Reply& reply) {
        const auto result = read<std::uint32_t>(reply.values, 0).value_or(kExists);
        completion(result != kExists);
      });
}

void BusDaemon::releaseName(const std::string& name) { call("ReleaseName", arguments(name)); }

void BusDaemon::start(const std::string& name) {
  call("StartServiceByName", arguments(name, kNoFlags));
}

void BusDaemon::listNames(std::function<void(const std::set<std::string>&)> completion) {
  ask("ListNames", {}, [completion = std::move(completion)](const Reply& reply) {
    const auto names = read<std::vector<std::string>>(reply.values, 0);
    std::set<std::string> found;
    for (const auto& name : names.value_or(std::vector<std::string>())) found.insert(name);
    completion(found);
  });
}

void BusDaemon::onNameChanged(std::string name, std::function<void()> handler) {
  service_.onSignal({.object = kBusPath,
                     .interface = kBusName,
                     .member = "NameOwnerChanged",
                     .argument = std::move(name),
                     .isNamespace = true},
                    [handler = std::move(handler)](const Signal&) { handler(); });
}

void BusDaemon::onLost(std::function<void()> handler) {
  service_.onPresence(false, [handler = std::move(handler)](bool isPresent) {
    if (!isPresent) handler();
  });
}

}  // namespace ovinta::platform::linuxos::dbus
