// Asio, on a thread that is not the process's initial one and so claims to be the main one.
#include <boost/asio/io_context.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>

#include "Pickup.h"

using namespace ovinta::platform;
using namespace std::chrono_literals;
using boost::asio::posix::stream_descriptor;

namespace {

void runTasksWhenDue(stream_descriptor& due) {
  due.async_wait(stream_descriptor::wait_read, [&due](const boost::system::error_code& error) {
    if (error) return;
    valueOf(linuxos::runMainTasks(5ms));
    runTasksWhenDue(due);
  });
}

void runLoop(const std::string& baseURL) {
  if (const auto error = linuxos::claimMainThread()) fail(message(*error));
  boost::asio::io_context loop;
  stream_descriptor due(loop, valueOf(linuxos::mainTasksDescriptor()));
  runTasksWhenDue(due);
  const Pickup pickup(baseURL, [&loop] { loop.stop(); });
  loop.run();
  // The descriptor stays the library's.
  due.release();
}

}  // namespace

int main(int argc, char* argv[]) {
  if (argc != 2) fail("usage: asio BASE-URL");
  std::thread(runLoop, argv[1]).join();
}
