#pragma once

#include <memory>
#include <utility>

namespace ovinta::platform::portable {

/// A member by which what an object leaves to run later finds out whether the object is still
/// there. Ask on the thread that destroys the object: elsewhere it may go right after the answer.
class Lifetime {
 public:
  Lifetime() = default;
  Lifetime(const Lifetime&) = delete;
  Lifetime& operator=(const Lifetime&) = delete;

  /// A token that expires with the object.
  std::weak_ptr<const void> watch() const { return token_; }

  /// Makes a function that runs `action`, and does nothing once the object is gone.
  template <class Action>
  auto guard(Action action) const {
    return [life = watch(), action = std::move(action)](const auto&... arguments) {
      if (!life.expired()) action(arguments...);
    };
  }

 private:
  const std::shared_ptr<const void> token_ = std::make_shared<char>();
};

}  // namespace ovinta::platform::portable
