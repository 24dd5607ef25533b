#pragma once

#include <cstdint>
#include <mutex>
#include <string>

#include "tests/support/ServiceDouble.h"

namespace ovinta::test {

/// GeoClue 2.6 as its clients see it: the same names, signatures and error texts, signals to the
/// owner of a client only, and no answer at all while nobody is there to ask the user.
class GeoClueDouble {
 public:
  enum class Mood { willing, withoutAgent, disallowing, disabled };

  explicit GeoClueDouble(const PrivateBus& bus);

  void setMood(Mood mood);

  /// Sends a fix to every client that runs.
  void feed(double latitude, double longitude, double accuracy = 10, double speed = -1,
            std::uint64_t seconds = 0);
  /// The user's switch, while clients run.
  void switchLocation(bool isOn);

  /// How many clients exist, and the last one that was made.
  std::size_t clientCount();
  std::string lastClient();

  ServiceDouble& service() { return service_; }

  static constexpr const char* kClient = "org.freedesktop.GeoClue2.Client";

 private:
  struct Client {
    std::string owner;
    bool isRunning = false;
  };

  ServiceDouble::Answer answer(const ServiceDouble::Call& call);
  ServiceDouble::Answer create(const std::string& owner);
  ServiceDouble::Answer start(const std::string& path);

  Mood mood_ = Mood::willing;
  std::map<std::string, Client> clients_;
  std::string lastClient_;
  int objectCount_ = 0;
  ServiceDouble service_;
};

}  // namespace ovinta::test
