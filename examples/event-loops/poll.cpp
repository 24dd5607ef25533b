// A loop of one's own around poll(), or any other call that waits for descriptors.
#include <poll.h>

#include "Pickup.h"

using namespace ovinta::platform;
using namespace std::chrono_literals;

int main(int argc, char* argv[]) {
  if (argc != 2) fail("usage: poll BASE-URL");
  bool isOver = false;
  const Pickup pickup(argv[1], [&] { isOver = true; });

  // The library's descriptor stands beside those of the application.
  pollfd waiting[] = {{valueOf(linuxos::mainTasksDescriptor()), POLLIN, 0}};
  while (!isOver) {
    poll(waiting, std::size(waiting), -1);
    if (waiting[0].revents) valueOf(linuxos::runMainTasks(5ms));
  }
}
