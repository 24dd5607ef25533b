#include "cli/client/Waiting.h"

#include <pthread.h>
#include <signal.h>

#include <chrono>
#include <utility>

namespace ovinta::cli {

Waiting::Waiting(std::string what) : text_(std::move(what)) {
  if (!progress_.isOnTerminal()) return;
  // Signals are for the threads that were there before.
  sigset_t all, before;
  sigfillset(&all);
  pthread_sigmask(SIG_BLOCK, &all, &before);
  thread_ = std::thread([this] { count(); });
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

Waiting::~Waiting() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    isOver_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

void Waiting::tell(std::string text) {
  const std::lock_guard lock(mutex_);
  text_ = std::move(text);
  progress_.show(text_);
}

void Waiting::count() {
  std::unique_lock lock(mutex_);
  for (int seconds = 1;
       !changed_.wait_for(lock, std::chrono::seconds(1), [this] { return isOver_; }); ++seconds) {
    progress_.show(text_ + ", " + std::to_string(seconds) + " s");
  }
}

}  // namespace ovinta::cli
