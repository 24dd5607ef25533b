#include "platform/portable/ExitAwareThread.h"

#include <pthread.h>
#include <signal.h>

#include <cstdlib>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/FatalError.h"
#include "platform/portable/ExitGate.h"

namespace ovinta::platform::portable {
namespace {

struct Registry {
  std::mutex mutex;
  std::vector<ExitAwareThread*> threads;
  bool exiting = false;
};

Registry& registry() {
  static auto* const instance = new Registry;
  return *instance;
}

// Blocks signals on a thread of the library, because the application's handlers run on its own
// threads. Faults stay with the thread that commits them.
void blockSignals() {
  sigset_t signals;
  sigfillset(&signals);
  for (const int fault : {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGPROF, SIGSEGV, SIGSYS, SIGTRAP}) {
    sigdelset(&signals, fault);
  }
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

}  // namespace

ExitAwareThread::ExitAwareThread(const char* name, std::function<void()> body,
                                 std::function<void()> wake)
    : name_(name), body_(std::move(body)), wake_(std::move(wake)) {
  const std::lock_guard lock(registry().mutex);
  registry().threads.push_back(this);
  stopping_ = registry().exiting;
}

ExitAwareThread::~ExitAwareThread() { stop(); }

void ExitAwareThread::stop() {
  {
    const std::lock_guard lock(registry().mutex);
    std::erase(registry().threads, this);
  }
  requestStop();
  if (thread_.joinable()) thread_.join();
}

void ExitAwareThread::startOnce() {
  const std::lock_guard lock(mutex_);
  if (stopping_ || hasEnded_ || thread_.joinable()) return;
  try {
    thread_ = std::thread([this] { run(); });
  } catch (const std::system_error&) {
    fatalError("Could not start the thread " + std::string(name_));
  }
}

void ExitAwareThread::run() {
  id_ = std::this_thread::get_id();
  blockSignals();
  pthread_setname_np(pthread_self(), name_);
  body_();
  const std::lock_guard lock(mutex_);
  hasEnded_ = true;
  ended_.notify_all();
}

void ExitAwareThread::requestStop() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  wake_();
}

void ExitAwareThread::joinBefore(std::chrono::steady_clock::time_point deadline) {
  std::unique_lock lock(mutex_);
  if (!thread_.joinable() || thread_.get_id() == std::this_thread::get_id()) return;
  if (!ended_.wait_until(lock, deadline, [this] { return hasEnded_; })) return;
  lock.unlock();
  thread_.join();
}

void ExitAwareThread::stopAllAtExit() { std::atexit(&stopAll); }

void ExitAwareThread::stopAll() {
  const std::lock_guard lock(registry().mutex);
  registry().exiting = true;
  for (auto* thread : registry().threads) thread->requestStop();
  const auto deadline = std::chrono::steady_clock::now() + kPatienceAtExit;
  for (auto* thread : registry().threads) thread->joinBefore(deadline);
}

}  // namespace ovinta::platform::portable
