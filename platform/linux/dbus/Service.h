#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/dbus/Bus.h"
#include "platform/portable/Lifetime.h"

namespace ovinta::platform::linuxos::dbus {

/// The call that reads all properties of an interface, for those who call from other threads than a
/// `Service` may.
MethodCall propertiesCall(std::string service, std::string object, const std::string& interface);

/// A service of a bus as one of its users knows it. Main thread only; handlers run on the main
/// queue, never inside a call of these methods and never once the object is destroyed, which a
/// handler may do. Nothing is asked of a service that nobody calls.
class Service {
 public:
  using Completion = std::function<void(const Reply&)>;
  using PropertiesHandler = std::function<void(const Properties&)>;
  using SignalHandler = std::function<void(const Signal&)>;
  /// Receives the object's path, and the properties that have changed; one without a value any more
  /// is not among them.
  using ChangeHandler = std::function<void(const std::string&, const Properties&)>;

  Service(std::shared_ptr<Bus> bus, std::string name);

  /// Tells `handler` once whether the service is there or could be started, without starting it.
  void find(std::function<void(bool)> handler);

  /// Has `handler` told soon whether the service is there, and at each change. `activates`: the bus
  /// is to start it now if it knows how.
  void onPresence(bool activates, std::function<void(bool)> handler);

  /// Has `handler` called whenever the service comes that was not there, or the bus comes and could
  /// start it.
  void onArrival(const std::function<void()>& handler);

  /// Has `handler` told of a signal; an empty object or member stands for any.
  void onSignal(std::string object, std::string interface, std::string member,
                SignalHandler handler);

  /// Has `handler` told of the signals that the match says; they are this service's, whatever
  /// service the match names.
  void onSignal(SignalMatch match, SignalHandler handler);

  /// Has `handler` told when properties of the interface change; an empty object stands for any.
  void onPropertiesChanged(std::string object, std::string interface, ChangeHandler handler);

  /// Calls a method; `completion`, if any, gets the answer or the failure. The object names the
  /// interface as its service does.
  void call(std::string object, std::string interface, std::string method, Variant arguments,
            Completion completion, std::chrono::milliseconds timeout = kCallTimeout);

  /// Calls a method whose answer nobody waits for, and which means nothing to a service that would
  /// have to be started for it.
  void tell(std::string object, std::string interface, std::string method);

  /// Reads all properties of an interface; after a failure there are none, or `onFailure` is called
  /// in place of `handler`.
  void getProperties(std::string object, const std::string& interface, PropertiesHandler handler,
                     std::function<void(const Failure&)> onFailure = {});

  void setProperty(std::string object, const std::string& interface, const char* property,
                   const Variant& value, Completion completion = {});

 private:
  void askBus(std::string method, Variant arguments, Completion completion);
  Completion whileAlive(Completion completion) const;

  const std::shared_ptr<Bus> bus_;
  const std::string name_;
  std::vector<std::unique_ptr<Bus::Registration>> registrations_;
  const portable::Lifetime lifetime_;
};

}  // namespace ovinta::platform::linuxos::dbus
