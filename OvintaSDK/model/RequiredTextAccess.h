#pragma once

#include "OvintaSDK/model/RequiredText.h"

namespace ovinta {

/// What only the library may do with a required text.
struct RequiredTextAccess {
  /// A required text that may be absent.
  static RequiredText of(std::optional<std::string> text) { return RequiredText(std::move(text)); }

  /// The member that holds the text.
  static constexpr std::optional<std::string> RequiredText::*kText = &RequiredText::text_;
};

}  // namespace ovinta
