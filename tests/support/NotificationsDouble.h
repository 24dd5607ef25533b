#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/ServiceDouble.h"

namespace ovinta::test {

/// Stands for the desktop's notification service: tells of a click, and of the end of a
/// notification, only the connection that has shown it.
class NotificationsDouble {
 public:
  using Texts = std::vector<std::string>;
  struct Shown {
    std::uint32_t number;
    std::string client, application, title, body;
    Texts actions;
    dbus::Properties hints;
  };

  explicit NotificationsDouble(const replay::PrivateBus& bus)
      : service_(
            bus, kName,
            {{"GetServerInformation", ""}, {"GetCapabilities", ""}, {"Notify", "susssasa{sv}i"}},
            [this](const auto& call) { return answer(call); }) {
    service_.addObject(kPath, kName);
  }

  void setCapabilities(Texts capabilities) {
    service_.sync([&] { capabilities_ = std::move(capabilities); });
  }
  /// From now on it is too slow to be waited for.
  void setSlow() {
    service_.sync([&] { isSlow_ = true; });
  }
  /// Leaves what it is to show without an answer until `release`.
  void hold() {
    service_.sync([&] { isHeld_ = true; });
  }
  /// Shows it, or fails to.
  void release(std::optional<dbus::Failure> failure = {}) {
    service_.sync([&] {
      isHeld_ = false;
      failure_ = std::move(failure);
    });
    service_.answerLate();
    service_.sync([&] { failure_.reset(); });
  }
  /// How many it was to show so far.
  std::size_t requestCount() { return service_.count("Notify"); }
  void appear() { service_.appear(); }
  void vanish() { service_.vanish(); }

  /// What was shown so far.
  std::vector<Shown> shown() {
    return service_.sync([&] { return shown_; });
  }

  /// A click, after which the notification is dismissed.
  void click(const Shown& shown) {
    service_.emit(kPath, kName, "ActionInvoked", dbus::arguments(shown.number, "default"),
                  shown.client);
    close(shown);
  }

  void close(const Shown& shown) {
    service_.emit(kPath, kName, "NotificationClosed", dbus::arguments(shown.number, 2U),
                  shown.client);
  }

 private:
  static constexpr const char* kName = "org.freedesktop.Notifications";
  static constexpr const char* kPath = "/org/freedesktop/Notifications";

  ServiceDouble::Answer answer(const ServiceDouble::Call& call) {
    if (call.method == "GetServerInformation") {
      return dbus::arguments("double", "the tests", "1.9", "1.2");
    }
    const dbus::Failure late{dbus::kNoReply, "late"};
    if (call.method == "GetCapabilities" && isSlow_) return late;
    if (call.method == "GetCapabilities") return dbus::arguments(capabilities_);
    if (isHeld_) return ServiceDouble::NoAnswer{};
    if (failure_) return *failure_;
    const auto text = [&](std::size_t place) {
      return dbus::read<std::string>(call.arguments, place).value();
    };
    // The number is not the same as its place: services do not begin with 1.
    shown_.push_back({.number = 7 + static_cast<std::uint32_t>(shown_.size()),
                      .client = call.sender,
                      .application = text(0),
                      .title = text(3),
                      .body = text(4),
                      .actions = dbus::read<Texts>(call.arguments, 5).value(),
                      .hints = dbus::read<dbus::Properties>(call.arguments, 6).value()});
    if (isSlow_) return late;
    return dbus::arguments(shown_.back().number);
  }

  Texts capabilities_{"actions", "body", "body-markup"};
  bool isSlow_ = false;
  bool isHeld_ = false;
  std::optional<dbus::Failure> failure_;
  std::vector<Shown> shown_;
  ServiceDouble service_;
};

}  // namespace ovinta::test
