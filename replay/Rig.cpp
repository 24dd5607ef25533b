#include "replay/Rig.h"

#include <unistd.h>

#include <chrono>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <thread>
#include <utility>

#include "replay/NMEA.h"

namespace ovinta::replay {
namespace {

using namespace std::chrono_literals;

constexpr const char* kDaemon = "/usr/libexec/geoclue";
constexpr const char* kAgent = "/usr/libexec/geoclue-2.0/demos/agent";
constexpr const char* kConfiguration = "/etc/geoclue/geoclue.conf";
/// How long GeoClue may take to start; on a machine that has nothing else to do it takes a
/// fraction.
constexpr auto kStartLimit = 20s;

/// Nothing may leave the machine: without an address of its own GeoClue would ask one on the
/// network for its position, even with that source switched off.
std::string geoClueConfiguration(const std::string& socket) {
  return "[agent]\nwhitelist=geoclue-demo-agent\n[network-nmea]\nenable=true\nnmea-socket=" +
         socket +
         "\n[3g]\nenable=false\n[cdma]\nenable=false\n[modem-gps]\nenable=false\n[compass]\n"
         "enable=false\n[wifi]\nenable=false\nurl=http://127.0.0.1:9/\n"
         "submission-url=http://127.0.0.1:9/\nsubmit-data=false\nsubmission-nick=geoclue\n";
}

void needPackages() {
  for (const char* file : {kDaemon, kAgent, kConfiguration}) {
    if (access(file, R_OK) == 0) continue;
    throw std::runtime_error(std::string(file) +
                             " is missing: install the package geoclue-2.0, which holds GeoClue "
                             "and its demonstration agent");
  }
}

/// Puts the file $0 where GeoClue looks for $1, for the command that follows alone.
std::vector<std::string> mounting(std::vector<std::string> words, const std::string& file,
                                  const std::string& command) {
  words.insert(words.end(),
               {"sh", "-c", R"(mount --bind "$0" "$1" && )" + command, file, kConfiguration});
  return words;
}

/// A private mount is what lets GeoClue read a configuration that is not the system's.
std::vector<std::string> mountNamespace(const std::string& file) {
  const std::vector<std::string> ways[] = {
      {"unshare", "--mount"},
      {"unshare", "--user", "--map-current-user", "--keep-caps", "--mount"}};
  for (const auto& way : ways) {
    if (ChildProcess(mounting(way, file, "true")).wait() == 0) return way;
  }
  throw std::runtime_error(
      "giving GeoClue a configuration of its own takes a private mount, which is refused here: run "
      "as root, or let users make namespaces (sysctl kernel.unprivileged_userns_clone=1)");
}

}  // namespace

platform::Expected<std::unique_ptr<Rig>, std::string> Rig::start(const Options& options) {
  try {
    std::unique_ptr<Rig> rig(new Rig(options));
    if (options.hasAgent) rig->startAgent();
    return rig;
  } catch (const std::exception& error) {
    return std::string(error.what());
  }
}

Rig::Rig(const Options& options) {
  needPackages();
  std::ofstream(configuration()) << geoClueConfiguration(socket().string())
                                 << options.configuration;
  namespace_ = mountNamespace(configuration().string());
  startDaemon();
}

void Rig::send(platform::Location location) {
  location.timestamp = std::chrono::floor<platform::TimeInterval>(std::chrono::system_clock::now());
  feed_.say(nmea(location));
}

void Rig::startDaemon() {
  // Entering a namespace ends the process's tie to its parent.
  const std::string command = "exec setpriv --pdeathsig TERM " + std::string(kDaemon) + " -t 0";
  daemon_.emplace(mounting(namespace_, configuration().string(), command), std::vector{variable()});
  const auto limit = std::chrono::steady_clock::now() + kStartLimit;
  while (!isOnBus()) {
    if (daemon_->exitStatus() || std::chrono::steady_clock::now() > limit) {
      throw std::runtime_error("GeoClue (" + std::string(kDaemon) + ") does not start");
    }
    std::this_thread::sleep_for(20ms);
  }
}

bool Rig::isOnBus() const {
  return ChildProcess({"dbus-send", "--bus=" + busAddress(), "--print-reply",
                       "--dest=org.freedesktop.GeoClue2", "/", "org.freedesktop.DBus.Peer.Ping"})
             .wait() == 0;
}

void Rig::startAgent() {
  agent_.emplace(std::vector<std::string>{kAgent}, std::vector{variable()});
}

void Rig::stopDaemon() {
  agent_.reset();
  daemon_.reset();
}

std::string Rig::variable() const { return "DBUS_SYSTEM_BUS_ADDRESS=" + busAddress(); }

}  // namespace ovinta::replay
