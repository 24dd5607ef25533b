#include "platform/JSON.h"

namespace ovinta::platform {

std::optional<Value> parseJSON(std::string_view text) {
  const auto document = JSONDocument::parse(text);
  if (!document) return std::nullopt;
  return document->root().copy();
}

std::string writeJSON(const Value& value) {
  JSONWriter writer;
  writer.value(value);
  return writer.take();
}

}  // namespace ovinta::platform
