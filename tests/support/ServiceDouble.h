#pragma once

#include <gio/gio.h>

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "platform/linux/dbus/Message.h"
#include "replay/PrivateBus.h"

namespace ovinta::test {

namespace dbus = platform::linuxos::dbus;

/// Stands for a service of the system on a private bus. It keeps objects with properties, which
/// clients may read and write; its methods are the test's. May be used from any thread, also by the
/// handler.
class ServiceDouble {
 public:
  struct Call {
    std::string sender, object, interface, method;
    dbus::Variant arguments;
  };
  /// The caller waits, for ever unless `answerLate` is called.
  struct NoAnswer {};
  using Answer = std::variant<dbus::Variant, platform::linuxos::dbus::Failure, NoAnswer>;

  /// Owns the name at once. `methods`: the signature of each one's arguments. `handler` answers the
  /// calls, one at a time on a thread of its own; what it uses is declared before the double.
  ServiceDouble(const replay::PrivateBus& bus, std::string name,
                std::map<std::string, std::string> methods = {},
                std::function<Answer(const Call&)> handler = {});
  ~ServiceDouble();
  ServiceDouble(const ServiceDouble&) = delete;
  ServiceDouble& operator=(const ServiceDouble&) = delete;

  /// Never inside `sync`. Callers that wait when it vanishes are told so by the bus.
  void appear();
  void vanish();

  /// Puts the calls that wait to the handler again.
  void answerLate();
  /// For the handler: has the task run when the answer has been sent.
  void afterAnswer(std::function<void()> task) { afterAnswer_ = std::move(task); }
  /// The bus lets nobody in to the service, or everybody again.
  void setForbidden(bool isForbidden);

  void addObject(const std::string& path, const std::string& interface,
                 platform::linuxos::dbus::Properties properties = {});
  void removeObject(const std::string& path);

  /// Changes properties and tells everybody, or one connection, in one signal.
  void change(const std::string& path, const std::string& interface,
              const platform::linuxos::dbus::Properties& changed,
              const std::string& destination = {});
  /// The property of any type as it was set last, by whomever.
  template <class T>
  std::optional<T> property(const std::string& path, const std::string& interface,
                            const char* name) {
    return sync([&] {
      return platform::linuxos::dbus::read<T>(objects_[{path, interface}], name);
    });
  }

  void emit(const std::string& path, const std::string& interface, const std::string& member,
            const dbus::Variant& arguments, const std::string& destination = {});

  /// The methods called so far, oldest first, those of the property interface not among them.
  std::vector<std::string> calls();
  std::size_t count(const std::string& method);

  /// Runs the task while no call is answered.
  template <class Task>
  auto sync(Task task) {
    const std::lock_guard guard(lock);
    return task();
  }

 private:
  static GDBusMessage* receive(GDBusConnection* connection, GDBusMessage* message,
                               gboolean isIncoming, gpointer);
  static Call read(GDBusMessage* message);
  void send(GDBusMessage* message, const Answer& answer);
  Answer answer(const Call& call);
  Answer answerForProperties(const Call& call);
  void askBus(const char* method, GVariant* arguments);

  /// Of all doubles, so that a call finds its double alive or not at all.
  static inline std::recursive_mutex lock;

  const std::string name_;
  const std::map<std::string, std::string> methods_;
  const std::function<Answer(const Call&)> handler_;
  GDBusConnection* connection_ = nullptr;
  bool isForbidden_ = false;
  std::map<std::pair<std::string, std::string>, platform::linuxos::dbus::Properties> objects_;
  std::vector<std::string> calls_;
  /// The calls that wait.
  std::vector<GDBusMessage*> waiting_;
  std::function<void()> afterAnswer_;
};

}  // namespace ovinta::test
