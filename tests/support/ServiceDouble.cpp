#include "tests/support/ServiceDouble.h"

#include <algorithm>
#include <stdexcept>

namespace ovinta::test {

using namespace platform::linuxos::dbus;

namespace {

constexpr const char* kProperties = "org.freedesktop.DBus.Properties";
constexpr const char* kDouble = "double";

GDBusMessage* replyTo(GDBusMessage* message, const ServiceDouble::Answer& answer) {
  if (const auto* failure = std::get_if<Failure>(&answer)) {
    return g_dbus_message_new_method_error_literal(message, failure->name.c_str(),
                                                   failure->message.c_str());
  }
  GDBusMessage* const reply = g_dbus_message_new_method_reply(message);
  const auto& values = std::get<Variant>(answer);
  if (values) g_dbus_message_set_body(reply, values.get());
  return reply;
}

}  // namespace

ServiceDouble::ServiceDouble(const replay::PrivateBus& bus, std::string name,
                             std::map<std::string, std::string> methods,
                             std::function<Answer(const Call&)> handler)
    : name_(std::move(name)),
      methods_(std::move(methods)),
      handler_(std::move(handler)),
      connection_(g_dbus_connection_new_for_address_sync(
          bus.address().c_str(),
          static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                            G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
          nullptr, nullptr, nullptr)) {
  if (!connection_) throw std::runtime_error("the private bus is gone");
  g_object_set_data(G_OBJECT(connection_), kDouble, this);
  g_dbus_connection_add_filter(connection_, &receive, nullptr, nullptr);
  appear();
}

ServiceDouble::~ServiceDouble() {
  sync([&] { g_object_set_data(G_OBJECT(connection_), kDouble, nullptr); });
  for (GDBusMessage* message : waiting_) g_object_unref(message);
  g_dbus_connection_close_sync(connection_, nullptr, nullptr);
  g_object_unref(connection_);
}

void ServiceDouble::askBus(const char* method, GVariant* arguments) {
  GVariant* const reply = g_dbus_connection_call_sync(
      connection_, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
      arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
  if (reply) g_variant_unref(reply);
}

void ServiceDouble::appear() { askBus("RequestName", g_variant_new("(su)", name_.c_str(), 0U)); }

void ServiceDouble::vanish() {
  askBus("ReleaseName", g_variant_new("(s)", name_.c_str()));
  sync([&] {
    for (GDBusMessage* message : std::exchange(waiting_, {})) send(message, Failure{kNoReply, ""});
  });
}

void ServiceDouble::answerLate() {
  sync([&] {
    for (GDBusMessage* message : std::exchange(waiting_, {})) {
      send(message, handler_(read(message)));
    }
  });
}

ServiceDouble::Call ServiceDouble::read(GDBusMessage* message) {
  GVariant* const body = g_dbus_message_get_body(message);
  return {g_dbus_message_get_sender(message), g_dbus_message_get_path(message),
          g_dbus_message_get_interface(message), g_dbus_message_get_member(message),
          Variant::sharing(body)};
}

void ServiceDouble::send(GDBusMessage* message, const Answer& answer) {
  if (std::holds_alternative<NoAnswer>(answer)) return waiting_.push_back(message);
  GDBusMessage* const reply = replyTo(message, answer);
  g_dbus_connection_send_message(connection_, reply, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr,
                                 nullptr);
  g_object_unref(reply);
  g_object_unref(message);
  if (const auto task = std::exchange(afterAnswer_, nullptr)) task();
}

void ServiceDouble::setForbidden(bool isForbidden) {
  sync([&] { isForbidden_ = isForbidden; });
}

void ServiceDouble::addObject(const std::string& path, const std::string& interface,
                              Properties properties) {
  sync([&] { objects_[{path, interface}] = std::move(properties); });
}

void ServiceDouble::removeObject(const std::string& path) {
  sync([&] {
    std::erase_if(objects_, [&](const auto& entry) { return entry.first.first == path; });
  });
}

void ServiceDouble::change(const std::string& path, const std::string& interface,
                           const Properties& changed, const std::string& destination) {
  sync([&] {
    for (const auto& [name, value] : changed) objects_[{path, interface}][name] = value;
    emit(path, kProperties, "PropertiesChanged",
         arguments(interface, changed, std::vector<std::string>()), destination);
  });
}

void ServiceDouble::emit(const std::string& path, const std::string& interface,
                         const std::string& member, const Variant& arguments,
                         const std::string& destination) {
  g_dbus_connection_emit_signal(connection_, destination.empty() ? nullptr : destination.c_str(),
                                path.c_str(), interface.c_str(), member.c_str(), arguments.get(),
                                nullptr);
}

std::vector<std::string> ServiceDouble::calls() {
  return sync([&] { return calls_; });
}

std::size_t ServiceDouble::count(const std::string& method) {
  return static_cast<std::size_t>(std::ranges::count(calls(), method));
}

GDBusMessage* ServiceDouble::receive(GDBusConnection* connection, GDBusMessage* message,
                                     gboolean isIncoming, gpointer) {
  const std::lock_guard guard(lock);
  auto* const self = static_cast<ServiceDouble*>(g_object_get_data(G_OBJECT(connection), kDouble));
  if (!self || !isIncoming ||
      g_dbus_message_get_message_type(message) != G_DBUS_MESSAGE_TYPE_METHOD_CALL) {
    return message;
  }
  self->send(message, self->answer(read(message)));
  return nullptr;
}

ServiceDouble::Answer ServiceDouble::answer(const Call& call) {
  if (isForbidden_) return Failure{kAccessDenied, "Rejected send message"};
  if (call.interface == kProperties) return answerForProperties(call);
  const auto signature = methods_.find(call.method);
  if (signature == methods_.end() || !objects_.contains({call.object, call.interface})) {
    return Failure{"org.freedesktop.DBus.Error.UnknownMethod", call.object + " " + call.method};
  }
  const std::string given = call.arguments ? g_variant_get_type_string(call.arguments.get()) : "()";
  if (given != "(" + signature->second + ")") {
    return Failure{"org.freedesktop.DBus.Error.InvalidArgs", given};
  }
  calls_.push_back(call.method);
  return handler_(call);
}

ServiceDouble::Answer ServiceDouble::answerForProperties(const Call& call) {
  const auto object =
      objects_.find({call.object, dbus::read<std::string>(call.arguments, 0).value()});
  if (object == objects_.end()) {
    return Failure{"org.freedesktop.DBus.Error.UnknownInterface", call.object};
  }
  if (call.method == "GetAll") return arguments(object->second);
  object->second[dbus::read<std::string>(call.arguments, 1).value()] =
      dbus::read<Variant>(call.arguments, 2).value();
  return Variant();
}

}  // namespace ovinta::test
