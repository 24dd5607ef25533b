#include "platform/simulation/time/TimeHoldingURLSession.h"

#include <deque>
#include <functional>
#include <mutex>
#include <utility>

namespace ovinta::platform::simulation {

/// The requests that wait, and whether one is under way.
class TimeHoldingURLSession::Line : public std::enable_shared_from_this<Line> {
 public:
  Line(std::shared_ptr<URLSession> base, std::function<std::unique_ptr<TimeHold>()> makeHold)
      : base_(std::move(base)), makeHold_(std::move(makeHold)) {}

  void add(URLRequest request, Completion completion) {
    {
      const std::lock_guard lock(mutex_);
      waiting_.push_back({std::move(request), std::move(completion), makeHold_()});
      if (std::exchange(isBusy_, true)) return;
    }
    sendNext();
  }

 private:
  struct Task {
    URLRequest request;
    Completion completion;
    std::shared_ptr<TimeHold> hold;
  };

  void sendNext() {
    Task task;
    {
      const std::lock_guard lock(mutex_);
      isBusy_ = !waiting_.empty();
      if (!isBusy_) return;
      task = std::move(waiting_.front());
      waiting_.pop_front();
    }
    base_->startDataTask(
        std::move(task.request),
        [self = shared_from_this(), completion = std::move(task.completion),
         hold = std::move(task.hold)](auto data, auto response, auto error) mutable {
          hold->runInTurn([&] {
            completion(std::move(data), std::move(response), std::move(error));
            completion = nullptr;
          });
          // The next request is sent before the hold goes, so that time stands still until the last
          // of the line is done.
          self->sendNext();
          hold = nullptr;
        });
  }

  const std::shared_ptr<URLSession> base_;
  const std::function<std::unique_ptr<TimeHold>()> makeHold_;
  std::mutex mutex_;
  std::deque<Task> waiting_;
  bool isBusy_ = false;
};

TimeHoldingURLSession::TimeHoldingURLSession(std::shared_ptr<URLSession> base,
                                             const VirtualTime& time)
    : line_(std::make_shared<Line>(std::move(base), time.holdMaker())) {}

void TimeHoldingURLSession::startDataTask(URLRequest request, Completion completion) {
  line_->add(std::move(request), std::move(completion));
}

}  // namespace ovinta::platform::simulation
