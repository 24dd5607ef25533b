#include "tests/support/PrivateBus.h"

#include <stdexcept>
#include <vector>

#include "tests/support/Files.h"

namespace ovinta::test {

PrivateBus::PrivateBus() {
  writeFile(directory_.path() / "bus.conf",
            "<busconfig><type>custom</type><keep_umask/><listen>" + address_ +
                "</listen><auth>EXTERNAL</auth><policy context='default'>"
                "<allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/>"
                "<allow own='*'/><allow user='*'/></policy></busconfig>");
  start();
}

void PrivateBus::start() {
  const std::string file = (directory_.path() / "bus.conf").string();
  // It prints its address once it listens.
  std::string printed;
  daemon_.emplace(std::vector<std::string>{"dbus-daemon", "--nofork", "--nopidfile",
                                           "--config-file=" + file, "--print-address=1"},
                  std::vector<std::string>{}, &printed);
  if (printed.empty()) throw std::runtime_error("dbus-daemon does not start");
}

}  // namespace ovinta::test
