#pragma once

#include <utility>
#include <variant>

namespace ovinta::platform {

/// What came of a call: a value, or the error that stands in its place. The two are of different
/// types, and either is returned as it is. A plain value.
template <class T, class E>
class [[nodiscard]] Expected {
 public:
  /// A call that succeeded returns its value, one that failed its error.
  Expected(T value) : content_(std::in_place_index<0>, std::move(value)) {}
  Expected(E error) : content_(std::in_place_index<1>, std::move(error)) {}

  /// Whether there is a value.
  explicit operator bool() const { return content_.index() == 0; }

  /// The value. Where there is none, the behaviour is undefined.
  const T& operator*() const& { return *std::get_if<0>(&content_); }
  T&& operator*() && { return std::move(*std::get_if<0>(&content_)); }
  const T* operator->() const { return std::get_if<0>(&content_); }

  /// The error. Where there is none, the behaviour is undefined.
  const E& error() const& { return *std::get_if<1>(&content_); }
  E&& error() && { return std::move(*std::get_if<1>(&content_)); }

 private:
  std::variant<T, E> content_;
};

}  // namespace ovinta::platform
