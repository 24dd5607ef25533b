#include "platform/linux/dbus/Bus.h"

#include <cstdlib>
#include <utility>

namespace ovinta::platform::linuxos::dbus {
namespace {

std::string fromEnvironment(const char* name, const std::string& otherwise) {
  const char* const text = std::getenv(name);
  return text && *text ? text : otherwise;
}

/// A function for the bus's thread that passes its argument on to the handler on the main thread,
/// if the handler is still there.
template <class Argument>
auto passOn(std::shared_ptr<MainQueue> mainQueue,
            const std::shared_ptr<std::function<void(Argument)>>& handler) {
  return [mainQueue = std::move(mainQueue), weak = std::weak_ptr(handler)](Argument argument) {
    mainQueue->async([weak, argument] {
      if (const auto found = weak.lock()) (*found)(argument);
    });
  };
}

}  // namespace

std::string systemBusAddress() {
  return fromEnvironment("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/run/dbus/system_bus_socket");
}

std::string sessionBusAddress() {
  // The address is made here, because GLib would start a program that starts a bus when it finds
  // none.
  const std::string directory = fromEnvironment("XDG_RUNTIME_DIR", "/nowhere");
  return fromEnvironment("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + directory + "/bus");
}

Bus::Bus(std::string address, std::shared_ptr<MainQueue> mainQueue, std::shared_ptr<Log> log)
    : mainQueue_(std::move(mainQueue)),
      link_(std::move(address), std::move(log),
            [this](TimeInterval delay) {
              mainQueue_->asyncAfter(
                  delay, lifetime_.guard([this] { thread_.post([this] { link_.retry(); }); }));
            }),
      thread_("ovinta-dbus", [this] { link_.drop(); }) {
  static std::once_flag once;
  std::call_once(once, &portable::ExitAwareThread::stopAllAtExit);
}

Bus::~Bus() = default;

void Bus::call(MethodCall call, std::function<void(Reply)> completion) {
  // The completion is moved from hand to hand, so that what it holds is let go on the main thread.
  auto answer = [queue = mainQueue_,
                 completion = lifetime_.guard(std::move(completion))](Reply reply) mutable {
    queue->async(
        [completion = std::move(completion), reply = std::move(reply)] { completion(reply); });
  };
  thread_.post([this, call = std::move(call), answer = std::move(answer)]() mutable {
    link_.call(std::move(call), std::move(answer));
  });
}

void Bus::log(std::string service, std::string line) {
  thread_.post(
      [this, service = std::move(service), line = std::move(line)] { link_.log(service, line); });
}

std::unique_ptr<Bus::Registration> Bus::subscribe(SignalMatch match,
                                                  std::function<void(const Signal&)> handler) {
  const auto kept = std::make_shared<std::function<void(Signal)>>(std::move(handler));
  thread_.post(
      [this, key = kept.get(), match = std::move(match),
       handler = passOn<Signal>(mainQueue_, kept)] { link_.subscribe(key, match, handler); });
  return std::make_unique<Registration>(*this, kept);
}

std::unique_ptr<Bus::Registration> Bus::watch(NameMatch match, std::function<void(bool)> handler) {
  const auto kept = std::make_shared<std::function<void(bool)>>(std::move(handler));
  thread_.post([this, key = kept.get(), match = std::move(match),
                handler = passOn<bool>(mainQueue_, kept)] { link_.watch(key, match, handler); });
  return std::make_unique<Registration>(*this, kept);
}

Bus::Registration::~Registration() {
  bus_.thread_.post([&link = bus_.link_, key = handler_.get()] { link.remove(key); });
}

}  // namespace ovinta::platform::linuxos::dbus
