#include "platform/linux/main/MainThread.h"

#include <sys/types.h>
#include <unistd.h>

#include <atomic>

#include "platform/linux/Linux.h"

namespace ovinta::platform::linuxos {
namespace {

/// The main thread's id; 0 until it is fixed. Asking GLib would not do: outside an iteration no
/// thread owns the context.
std::atomic<pid_t> fixedMainThread{0};

std::atomic<bool> isClaimed{false};

/// Fixes the candidate as the main thread, unless one was fixed before; the one that is.
pid_t fixMainThread(pid_t candidate) {
  pid_t fixed = 0;
  return fixedMainThread.compare_exchange_strong(fixed, candidate) ? candidate : fixed;
}

}  // namespace

void rememberMainThread() { fixMainThread(::getpid()); }

bool becomeMainThread() {
  const pid_t caller = ::gettid();
  return fixMainThread(caller) == caller;
}

bool isMainThread() {
  const pid_t fixed = fixedMainThread;
  return ::gettid() == (fixed ? fixed : ::getpid());
}

void claimTasks() { isClaimed = true; }

bool isMainThreadClaimed() { return isClaimed; }

std::optional<MainThreadError> claimMainThread() {
  if (!becomeMainThread()) return MainThreadError::otherThread;
  claimTasks();
  return std::nullopt;
}

}  // namespace ovinta::platform::linuxos
