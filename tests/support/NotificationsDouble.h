#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/ServiceDouble.h"

namespace ovinta::test {

/// Stands for the desktop's notification service: tells of a click, and of the end of a
/// notification, only the connection that has shown it.
class NotificationsDouble {
 public:
  struct Shown {
    std::uint32_t number;
    std::string client, application, title, body;
    std::vector<Glib::ustring> actions;
    platform::linux::dbus::Properties hints;
  };

  explicit NotificationsDouble(const PrivateBus& bus);

  void setCapabilities(std::vector<Glib::ustring> capabilities);
  void appear() { service_.appear(); }
  void vanish() { service_.vanish(); }

  /// What was shown so far.
  std::vector<Shown> shown();

  void click(const Shown& notification);
  void close(const Shown& notification);

 private:
  ServiceDouble::Answer answer(const ServiceDouble::Call& call);

  /// Used on the service's thread.
  std::vector<Glib::ustring> capabilities_{"actions", "body", "body-markup"};
  std::vector<Shown> shown_;
  ServiceDouble service_;
};

}  // namespace ovinta::test
