#include "sandbox/domain/PushMailbox.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace ovinta::sandbox {

namespace {

/// A payload, shared by the lines of all listeners that were there when it came.
struct Push {
  std::string payload;
  bool isTaken = false;
};

using Pushes = std::deque<std::shared_ptr<Push>>;

}  // namespace

struct PushMailbox::Shared {
  std::mutex mutex;
  std::condition_variable changed;
  bool closed = false;
  std::map<std::string, Pushes, std::less<>> waiting;
  std::vector<Listener::Line*> lines;
};

struct PushMailbox::Listener::Line {
  std::string pushToken;
  Pushes pushes;
  std::shared_ptr<Shared> shared;
};

PushMailbox::Listener::Listener(std::unique_ptr<Line> line) : line_(std::move(line)) {}

PushMailbox::Listener::~Listener() {
  Shared& shared = *line_->shared;
  const std::lock_guard lock(shared.mutex);
  std::erase(shared.lines, line_.get());
  shared.changed.notify_all();
  Pushes& left = line_->pushes;
  // A push that is in another listener's line too is not lost.
  std::erase_if(left, [](const auto& push) { return push->isTaken || push.use_count() > 1; });
  if (left.empty()) return;
  const auto other = std::ranges::find(shared.lines, line_->pushToken, &Line::pushToken);
  Pushes& next = other == shared.lines.end() ? shared.waiting[line_->pushToken] : (*other)->pushes;
  next.insert(next.begin(), left.begin(), left.end());
}

std::optional<std::string> PushMailbox::Listener::next(std::chrono::milliseconds patience) {
  Shared& shared = *line_->shared;
  std::unique_lock lock(shared.mutex);
  shared.changed.wait_for(lock, patience, [&] { return shared.closed || !line_->pushes.empty(); });
  if (shared.closed || line_->pushes.empty()) return std::nullopt;
  return line_->pushes.front()->payload;
}

std::optional<std::string> PushMailbox::Listener::nextEvent(std::chrono::milliseconds patience) {
  auto payload = next(patience);
  if (payload) payload = "event: push\ndata: " + *payload + "\n\n";
  return payload;
}

void PushMailbox::Listener::taken() {
  const std::lock_guard lock(line_->shared->mutex);
  line_->pushes.front()->isTaken = true;
  line_->pushes.pop_front();
}

bool PushMailbox::Listener::isClosed() const {
  const std::lock_guard lock(line_->shared->mutex);
  return line_->shared->closed;
}

PushMailbox::PushMailbox() : shared_(std::make_shared<Shared>()) {}

PushMailbox::~PushMailbox() { close(std::chrono::milliseconds(0)); }

std::shared_ptr<PushMailbox::Listener> PushMailbox::listen(std::string_view pushToken) {
  auto line = std::make_unique<Listener::Line>();
  line->pushToken = pushToken;
  line->shared = shared_;
  const std::lock_guard lock(shared_->mutex);
  if (const auto waiting = shared_->waiting.find(pushToken); waiting != shared_->waiting.end()) {
    line->pushes = std::move(waiting->second);
    shared_->waiting.erase(waiting);
  }
  shared_->lines.push_back(line.get());
  return std::make_shared<Listener>(std::move(line));
}

std::size_t PushMailbox::send(std::string_view pushToken, std::string payload) {
  const std::lock_guard lock(shared_->mutex);
  const auto push = std::make_shared<Push>(Push{.payload = std::move(payload)});
  std::size_t listeners = 0;
  for (Listener::Line* line : shared_->lines) {
    if (line->pushToken != pushToken) continue;
    line->pushes.push_back(push);
    ++listeners;
  }
  if (listeners == 0) shared_->waiting[std::string(pushToken)].push_back(push);
  shared_->changed.notify_all();
  return listeners;
}

void PushMailbox::clear() {
  const std::lock_guard lock(shared_->mutex);
  shared_->waiting.clear();
}

void PushMailbox::close(std::chrono::milliseconds patience) {
  std::unique_lock lock(shared_->mutex);
  shared_->closed = true;
  shared_->changed.notify_all();
  shared_->changed.wait_for(lock, patience, [&] { return shared_->lines.empty(); });
}

}  // namespace ovinta::sandbox
