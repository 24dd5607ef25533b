#pragma once

#include <cstddef>
#include <memory>
#include <semaphore>

namespace ovinta::sandbox {

/// Keeps requests that hold a thread while they wait from holding all. May be used from any thread.
class WaitingPlaces {
 public:
  static constexpr std::size_t kMost = 24;

  /// A place, free again once the last copy is gone; null when all are taken.
  std::shared_ptr<void> take() {
    if (!places_->try_acquire()) return nullptr;
    return {places_.get(), [places = places_](void*) { places->release(); }};
  }

 private:
  using Places = std::counting_semaphore<kMost>;

  const std::shared_ptr<Places> places_ = std::make_shared<Places>(kMost);
};

}  // namespace ovinta::sandbox
