#include "sandbox/domain/SandboxState.h"

#include "sandbox/domain/Accounts.h"
#include "sandbox/domain/Snapshot.h"

namespace ovinta::sandbox {

SandboxState::SandboxState(std::uint64_t seed, std::function<platform::Date()> now)
    : seed_(seed),
      now_(std::move(now)),
      world_{.generator = SeededGenerator(seed), .sites = builtInSites()},
      start_(world_) {}

bool SandboxState::hasCustomer(std::string_view token) const {
  const std::lock_guard lock(mutex_);
  return findCustomer(world_, token) != nullptr;
}

std::optional<Refusal> SandboxState::restore(const platform::Dictionary& snapshot) {
  auto read = readSnapshot(snapshot, SeededGenerator(seed_), now_());
  if (!read) return std::move(read).error();
  const std::lock_guard lock(mutex_);
  world_ = *std::move(read);
  return std::nullopt;
}

void SandboxState::keepAsStart() {
  const std::lock_guard lock(mutex_);
  start_ = world_;
}

void SandboxState::reset() {
  const std::lock_guard lock(mutex_);
  world_ = start_;
}

}  // namespace ovinta::sandbox
