#pragma once

#include <gio/gio.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "platform/linux/dbus/ContextThread.h"
#include "platform/linux/dbus/Message.h"
#include "tests/support/PrivateBus.h"

namespace ovinta::test {

/// Stands for a service of the system on a private bus, on a thread of its own. It keeps objects
/// with properties, which clients may read and, where the interface says so, write; its methods are
/// the test's. Methods may be called from any thread, also by the handler.
class ServiceDouble {
 public:
  struct Call {
    std::string sender;
    std::string object;
    std::string method;
    Glib::VariantContainerBase arguments;
  };
  /// The caller waits for ever.
  struct NoAnswer {};
  using Answer = std::variant<Glib::VariantContainerBase, platform::linux::dbus::Failure, NoAnswer>;

  /// Owns the name at once. `interfaces`: an introspection document. `handler` answers the calls,
  /// on the double's thread; what it uses must outlive the double or be a member declared before
  /// it.
  ServiceDouble(const PrivateBus& bus, std::string name, const char* interfaces,
                std::function<Answer(const Call&)> handler);
  ~ServiceDouble();
  ServiceDouble(const ServiceDouble&) = delete;
  ServiceDouble& operator=(const ServiceDouble&) = delete;

  void appear();
  void vanish();

  void addObject(const std::string& path, const std::string& interface,
                 platform::linux::dbus::Properties properties = {});
  void removeObject(const std::string& path);

  /// Changes properties and tells everybody, or one connection, in one signal.
  void change(const std::string& path, const std::string& interface,
              const platform::linux::dbus::Properties& changed,
              const std::string& destination = {});
  /// The property of any type as it was set last, by whomever.
  template <class T>
  std::optional<T> property(const std::string& path, const std::string& interface,
                            const char* name) {
    std::optional<T> found;
    sync([&] { found = platform::linux::dbus::read<T>(objects_[{path, interface}].values, name); });
    return found;
  }

  void emit(const std::string& path, const std::string& interface, const std::string& member,
            const Glib::VariantContainerBase& arguments, const std::string& destination = {});

  /// The methods called so far, oldest first, those of the property interface not among them.
  std::vector<std::string> calls();
  std::size_t count(const std::string& method);

  /// Runs the task on the double's thread and waits for its end.
  void sync(const std::function<void()>& task);

 private:
  struct Object {
    platform::linux::dbus::Properties values;
    guint id = 0;
  };

  void answer(GDBusMethodInvocation* invocation, Call call);
  void closeConnection();
  void askBus(const char* method, GVariant* arguments);
  static const GDBusInterfaceVTable kTable;

  const std::string name_;
  const std::function<Answer(const Call&)> handler_;
  GDBusNodeInfo* const interfaces_;
  GDBusConnection* connection_ = nullptr;
  std::map<std::pair<std::string, std::string>, Object> objects_;
  std::vector<std::string> calls_;
  std::vector<GDBusMethodInvocation*> unanswered_;
  platform::linux::dbus::ContextThread context_;
};

}  // namespace ovinta::test
