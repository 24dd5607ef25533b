#include "platform/JSON.h"

#include <algorithm>

#include "fuzz/Target.h"
#include "platform/linux/notifications/UserNotificationJSON.h"

namespace ovinta::fuzz {
namespace {

using namespace platform;

/// Holds what the cursors see against the free-standing copy.
void compare(const JSONValue& seen, const Value& copy) {
  JSONValue inner;
  if (const auto* list = copy.as<List>()) {
    JSONArrayCursor cursor(seen);
    require(cursor.size() == list->size(), "a cursor knows the array's size");
    for (const Value& element : *list) {
      require(cursor.next(inner), "a cursor comes to every element");
      compare(inner, element);
    }
    require(!cursor.next(inner), "a cursor ends with the array");
  } else if (const auto* dictionary = copy.as<Dictionary>()) {
    JSONObjectCursor cursor(seen);
    std::string_view key;
    while (cursor.next(key, inner)) {
      require(dictionary->contains(key), "a copy holds every key");
    }
  } else if (const auto integer = seen.integer()) {
    require(seen.number() == static_cast<double>(*integer), "an integer is a number");
  }
}

void run(std::string_view input) {
  const auto document = JSONDocument::parse(input);
  const auto value = parseJSON(input);
  require(document.has_value() == value.has_value(), "both ways of reading know what JSON is");
  if (!document) return;
  require(document->root().copy() == *value, "both ways of reading give the same value");
  // A copy goes no deeper than 1,024 levels, of which the list is one.
  if (std::ranges::count_if(input, [](char c) { return c == '[' || c == '{'; }) < 1000) {
    const auto beside = parseJSON("[123456789012345678901," + std::string(input) + "]");
    require(beside && beside->as<List>()->at(1) == *value,
            "a value does not change its neighbours");
  }
  compare(document->root(), *value);
  require(parseJSON(linuxos::typedJSON(*value)) == value, "a typed text reads back as it was");
  const std::string text = writeJSON(*value);
  const auto again = parseJSON(text);
  require(again.has_value(), "what is written is JSON");
  require(writeJSON(*again) == text, "a text that was written reads back as it was");
}

const Target kTarget("json", run);

}  // namespace
}  // namespace ovinta::fuzz
