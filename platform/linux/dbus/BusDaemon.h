#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "platform/linux/dbus/Service.h"

namespace ovinta::platform::linuxos::dbus {

/// What the bus itself does for its clients. A question about names that it does not answer in time
/// is asked again, `kMostQuestions` times in all. Main thread only; handlers as with `Service`.
class BusDaemon {
 public:
  static constexpr int kMostQuestions = 6;

  /// `name` is the bus name of the daemon that is asked.
  explicit BusDaemon(std::shared_ptr<Bus> bus, std::string name = kBusName);

  /// Tells `completion` why the bus cannot be reached; nothing when it can.
  void reach(std::function<void(const std::optional<Failure>&)> completion);

  /// Whether a client that asks for a name somebody has is to wait until it is free.
  enum class IfTaken { wait, giveUp };

  /// Asks for the name, and tells `completion` whether the connection has it or waits for it; false
  /// when there is no answer.
  void requestName(const std::string& name, IfTaken ifTaken, std::function<void(bool)> completion);
  void releaseName(const std::string& name);

  /// Has the bus start the service if it knows how and it does not run.
  void start(const std::string& name);

  /// Hands over the names that are on the bus now; none when the bus is gone or does not answer.
  void listNames(std::function<void(const std::set<std::string>&)> completion);

  /// Has `handler` told when somebody takes or gives up the name or one that begins with it and a
  /// dot.
  void onNameChanged(std::string name, std::function<void()> handler);

  /// Has `handler` told when the bus is gone, or was not there.
  void onLost(std::function<void()> handler);

 private:
  void call(const char* method, const Variant& arguments, Service::Completion completion = {});
  void ask(const char* method, const Variant& arguments, const Service::Completion& completion,
           int questions = kMostQuestions);

  Service service_;
};

}  // namespace ovinta::platform::linuxos::dbus
