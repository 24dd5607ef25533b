#include "platform/linux/main/SystemLog.h"

#include <pthread.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <utility>

namespace ovinta::platform::linuxos {
namespace {

bool leadsSomewhere(int descriptor) {
  struct stat status {};
  if (fstat(descriptor, &status) != 0) return false;
  return !S_ISCHR(status.st_mode) || status.st_rdev != makedev(1, 3);
}

int connectTo(const std::filesystem::path& socketPath) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const auto& path = socketPath.native();
  if (path.size() >= sizeof address.sun_path) return -1;
  path.copy(address.sun_path, path.size());
  const int descriptor = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (descriptor < 0) return -1;
  if (connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
    return descriptor;
  }
  close(descriptor);
  return -1;
}

/// Keeps a closed pipe from ending the process, without touching the application's signal handlers:
/// the signal is blocked on this thread and, if a write has raised it, taken away again.
class WithoutPipeSignal {
 public:
  WithoutPipeSignal() {
    sigemptyset(&pipe_);
    sigaddset(&pipe_, SIGPIPE);
    sigset_t pending;
    sigpending(&pending);
    wasPending_ = sigismember(&pending, SIGPIPE) == 1;
    pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
  }
  ~WithoutPipeSignal() {
    const timespec atOnce{};
    if (!wasPending_) sigtimedwait(&pipe_, nullptr, &atOnce);
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }
  WithoutPipeSignal(const WithoutPipeSignal&) = delete;
  WithoutPipeSignal& operator=(const WithoutPipeSignal&) = delete;

 private:
  sigset_t pipe_;
  sigset_t before_;
  bool wasPending_ = false;
};

/// Writes the text, as a rule in one call; in more only when the receiver takes less than all of
/// it.
void writeAll(int descriptor, std::string_view text) {
  const WithoutPipeSignal guard;
  while (!text.empty()) {
    const auto count = ::write(descriptor, text.data(), text.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return;
    text.remove_prefix(static_cast<std::size_t>(count));
  }
}

}  // namespace

SystemLog::SystemLog(std::string identifier, int standardError,
                     const std::filesystem::path& journalSocket)
    : identifier_(std::move(identifier)), standardError_(standardError) {
  if (!leadsSomewhere(standardError)) journal_ = connectTo(journalSocket);
}

SystemLog::~SystemLog() {
  if (journal_ >= 0) close(journal_);
}

void SystemLog::write(std::string_view line) {
  std::string text;
  if (journal_ >= 0) text = "PRIORITY=6\nSYSLOG_IDENTIFIER=" + identifier_ + "\nMESSAGE=";
  const auto start = static_cast<std::ptrdiff_t>(text.size());
  text.append(line);
  std::replace(text.begin() + start, text.end(), '\n', ' ');
  text.push_back('\n');
  if (journal_ >= 0) {
    send(journal_, text.data(), text.size(), MSG_NOSIGNAL);
    return;
  }
  const std::lock_guard lock(mutex_);
  writeAll(standardError_, text);
}

}  // namespace ovinta::platform::linuxos
