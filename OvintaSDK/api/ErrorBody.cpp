#include "OvintaSDK/api/ErrorBody.h"

#include "OvintaSDK/model/wire/RecordCoding.h"

namespace ovinta {
namespace wire {

template <>
struct WireForm<std::map<std::string, std::vector<std::string>>> {
  static std::map<std::string, std::vector<std::string>> decode(const platform::JSONValue& value) {
    if (value.kind() != platform::JSONValue::Kind::object) throwMismatch(value, "an object");
    std::map<std::string, std::vector<std::string>> fields;
    platform::JSONObjectCursor cursor(value);
    std::string_view name;
    platform::JSONValue messages;
    while (cursor.next(name, messages)) {
      fields.insert_or_assign(std::string(name),
                              WireForm<std::vector<std::string>>::decode(messages));
    }
    return fields;
  }
};

template <>
struct WireTable<ErrorBody> {
  static constexpr auto kFields = table(field("errors", &ErrorBody::errors));
};

}  // namespace wire

std::optional<ErrorBody> ErrorBody::parse(std::string_view text) {
  const auto document = platform::JSONDocument::parse(text);
  if (!document) return std::nullopt;
  try {
    return wire::WireForm<ErrorBody>::decode(document->root());
  } catch (const platform::CodingError&) {
    return std::nullopt;
  }
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
