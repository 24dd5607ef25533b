#pragma once

#include <any>
#include <functional>
#include <memory>
#include <string_view>

namespace ovinta::platform {

/// The name of a notification; names are equal when their texts are. A constant; may be used from
/// any thread.
struct NotificationName {
  /// Must stay valid as long as anybody observes the name.
  std::string_view text;

  friend constexpr bool operator==(NotificationName, NotificationName) = default;
};

/// Posted by the integration when the application comes to the foreground; no object.
inline constexpr NotificationName kApplicationDidBecomeActive{"applicationDidBecomeActive"};

/// What an observer receives. A plain value.
struct Notification {
  /// The name that it was posted under.
  NotificationName name;
  /// The subject of the notification, of the type documented with the name; empty for none.
  std::any object;

  /// The object when there is one and it is a `T`, otherwise null.
  template <class T>
  const T* objectAs() const {
    return std::any_cast<T>(&object);
  }
};

/// Keeps an observer registered for as long as it lives. Destroying it, from any thread, removes
/// the observer; a delivery that is already running on another thread may still end after that.
class NotificationObserver {
 public:
  virtual ~NotificationObserver() = default;
};

/// Hands notifications from those who post to those who observe. May be used from any thread.
class NotificationCenter {
 public:
  /// What observes; must not throw.
  using Handler = std::function<void(const Notification&)>;

  virtual ~NotificationCenter() = default;

  /// Calls every observer of the name, in the order of their registration, on the calling thread,
  /// and returns when all have returned. No lock is held meanwhile: a handler may post, add and
  /// remove.
  virtual void post(const Notification& notification) = 0;

  /// Has `handler` called at every later post of `name`, on the thread that posts, possibly on
  /// several at once, until the returned token, never null, is destroyed.
  [[nodiscard]] virtual std::unique_ptr<NotificationObserver> addObserver(NotificationName name,
                                                                          Handler handler) = 0;
};

}  // namespace ovinta::platform
