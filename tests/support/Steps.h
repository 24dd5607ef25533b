#pragma once

#include <gmock/gmock.h>

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/NotificationCenter.h"
#include "platform/Value.h"

// What the library does, step by step, as values. A comparison that fails tells in words what came.
namespace ovinta::test {

/// What a callback receives or a notification carries: its kind, and as much of it as tells it from
/// others of that kind. Without a kind it is absent.
struct Item {
  std::string_view kind = {};
  platform::Value value = {};

  friend bool operator==(const Item&, const Item&) = default;
};

using Ids = std::vector<std::int64_t>;
inline Item theOrder(std::int64_t id) { return {"order", id}; }
inline Item theOrders(const Ids& ids) { return {"orders", platform::List(ids.begin(), ids.end())}; }
inline Item theSites(const Ids& ids) { return {"sites", platform::List(ids.begin(), ids.end())}; }
inline Item theCustomer(std::string_view token) { return {"customer", token}; }
inline Item thePage(std::int64_t current, std::int64_t total) {
  return {"page", platform::List{current, total}};
}
inline Item thePosition(double latitude, double longitude) {
  return {"position", platform::List{latitude, longitude}};
}
inline Item theError(std::string_view title, std::string_view message) {
  return {"error", platform::List{title, message}};
}

/// One step.
struct Step {
  enum Kind { logged, requested, posted, told };

  Kind kind;
  /// The line, the request's method and path, or the notification's name.
  std::string text = {};
  /// The customer's, with a request; empty for none.
  std::string token = {};
  /// What the request's body holds under "data"; empty for none.
  std::string data = {};
  /// What the callback receives, without what is absent, or the notification carries.
  std::vector<Item> items = {};

  friend bool operator==(const Step&, const Step&) = default;
};
using Steps = std::vector<Step>;

/// A line of the log.
inline Step logged(std::string line) { return {Step::logged, std::move(line)}; }

/// A request when it is answered, its path below the base URL.
inline Step requested(const std::string& method, const std::string& path, std::string token = "",
                      std::string data = "") {
  return {Step::requested, method + " " + path, std::move(token), std::move(data)};
}

/// A callback is called.
inline Step told(std::vector<Item> arguments) {
  std::erase(arguments, Item{});
  return {.kind = Step::told, .items = std::move(arguments)};
}
template <class... Items>
Step told(const Items&... arguments) {
  return told(std::vector<Item>{arguments...});
}

/// A notification.
inline Step posted(platform::NotificationName name, const Item& object = {}) {
  return {.kind = Step::posted, .text = std::string(name.text), .items = told(object).items};
}

/// Matches these steps and no others, in this order. Each part is a step or several.
template <class... Parts>
auto are(const Parts&... parts) {
  Steps all;
  [[maybe_unused]] const auto append = [&all](const auto& part) {
    if constexpr (std::is_same_v<decltype(part), const Step&>) {
      all.push_back(part);
    } else {
      all.insert(all.end(), part.begin(), part.end());
    }
  };
  (append(parts), ...);
  return ::testing::ElementsAreArray(all);
}

void PrintTo(const Item& item, std::ostream* out);
void PrintTo(const Step& step, std::ostream* out);
void PrintTo(const Steps& steps, std::ostream* out);

}  // namespace ovinta::test
