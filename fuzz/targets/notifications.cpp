#include "fuzz/Target.h"
#include "platform/linux/UserNotificationJSON.h"

namespace ovinta::fuzz {
namespace {

using namespace platform;

void run(std::string_view input) {
  const auto requests = linux::notificationRequests(input);
  const std::string text = linux::notificationRequestsText(requests);
  require(linux::notificationRequests(text) == requests, "kept notifications read back as written");
}

const Target kTarget("notifications", run);

}  // namespace
}  // namespace ovinta::fuzz
