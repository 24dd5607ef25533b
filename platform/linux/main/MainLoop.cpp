// What serves the main queues.
#include <glib.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <string>

#include "platform/linux/Linux.h"
#include "platform/linux/main/MainTasks.h"
#include "platform/linux/main/MainThread.h"
#include "platform/linux/main/MainTimer.h"
#include "platform/linux/main/SystemLog.h"

namespace ovinta::platform::linuxos {
namespace {

std::atomic<bool> quitRequested{false};

/// Tells the log of the services made last, or of the process where there are none.
void tell(std::string_view line) {
  const auto all = MainTasks::all();
  if (!all.empty()) return all.back()->writeToLog(line);
  SystemLog("OvintaSDK").write(line);
}

/// Why the calling thread may not run tasks; absent where it may.
std::optional<MainThreadError> objection() {
  if (!isMainThread()) return MainThreadError::otherThread;
  if (MainTasks::isRunningOne()) return MainThreadError::insideTask;
  return std::nullopt;
}

}  // namespace

std::string_view message(MainThreadError error) {
  switch (error) {
    case MainThreadError::otherThread:
      return "Another thread is the main one: the process's initial thread, or the one that called "
             "claimMainThread or runMainLoop before makeServices.";
    case MainThreadError::insideTask:
      return "This thread is inside a task of the main queue, whose tasks run one at a time.";
    case MainThreadError::noDescriptor:
      return "The system has no descriptor left.";
  }
  return "";
}

void runMainLoop() {
  if (!becomeMainThread()) {
    return tell("runMainLoop: " + std::string(message(MainThreadError::otherThread)));
  }
  while (!quitRequested.exchange(false)) g_main_context_iteration(nullptr, TRUE);
}

void quitMainLoop() {
  quitRequested = true;
  g_main_context_wakeup(nullptr);
}

Expected<bool, MainThreadError> runMainTasks(std::chrono::milliseconds atMost) {
  using Clock = std::chrono::steady_clock;
  if (const auto error = objection()) return *error;
  becomeMainThread();
  claimTasks();
  const auto start = Clock::now();
  // In milliseconds, of which there may be more than fit into the clock's unit.
  const auto isOver = [&] {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start) >= atMost;
  };
  const auto all = MainTasks::all();
  bool hasRun = true;
  while (hasRun) {
    hasRun = false;
    for (const auto& tasks : all) {
      if (!tasks->runNext()) continue;
      hasRun = true;
      if (isOver()) return std::ranges::any_of(all, &MainTasks::isDue);
    }
  }
  return false;
}

Expected<int, MainThreadError> mainTasksDescriptor() {
  const auto descriptor = MainTimer::shared().open();
  if (!descriptor) return MainThreadError::noDescriptor;
  for (const auto& tasks : MainTasks::all()) tasks->setTimer();
  return *descriptor;
}

}  // namespace ovinta::platform::linuxos
