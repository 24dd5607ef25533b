#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/portable/Portable.h"

namespace ovinta::platform::portable {
namespace {

struct Registration {
  explicit Registration(NotificationCenter::Handler callee) : handler(std::move(callee)) {}

  const NotificationCenter::Handler handler;
  /// Whether the observer is still registered; cleared on removal, so that a post in progress
  /// passes over it.
  std::atomic<bool> active{true};
};

/// The observers of a name. A list is never changed once it is in the table, because a post walks
/// the list that it found.
using Registrations = std::vector<std::shared_ptr<Registration>>;

class RegistrationTable {
 public:
  std::shared_ptr<const Registrations> find(std::string_view name) const {
    const std::lock_guard lock(mutex_);
    const auto entry = lists_.find(name);
    return entry == lists_.end() ? nullptr : entry->second;
  }

  void add(std::string_view name, std::shared_ptr<Registration> registration) {
    const std::lock_guard lock(mutex_);
    auto& list = lists_[std::string(name)];
    auto longer = list ? std::make_shared<Registrations>(*list) : std::make_shared<Registrations>();
    longer->push_back(std::move(registration));
    list = std::move(longer);
  }

  void remove(std::string_view name, const std::shared_ptr<Registration>& registration) {
    registration->active = false;
    std::shared_ptr<const Registrations> released;
    const std::lock_guard lock(mutex_);
    const auto entry = lists_.find(name);
    auto shorter = std::make_shared<Registrations>(*entry->second);
    std::erase(*shorter, registration);
    released = std::exchange(entry->second, std::move(shorter));
    if (entry->second->empty()) lists_.erase(entry);
  }

 private:
  mutable std::mutex mutex_;
  std::map<std::string, std::shared_ptr<const Registrations>, std::less<>> lists_;
};

class ObserverToken : public NotificationObserver {
 public:
  ObserverToken(std::shared_ptr<RegistrationTable> table, NotificationName name,
                std::shared_ptr<Registration> registration)
      : table_(std::move(table)), name_(name.text), registration_(std::move(registration)) {}
  ~ObserverToken() override { table_->remove(name_, registration_); }

 private:
  std::shared_ptr<RegistrationTable> table_;
  std::string name_;
  /// The registration is owned here too, so that the handler, whose destructor may call back, is
  /// never destroyed under the table's lock.
  std::shared_ptr<Registration> registration_;
};

class SynchronousNotificationCenter : public NotificationCenter {
 public:
  void post(const Notification& notification) override {
    const auto registrations = table_->find(notification.name.text);
    if (!registrations) return;
    for (const auto& registration : *registrations) {
      if (registration->active) registration->handler(notification);
    }
  }

  std::unique_ptr<NotificationObserver> addObserver(NotificationName name,
                                                    Handler handler) override {
    auto registration = std::make_shared<Registration>(std::move(handler));
    table_->add(name.text, registration);
    return std::make_unique<ObserverToken>(table_, name, std::move(registration));
  }

 private:
  /// The table is shared with the tokens, which may outlive the centre.
  std::shared_ptr<RegistrationTable> table_ = std::make_shared<RegistrationTable>();
};

}  // namespace

std::shared_ptr<NotificationCenter> makeNotificationCenter() {
  return std::make_shared<SynchronousNotificationCenter>();
}

}  // namespace ovinta::platform::portable
