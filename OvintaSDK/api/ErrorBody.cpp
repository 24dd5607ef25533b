#include "OvintaSDK/api/ErrorBody.h"

#include "platform/JSON.h"

namespace ovinta {
namespace {

using platform::JSONValue;

/// The texts of a list; absent when the value is anything but a list of texts.
std::optional<std::vector<std::string>> textsOf(const JSONValue& value) {
  if (value.kind() != JSONValue::Kind::array) return std::nullopt;
  std::vector<std::string> texts;
  platform::JSONArrayCursor cursor(value);
  JSONValue element;
  while (cursor.next(element)) {
    const auto text = element.string();
    if (!text) return std::nullopt;
    texts.emplace_back(*text);
  }
  return texts;
}

/// The value under the key; absent when there is none. Of a key given twice the last counts, as in
/// every record.
std::optional<JSONValue> valueUnder(std::string_view key, const JSONValue& object) {
  std::optional<JSONValue> found;
  if (object.kind() != JSONValue::Kind::object) return found;
  platform::JSONObjectCursor cursor(object);
  std::string_view name;
  JSONValue value;
  while (cursor.next(name, value)) {
    if (name == key) found = value;
  }
  return found;
}

}  // namespace

std::optional<ErrorBody> ErrorBody::parse(std::string_view text) {
  const auto document = platform::JSONDocument::parse(text);
  if (!document) return std::nullopt;
  const auto errors = valueUnder("errors", document->root());
  if (!errors || errors->kind() != JSONValue::Kind::object) return std::nullopt;
  ErrorBody body;
  platform::JSONObjectCursor cursor(*errors);
  std::string_view field;
  JSONValue messages;
  while (cursor.next(field, messages)) {
    auto texts = textsOf(messages);
    if (!texts) return std::nullopt;
    body.errors.insert_or_assign(std::string(field), *std::move(texts));
  }
  return body;
}

std::string ErrorBody::message() const {
  std::string joined;
  const char* separator = "";
  for (const auto& [name, messages] : errors) {
    for (const std::string& message : messages) {
      joined += separator + message;
      separator = ", ";
    }
  }
  return joined;
}

}  // namespace ovinta
