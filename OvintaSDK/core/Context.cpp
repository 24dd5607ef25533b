#include "OvintaSDK/core/Context.h"

#include <utility>

#include "OvintaSDK/core/OrderStoreContainer.h"

namespace ovinta {
namespace {

std::shared_ptr<const std::string> shortVersion(const platform::Bundle& bundle) {
  return std::make_shared<const std::string>(
      bundle.infoText("CFBundleShortVersionString").value_or(""));
}

}  // namespace

const std::string& Context::sdkVersion() {
  return sdkVersion_.get([this] { return shortVersion(*services().libraryBundle); });
}

const std::string& Context::appVersion() {
  return appVersion_.get([this] { return shortVersion(*services().mainBundle); });
}

platform::OperationQueue& Context::apiQueue() {
  return apiQueue_.get([this] { return services().operationQueues->makeQueue(); });
}

platform::OperationQueue& Context::storeQueue() {
  return storeQueue_.get([this] {
    auto queue = services().operationQueues->makeQueue();
    queue->setMaxConcurrentOperationCount(1);
    return queue;
  });
}

platform::PersistentContainer& Context::persistentContainer() {
  return persistentContainer_.get([this] {
    auto container = makeOrderStoreContainer(services());
    storeQueue().setMaxConcurrentOperationCount(1);
    return container;
  });
}

std::shared_ptr<const platform::URL> Context::url(const std::string& text) {
  const std::shared_ptr<platform::URLFormat>& format = services().urls;
  auto known = lastURL_.get();
  if (!known || known->text != text || known->format != format) {
    known = std::make_shared<const ReadURL>(ReadURL{format, text, format->parse(text)});
    lastURL_.set(known);
  }
  const platform::URL* const url = known->url ? &*known->url : nullptr;
  return {std::move(known), url};
}

std::optional<std::string> Context::setting(UserDefaultsKey key) const {
  return stringForKey(*services().settings, key);
}

void Context::log(std::string_view line) const { services().log->write(line); }

void Context::post(platform::NotificationName name, std::any object) const {
  services().notificationCenter->post({.name = name, .object = std::move(object)});
}

}  // namespace ovinta
