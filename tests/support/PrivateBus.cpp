#include "tests/support/PrivateBus.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>
#include <system_error>

#include "tests/support/Files.h"

namespace ovinta::test {
namespace {

constexpr int kAddressDescriptor = 9;

std::string configuration(const std::string& address) {
  return "<busconfig><type>custom</type><keep_umask/><listen>" + address +
         "</listen><auth>EXTERNAL</auth><policy context='default'>"
         "<allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/>"
         "<allow own='*'/><allow user='*'/></policy></busconfig>";
}

}  // namespace

PrivateBus::PrivateBus() : address_("unix:path=" + (directory_.path() / "bus").string()) {
  writeFile(directory_.path() / "bus.conf", configuration(address_));
  start();
}

PrivateBus::~PrivateBus() { stop(); }

void PrivateBus::start() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category());
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], kAddressDescriptor);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  std::string file = "--config-file=" + (directory_.path() / "bus.conf").string();
  std::string print = "--print-address=" + std::to_string(kAddressDescriptor);
  char* const arguments[] = {const_cast<char*>("setpriv"),
                             const_cast<char*>("--pdeathsig"),
                             const_cast<char*>("TERM"),
                             const_cast<char*>("dbus-daemon"),
                             const_cast<char*>("--nofork"),
                             const_cast<char*>("--nopidfile"),
                             file.data(),
                             print.data(),
                             nullptr};
  const int error = posix_spawnp(&process_, "setpriv", &actions, nullptr, arguments, environ);
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  // It prints its address once it listens.
  char character = 0;
  bool listens = false;
  while (!error && read(ends[0], &character, 1) == 1 && character != '\n') listens = true;
  close(ends[0]);
  if (!listens) throw std::runtime_error("dbus-daemon does not start");
}

void PrivateBus::stop() {
  if (process_ == 0) return;
  kill(process_, SIGTERM);
  waitpid(process_, nullptr, 0);
  process_ = 0;
}

}  // namespace ovinta::test
