#include "platform/linux/dbus/BusLink.h"

#include <algorithm>
#include <utility>

namespace ovinta::platform::linuxos::dbus {
namespace {

constexpr TimeInterval kShortestRetryDelay = std::chrono::seconds(1);
constexpr TimeInterval kLongestRetryDelay = std::chrono::seconds(60);

Failure describe(GError* error) {
  std::string name;
  if (g_dbus_error_is_remote_error(error)) {
    char* const text = g_dbus_error_get_remote_error(error);
    name = text;
    g_free(text);
    g_dbus_error_strip_remote_error(error);
  } else {
    name = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) ? kNoReply : kDisconnected;
  }
  Failure failure{std::move(name), error->message};
  g_error_free(error);
  return failure;
}

const char* orAny(const std::string& text) { return text.empty() ? nullptr : text.c_str(); }

}  // namespace

/// A subscription or a watch, to which GLib holds pointers while it is attached.
struct BusLink::Registration {
  BusLink* link = nullptr;
  SignalMatch match = {};
  std::function<void(const Signal&)> onSignal = {};
  NameMatch name = {};
  std::function<void(bool)> onPresence = {};
  std::optional<bool> lastPresence = {};
  /// GLib's number of the registration; zero while it is not attached.
  guint id = 0;
};

BusLink::BusLink(std::string address, std::shared_ptr<Log> log, RetryLater retryLater)
    : address_(std::move(address)),
      log_(std::move(log)),
      retryLater_(std::move(retryLater)),
      retryDelay_(kShortestRetryDelay),
      cancellable_(g_cancellable_new()) {}

BusLink::~BusLink() { g_object_unref(cancellable_); }

void BusLink::needConnection() {
  // A connection may have ended without having told of it yet.
  if (connection_ && g_dbus_connection_is_closed(connection_)) lost();
  if (connection_ || deadline_ || isDropped_) return;
  deadline_ = g_timeout_source_new(static_cast<guint>(kCallTimeout.count()));
  // The attempt is ended by an object of its own, also by a link that is dropped, which has the
  // deadline pass at once.
  auto* const attempt = g_cancellable_new();
  g_source_set_callback(
      deadline_,
      [](gpointer expired) -> gboolean {
        g_cancellable_cancel(static_cast<GCancellable*>(expired));
        return G_SOURCE_REMOVE;
      },
      attempt, g_object_unref);
  g_source_attach(deadline_, g_main_context_get_thread_default());
  ++underWay_;
  g_dbus_connection_new_for_address(
      address_.c_str(),
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, attempt,
      [](GObject*, GAsyncResult* result, gpointer link) {
        GError* error = nullptr;
        auto* const made = g_dbus_connection_new_for_address_finish(result, &error);
        static_cast<BusLink*>(link)->connected(made, error ? error->message : "");
        g_clear_error(&error);
      },
      this);
}

bool BusLink::isAwaited() const {
  return std::ranges::any_of(registrations_,
                             [](const auto& each) { return each.second->name.isAwaited; });
}

void BusLink::needRetry() {
  if (!isAwaited() || isDropped_ || std::exchange(isRetryScheduled_, true)) return;
  retryLater_(std::exchange(retryDelay_, std::min(2 * retryDelay_, kLongestRetryDelay)));
}

void BusLink::retry() {
  isRetryScheduled_ = false;
  if (isAwaited()) needConnection();
}

void BusLink::connected(GDBusConnection* connection, const char* failure) {
  --underWay_;
  g_source_destroy(deadline_);
  g_source_unref(std::exchange(deadline_, nullptr));
  connection_ = connection;
  if (connection_) {
    retryDelay_ = kShortestRetryDelay;
    g_signal_connect(connection_, "closed",
                     G_CALLBACK(+[](GDBusConnection*, gboolean, GError*, gpointer link) {
                       static_cast<BusLink*>(link)->lost();
                     }),
                     this);
    for (const auto& [key, registration] : registrations_) attach(*registration);
  } else {
    log({}, "No D-Bus at " + address_ + ": " + failure);
    for (const auto& [key, registration] : registrations_) notePresence(*registration, false);
    needRetry();
  }
  for (auto& pending : std::exchange(waiting_, {})) {
    if (connection_) {
      send(std::move(pending));
    } else {
      pending.completion({.failure = Failure{kDisconnected, failure}});
    }
  }
}

void BusLink::lost() {
  if (!connection_) return;
  for (const auto& [key, registration] : registrations_) detach(*registration);
  g_signal_handlers_disconnect_by_data(connection_, this);
  g_object_unref(std::exchange(connection_, nullptr));
  for (const auto& [key, registration] : registrations_) notePresence(*registration, false);
  needRetry();
}

void BusLink::drop() {
  isDropped_ = true;
  for (const auto& [key, registration] : registrations_) detach(*registration);
  registrations_.clear();
  g_cancellable_cancel(cancellable_);
  if (deadline_) g_source_set_ready_time(deadline_, 0);
  while (underWay_ > 0) g_main_context_iteration(g_main_context_get_thread_default(), TRUE);
  close();
}

void BusLink::close() {
  if (!connection_) return;
  // The end of the connection is awaited, because otherwise the context and the connection would
  // keep each other for ever; but not for long, since the bus may be stuck.
  GSource* const limit = g_timeout_source_new_seconds(1);
  g_source_set_callback(
      limit,
      [](gpointer link) -> gboolean {
        static_cast<BusLink*>(link)->lost();
        static_cast<BusLink*>(link)->underWay_ = 0;
        return G_SOURCE_CONTINUE;
      },
      this, nullptr);
  g_source_attach(limit, g_main_context_get_thread_default());
  ++underWay_;
  g_dbus_connection_close(
      connection_, nullptr,
      [](GObject*, GAsyncResult*, gpointer link) { --static_cast<BusLink*>(link)->underWay_; },
      this);
  while (connection_ || underWay_ > 0) {
    g_main_context_iteration(g_main_context_get_thread_default(), TRUE);
  }
  g_source_destroy(limit);
  g_source_unref(limit);
}

void BusLink::call(MethodCall call, Completion completion) {
  needConnection();
  PendingCall pending{std::move(call), std::move(completion)};
  if (connection_) {
    send(std::move(pending));
  } else {
    waiting_.push_back(std::move(pending));
  }
}

void BusLink::send(PendingCall pending) {
  struct UnderWay {
    BusLink* link;
    Completion completion;
  };
  const MethodCall& call = pending.call;
  ++underWay_;
  g_dbus_connection_call(
      connection_, call.service.c_str(), call.object.c_str(), call.interface.c_str(),
      call.method.c_str(), call.arguments.get(), nullptr,
      call.startsService ? G_DBUS_CALL_FLAGS_NONE : G_DBUS_CALL_FLAGS_NO_AUTO_START,
      static_cast<int>(call.timeout.count()), cancellable_,
      [](GObject* connection, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<UnderWay> ended(static_cast<UnderWay*>(data));
        GError* error = nullptr;
        auto* const values =
            g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, &error);
        --ended->link->underWay_;
        Reply reply;
        if (values) reply.values = Variant::taking(values);
        if (error) reply.failure = describe(error);
        ended->completion(std::move(reply));
      },
      new UnderWay{this, std::move(pending.completion)});
}

void BusLink::subscribe(Key key, SignalMatch match, std::function<void(const Signal&)> handler) {
  add(key, std::make_unique<Registration>(Registration{
               .link = this, .match = std::move(match), .onSignal = std::move(handler)}));
}

void BusLink::watch(Key key, NameMatch match, std::function<void(bool)> handler) {
  add(key, std::make_unique<Registration>(Registration{
               .link = this, .name = std::move(match), .onPresence = std::move(handler)}));
}

void BusLink::add(Key key, std::unique_ptr<Registration> registration) {
  needConnection();
  if (connection_) attach(*registration);
  registrations_.insert_or_assign(key, std::move(registration));
}

void BusLink::remove(Key key) {
  const auto found = registrations_.find(key);
  if (found == registrations_.end()) return;
  detach(*found->second);
  registrations_.erase(found);
}

void BusLink::attach(Registration& registration) {
  if (registration.onSignal) {
    const SignalMatch& match = registration.match;
    registration.id = g_dbus_connection_signal_subscribe(
        connection_, orAny(match.service), orAny(match.interface), orAny(match.member),
        orAny(match.object), orAny(match.argument),
        match.isNamespace ? G_DBUS_SIGNAL_FLAGS_MATCH_ARG0_NAMESPACE : G_DBUS_SIGNAL_FLAGS_NONE,
        [](GDBusConnection*, const char*, const char* object, const char* interface,
           const char* member, GVariant* arguments, gpointer data) {
          static_cast<Registration*>(data)->onSignal(
              {object, interface, member, Variant::sharing(arguments)});
        },
        &registration, nullptr);
    return;
  }
  registration.id = g_bus_watch_name_on_connection(
      connection_, registration.name.name.c_str(),
      registration.name.activates ? G_BUS_NAME_WATCHER_FLAGS_AUTO_START
                                  : G_BUS_NAME_WATCHER_FLAGS_NONE,
      [](GDBusConnection*, const char*, const char*, gpointer data) {
        auto* const self = static_cast<Registration*>(data);
        self->link->notePresence(*self, true);
      },
      [](GDBusConnection*, const char*, gpointer data) {
        auto* const self = static_cast<Registration*>(data);
        self->link->notePresence(*self, false);
      },
      &registration, nullptr);
}

void BusLink::detach(Registration& registration) {
  const guint id = std::exchange(registration.id, 0);
  if (id == 0) return;
  if (registration.onSignal) {
    g_dbus_connection_signal_unsubscribe(connection_, id);
  } else {
    g_bus_unwatch_name(id);
  }
}

void BusLink::notePresence(Registration& registration, bool isPresent) {
  if (!registration.onPresence || registration.lastPresence == isPresent) return;
  const std::string& name = registration.name.name;
  if (!isPresent && connection_ && registration.name.isAwaited) {
    log(name, name + " is not on the bus");
  }
  registration.lastPresence = isPresent;
  registration.onPresence(isPresent);
}

void BusLink::log(const std::string& subject, const std::string& line) {
  if (logged_.insert(subject).second) log_->write(line);
}

}  // namespace ovinta::platform::linuxos::dbus
