#include "platform/linux/notifications/UserNotificationJSON.h"

#include <optional>

#include "platform/JSON.h"

namespace ovinta::platform::linuxos {
namespace {

Dictionary fieldsOf(const UserNotificationRequest& request) {
  const CircularRegion& region = request.trigger.region;
  return {{"identifier", request.identifier},
          {"title", request.content.title},
          {"body", request.content.body},
          {"sound", request.content.sound == NotificationSound::defaultSound},
          {"userInfo", request.content.userInfo},
          {"latitude", region.center.latitude},
          {"longitude", region.center.longitude},
          {"radius", region.radius},
          {"region", region.identifier},
          {"onEntry", region.notifyOnEntry},
          {"onExit", region.notifyOnExit},
          {"repeats", request.trigger.repeats}};
}

/// Takes the fields of one object, and remembers whether one was missing.
class Reader {
 public:
  explicit Reader(const Dictionary& fields) : fields_(fields) {}

  template <class T>
  T take(std::string_view key) {
    if (const T* value = find<T>(fields_, key)) return *value;
    isWhole_ = false;
    return {};
  }
  bool isWhole() const { return isWhole_; }

 private:
  const Dictionary& fields_;
  bool isWhole_ = true;
};

std::optional<UserNotificationRequest> requestOf(const Dictionary& fields) {
  Reader reader(fields);
  UserNotificationRequest request{
      .identifier = reader.take<std::string>("identifier"),
      .content = {.title = reader.take<std::string>("title"),
                  .body = reader.take<std::string>("body"),
                  .sound = reader.take<bool>("sound") ? NotificationSound::defaultSound
                                                      : NotificationSound::none,
                  .userInfo = reader.take<Dictionary>("userInfo")},
      .trigger = {.region = {.center = {.latitude = reader.take<double>("latitude"),
                                        .longitude = reader.take<double>("longitude")},
                             .radius = reader.take<double>("radius"),
                             .identifier = reader.take<std::string>("region"),
                             .notifyOnEntry = reader.take<bool>("onEntry"),
                             .notifyOnExit = reader.take<bool>("onExit")},
                  .repeats = reader.take<bool>("repeats")}};
  return reader.isWhole() ? std::optional(std::move(request)) : std::nullopt;
}

}  // namespace

std::string typedJSON(const Value& value) {
  JSONWriter writer(true);
  writer.value(value);
  return writer.take();
}

std::string notificationRequestsText(const std::vector<UserNotificationRequest>& requests) {
  List list;
  for (const UserNotificationRequest& request : requests) list.emplace_back(fieldsOf(request));
  return typedJSON(list);
}

std::vector<UserNotificationRequest> notificationRequests(std::string_view text) {
  std::vector<UserNotificationRequest> requests;
  const auto value = parseJSON(text);
  const auto* list = value ? value->as<List>() : nullptr;
  if (!list) return requests;
  for (const Value& element : *list) {
    const auto* fields = element.as<Dictionary>();
    if (auto request = fields ? requestOf(*fields) : std::nullopt) {
      requests.push_back(*std::move(request));
    }
  }
  return requests;
}

}  // namespace ovinta::platform::linuxos
