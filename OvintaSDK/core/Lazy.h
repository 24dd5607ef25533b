#pragma once

#include <memory>
#include <mutex>
#include <utility>

namespace ovinta {

/// A value made on first use, exactly once even when several threads touch it first.
template <class T>
class Lazy {
 public:
  /// The value; `make` gives it as a smart pointer to `T` on first use. `make` must not throw and
  /// must not ask for the same value.
  template <class Make>
  T& get(Make&& make) {
    return *shared(std::forward<Make>(make));
  }

  /// The pointer to the value, for whoever is to keep it alive; otherwise the same as `get`.
  template <class Make>
  const std::shared_ptr<T>& shared(Make&& make) {
    std::call_once(once_, [&] { value_ = std::forward<Make>(make)(); });
    return value_;
  }

 private:
  std::once_flag once_;
  std::shared_ptr<T> value_;
};

}  // namespace ovinta
