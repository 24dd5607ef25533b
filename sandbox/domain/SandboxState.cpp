#include "sandbox/domain/SandboxState.h"

#include <utility>

#include "sandbox/domain/Accounts.h"
#include "sandbox/domain/Snapshot.h"

namespace ovinta::sandbox {

SandboxState::SandboxState(std::uint64_t seed, std::function<platform::Date()> now,
                           NewsHandler onNews)
    : seed_(seed),
      now_(std::move(now)),
      onNews_(std::move(onNews)),
      world_{.generator = SeededGenerator(seed), .sites = builtInSites()},
      start_(world_) {}

void SandboxState::tellNews() {
  for (const platform::Dictionary& news : std::exchange(world_.news, {})) onNews_(world_, news);
}

bool SandboxState::hasCustomer(std::string_view token) const {
  const std::lock_guard lock(mutex_);
  return findCustomer(world_, token) != nullptr;
}

std::optional<Refusal> SandboxState::restore(const platform::Dictionary& snapshot,
                                             const std::function<void()>& also) {
  return take(snapshot, also, false);
}

std::optional<Refusal> SandboxState::seed(const platform::Dictionary& snapshot,
                                          const std::function<void()>& also) {
  return take(snapshot, also, true);
}

std::optional<Refusal> SandboxState::take(const platform::Dictionary& snapshot,
                                          const std::function<void()>& also, bool isStart) {
  auto read = readSnapshot(snapshot, SeededGenerator(seed_), now_());
  if (!read) return std::move(read).error();
  const std::lock_guard lock(mutex_);
  world_ = *std::move(read);
  if (isStart) start_ = world_;
  also();
  return std::nullopt;
}

void SandboxState::keepAsStart() {
  const std::lock_guard lock(mutex_);
  start_ = world_;
}

void SandboxState::reset(const std::function<void()>& also) {
  const std::lock_guard lock(mutex_);
  world_ = start_;
  also();
}

}  // namespace ovinta::sandbox
