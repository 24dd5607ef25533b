#include "platform/portable/ExitGate.h"

#include <condition_variable>
#include <cstddef>
#include <cstdlib>
#include <mutex>

namespace ovinta::platform::portable {
namespace {

struct State {
  std::mutex mutex;
  std::condition_variable left;
  std::size_t inside = 0;
  bool isClosed = false;
};

State& state() {
  static auto* const instance = new State;
  return *instance;
}

thread_local bool isInside = false;

void closeAndWait() {
  std::unique_lock lock(state().mutex);
  state().isClosed = true;
  const std::size_t remaining = isInside ? 1 : 0;
  state().left.wait_for(lock, kPatienceAtExit, [remaining] { return state().inside <= remaining; });
}

}  // namespace

void ExitGate::watch() {
  [[maybe_unused]] static const int registered = std::atexit(&closeAndWait);
}

bool ExitGate::enter() {
  const std::lock_guard lock(state().mutex);
  if (state().isClosed) return false;
  ++state().inside;
  isInside = true;
  return true;
}

void ExitGate::leave() {
  const std::lock_guard lock(state().mutex);
  isInside = false;
  --state().inside;
  if (state().isClosed) state().left.notify_all();
}

}  // namespace ovinta::platform::portable
