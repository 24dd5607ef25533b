#include "fuzz/Target.h"
#include "platform/linux/notifications/UserNotificationJSON.h"

namespace ovinta::fuzz {
namespace {

using namespace platform;

void run(std::string_view input) {
  const auto requests = linuxos::notificationRequests(input);
  const std::string text = linuxos::notificationRequestsText(requests);
  require(linuxos::notificationRequests(text) == requests,
          "kept notifications read back as written");
}

const Target kTarget("notifications", run);

}  // namespace
}  // namespace ovinta::fuzz
