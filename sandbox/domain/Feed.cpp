#include "sandbox/domain/Feed.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "platform/JSON.h"

namespace ovinta::sandbox {
namespace {

/// How many events a reader can be behind, and how many bytes.
constexpr std::size_t kMostKept = 1000;
constexpr std::size_t kMostBytes = 16 * 1024 * 1024;

/// A reader that has nothing to get is sent a comment this often, so that one that has gone without
/// a word is noticed.
constexpr std::chrono::seconds kSignOfLife{15};

std::string eventText(std::string_view event, const platform::Dictionary& data) {
  // JSON as it is written here has no line ends, which would end the event.
  return "event: " + std::string(event) + "\ndata: " + platform::writeJSON(data) + "\n\n";
}

}  // namespace

struct Feed::Shared {
  std::mutex mutex;
  std::condition_variable changed;
  bool closed = false;
  std::size_t readers = 0;
  /// The number of the first event in `events`.
  std::uint64_t first = 1;
  std::deque<std::string> events;
  std::size_t bytes = 0;

  void forgetFirst() {
    bytes -= events.front().size();
    events.pop_front();
    ++first;
  }

  std::uint64_t end() const { return first + events.size(); }
};

class Feed::Reader : public EventStream {
 public:
  explicit Reader(std::shared_ptr<Shared> shared) : shared_(std::move(shared)) {
    const std::lock_guard lock(shared_->mutex);
    ++shared_->readers;
  }
  ~Reader() override {
    const std::lock_guard lock(shared_->mutex);
    if (--shared_->readers == 0) {
      shared_->first = shared_->end();
      shared_->events.clear();
      shared_->bytes = 0;
    }
    shared_->changed.notify_all();
  }

  // The time after which a browser comes back by itself.
  std::string greeting() const override { return "retry: 1000\n\n"; }

  std::optional<std::string> nextEvent(std::chrono::milliseconds patience) override {
    std::unique_lock lock(shared_->mutex);
    shared_->changed.wait_for(lock, patience,
                              [&] { return shared_->closed || position_ < shared_->end(); });
    if (shared_->closed) return std::nullopt;
    if (position_ == shared_->end()) return signOfLife();
    lastSign_ = Clock::now();
    if (position_ < shared_->first) {
      next_ = shared_->end();
      return eventText("reload", {});
    }
    next_ = position_ + 1;
    return shared_->events[position_ - shared_->first];
  }

  void taken() override { position_ = next_; }

  bool isClosed() const override {
    const std::lock_guard lock(shared_->mutex);
    return shared_->closed;
  }

 private:
  using Clock = std::chrono::steady_clock;

  std::optional<std::string> signOfLife() {
    if (Clock::now() < lastSign_ + kSignOfLife) return std::nullopt;
    lastSign_ = Clock::now();
    next_ = position_;
    return ":\n\n";
  }

  const std::shared_ptr<Shared> shared_;
  Clock::time_point lastSign_ = Clock::now();
  /// The number of the next event to send: at first one that is not there, so that the first event
  /// is "reload".
  std::uint64_t position_ = 0;
  /// The position once the event answered last is taken.
  std::uint64_t next_ = 0;
};

Feed::Feed() : shared_(std::make_shared<Shared>()) {}

Feed::~Feed() { close(std::chrono::milliseconds(0)); }

std::shared_ptr<EventStream> Feed::listen() { return std::make_shared<Reader>(shared_); }

bool Feed::isHeard() const {
  const std::lock_guard lock(shared_->mutex);
  return shared_->readers > 0;
}

void Feed::tell(std::string_view event, const platform::Dictionary& data) {
  if (!isHeard()) return;
  std::string text = eventText(event, data);
  const std::lock_guard lock(shared_->mutex);
  shared_->bytes += text.size();
  shared_->events.push_back(std::move(text));
  while (shared_->events.size() > kMostKept || shared_->bytes > kMostBytes) shared_->forgetFirst();
  shared_->changed.notify_all();
}

void Feed::close(std::chrono::milliseconds patience) {
  std::unique_lock lock(shared_->mutex);
  shared_->closed = true;
  shared_->changed.notify_all();
  shared_->changed.wait_for(lock, patience, [&] { return shared_->readers == 0; });
}

}  // namespace ovinta::sandbox
