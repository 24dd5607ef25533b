#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include "platform/linux/location/PositionHub.h"
#include "platform/linux/location/geoclue/GeoClueProvider.h"
#include "tests/platform/simulation/Sphere.h"
#include "tests/support/ServiceDouble.h"

namespace ovinta::test {

/// GeoClue 2.6 as its clients see it: the same names, signatures and error texts, signals to the
/// owner of a client only, and no answer at all while nobody is there to ask the user.
class GeoClueDouble {
 public:
  enum class Mood { willing, withoutAgent, disallowing, disabled };

  explicit GeoClueDouble(const replay::PrivateBus& bus)
      : service_(bus, "org.freedesktop.GeoClue2",
                 {{"CreateClient", ""}, {"DeleteClient", "o"}, {"Start", ""}, {"Stop", ""}},
                 [this](const auto& call) { return answer(call); }) {
    service_.addObject("/org/freedesktop/GeoClue2/Manager", "org.freedesktop.GeoClue2.Manager");
  }

  /// Requests that had to wait for an agent are answered when it comes.
  void setMood(Mood mood) {
    service_.sync([&] { mood_ = mood; });
    if (mood != Mood::withoutAgent) service_.answerLate();
  }

  /// Takes all clients with it.
  void vanish() {
    service_.vanish();
    service_.sync([&] {
      for (const auto& [path, client] : std::exchange(clients_, {})) service_.removeObject(path);
    });
  }

  /// Sends a fix to every client that runs and whose last one is at least its threshold away.
  void feed(platform::Coordinate place, double accuracy = 10, double speed = -1,
            std::uint64_t seconds = 0) {
    service_.sync([&] {
      for (auto& [path, client] : clients_) {
        if (!client.isRunning || !passesThreshold(path, client, place)) continue;
        const std::string fix = path + "/Location/" + std::to_string(++objectCount_);
        const std::tuple<std::uint64_t, std::uint64_t> time(seconds, 250'000);
        service_.addObject(fix, "org.freedesktop.GeoClue2.Location",
                           {{"Latitude", dbus::write(place.latitude)},
                            {"Longitude", dbus::write(place.longitude)},
                            {"Accuracy", dbus::write(accuracy)},
                            {"Speed", dbus::write(speed)},
                            {"Timestamp", dbus::write(time)}});
        service_.emit(path, kClient, "LocationUpdated",
                      dbus::arguments(dbus::ObjectPath("/"), dbus::ObjectPath(fix)), client.owner);
      }
    });
  }

  /// The user's switch: clients that run are told, others cannot start while it is off.
  void switchLocation(bool isOn) {
    service_.sync([&] {
      isOn_ = isOn;
      for (auto& [path, client] : clients_) {
        client.isRunning = isOn;
        service_.change(path, kClient, {{"Active", dbus::write(isOn)}}, client.owner);
      }
    });
  }

  std::size_t clientCount() {
    return service_.sync([&] { return clients_.size(); });
  }
  /// A property of the client that was made last.
  template <class T = std::uint32_t>
  std::optional<T> lastClients(const char* property) {
    return service_.property<T>(service_.sync([&] { return lastClient_; }), kClient, property);
  }

  ServiceDouble& service() { return service_; }

 private:
  static constexpr const char* kClient = "org.freedesktop.GeoClue2.Client";

  struct Client {
    std::string owner;
    bool isRunning = false;
    std::optional<platform::Coordinate> last = {};
  };

  bool passesThreshold(const std::string& path, Client& client, platform::Coordinate place) {
    const auto metres = service_.property<std::uint32_t>(path, kClient, "DistanceThreshold");
    const platform::simulation::Sphere sphere;
    if (client.last && sphere.distance(*client.last, place) < metres.value_or(0)) return false;
    client.last = place;
    return true;
  }

  ServiceDouble::Answer answer(const ServiceDouble::Call& call) {
    if (call.method == "CreateClient") return create(call.sender);
    if (call.method == "Start") return start(call.object);
    if (call.method == "Stop") clients_[call.object].isRunning = false;
    if (call.method == "DeleteClient") {
      const std::string path = dbus::read<dbus::ObjectPath>(call.arguments, 0).value_or("");
      clients_.erase(path);
      service_.removeObject(path);
    }
    return dbus::Variant();
  }

  ServiceDouble::Answer create(const std::string& owner) {
    if (mood_ == Mood::withoutAgent) return ServiceDouble::NoAnswer{};
    lastClient_ = "/org/freedesktop/GeoClue2/Client/" + std::to_string(++objectCount_);
    clients_[lastClient_] = {owner};
    service_.addObject(lastClient_, kClient);
    return dbus::arguments(dbus::ObjectPath(lastClient_));
  }

  ServiceDouble::Answer start(const std::string& path) {
    const auto denied = [](const char* text) { return dbus::Failure{dbus::kAccessDenied, text}; };
    if (!service_.property<std::string>(path, kClient, "DesktopId")) {
      return denied("'DesktopId' property must be set");
    }
    if (mood_ == Mood::disallowing) return denied("'tests' disallowed by configuration for UID 0");
    if (mood_ == Mood::disabled || !isOn_) return denied("Geolocation disabled for UID 0");
    Client& client = clients_[path];
    client.isRunning = true;
    service_.afterAnswer([this, path, owner = client.owner] {
      service_.change(path, kClient, {{"Active", dbus::write(true)}}, owner);
    });
    return dbus::Variant();
  }

  Mood mood_ = Mood::willing;
  bool isOn_ = true;
  std::map<std::string, Client> clients_;
  std::string lastClient_;
  int objectCount_ = 0;
  ServiceDouble service_;
};

/// A hub on the GeoClue of the bus.
inline std::shared_ptr<platform::linuxos::PositionHub> makeGeoClueHub(
    std::shared_ptr<dbus::Bus> bus, const std::shared_ptr<platform::MainQueue>& mainQueue,
    const std::filesystem::path& configuration = "none") {
  using Provider = platform::linuxos::GeoClueProvider;
  return std::make_shared<platform::linuxos::PositionHub>(
      std::make_shared<Provider>(
          std::move(bus), mainQueue,
          Provider::Options{.desktopID = "org.example.app", .configuration = configuration}),
      mainQueue);
}

}  // namespace ovinta::test
