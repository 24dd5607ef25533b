#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace ovinta::platform::portable {

/// A thread that comes to rest before the process's exit handlers take away what it stands on.
class ExitAwareThread {
 public:
  /// `body` runs on the thread, and returns soon once `stopping()`. `wake` is called from any
  /// thread to have it look. `name` has at most 15 characters, for debuggers.
  ExitAwareThread(const char* name, std::function<void()> body, std::function<void()> wake);

  /// Stops as `stop` does.
  ~ExitAwareThread();

  ExitAwareThread(const ExitAwareThread&) = delete;
  ExitAwareThread& operator=(const ExitAwareThread&) = delete;

  /// Starts the thread at the first call, unless it is to stop. A fatal error when the system has
  /// no thread left. May be called from any thread.
  void startOnce();

  /// Stops the thread for good and waits for its end. Must not be called on the thread itself.
  void stop();

  /// Whether the thread is to come to its end. May be called from any thread.
  bool stopping() const { return stopping_; }

  /// Whether the caller runs on this thread. May be called from any thread once it was started.
  bool isCurrent() const { return id_ == std::this_thread::get_id(); }

  /// Adds an exit handler that stops all threads of this class and waits for them, though not
  /// longer than `kPatienceAtExit` and not for the one that calls `exit`. Handlers run in the
  /// reverse order: call this after every library whose own handler must find the threads at rest
  /// has been initialised.
  static void stopAllAtExit();

 private:
  void run();
  void requestStop();
  void joinBefore(std::chrono::steady_clock::time_point deadline);
  static void stopAll();

  const char* const name_;
  const std::function<void()> body_;
  const std::function<void()> wake_;
  std::atomic<bool> stopping_ = false;
  /// The thread's own id; none before it runs.
  std::atomic<std::thread::id> id_{};
  std::mutex mutex_;
  std::condition_variable ended_;
  bool hasEnded_ = false;
  std::thread thread_;
};

}  // namespace ovinta::platform::portable
