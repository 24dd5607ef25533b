#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace ovinta::platform {

struct Value;
/// Values in their order, and values by text keys, which are UTF-8.
using List = std::vector<Value>;
using Dictionary = std::map<std::string, Value, std::less<>>;

/// Any value that a JSON text, a push payload or an options dictionary can hold; null at first. A
/// plain value.
struct Value {
  /// The types of which a value holds one.
  using Storage =
      std::variant<std::nullptr_t, bool, std::int64_t, double, std::string, List, Dictionary>;

  Value() = default;
  /// What it can hold converts to it. A `const char*` must not be null.
  Value(std::nullptr_t) {}
  Value(const char* text) : storage(std::string(text)) {}
  Value(std::string_view text) : storage(std::string(text)) {}
  Value(std::string text) : storage(std::move(text)) {}
  Value(List list) : storage(std::move(list)) {}
  Value(Dictionary dictionary) : storage(std::move(dictionary)) {}
  /// A truth value, a whole number or another number: the type decides.
  template <class T>
  requires std::is_arithmetic_v<T> Value(T number) {
    if constexpr (std::is_same_v<T, bool>) {
      storage = number;
    } else if constexpr (std::is_integral_v<T>) {
      // A larger one is the nearest double, as when it is read from a text.
      if (std::is_unsigned_v<T> && static_cast<std::uint64_t>(number) > std::uint64_t{INT64_MAX}) {
        storage = static_cast<double>(number);
        return;
      }
      storage = static_cast<std::int64_t>(number);
    } else {
      storage = static_cast<double>(number);
    }
  }

  /// The value when it is a `T`, otherwise null.
  template <class T>
  const T* as() const {
    return std::get_if<T>(&storage);
  }

  friend bool operator==(const Value&, const Value&) = default;

  /// The value itself.
  Storage storage;
};

/// The entry under the key when there is one and it is a `T`, valid as long as the dictionary is
/// unchanged; otherwise null. May be called from any thread.
template <class T>
const T* find(const Dictionary& dictionary, std::string_view key) {
  const auto entry = dictionary.find(key);
  return entry == dictionary.end() ? nullptr : entry->second.as<T>();
}

}  // namespace ovinta::platform
