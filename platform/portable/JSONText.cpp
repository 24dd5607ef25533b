#include "platform/JSON.h"

namespace ovinta::platform {

std::optional<Value> parseJSON(std::string_view text) {
  const auto document = JSONDocument::parse(text);
  if (!document) return std::nullopt;
  return document->root().copy();
}

Coded<std::string> jsonText(const Value& value) {
  try {
    JSONWriter writer;
    writer.value(value);
    return writer.take();
  } catch (const CodingError& error) {
    return error;
  }
}

}  // namespace ovinta::platform
