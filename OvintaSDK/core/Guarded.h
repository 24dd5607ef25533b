#pragma once

#include <mutex>
#include <utility>

namespace ovinta {

/// A value that several threads may read and replace. Nothing is promised across two of them.
template <class T>
class Guarded {
 public:
  Guarded() = default;
  explicit Guarded(T value) : value_(std::move(value)) {}

  T get() const {
    const std::scoped_lock lock(mutex_);
    return value_;
  }

  void set(T value) {
    // Swapped, so that the old value, whose destructor may run foreign code, outlives the lock.
    const std::scoped_lock lock(mutex_);
    std::swap(value_, value);
  }

  /// Replaces the value and gives the old one.
  T exchange(T value) {
    const std::scoped_lock lock(mutex_);
    std::swap(value_, value);
    return value;
  }

  /// Has `change` change the value in one step. It must not call foreign code, nor this.
  template <class Change>
  void change(Change&& change) {
    const std::scoped_lock lock(mutex_);
    std::forward<Change>(change)(value_);
  }

  /// Copies one field of the value.
  template <class Field>
  Field get(Field T::*field) const {
    const std::scoped_lock lock(mutex_);
    return value_.*field;
  }

  /// Replaces one field of the value.
  template <class Field>
  void set(Field T::*field, Field value) {
    const std::scoped_lock lock(mutex_);
    std::swap(value_.*field, value);
  }

 private:
  mutable std::mutex mutex_;
  T value_{};
};

}  // namespace ovinta
