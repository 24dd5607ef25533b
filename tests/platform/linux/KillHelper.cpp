// A device with delivery on that ends at one of its writes or sends, as one does whose battery is
// taken out: in the middle of a call, and without clean-up.
//
//     platform_kill_helper URL DIRECTORY MOMENT NUMBER FIRST COUNT
//
// makes that many events for the service at the URL, the first with that sequence, keeps its data
// in the directory, and ends with 0 when nothing waits any more. Its end comes at the NUMBERth
// call, "before" it, after "half" of its bytes, or "after" it: then it says at which call and ends
// with 77. It says which events it has handed over.
#include <fcntl.h>
#include <sys/random.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "platform/linux/Linux.h"
#include "platform/linux/storage/SQLiteOutbox.h"
#include "platform/portable/Portable.h"
#include "tests/platform/portable/delivery/DeliveryRequests.h"

namespace {

using namespace ovinta::platform;

std::string_view moment = "never";
std::atomic<int> callsLeft = 0;

/// Past the functions below.
void say(const std::string& line) {
  (void)syscall(SYS_write, STDOUT_FILENO, line.data(), line.size());
}

[[noreturn]] void end(const char* name) {
  say(std::string("ended at ") + name + "\n");
  syscall(SYS_exit_group, 77);
  __builtin_unreachable();
}

/// Makes a call of that many bytes, or ends the process there. `call` is given how many to write.
template <class Call>
auto pass(const char* name, std::size_t size, const Call& call) {
  const bool counts = moment == "half" ? size > 1 : moment != "never";
  if (!counts || --callsLeft != 0) return call(size);
  if (moment != "before") call(moment == "half" ? size / 2 : size);
  end(name);
}

}  // namespace

// In place of the C library's, for the libraries too.
#pragma GCC visibility push(default)
extern "C" {

ssize_t write(int file, const void* bytes, size_t size) {
  return pass("write", size,
              [=](std::size_t part) { return syscall(SYS_write, file, bytes, part); });
}
ssize_t pwrite64(int file, const void* bytes, size_t size, off64_t at) {
  return pass("pwrite", size,
              [=](std::size_t part) { return syscall(SYS_pwrite64, file, bytes, part, at); });
}
ssize_t writev(int file, const iovec* pieces, int count) {
  return pass("writev", 0, [=](std::size_t) { return syscall(SYS_writev, file, pieces, count); });
}
ssize_t send(int socket, const void* bytes, size_t size, int flags) {
  return pass("send", size, [=](std::size_t part) {
    return syscall(SYS_sendto, socket, bytes, part, flags, nullptr, 0);
  });
}
ssize_t sendmsg(int socket, const msghdr* message, int flags) {
  return pass("sendmsg", 0,
              [=](std::size_t) { return syscall(SYS_sendmsg, socket, message, flags); });
}
int fsync(int file) {
  return static_cast<int>(pass("fsync", 0, [=](std::size_t) { return syscall(SYS_fsync, file); }));
}
int fdatasync(int file) {
  return static_cast<int>(
      pass("fdatasync", 0, [=](std::size_t) { return syscall(SYS_fdatasync, file); }));
}
int ftruncate64(int file, off64_t size) noexcept {
  return static_cast<int>(
      pass("ftruncate", 0, [=](std::size_t) { return syscall(SYS_ftruncate, file, size); }));
}
int unlink(const char* path) noexcept {
  return static_cast<int>(
      pass("unlink", 0, [=](std::size_t) { return syscall(SYS_unlinkat, AT_FDCWD, path, 0); }));
}
}
#pragma GCC visibility pop

namespace {

/// A monitor that knows of nothing.
struct NoMonitor final : NetworkMonitor {
  void start(Handler) override {}
};

/// Small numbers, with which the next try comes at once, and of which no two processes have the
/// same.
std::uint64_t smallRandom() {
  std::uint64_t bits = 0;
  if (getrandom(&bits, sizeof bits, 0) != sizeof bits) std::abort();
  return bits >> 24U;
}

/// Ends the main loop if nothing waits any more. For the main thread, once all events are made.
void endIfDone(const Delivery& delivery) {
  const auto account = delivery.account();
  if (!account.isBalanced()) std::abort();
  if (account.waiting == 0) linuxos::quitMainLoop();
}

/// Has a look when what an earlier process has left was delivered.
struct Resumption final : DeliveryDelegate {
  void deliveryResumed(const DeliveryAccount&) override { endIfDone(*delivery); }
  std::shared_ptr<Delivery> delivery;
};

}  // namespace

int main(int count, char** arguments) {
  if (count != 7) return 1;
  moment = arguments[3];
  callsLeft = std::atoi(arguments[4]);
  setenv("no_proxy", "*", 1);
  const std::filesystem::path directory = arguments[2];
  Services services = linuxos::makeServices({.dataDirectory = directory});
  if (!services.settings->string("Customer Token"))
    services.settings->set("Customer Token", "alice");
  const auto delegate = std::make_shared<Resumption>();
  portable::addDelivery(
      services, {.appToken = "app", .delegate = delegate},
      {.outbox =
           std::make_shared<linuxos::SQLiteOutbox>(directory / linuxos::kOutboxFile, services.log),
       .network = std::make_shared<NoMonitor>(),
       .uptime = [clock = services.clock] { return clock->now().time_since_epoch(); },
       .random = &smallRandom,
       .onCallbackThread = [queue = services.mainQueue](auto task) { queue->async(task); }});
  const auto delivery = delegate->delivery = services.delivery;
  const auto look = [=, queue = services.mainQueue] {
    queue->async([delivery] { endIfDone(*delivery); });
  };
  const int first = std::atoi(arguments[5]);
  for (int i = first; i < first + std::atoi(arguments[6]); ++i) {
    services.urlSession->startDataTask(
        test::eventRequest(i % 2 + 1, i / 2 % 2 == 0 ? "state_change" : "location_update", i,
                           "alice", arguments[1]),
        [look](const auto&...) { look(); });
    say("made " + std::to_string(i) + "\n");
  }
  look();
  linuxos::runMainLoop();
  say(summary(delivery->account()) + "\n");
  _exit(0);
}
