#pragma once

#include <any>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "OvintaSDK/core/Dates.h"
#include "OvintaSDK/core/Guarded.h"
#include "OvintaSDK/core/Lazy.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "platform/NotificationCenter.h"
#include "platform/OperationQueue.h"
#include "platform/PersistentContainer.h"
#include "platform/Services.h"

namespace ovinta {

/// What the managers of one library share: the platform's services, the application's tokens, and
/// what is made once from them, each part on first use. Knows no manager. May be used from any
/// thread. Several may live in one process. Whatever works with one shares it.
class Context {
 public:
  /// `services` is asked each time, so that the services may be installed after the context is
  /// made; what it answers must stay valid for as long as the context lives, which is until the
  /// last request in flight has ended.
  explicit Context(std::function<const platform::Services&()> services)
      : services_(std::move(services)),
        dates_([this] { return this->services().dateFormatters; }) {}
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;

  const platform::Services& services() const { return services_(); }

  Guarded<std::optional<std::string>> appToken;
  Guarded<std::optional<std::string>> pushToken;

  /// The versions of the library and of the host application, each read once; empty when there is
  /// none.
  const std::string& sdkVersion();
  const std::string& appVersion();

  /// Runs every request to the service.
  platform::OperationQueue& apiQueue();
  /// Runs the writes to the order store, one at a time.
  platform::OperationQueue& storeQueue();
  /// The order store. A missing model or a store that cannot be loaded ends the process.
  platform::PersistentContainer& persistentContainer();

  const Dates& dates() const { return dates_; }

  /// The URL that the text stands for, null when it stands for none. The last one is kept, since
  /// nearly all requests go to one base URL.
  std::shared_ptr<const platform::URL> url(const std::string& text);

  /// The text kept under the key, or its registered default, or absent.
  std::optional<std::string> setting(UserDefaultsKey key) const;

  /// Writes one line to the platform's log.
  void log(std::string_view line) const;

  /// Posts on the default notification centre, synchronously on the calling thread; call it with no
  /// lock held. An empty object stands for none.
  void post(platform::NotificationName name, std::any object = {}) const;

 private:
  /// A text, the URL that it stands for, and who said so.
  struct ReadURL {
    std::shared_ptr<platform::URLFormat> format;
    std::string text;
    std::optional<platform::URL> url;
  };

  const std::function<const platform::Services&()> services_;
  Guarded<std::shared_ptr<const ReadURL>> lastURL_;
  Lazy<const std::string> sdkVersion_;
  Lazy<const std::string> appVersion_;
  Lazy<platform::OperationQueue> apiQueue_;
  Lazy<platform::OperationQueue> storeQueue_;
  Lazy<platform::PersistentContainer> persistentContainer_;
  const Dates dates_;
};

using ContextPtr = std::shared_ptr<Context>;

}  // namespace ovinta
