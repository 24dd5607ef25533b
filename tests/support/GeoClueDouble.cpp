#include "tests/support/GeoClueDouble.h"

namespace ovinta::test {
namespace {

using namespace platform::linux::dbus;

constexpr const char* kManager = "org.freedesktop.GeoClue2.Manager";
constexpr const char* kLocation = "org.freedesktop.GeoClue2.Location";

Failure denied(const char* text) { return {kAccessDenied, text}; }

}  // namespace

GeoClueDouble::GeoClueDouble(const PrivateBus& bus)
    : service_(bus, "org.freedesktop.GeoClue2",
               {{"CreateClient", ""}, {"DeleteClient", "o"}, {"Start", ""}, {"Stop", ""}},
               [this](const auto& call) { return answer(call); }) {
  service_.addObject("/org/freedesktop/GeoClue2/Manager", kManager);
}

void GeoClueDouble::setMood(Mood mood) {
  service_.sync([&] { mood_ = mood; });
}

ServiceDouble::Answer GeoClueDouble::answer(const ServiceDouble::Call& call) {
  if (call.method == "CreateClient") return create(call.sender);
  if (call.method == "Start") return start(call.object);
  if (call.method == "Stop") clients_[call.object].isRunning = false;
  if (call.method == "DeleteClient") {
    const std::string path = read<ObjectPath>(call.arguments, 0).value_or("");
    clients_.erase(path);
    service_.removeObject(path);
  }
  return Glib::VariantContainerBase();
}

ServiceDouble::Answer GeoClueDouble::create(const std::string& owner) {
  if (mood_ == Mood::withoutAgent) return ServiceDouble::NoAnswer{};
  lastClient_ = "/org/freedesktop/GeoClue2/Client/" + std::to_string(++objectCount_);
  clients_[lastClient_] = {owner};
  service_.addObject(lastClient_, kClient);
  return arguments(ObjectPath(lastClient_));
}

ServiceDouble::Answer GeoClueDouble::start(const std::string& path) {
  if (!service_.property<Glib::ustring>(path, kClient, "DesktopId")) {
    return denied("'DesktopId' property must be set");
  }
  if (mood_ == Mood::disallowing) return denied("'tests' disallowed by configuration for UID 0");
  if (mood_ == Mood::disabled) return denied("Geolocation disabled for UID 0");
  clients_[path].isRunning = true;
  return Glib::VariantContainerBase();
}

void GeoClueDouble::feed(double latitude, double longitude, double accuracy, double speed,
                         std::uint64_t seconds) {
  service_.sync([&] {
    for (const auto& [path, client] : clients_) {
      if (!client.isRunning) continue;
      const std::string fix = path + "/Location/" + std::to_string(++objectCount_);
      service_.addObject(
          fix, kLocation,
          {{"Latitude", write(latitude)},
           {"Longitude", write(longitude)},
           {"Accuracy", write(accuracy)},
           {"Speed", write(speed)},
           {"Timestamp", write(std::tuple<std::uint64_t, std::uint64_t>(seconds, 250'000))}});
      service_.emit(path, kClient, "LocationUpdated", arguments(ObjectPath("/"), ObjectPath(fix)),
                    client.owner);
    }
  });
}

void GeoClueDouble::switchLocation(bool isOn) {
  service_.sync([&] {
    for (auto& [path, client] : clients_) {
      client.isRunning = isOn;
      service_.change(path, kClient, {{"Active", write(isOn)}}, client.owner);
    }
  });
}

std::size_t GeoClueDouble::clientCount() {
  return service_.sync([&] { return clients_.size(); });
}

std::string GeoClueDouble::lastClient() {
  return service_.sync([&] { return lastClient_; });
}

}  // namespace ovinta::test
