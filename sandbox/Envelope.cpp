#include "sandbox/Envelope.h"

#include <utility>

#include "platform/JSON.h"
#include "sandbox/Validation.h"

namespace ovinta::sandbox {

Outcome dataOf(std::string_view text) {
  const auto value = platform::parseJSON(text);
  const auto* object = value ? value->as<platform::Dictionary>() : nullptr;
  const auto* data = object ? platform::find<platform::Dictionary>(*object, "data") : nullptr;
  if (data) return *data;
  return invalid("data", "is missing");
}

std::string enveloped(std::string key, platform::Value value) {
  return platform::writeJSON(platform::Dictionary{{std::move(key), std::move(value)}});
}

}  // namespace ovinta::sandbox
