#include "sandbox/domain/Envelope.h"

#include <utility>

#include "platform/JSON.h"
#include "sandbox/domain/Validation.h"

namespace ovinta::sandbox {

Outcome dataOf(std::string_view text) {
  const auto value = platform::parseJSON(text);
  const auto* object = value ? value->as<platform::Dictionary>() : nullptr;
  if (!value && !text.empty()) return invalid("body", "is not JSON");
  const auto data = object ? object->find("data") : platform::Dictionary::const_iterator();
  if (!object || data == object->end()) return invalid("data", "is missing");
  if (const auto* record = data->second.as<platform::Dictionary>()) return *record;
  return invalid("data", "must be an object");
}

std::string enveloped(std::string key, platform::Value value) {
  return platform::writeJSON(platform::Dictionary{{std::move(key), std::move(value)}});
}

}  // namespace ovinta::sandbox
