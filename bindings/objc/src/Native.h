#pragma once

#include <functional>
#include <memory>
#include <typeinfo>
#include <utility>

namespace twins {

/// The C++ side of a record's twin.
class Native {
 public:
  virtual ~Native() = default;

  /// Both must be of the same type.
  virtual bool equals(const Native& other) const = 0;
  virtual std::size_t hash() const = 0;
  /// The address of the library's object that the twin stands for; null for a value.
  virtual const void* identity() const = 0;
};

template <class T>
inline constexpr bool kIsShared = false;
template <class T>
inline constexpr bool kIsShared<std::shared_ptr<T>> = true;

template <class T>
class NativeOf : public Native {
 public:
  explicit NativeOf(T native) : value(std::move(native)) {}

  bool equals(const Native& other) const override {
    return value == static_cast<const NativeOf&>(other).value;
  }

  std::size_t hash() const override {
    if constexpr (requires { std::hash<T>()(value); }) {
      return std::hash<T>()(value);
    } else {
      // Equal values must have equal hashes; more is not known of the type.
      return typeid(T).hash_code();
    }
  }

  const void* identity() const override {
    if constexpr (kIsShared<T>) {
      return value.get();
    } else {
      return nullptr;
    }
  }

  T value;
};

template <class T>
std::unique_ptr<Native> wrap(T value) {
  return std::make_unique<NativeOf<T>>(std::move(value));
}

}  // namespace twins
