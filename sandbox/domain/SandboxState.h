#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/Date.h"
#include "platform/Value.h"
#include "sandbox/domain/Refusal.h"
#include "sandbox/domain/World.h"

namespace ovinta::sandbox {

/// What the service knows, for use from any thread; nothing of HTTP. Tokens and codes follow from
/// the seed and the order of the actions.
class SandboxState {
 public:
  /// Told of what has become of an order, in that order, while no other action runs.
  using NewsHandler = std::function<void(const World& world, const platform::Dictionary& news)>;

  /// `now` is called from the threads that call the other functions.
  SandboxState(std::uint64_t seed, std::function<platform::Date()> now, NewsHandler onNews);

  /// Runs `action(World&, platform::Date now)` while no other action runs, and answers its result.
  template <class Action>
  auto act(Action action) {
    const platform::Date now = now_();
    const std::lock_guard lock(mutex_);
    auto result = action(world_, now);
    tellNews();
    return result;
  }

  /// The time on the service's clock.
  platform::Date now() const { return now_(); }

  bool hasCustomer(std::string_view token) const;

  /// Puts what the snapshot holds in place of all that is known; answers why not, having changed
  /// nothing, when it is not valid. `also` runs with it, while no action runs.
  [[nodiscard]] std::optional<Refusal> restore(
      const platform::Dictionary& snapshot, const std::function<void()>& also = [] {});
  /// The same, and from now on `reset` leads to it.
  [[nodiscard]] std::optional<Refusal> seed(const platform::Dictionary& snapshot,
                                            const std::function<void()>& also);

  /// From now on `reset` leads to what is known at present.
  void keepAsStart();
  /// `also` runs with it, while no action runs.
  void reset(const std::function<void()>& also);

 private:
  std::optional<Refusal> take(const platform::Dictionary& snapshot,
                              const std::function<void()>& also, bool isStart);
  void tellNews();

  const std::uint64_t seed_;
  const std::function<platform::Date()> now_;
  const NewsHandler onNews_;
  mutable std::mutex mutex_;
  World world_;
  World start_;
};

}  // namespace ovinta::sandbox
