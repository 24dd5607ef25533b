#include "OvintaSDK/core/PostNotification.h"

#include "platform/Services.h"

namespace ovinta {

void postNotification(platform::NotificationName name, std::any object) {
  platform::services().notificationCenter->post({.name = name, .object = std::move(object)});
}

void postNotification(platform::NotificationName name, const ErrorPtr& error) {
  postNotification(name, error ? std::any(error) : std::any());
}

}  // namespace ovinta
