#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "platform/Expected.h"
#include "platform/Value.h"

namespace ovinta::sandbox {

/// Why the service does not do what it is asked.
struct Refusal {
  enum class Kind { invalid, unauthorized, unknown, gone, impossible };

  Kind kind = Kind::invalid;
  /// Field names, each with its list of messages.
  platform::Dictionary errors;
};

/// The record that results, or why there is none.
using Outcome = platform::Expected<platform::Dictionary, Refusal>;

/// A refusal with one message for one field.
inline Refusal refusal(Refusal::Kind kind, std::string_view field, std::string message) {
  platform::Dictionary errors;
  errors.emplace(field, platform::List{std::move(message)});
  return {kind, std::move(errors)};
}

}  // namespace ovinta::sandbox
