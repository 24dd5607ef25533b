#include "cli/client/PendingNotifications.h"

#include <future>
#include <memory>

#include "OvintaSDK/OvintaSDK.h"

namespace ovinta::cli {

using platform::UserNotificationRequest;

std::vector<UserNotificationRequest> pendingNotifications(
    platform::UserNotificationCenter& center) {
  const auto answer = std::make_shared<std::promise<std::vector<UserNotificationRequest>>>();
  center.getPendingNotificationRequests(
      [answer](auto pending) { answer->set_value(std::move(pending)); });
  auto requests = answer->get_future().get();
  std::erase_if(requests, [](const UserNotificationRequest& request) {
    return !Ovinta::notify().isOvintaNotifyUserInfo(request.content.userInfo);
  });
  return requests;
}

}  // namespace ovinta::cli
