#pragma once

#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "../NotificationCenter.h"

namespace ovinta::platform::simulation {

/// Keeps every notification and passes it on to another centre, where the observers are. May be
/// used from any thread.
class RecordingNotificationCenter : public NotificationCenter {
 public:
  /// `next` must not be null.
  explicit RecordingNotificationCenter(std::shared_ptr<NotificationCenter> next)
      : next_(std::move(next)) {}

  void post(const Notification& notification) override {
    {
      const std::lock_guard lock(mutex_);
      posted_.push_back(notification);
    }
    next_->post(notification);
  }

  std::unique_ptr<NotificationObserver> addObserver(NotificationName name,
                                                    Handler handler) override {
    return next_->addObserver(name, std::move(handler));
  }

  /// All notifications so far, in the order of their posting; with a name those of that name.
  std::vector<Notification> posted() const {
    const std::lock_guard lock(mutex_);
    return posted_;
  }
  std::vector<Notification> posted(NotificationName name) const {
    auto found = posted();
    std::erase_if(found, [name](const Notification& other) { return other.name != name; });
    return found;
  }

 private:
  const std::shared_ptr<NotificationCenter> next_;
  mutable std::mutex mutex_;
  std::vector<Notification> posted_;
};

}  // namespace ovinta::platform::simulation
