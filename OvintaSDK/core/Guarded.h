#pragma once

#include <mutex>
#include <utility>

namespace ovinta {

/// A value that several threads may read and replace, each step under a lock of its own. Nothing is
/// promised across two steps, nor across two such values.
template <class T>
class Guarded {
 public:
  Guarded() = default;
  /// Takes the value to begin with; without one it is `T()`.
  explicit Guarded(T value) : value_(std::move(value)) {}

  /// A copy of the value; `set` replaces it.
  T get() const {
    const std::lock_guard lock(mutex_);
    return value_;
  }

  /// Replaces the value; the old one is destroyed outside of the lock.
  void set(T value) {
    // The argument, which holds the old value after the swap, outlives the lock: the destructor may
    // run foreign code.
    const std::lock_guard lock(mutex_);
    std::swap(value_, value);
  }

  /// Replaces the value and gives the old one.
  T exchange(T value) {
    const std::lock_guard lock(mutex_);
    std::swap(value_, value);
    return value;
  }

  /// Has `change`, which receives the value, change it in one step, inside the call and under the
  /// lock: it must not call foreign code, nor anything of this object.
  template <class Change>
  void change(Change&& change) {
    const std::lock_guard lock(mutex_);
    std::forward<Change>(change)(value_);
  }

  /// What `read` makes of the value, inside the call and under the lock: it must not call foreign
  /// code, nor anything of this object.
  template <class Read>
  auto read(Read&& read) const {
    const std::lock_guard lock(mutex_);
    return std::forward<Read>(read)(value_);
  }

  /// A copy of one field of the value.
  template <class Field>
  Field get(Field T::*field) const {
    const std::lock_guard lock(mutex_);
    return value_.*field;
  }

  /// Replaces one field of the value.
  template <class Field>
  void set(Field T::*field, Field value) {
    const std::lock_guard lock(mutex_);
    std::swap(value_.*field, value);
  }

 private:
  mutable std::mutex mutex_;
  T value_{};
};

}  // namespace ovinta
