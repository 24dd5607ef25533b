#include "tests/support/ServiceDouble.h"

#include <algorithm>
#include <future>
#include <stdexcept>

namespace ovinta::test {

namespace {

/// Whose thread the present one is, if any double's.
thread_local const ServiceDouble* currentDouble = nullptr;

}  // namespace

using platform::linux::dbus::Failure;
using platform::linux::dbus::Properties;

const GDBusInterfaceVTable ServiceDouble::kTable = {
    .method_call =
        [](GDBusConnection*, const char* sender, const char* object, const char*,
           const char* method, GVariant* arguments, GDBusMethodInvocation* invocation,
           gpointer self) {
          static_cast<ServiceDouble*>(self)->answer(
              invocation, {sender, object, method, Glib::VariantContainerBase(arguments, true)});
        },
    .get_property = [](GDBusConnection*, const char*, const char* object, const char* interface,
                       const char* property, GError** error, gpointer self) -> GVariant* {
      const Properties& values =
          static_cast<ServiceDouble*>(self)->objects_[{object, interface}].values;
      const auto found = values.find(property);
      if (found != values.end()) return const_cast<GVariant*>(found->second.gobj_copy());
      g_set_error(error, G_IO_ERROR, G_IO_ERROR_NOT_FOUND, "no value");
      return nullptr;
    },
    .set_property = [](GDBusConnection*, const char*, const char* object, const char* interface,
                       const char* property, GVariant* value, GError**, gpointer self) -> gboolean {
      static_cast<ServiceDouble*>(self)->objects_[{object, interface}].values[property] =
          Glib::VariantBase(value, true);
      return TRUE;
    },
    .padding = {}};

ServiceDouble::ServiceDouble(const PrivateBus& bus, std::string name, const char* interfaces,
                             std::function<Answer(const Call&)> handler)
    : name_(std::move(name)),
      handler_(std::move(handler)),
      interfaces_(g_dbus_node_info_new_for_xml(interfaces, nullptr)),
      context_("service-double", [this] {
        for (auto& [key, object] : objects_) {
          g_dbus_connection_unregister_object(connection_, object.id);
        }
        for (auto* invocation : unanswered_) g_object_unref(invocation);
        closeConnection();
      }) {
  if (!interfaces_) throw std::invalid_argument("no introspection document");
  context_.post([this] { currentDouble = this; });
  sync([&] {
    connection_ = g_dbus_connection_new_for_address_sync(
        bus.address().c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
  });
  if (!connection_) throw std::runtime_error("the private bus is gone");
  appear();
}

ServiceDouble::~ServiceDouble() {
  // The thread ends before what its handlers use.
  context_.stop();
  g_dbus_node_info_unref(interfaces_);
}

void ServiceDouble::closeConnection() {
  // Waits for the last words of the connection, which would otherwise keep it and the context.
  int awaited = 1;
  if (!g_dbus_connection_is_closed(connection_)) {
    ++awaited;
    g_signal_connect(connection_, "closed",
                     G_CALLBACK(+[](GDBusConnection*, gboolean, GError*, gpointer count) {
                       --*static_cast<int*>(count);
                     }),
                     &awaited);
  }
  g_dbus_connection_close(
      connection_, nullptr,
      [](GObject*, GAsyncResult*, gpointer count) { --*static_cast<int*>(count); }, &awaited);
  while (awaited > 0) g_main_context_iteration(g_main_context_get_thread_default(), TRUE);
  g_signal_handlers_disconnect_by_data(connection_, &awaited);
  g_object_unref(connection_);
}

void ServiceDouble::sync(const std::function<void()>& task) {
  if (currentDouble == this) return task();
  std::promise<void> ended;
  context_.post([&] {
    task();
    ended.set_value();
  });
  ended.get_future().wait();
}

void ServiceDouble::askBus(const char* method, GVariant* arguments) {
  GVariant* const reply = g_dbus_connection_call_sync(
      connection_, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
      arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
  if (reply) g_variant_unref(reply);
}

void ServiceDouble::appear() {
  sync([this] { askBus("RequestName", g_variant_new("(su)", name_.c_str(), 0U)); });
}

void ServiceDouble::vanish() {
  sync([this] { askBus("ReleaseName", g_variant_new("(s)", name_.c_str())); });
}

void ServiceDouble::addObject(const std::string& path, const std::string& interface,
                              Properties properties) {
  sync([&] {
    Object& object = objects_[{path, interface}];
    object.values = std::move(properties);
    object.id = g_dbus_connection_register_object(
        connection_, path.c_str(),
        g_dbus_node_info_lookup_interface(interfaces_, interface.c_str()), &kTable, this, nullptr,
        nullptr);
    if (object.id == 0) throw std::invalid_argument("cannot show " + interface + " at " + path);
  });
}

void ServiceDouble::removeObject(const std::string& path) {
  sync([&] {
    std::erase_if(objects_, [&](const auto& entry) {
      if (entry.first.first != path) return false;
      g_dbus_connection_unregister_object(connection_, entry.second.id);
      return true;
    });
  });
}

void ServiceDouble::change(const std::string& path, const std::string& interface,
                           const Properties& changed, const std::string& destination) {
  sync([&] {
    for (const auto& [name, value] : changed) objects_[{path, interface}].values[name] = value;
    emit(path, "org.freedesktop.DBus.Properties", "PropertiesChanged",
         platform::linux::dbus::arguments(interface, changed, std::vector<Glib::ustring>()),
         destination);
  });
}

void ServiceDouble::emit(const std::string& path, const std::string& interface,
                         const std::string& member, const Glib::VariantContainerBase& arguments,
                         const std::string& destination) {
  sync([&] {
    g_dbus_connection_emit_signal(connection_, destination.empty() ? nullptr : destination.c_str(),
                                  path.c_str(), interface.c_str(), member.c_str(),
                                  const_cast<GVariant*>(arguments.gobj()), nullptr);
  });
}

std::vector<std::string> ServiceDouble::calls() {
  std::vector<std::string> copy;
  sync([&] { copy = calls_; });
  return copy;
}

std::size_t ServiceDouble::count(const std::string& method) {
  const auto all = calls();
  return static_cast<std::size_t>(std::ranges::count(all, method));
}

void ServiceDouble::answer(GDBusMethodInvocation* invocation, Call call) {
  calls_.push_back(call.method);
  const Answer answer = handler_(call);
  if (const auto* values = std::get_if<Glib::VariantContainerBase>(&answer)) {
    g_dbus_method_invocation_return_value(invocation, const_cast<GVariant*>(values->gobj()));
  } else if (const auto* failure = std::get_if<Failure>(&answer)) {
    g_dbus_method_invocation_return_dbus_error(invocation, failure->name.c_str(),
                                               failure->message.c_str());
  } else {
    unanswered_.push_back(invocation);
  }
}

}  // namespace ovinta::test
