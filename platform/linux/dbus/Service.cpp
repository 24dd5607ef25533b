#include "platform/linux/dbus/Service.h"

#include <algorithm>
#include <utility>

namespace ovinta::platform::linuxos::dbus {
namespace {

constexpr const char* kProperties = "org.freedesktop.DBus.Properties";

}  // namespace

MethodCall propertiesCall(std::string service, std::string object, const std::string& interface) {
  return {std::move(service), std::move(object), kProperties, "GetAll", arguments(interface)};
}

Service::Service(std::shared_ptr<Bus> bus, std::string name)
    : bus_(std::move(bus)), name_(std::move(name)) {}

void Service::onPresence(bool activates, std::function<void(bool)> handler) {
  registrations_.push_back(
      bus_->watch({.name = name_, .activates = activates}, std::move(handler)));
}

void Service::onArrival(const std::function<void()>& handler) {
  const auto onChange = [](std::function<void()> come) {
    return [come = std::move(come), wasAbsent = false](bool isThere) mutable {
      if (std::exchange(wasAbsent, !isThere) && isThere) come();
    };
  };
  const auto watch = [this](std::string name, std::function<void(bool)> onPresence) {
    registrations_.push_back(
        bus_->watch({.name = std::move(name), .isAwaited = false}, std::move(onPresence)));
  };
  watch(name_, onChange(handler));
  watch(kBusName, onChange([this, handler] {
          find([handler](bool isThere) {
            if (isThere) handler();
          });
        }));
}

void Service::onSignal(std::string object, std::string interface, std::string member,
                       SignalHandler handler) {
  onSignal(
      {.object = std::move(object), .interface = std::move(interface), .member = std::move(member)},
      std::move(handler));
}

void Service::onSignal(SignalMatch match, SignalHandler handler) {
  match.service = name_;
  registrations_.push_back(bus_->subscribe(std::move(match), std::move(handler)));
}

void Service::onPropertiesChanged(std::string object, std::string interface,
                                  ChangeHandler handler) {
  onSignal({.object = std::move(object),
            .interface = kProperties,
            .member = "PropertiesChanged",
            .argument = std::move(interface)},
           [handler = std::move(handler)](const Signal& signal) {
             if (const auto changed = read<Properties>(signal.arguments, 1)) {
               handler(signal.object, *changed);
             }
           });
}

void Service::call(std::string object, std::string interface, std::string method, Variant arguments,
                   Completion completion, std::chrono::milliseconds timeout) {
  bus_->call({name_, std::move(object), std::move(interface), std::move(method),
              std::move(arguments), timeout},
             whileAlive(std::move(completion)));
}

void Service::tell(std::string object, std::string interface, std::string method) {
  bus_->call({.service = name_,
              .object = std::move(object),
              .interface = std::move(interface),
              .method = std::move(method),
              .startsService = false},
             [](const Reply&) {});
}

Service::Completion Service::whileAlive(Completion completion) const {
  return lifetime_.guard([completion = std::move(completion)](const Reply& reply) {
    if (completion) completion(reply);
  });
}

void Service::askBus(std::string method, Variant arguments, Completion completion) {
  bus_->call({kBusName, kBusPath, kBusName, std::move(method), std::move(arguments), kCallTimeout},
             whileAlive(std::move(completion)));
}

void Service::find(std::function<void(bool)> handler) {
  askBus("ListActivatableNames", {}, [this, handler = std::move(handler)](const Reply& reply) {
    using Names = std::vector<std::string>;
    const Names names = read<Names>(reply.values, 0).value_or(Names());
    const auto isName = [this](const std::string& name) { return name == name_; };
    if (std::ranges::any_of(names, isName)) return handler(true);
    askBus("NameHasOwner", arguments(name_), [handler](const Reply& answer) {
      handler(read<bool>(answer.values, 0).value_or(false));
    });
  });
}

void Service::getProperties(std::string object, const std::string& interface,
                            PropertiesHandler handler,
                            std::function<void(const Failure&)> onFailure) {
  bus_->call(propertiesCall(name_, std::move(object), interface),
             whileAlive([handler = std::move(handler),
                         onFailure = std::move(onFailure)](const Reply& reply) {
               if (reply.failure && onFailure) return onFailure(*reply.failure);
               handler(read<Properties>(reply.values, 0).value_or(Properties()));
             }));
}

void Service::setProperty(std::string object, const std::string& interface, const char* property,
                          const Variant& value, Completion completion) {
  call(std::move(object), kProperties, "Set", arguments(interface, property, value),
       std::move(completion));
}

}  // namespace ovinta::platform::linuxos::dbus
