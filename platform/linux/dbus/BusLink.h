#pragma once

#include <gio/gio.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/Date.h"
#include "platform/Log.h"
#include "platform/linux/dbus/Message.h"

namespace ovinta::platform::linuxos::dbus {

/// The connection to one bus, made when it is first needed. One that is lost, or cannot be made, is
/// made anew when it is needed again and, while somebody waits for a service or a signal, tried
/// again after a second and then ever more rarely, once a minute in the end. It is private: the one
/// that GLib shares ends the process when the bus goes away. Lives and calls back on one thread and
/// its default context.
class BusLink {
 public:
  using Completion = std::function<void(Reply)>;
  using Key = const void*;
  /// Has the link's thread call `retry` after the delay.
  using RetryLater = std::function<void(TimeInterval delay)>;

  BusLink(std::string address, std::shared_ptr<Log> log, RetryLater retryLater);
  ~BusLink();
  BusLink(const BusLink&) = delete;
  BusLink& operator=(const BusLink&) = delete;

  /// Calls `completion` once, after this call.
  void call(MethodCall call, Completion completion);

  /// Calls `handler` at each signal, until the key is removed.
  void subscribe(Key key, SignalMatch match, std::function<void(const Signal&)> handler);

  /// Calls `handler` soon with whether the name has an owner, and at each change, until the key is
  /// removed. Without a bus no name has one.
  void watch(Key key, NameMatch match, std::function<void(bool)> handler);
  void remove(Key key);

  void retry();

  /// Writes the line unless one was written of the subject, which is empty for the bus.
  void log(const std::string& subject, const std::string& line);

  /// Ends the connection for good. The calls under way end in failures before this returns.
  void drop();

 private:
  struct Registration;
  struct PendingCall {
    MethodCall call;
    Completion completion;
  };

  void needConnection();
  /// Whether anybody would gain from a connection. A signal is always awaited.
  bool isAwaited() const;
  void needRetry();
  void connected(GDBusConnection* connection, const char* failure);
  void lost();
  void close();
  void add(Key key, std::unique_ptr<Registration> registration);
  void attach(Registration& registration);
  void detach(Registration& registration);
  void send(PendingCall pending);
  void notePresence(Registration& registration, bool isPresent);

  const std::string address_;
  const std::shared_ptr<Log> log_;
  const RetryLater retryLater_;
  /// The time from a failure to the next retry.
  TimeInterval retryDelay_;
  bool isRetryScheduled_ = false;
  GDBusConnection* connection_ = nullptr;
  /// Cancels all that is under way when the link is dropped.
  GCancellable* const cancellable_;
  /// Ends the attempt to connect when it has taken too long; null while there is none.
  GSource* deadline_ = nullptr;
  bool isDropped_ = false;
  /// How many calls, the attempt to connect among them, have not come back.
  std::size_t underWay_ = 0;
  std::unordered_map<Key, std::unique_ptr<Registration>> registrations_;
  std::vector<PendingCall> waiting_;
  std::set<std::string> logged_;
};

}  // namespace ovinta::platform::linuxos::dbus
