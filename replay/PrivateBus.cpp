#include "replay/PrivateBus.h"

#include <fstream>
#include <stdexcept>
#include <vector>

namespace ovinta::replay {
namespace {

/// The exit status of a command that is not there.
constexpr int kNotFound = 127;

}  // namespace

PrivateBus::PrivateBus() {
  create_directory(directory_.path() / "services");
  std::ofstream(directory_.path() / "bus.conf")
      << "<busconfig><type>session</type><keep_umask/><servicedir>"
      << (directory_.path() / "services").string() << "</servicedir><listen>" << address_
      << "</listen><auth>EXTERNAL</auth><policy context='default'>"
         "<allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/>"
         "<allow own='*'/><allow user='*'/></policy></busconfig>";
  start();
}

void PrivateBus::addService(const std::filesystem::path& activationFile) {
  copy_file(activationFile, directory_.path() / "services" / activationFile.filename());
}

void PrivateBus::start() {
  const std::string file = (directory_.path() / "bus.conf").string();
  // It prints its address once it listens.
  daemon_.emplace(std::vector<std::string>{"dbus-daemon", "--nofork", "--nopidfile",
                                           "--config-file=" + file, "--print-address=1"},
                  std::vector<std::string>{}, ChildOutput::firstLine);
  if (!daemon_->firstLine().empty()) return;
  throw std::runtime_error(daemon_->wait() == kNotFound
                               ? "dbus-daemon is missing: install the package dbus-daemon"
                               : "dbus-daemon does not start in " + directory_.path().string());
}

}  // namespace ovinta::replay
