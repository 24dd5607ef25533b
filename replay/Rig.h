#pragma once

#include <boost/asio/local/stream_protocol.hpp>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Expected.h"
#include "platform/Location.h"
#include "replay/ChildProcess.h"
#include "replay/LineServer.h"
#include "replay/PrivateBus.h"
#include "replay/TemporaryDirectory.h"

namespace ovinta::replay {

/// The real GeoClue on a bus of its own, fed with positions of one's own instead of a receiver's.
/// It has no other source and asks nothing of any network; the user's own GeoClue is not touched.
/// Works as root, and where users may make namespaces as any user. Everything ends with the object
/// or, whatever happens, with the thread that made it. For one thread.
///
///     auto started = Rig::start();
///     if (const auto* error = std::get_if<std::string>(&started)) ...
///     auto& rig = *std::get<std::unique_ptr<Rig>>(started);
///     setenv("DBUS_SYSTEM_BUS_ADDRESS", rig.busAddress().c_str(), 1);
///     rig.send({.coordinate = {40.7411, -73.9897}, .horizontalAccuracy = 5});   // every second
class Rig {
 public:
  struct Options {
    /// What GeoClue's configuration has at its end, such as the sections of applications; without
    /// one an application may follow the position.
    std::string configuration = {};
    /// Whether an agent runs from the start; without one GeoClue answers nobody.
    bool hasAgent = true;
  };

  /// Returns within seconds, when GeoClue is on the bus. Otherwise a sentence says what is missing
  /// and what to do about it.
  static platform::Expected<std::unique_ptr<Rig>, std::string> start() { return start(Options()); }
  static platform::Expected<std::unique_ptr<Rig>, std::string> start(const Options& options);

  Rig(const Rig&) = delete;
  Rig& operator=(const Rig&) = delete;

  /// The address of the bus that whoever is to follow this position must take for the system's.
  const std::string& busAddress() const { return bus_.address(); }
  /// The environment variable that has a process take that bus, as NAME=value.
  std::string variable() const;

  /// Whether GeoClue listens, which it does as long as an application follows the position. That it
  /// has ceased to shows after the next position.
  bool isFollowed() { return feed_.hasListener(); }

  /// Tells GeoClue of a position determined now, whatever its timestamp says. Nobody is told while
  /// nobody follows it. Call it about once a second, also for a device at rest: whoever begins to
  /// follow hears nothing of what was before.
  void send(platform::Location location);

  /// Ends GeoClue and its agent.
  void stopDaemon();
  /// Starts GeoClue again, and returns when it is on the bus. Throws `std::runtime_error`.
  void startDaemon();
  void startAgent();

 private:
  /// Throws exceptions that derive from `std::exception`.
  explicit Rig(const Options& options);

  std::filesystem::path socket() const { return directory_.path() / "nmea"; }
  std::filesystem::path configuration() const { return directory_.path() / "geoclue.conf"; }
  bool isOnBus() const;

  const TemporaryDirectory directory_;
  PrivateBus bus_;
  LineServer<boost::asio::local::stream_protocol> feed_{socket().string()};
  /// The words that, put before a command, run it with mounts of its own.
  std::vector<std::string> namespace_;
  std::optional<ChildProcess> daemon_, agent_;
};

}  // namespace ovinta::replay
