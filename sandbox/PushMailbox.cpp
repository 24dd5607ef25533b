#include "sandbox/PushMailbox.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace ovinta::sandbox {

struct PushMailbox::Shared {
  std::mutex mutex;
  std::condition_variable changed;
  bool closed = false;
  std::map<std::string, std::deque<std::string>, std::less<>> waiting;
  std::vector<Listener::Line*> lines;
};

struct PushMailbox::Listener::Line {
  std::string pushToken;
  std::deque<std::string> payloads;
  std::shared_ptr<Shared> shared;
};

PushMailbox::Listener::Listener(std::unique_ptr<Line> line) : line_(std::move(line)) {}

PushMailbox::Listener::~Listener() {
  Shared& shared = *line_->shared;
  const std::lock_guard lock(shared.mutex);
  std::erase(shared.lines, line_.get());
  shared.changed.notify_all();
  const bool isHeardByOthers = std::ranges::any_of(
      shared.lines, [&](const Line* other) { return other->pushToken == line_->pushToken; });
  if (!isHeardByOthers && !line_->payloads.empty()) {
    shared.waiting.insert_or_assign(line_->pushToken, std::move(line_->payloads));
  }
}

std::optional<std::string> PushMailbox::Listener::next(std::chrono::milliseconds patience) {
  Shared& shared = *line_->shared;
  std::unique_lock lock(shared.mutex);
  shared.changed.wait_for(lock, patience,
                          [&] { return shared.closed || !line_->payloads.empty(); });
  if (shared.closed || line_->payloads.empty()) return std::nullopt;
  std::string payload = std::move(line_->payloads.front());
  line_->payloads.pop_front();
  return payload;
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
    line->payloads = std::move(waiting->second);
    shared_->waiting.erase(waiting);
  }
  shared_->lines.push_back(line.get());
  return std::make_shared<Listener>(std::move(line));
}

void PushMailbox::send(std::string_view pushToken, std::string payload) {
  const std::lock_guard lock(shared_->mutex);
  bool isHeard = false;
  for (Listener::Line* line : shared_->lines) {
    if (line->pushToken != pushToken) continue;
    line->payloads.push_back(payload);
    isHeard = true;
  }
  if (!isHeard) shared_->waiting[std::string(pushToken)].push_back(std::move(payload));
  shared_->changed.notify_all();
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
